#pragma once

#include "backup/BackupService.h"
#include "storage/EventStore.h"
#include "support/FakeClock.h"
#include "support/FaultyFileAccess.h"
#include "support/ItemFixtures.h"

// A data folder of its own, with a few countdowns of every kind when asked, and its backups.
struct BackupFolder
{
    explicit BackupFolder(const QList<Event> &events = {})
    {
        for (const Event &event : events)
            store.addEvent(event);
    }

    static QList<Event> sample()
    {
        using namespace Fixture;
        Event trip = countdown(QStringLiteral("Trip ✈"), at("2026-12-24T10:00:00Z"));
        trip.note = QStringLiteral("passport!");
        trip.recurrence = RecurrenceRule {RecurrenceRule::Frequency::yearly, {}, 1, {}};
        return {trip, countUp(QStringLiteral("Quit"), at("2025-01-01T08:00:00Z")),
                countdown(QStringLiteral("Exam"), at("2026-06-03T00:00:00Z"), "Europe/Berlin")};
    }

    TempPathProvider paths;
    FaultyFileAccess files;
    EventStore store {paths, files};
    FakeClock clock {Fixture::at("2026-06-02T22:30:00Z")}; // 3 June in Istanbul
    BackupService service {store, files, clock};

    BackupMessage exportTo(const QString &path)
    {
        return service.writeExport(service.prepareExport(), path);
    }
};

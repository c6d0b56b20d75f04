#pragma once

#include "countdown/CountdownRegistry.h"
#include "l10n/LocaleManager.h"
#include "storage/EventStore.h"
#include "storage/SettingsStore.h"
#include "support/FakeClock.h"
#include "support/FakeNotifier.h"
#include "support/FaultyFileAccess.h"
#include "support/ItemFixtures.h"
#include "support/ListCalendarSource.h"

// What the arrival services work over: a store on a disk that can be made to fail, the list with
// a calendar the test fills, the interface language, a clock, and what was announced.
struct ArrivalWorld
{
    explicit ArrivalWorld(const QString &language = QStringLiteral("en"))
        : locale(settings, [language] { return QStringList {language}; })
    {
        registry.attachCalendarSource(&calendar);
    }

    TempPathProvider paths;
    FaultyFileAccess files;
    EventStore store {paths, files};
    SettingsStore settings {paths, files};
    LocaleManager locale;
    ListCalendarSource calendar;
    CountdownRegistry registry {store};
    FakeClock clock {Fixture::at("2026-03-01T12:00:00Z")};
    FakeNotifier notifier;
};

// The events file on disk: files of every older version, the order of the list, the failure
// paths (nothing published and nothing lost when a read or write fails), and the mutations.
#include "storage/EventStore.h"
#include "json/IsoDate.h"

#include "support/FaultyFileAccess.h"
#include "support/Fixtures.h"

#include <QSignalSpy>
#include <QTest>

namespace {

QDateTime at(const char *iso)
{
    return *IsoDate::parse(QByteArrayView(iso));
}

Event makeEvent(const char *title, const char *target,
                CountdownDirection direction = CountdownDirection::until)
{
    Event e = Event::created(QString::fromUtf8(title), at("2026-01-01T00:00:00Z"),
                             QTimeZone("Europe/Berlin"));
    e.targetDate = at(target);
    e.includeTime = true;
    e.direction = direction;
    return e;
}

QStringList titles(const QList<Event> &events)
{
    QStringList list;
    for (const Event &e : events)
        list.append(e.title);
    return list;
}

const CalendarSeriesRef Standup {QStringLiteral("work"), QStringLiteral("standup@example.com")};

} // namespace

class TestEventStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void olderFiles_data();
    void olderFiles();
    void orderingAndUpdates();
    void unreadableFileIsNeverReplacedWithoutACopy();
    void failedWriteLeavesFileAndStateAlone();
    void pinRules();
    void backupImport();
    void calendarEntriesRoundTripAndEmptyOnesAreDropped();

private:
    std::unique_ptr<TempPathProvider> m_paths;
    FaultyFileAccess m_files;
    QByteArray onDisk() const { return readFile(m_paths->eventFile()); }
};

void TestEventStore::init()
{
    m_paths = std::make_unique<TempPathProvider>();
    m_files = FaultyFileAccess();
}

void TestEventStore::olderFiles_data()
{
    QTest::addColumn<QString>("fixture");
    QTest::addColumn<QStringList>("titles");
    QTest::addColumn<QString>("pin"); // the pinned event's title or series
    QTest::addColumn<bool>("needsMigration");
    QTest::addColumn<int>("calendarEntries");
    QTest::addColumn<bool>("unreadable");

    QTest::newRow("A version 1 file is one pinned event")
        << "v1-legacy-single-event" << QStringList {"Flight to Lisbon"} << "Flight to Lisbon"
        << true << 0 << false;
    QTest::newRow("Version 2 with the old pin field")
        << "v2-pinned-event-id" << QStringList {"Holiday", "Exam"} << "Exam" << true << 0 << false;
    QTest::newRow("Version 2 without events needs no migration")
        << "v2-empty" << QStringList {} << "" << false << 0 << false;
    QTest::newRow("Version 3 never needs the migration")
        << "v3-no-migration" << QStringList {"Concert"} << "" << false << 0 << false;
    QTest::newRow("Calendar choices load, and a pinned series counts as kept")
        << "v10-calendar-pin" << QStringList {} << "standup@example.com" << false << 5 << false;
    QTest::newRow("A pin of an unknown kind is no pin; the events still load")
        << "unknown-pin-kind" << QStringList {"Party"} << "" << false << 0 << false;
    QTest::newRow("One bad date makes the whole file unreadable")
        << "bad-date-in-envelope" << QStringList {} << "" << false << 0 << true;
    QTest::newRow("A truncated file loads empty")
        << "truncated" << QStringList {} << "" << false << 0 << true;
}

void TestEventStore::olderFiles()
{
    QFETCH(QString, fixture);
    QFETCH(QStringList, titles);
    QFETCH(QString, pin);
    QFETCH(bool, needsMigration);
    QFETCH(int, calendarEntries);
    QFETCH(bool, unreadable);
    fixture = QStringLiteral("events/%1.json").arg(fixture);
    QVERIFY(installFixture(fixture, m_paths->supportDirectory()));
    if (unreadable)
        QTest::ignoreMessage(QtCriticalMsg,
                             "event.json present but neither a versioned "
                             "envelope nor a legacy v1 event");

    EventStore store(*m_paths, m_files);
    QCOMPARE(::titles(store.events()), titles);
    QCOMPARE(store.needsReachSignalMigration(), needsMigration);
    const std::optional<PinTarget> &actualPin = store.pin();
    QCOMPARE(!actualPin                    ? QString()
                 : actualPin->isCalendar() ? actualPin->series.seriesID
                                           : store.event(actualPin->eventID)->title,
             pin);
    const StoreState &state = store.state();
    QCOMPARE(state.calendarIcons.size() + state.hiddenCalendarSeries.size()
                 + state.keptCalendarSeries.size() + state.calendarReach.size()
                 + state.calendarAnnotations.size(),
             calendarEntries);
    if (actualPin && actualPin->isCalendar())
        QVERIFY(store.keptCalendarSeries().contains(actualPin->series));
    QCOMPARE(m_files.writes, 0); // loading never writes
    QCOMPARE(onDisk(), fixtureBytes(fixture));

    // Older files take the reach switches the settings of their version held, once; the first
    // save writes everything back in the current form, keeping a file it could not read aside.
    if (needsMigration) {
        store.migrateReachSignals(true, false);
        store.migrateReachSignals(false, true);
        for (const Event &event : store.events())
            QVERIFY(event.celebrationEnabled && !event.notifyOnReach);
    }
    if (unreadable)
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression(QStringLiteral("^Kept the unreadable event.json")));
    QVERIFY(store.addEvent(makeEvent("New", "2026-05-01T10:00:00Z")));
    QVERIFY(store.addEvent(makeEvent("Another", "2026-06-01T10:00:00Z")));
    const EventStore reloaded(*m_paths, m_files);
    QCOMPARE(reloaded.state(), store.state());
    QVERIFY(!reloaded.needsReachSignalMigration());
    const QDir folder(m_paths->supportDirectory());
    const QStringList aside = folder.entryList({QStringLiteral("event (*")}, QDir::Files);
    QCOMPARE(aside.size(), unreadable ? 1 : 0);
    if (unreadable)
        QCOMPARE(readFile(folder.filePath(aside.first())), fixtureBytes(fixture));
}

void TestEventStore::orderingAndUpdates()
{
    constexpr CountdownDirection since = CountdownDirection::since;
    EventStore store(*m_paths, m_files);
    Event reached = makeEvent("Arrived", "2026-01-05T00:00:00Z");
    reached.reachedAt = at("2026-01-05T00:00:01Z");
    Event later = makeEvent("Later", "2026-09-01T00:00:00Z");
    later.note = QStringLiteral("Bring flowers");
    for (const Event &e : {later, makeEvent("Started last year", "2025-03-01T00:00:00Z", since),
                           reached, makeEvent("Sooner", "2026-04-01T00:00:00Z"),
                           makeEvent("Started yesterday", "2026-02-28T00:00:00Z", since)})
        QVERIFY(store.addEvent(e));
    const QStringList expected = {"Sooner", "Later", "Started yesterday", "Started last year",
                                  "Arrived"};
    QCOMPARE(titles(store.events()), expected);
    QCOMPARE(titles(EventStore(*m_paths, m_files).events()), expected);

    // An update re-sorts (the later countdown moves up) and changes only what the patch holds.
    EventPatch patch;
    patch.targetDate = at("2026-03-15T00:00:00Z");
    patch.note = std::optional<QString>(); // present, nil: clears the note
    QVERIFY(store.updateEvent(later.id, patch));
    QCOMPARE(titles(store.events()).first(), QStringLiteral("Later"));
    later.targetDate = *patch.targetDate;
    later.note.reset();
    QCOMPARE(EventStore(*m_paths, m_files).events().first(), later);
}

void TestEventStore::unreadableFileIsNeverReplacedWithoutACopy()
{
    QVERIFY(
        installFixture(QStringLiteral("events/v3-no-migration.json"), m_paths->supportDirectory()));
    m_files.failReads = true;
    QTest::ignoreMessage(QtCriticalMsg, "Failed to read event.json: Permission denied");
    EventStore store(*m_paths, m_files);
    QVERIFY(store.events().isEmpty());
    m_files.failReads = false;

    // The copy aside fails: the save is refused rather than losing the user's file.
    m_files.failCopies = true;
    EventStoreError error;
    QVERIFY(!store.addEvent(makeEvent("New", "2026-05-01T10:00:00Z"), &error));
    QVERIFY(error.description.contains(u"unreadable event.json"));
    QCOMPARE(onDisk(), fixtureBytes(QStringLiteral("events/v3-no-migration.json")));
    QVERIFY(store.events().isEmpty());
}

void TestEventStore::failedWriteLeavesFileAndStateAlone()
{
    EventStore store(*m_paths, m_files);
    const Event kept = makeEvent("Kept", "2026-05-01T10:00:00Z");
    QVERIFY(store.addEvent(kept));
    QVERIFY(store.setPin(PinTarget::manual(kept.id)));
    const QByteArray before = onDisk();
    const StoreState state = store.state();

    m_files.failWrites = true;
    QSignalSpy events(&store, &EventStore::eventsChanged);
    QSignalSpy pin(&store, &EventStore::pinChanged);
    EventStoreError error;
    QVERIFY(!store.addEvent(makeEvent("Lost", "2026-06-01T10:00:00Z"), &error));
    QCOMPARE(error.kind, EventStoreError::Kind::writeFailed);
    QCOMPARE(error.description, QStringLiteral("No space left on device"));
    QVERIFY(!store.deleteEvent(kept.id));
    QVERIFY(!store.setPin(std::nullopt));
    QVERIFY(!store.setSeriesHidden(Standup, true));
    QCOMPARE(store.state(), state);
    QCOMPARE(events.count() + pin.count(), 0);
    QCOMPARE(onDisk(), before);
}

void TestEventStore::pinRules()
{
    EventStore store(*m_paths, m_files);
    EventStoreError error;
    QVERIFY(!store.setPin(PinTarget::manual(QUuid::createUuid()), &error));
    QCOMPARE(error.kind, EventStoreError::Kind::noEvent);
    QCOMPARE(m_files.writes, 0);

    // A calendar pin keeps its series and is written without the older pin field.
    const PinTarget standup = PinTarget::calendarOccurrence({Standup, at("2026-03-02T09:00:00Z")});
    QVERIFY(store.setPin(standup));
    QVERIFY(store.keptCalendarSeries().contains(Standup));
    QVERIFY(!onDisk().contains("pinnedEventID"));
    QCOMPARE(EventStore(*m_paths, m_files).pin(), standup);
    const int writes = m_files.writes;
    QSignalSpy pinChanged(&store, &EventStore::pinChanged);
    QVERIFY(store.setPin(standup));
    QCOMPARE(m_files.writes, writes); // the same pin writes nothing
    QCOMPARE(pinChanged.count(), 0);

    // Older versions read only pinnedEventID: it is written with a pin of an event. Deleting
    // the pinned event takes the pin with it.
    Event event = makeEvent("Pinned", "2026-05-01T10:00:00Z");
    event.id = QUuid::fromString(QStringLiteral("6F1C9E0A-3B7D-4C2E-9A51-0D8E2F4B7C11"));
    QVERIFY(store.addEvent(event) && store.setPin(PinTarget::manual(event.id)));
    QVERIFY(
        onDisk().contains("\"pin\": {\n        \"id\": \"6F1C9E0A-3B7D-4C2E-9A51-0D8E2F4B7C11\",\n"
                          "        \"kind\": \"manual\"\n    },\n"
                          "    \"pinnedEventID\": \"6F1C9E0A-3B7D-4C2E-9A51-0D8E2F4B7C11\""));
    QVERIFY(store.deleteEvent(event.id));
    QVERIFY(!store.pin());
    QCOMPARE(pinChanged.count(), 2);
    QVERIFY(!store.deleteEvent(event.id, &error));
    QCOMPARE(error.kind, EventStoreError::Kind::noEvent);
}

void TestEventStore::backupImport()
{
    // A merge skips the ids already there, keeping the store's copy; a replace keeps only the
    // archive, and a pin of an event that is gone goes too.
    EventStore store(*m_paths, m_files);
    Event mine = makeEvent("Mine", "2026-04-01T00:00:00Z");
    const Event onlyHere = makeEvent("Only here", "2026-05-01T00:00:00Z");
    QVERIFY(store.addEvent(mine) && store.addEvent(onlyHere));
    QVERIFY(store.setPin(PinTarget::manual(onlyHere.id)));
    mine.title = QStringLiteral("Mine, as exported");
    const QList<Event> archive = {mine, makeEvent("Imported", "2026-06-01T00:00:00Z")};
    BackupImportCounts merged, replaced;
    QVERIFY(store.importBackup(archive, BackupImportMode::merge, &merged));
    QCOMPARE(titles(store.events()), (QStringList {"Mine", "Only here", "Imported"}));
    QVERIFY(store.pin());
    QVERIFY(store.importBackup(archive, BackupImportMode::replace, &replaced));
    QCOMPARE(titles(EventStore(*m_paths, m_files).events()),
             (QStringList {"Mine, as exported", "Imported"}));
    QVERIFY(!store.pin());
    QCOMPARE((QList<qint64> {merged.added, merged.skipped, replaced.added, replaced.skipped}),
             (QList<qint64> {1, 1, 2, 0}));
}

void TestEventStore::calendarEntriesRoundTripAndEmptyOnesAreDropped()
{
    EventStore store(*m_paths, m_files);
    CalendarReachSignals reach;
    reach.notifyOnReach = true;
    reach.reminderLeadMinutes = {5};
    reach.armed = {{at("2026-03-02T09:00:00Z"), u"Stand-up"_qs, u"https://zoom.us/j/1"_qs}};
    reach.reached = {{at("2026-03-01T09:00:00Z"), u"Stand-up"_qs, std::nullopt}};
    QVERIFY(store.setCalendarReach(Standup, reach));
    QVERIFY(store.setCalendarAnnotation(Standup, CalendarAnnotation {QStringLiteral("note"), {}}));
    QVERIFY(store.setCalendarIcon(Standup, IconRef {QStringLiteral("person.3.fill")}));
    QCOMPARE(EventStore(*m_paths, m_files).state(), store.state());

    // An entry with nothing chosen says no more than a missing one.
    QVERIFY(store.setCalendarReach(Standup, CalendarReachSignals()));
    QVERIFY(store.setCalendarAnnotation(Standup, CalendarAnnotation()));
    QVERIFY(store.setCalendarIcon(Standup, std::nullopt));
    QVERIFY(store.calendarReach().isEmpty() && store.calendarAnnotations().isEmpty()
            && store.calendarIcons().isEmpty());
    const int writes = m_files.writes;
    QVERIFY(store.setSeriesHidden(Standup, false)); // no change, no write
    QCOMPARE(m_files.writes, writes);
}

QTEST_GUILESS_MAIN(TestEventStore)
#include "tst_eventstore.moc"

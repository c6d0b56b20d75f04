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

Event makeEvent(const QString &title, const char *target,
                CountdownDirection direction = CountdownDirection::until, bool includeTime = true)
{
    Event e;
    e.id = QUuid::createUuid();
    e.title = title;
    e.targetDate = at(target);
    e.includeTime = includeTime;
    e.timeZone = QStringLiteral("Europe/Berlin");
    e.createdAt = at("2026-01-01T00:00:00Z");
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
    void legacyFileIsWrittenBackAsEnvelopeWithSwitches();
    void pinnedEventIdIsWrittenWithThePin();
    void ordering();
    void unreadableFileLoadsEmptyAndIsKeptAside();
    void undecodableFileIsKeptAsideBeforeTheFirstSave();
    void failedWriteLeavesFileAndStateAlone();
    void pinRules();
    void deletingThePinnedEventClearsThePin();
    void backupImport_data();
    void backupImport();
    void calendarEntriesWithNothingChosenAreDropped();

private:
    std::unique_ptr<TempPathProvider> m_paths;
    FaultyFileAccess m_files;
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
    QTest::addColumn<QString>("pin"); // "manual:<title>", "series:<seriesID>" or empty
    QTest::addColumn<bool>("needsMigration");

    QTest::newRow("A version 1 file is one pinned event")
        << "events/v1-legacy-single-event.json" << QStringList {"Flight to Lisbon"}
        << "manual:Flight to Lisbon" << true;
    QTest::newRow("Version 2 with the old pin field")
        << "events/v2-pinned-event-id.json" << QStringList {"Holiday", "Exam"} << "manual:Exam"
        << true;
    QTest::newRow("Version 2 without events needs no migration")
        << "events/v2-empty.json" << QStringList {} << QString() << false;
    QTest::newRow("Version 3 never needs the migration")
        << "events/v3-no-migration.json" << QStringList {"Concert"} << QString() << false;
    QTest::newRow("A pinned calendar series counts as kept")
        << "events/v10-calendar-pin.json" << QStringList {} << "series:standup@example.com"
        << false;
    QTest::newRow("A pin of an unknown kind is no pin; the events still load")
        << "events/unknown-pin-kind.json" << QStringList {"Party"} << QString() << false;
    QTest::newRow("One bad date makes the whole file unreadable")
        << "events/bad-date-in-envelope.json" << QStringList {} << QString() << false;
    QTest::newRow("A truncated file loads empty")
        << "events/truncated.json" << QStringList {} << QString() << false;
}

void TestEventStore::olderFiles()
{
    QFETCH(QString, fixture);
    QFETCH(QStringList, titles);
    QFETCH(QString, pin);
    QFETCH(bool, needsMigration);
    QVERIFY(installFixture(fixture, m_paths->supportDirectory(), QStringLiteral("event.json")));

    const EventStore store(*m_paths, m_files);
    QCOMPARE(::titles(store.events()), titles);
    QCOMPARE(store.needsReachSignalMigration(), needsMigration);
    QString actualPin;
    if (store.pin() && store.pin()->kind == PinTarget::Kind::manual)
        actualPin = QStringLiteral("manual:") + store.event(store.pin()->eventID)->title;
    else if (store.pin())
        actualPin = QStringLiteral("series:") + store.pin()->series.seriesID;
    QCOMPARE(actualPin, pin);
    if (store.pin() && store.pin()->isCalendar())
        QVERIFY(store.keptCalendarSeries().contains(store.pin()->series));
    QCOMPARE(m_files.writes, 0); // loading never writes
}

void TestEventStore::legacyFileIsWrittenBackAsEnvelopeWithSwitches()
{
    QVERIFY(installFixture(QStringLiteral("events/v1-legacy-single-event.json"),
                           m_paths->supportDirectory(), QStringLiteral("event.json")));
    EventStore store(*m_paths, m_files);
    QSignalSpy changed(&store, &EventStore::eventsChanged);
    store.migrateReachSignals(true, false);
    QCOMPARE(changed.count(), 1);
    QVERIFY(!store.needsReachSignalMigration());

    const QByteArray written = readFile(m_paths->eventFile());
    QVERIFY(written.contains("\"schemaVersion\": 10"));
    QVERIFY(written.contains("\"celebrationEnabled\": true"));
    QVERIFY(written.contains("\"notifyOnReach\": false"));
    QVERIFY(written.contains("\"value\": \"party.popper.fill\""));
    QVERIFY(written.contains("\"pinnedEventID\": \"6F1C9E0A-3B7D-4C2E-9A51-0D8E2F4B7C11\""));

    store.migrateReachSignals(false, true); // once only
    QCOMPARE(readFile(m_paths->eventFile()), written);
    const EventStore reloaded(*m_paths, m_files);
    QCOMPARE(reloaded.state(), store.state());
}

void TestEventStore::pinnedEventIdIsWrittenWithThePin()
{
    QVERIFY(installFixture(QStringLiteral("events/v2-pinned-event-id.json"),
                           m_paths->supportDirectory(), QStringLiteral("event.json")));
    EventStore store(*m_paths, m_files);
    QVERIFY(store.addEvent(makeEvent(QStringLiteral("New"), "2026-05-01T10:00:00Z")));
    const QByteArray written = readFile(m_paths->eventFile());
    QVERIFY(
        written.contains("\"pin\": {\n        \"id\": \"A1B2C3D4-0000-4000-8000-000000000001\",\n"
                         "        \"kind\": \"manual\"\n    },\n"
                         "    \"pinnedEventID\": \"A1B2C3D4-0000-4000-8000-000000000001\""));
}

void TestEventStore::ordering()
{
    EventStore store(*m_paths, m_files);
    Event reached = makeEvent(QStringLiteral("Arrived"), "2026-01-05T00:00:00Z");
    reached.reachedAt = at("2026-01-05T00:00:01Z");
    const QList<Event> events = {
        makeEvent(QStringLiteral("Later"), "2026-09-01T00:00:00Z"),
        makeEvent(QStringLiteral("Started last year"), "2025-03-01T00:00:00Z",
                  CountdownDirection::since),
        reached,
        makeEvent(QStringLiteral("Sooner"), "2026-04-01T00:00:00Z"),
        makeEvent(QStringLiteral("Started yesterday"), "2026-02-28T00:00:00Z",
                  CountdownDirection::since),
    };
    for (const Event &e : events)
        QVERIFY(store.addEvent(e));
    const QStringList expected = {"Sooner", "Later", "Started yesterday", "Started last year",
                                  "Arrived"};
    QCOMPARE(titles(store.events()), expected);
    QCOMPARE(titles(EventStore(*m_paths, m_files).events()), expected);

    // An update re-sorts: the later countdown moves up.
    EventPatch patch;
    patch.targetDate = at("2026-03-15T00:00:00Z");
    QVERIFY(store.updateEvent(store.events().at(1).id, patch));
    QCOMPARE(titles(store.events()).first(), QStringLiteral("Later"));
}

void TestEventStore::unreadableFileLoadsEmptyAndIsKeptAside()
{
    QVERIFY(installFixture(QStringLiteral("events/v3-no-migration.json"),
                           m_paths->supportDirectory(), QStringLiteral("event.json")));
    m_files.failReads = true;
    QTest::ignoreMessage(QtCriticalMsg, "Failed to read event.json: Permission denied");
    EventStore store(*m_paths, m_files);
    QVERIFY(store.events().isEmpty());
    m_files.failReads = false;

    // The copy aside fails: the save is refused rather than losing the user's file.
    m_files.failCopies = true;
    EventStoreError error;
    QVERIFY(!store.addEvent(makeEvent(QStringLiteral("New"), "2026-05-01T10:00:00Z"), &error));
    QVERIFY(error.description.contains(u"unreadable event.json"));
    QCOMPARE(readFile(m_paths->eventFile()),
             fixtureBytes(QStringLiteral("events/v3-no-migration.json")));
    QVERIFY(store.events().isEmpty());
}

void TestEventStore::undecodableFileIsKeptAsideBeforeTheFirstSave()
{
    QVERIFY(installFixture(QStringLiteral("events/bad-date-in-envelope.json"),
                           m_paths->supportDirectory(), QStringLiteral("event.json")));
    QTest::ignoreMessage(
        QtCriticalMsg, "event.json present but neither a versioned envelope nor a legacy v1 event");
    EventStore store(*m_paths, m_files);
    QCOMPARE(readFile(m_paths->eventFile()),
             fixtureBytes(QStringLiteral("events/bad-date-in-envelope.json")));

    QTest::ignoreMessage(
        QtWarningMsg, QRegularExpression(QStringLiteral("^Kept the unreadable event.json as .*")));
    QVERIFY(store.addEvent(makeEvent(QStringLiteral("New"), "2026-05-01T10:00:00Z")));
    const QStringList aside =
        QDir(m_paths->supportDirectory())
            .entryList({QStringLiteral("event (unreadable *).json")}, QDir::Files);
    QCOMPARE(aside.size(), 1);
    QCOMPARE(readFile(QDir(m_paths->supportDirectory()).filePath(aside.first())),
             fixtureBytes(QStringLiteral("events/bad-date-in-envelope.json")));
    // Only once: the second save just saves.
    QVERIFY(store.addEvent(makeEvent(QStringLiteral("Another"), "2026-06-01T10:00:00Z")));
    QCOMPARE(QDir(m_paths->supportDirectory())
                 .entryList({QStringLiteral("event (*")}, QDir::Files)
                 .size(),
             1);
}

void TestEventStore::failedWriteLeavesFileAndStateAlone()
{
    EventStore store(*m_paths, m_files);
    const Event kept = makeEvent(QStringLiteral("Kept"), "2026-05-01T10:00:00Z");
    QVERIFY(store.addEvent(kept));
    QVERIFY(store.setPin(PinTarget::manual(kept.id)));
    const QByteArray onDisk = readFile(m_paths->eventFile());
    const StoreState before = store.state();

    m_files.failWrites = true;
    QSignalSpy events(&store, &EventStore::eventsChanged);
    QSignalSpy pin(&store, &EventStore::pinChanged);
    EventStoreError error;
    QVERIFY(!store.addEvent(makeEvent(QStringLiteral("Lost"), "2026-06-01T10:00:00Z"), &error));
    QCOMPARE(error.kind, EventStoreError::Kind::writeFailed);
    QCOMPARE(error.description, QStringLiteral("No space left on device"));
    QVERIFY(!store.deleteEvent(kept.id));
    QVERIFY(!store.setPin(std::nullopt));
    QVERIFY(!store.setSeriesHidden(Standup, true));
    QCOMPARE(store.state(), before);
    QCOMPARE(events.count() + pin.count(), 0);
    QCOMPARE(readFile(m_paths->eventFile()), onDisk);
}

void TestEventStore::pinRules()
{
    EventStore store(*m_paths, m_files);
    EventStoreError error;
    QVERIFY(!store.setPin(PinTarget::manual(QUuid::createUuid()), &error));
    QCOMPARE(error.kind, EventStoreError::Kind::noEvent);
    QCOMPARE(m_files.writes, 0);

    QVERIFY(store.setPin(PinTarget::calendarOccurrence({Standup, at("2026-03-02T09:00:00Z")})));
    QVERIFY(store.keptCalendarSeries().contains(Standup));
    const int writes = m_files.writes;
    QSignalSpy pinChanged(&store, &EventStore::pinChanged);
    QVERIFY(store.setPin(PinTarget::calendarOccurrence({Standup, at("2026-03-02T09:00:00Z")})));
    QCOMPARE(m_files.writes, writes); // the same pin writes nothing
    QCOMPARE(pinChanged.count(), 0);
    QVERIFY(!readFile(m_paths->eventFile()).contains("pinnedEventID"));
}

void TestEventStore::deletingThePinnedEventClearsThePin()
{
    EventStore store(*m_paths, m_files);
    const Event event = makeEvent(QStringLiteral("Pinned"), "2026-05-01T10:00:00Z");
    QVERIFY(store.addEvent(event));
    QVERIFY(store.setPin(PinTarget::manual(event.id)));
    QSignalSpy pinChanged(&store, &EventStore::pinChanged);
    QVERIFY(store.deleteEvent(event.id));
    QVERIFY(!store.pin());
    QCOMPARE(pinChanged.count(), 1);
    EventStoreError error;
    QVERIFY(!store.deleteEvent(event.id, &error));
    QCOMPARE(error.kind, EventStoreError::Kind::noEvent);
}

void TestEventStore::backupImport_data()
{
    QTest::addColumn<bool>("replace");
    QTest::addColumn<int>("added");
    QTest::addColumn<int>("skipped");
    QTest::addColumn<QStringList>("titles");
    QTest::newRow("A merge skips the ids already there")
        << false << 1 << 1 << QStringList {"Mine", "Imported"};
    QTest::newRow("A replace keeps only the archive")
        << true << 2 << 0 << QStringList {"Mine", "Imported"};
}

void TestEventStore::backupImport()
{
    QFETCH(bool, replace);
    QFETCH(int, added);
    QFETCH(int, skipped);
    QFETCH(QStringList, titles);
    EventStore store(*m_paths, m_files);
    Event mine = makeEvent(QStringLiteral("Mine"), "2026-04-01T00:00:00Z");
    const Event onlyHere = makeEvent(QStringLiteral("Only here"), "2026-05-01T00:00:00Z");
    QVERIFY(store.addEvent(mine));
    QVERIFY(store.addEvent(onlyHere));
    QVERIFY(store.setPin(PinTarget::manual(onlyHere.id)));
    mine.title = QStringLiteral("Mine, as exported"); // same id: the store's copy stays on merge
    const QList<Event> archive = {mine,
                                  makeEvent(QStringLiteral("Imported"), "2026-06-01T00:00:00Z")};

    BackupImportCounts counts;
    QVERIFY(store.importBackup(
        archive, replace ? BackupImportMode::replace : BackupImportMode::merge, &counts));
    QCOMPARE(counts.added, added);
    QCOMPARE(counts.skipped, skipped);
    QStringList expected = titles;
    if (replace)
        expected.first() = QStringLiteral("Mine, as exported");
    else
        expected.insert(1, QStringLiteral("Only here"));
    QCOMPARE(::titles(store.events()), expected);
    QCOMPARE(store.pin().has_value(), !replace); // a pin of an event that is gone goes too
}

void TestEventStore::calendarEntriesWithNothingChosenAreDropped()
{
    EventStore store(*m_paths, m_files);
    CalendarReachSignals reach;
    reach.notifyOnReach = true;
    QVERIFY(store.setCalendarReach(Standup, reach));
    QVERIFY(store.setCalendarAnnotation(Standup, CalendarAnnotation {QStringLiteral("note"), {}}));
    QVERIFY(store.setCalendarIcon(Standup, IconRef {QStringLiteral("person.3.fill")}));
    QCOMPARE(EventStore(*m_paths, m_files).state(), store.state());

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

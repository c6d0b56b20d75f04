// The events file on disk: files of every older version, the failure paths (nothing published
// and nothing lost when a read or write fails), updates, pins and calendar choices.
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

Event makeEvent(const char *title, const char *target)
{
    Event e = Event::created(QString::fromUtf8(title), at("2026-01-01T00:00:00Z"),
                             QTimeZone("Europe/Berlin"));
    e.targetDate = at(target);
    e.includeTime = true;
    return e;
}

enum class Load { reads, migrates, unreadable };

const CalendarSeriesRef Standup {QStringLiteral("work"), QStringLiteral("standup@example.com")};

} // namespace

Q_DECLARE_METATYPE(Load)

class TestEventStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_paths = std::make_unique<TempPathProvider>();
        m_files = FaultyFileAccess();
    }
    void olderFiles_data();
    void olderFiles();
    void anUpdateChangesOnlyWhatThePatchHoldsAndResorts();
    void failuresLoseNothingAndPublishNothing();
    void pinRules();
    void calendarReachRoundTripsAndAnEmptyOneIsDropped();
    void aFileFoundByFuzzingLoadsSavesAndLoadsTheSame();

private:
    std::unique_ptr<TempPathProvider> m_paths;
    FaultyFileAccess m_files;
    QByteArray onDisk() const { return readFile(m_paths->eventFile()); }
};

void TestEventStore::olderFiles_data()
{
    QTest::addColumn<QString>("fixture");
    QTest::addColumn<QStringList>("titles");
    QTest::addColumn<QString>("pin"); // the pinned event's title or series
    QTest::addColumn<int>("calendarEntries");
    QTest::addColumn<Load>("load");
    const auto row = [](const char *name, const char *fixture, const QStringList &titles,
                        const char *pin, int calendarEntries, Load load) {
        QTest::newRow(name) << QStringLiteral("events/%1.json").arg(QLatin1StringView(fixture))
                            << titles << QString::fromUtf8(pin) << calendarEntries << load;
    };
    row("A version 1 file is one pinned event", "v1-legacy-single-event", {"Flight to Lisbon"},
        "Flight to Lisbon", 0, Load::migrates);
    row("Version 2 with the old pin field", "v2-pinned-event-id", {"Holiday", "Exam"}, "Exam", 0,
        Load::migrates);
    row("Version 3 never needs the migration", "v3-no-migration", {"Concert"}, "", 0, Load::reads);
    row("Calendar choices load, and a pinned series counts as kept", "v10-calendar-pin", {},
        "standup@example.com", 5, Load::reads);
    row("A pin of an unknown kind is no pin; the events still load", "unknown-pin-kind", {"Party"},
        "", 0, Load::reads);
    row("A truncated file loads empty", "truncated", {}, "", 0, Load::unreadable);
}

void TestEventStore::olderFiles()
{
    QFETCH(QString, fixture);
    QFETCH(QStringList, titles);
    QFETCH(QString, pin);
    QFETCH(int, calendarEntries);
    QFETCH(Load, load);
    QVERIFY(installFixture(fixture, m_paths->supportDirectory()));
    if (load == Load::unreadable)
        QTest::ignoreMessage(QtCriticalMsg,
                             "event.json present but neither a versioned "
                             "envelope nor a legacy v1 event");

    EventStore store(*m_paths, m_files);
    QStringList loaded;
    for (const Event &event : store.events())
        loaded.append(event.title);
    QCOMPARE(loaded, titles);
    QCOMPARE(store.needsReachSignalMigration(), load == Load::migrates);
    const std::optional<PinTarget> &actualPin = store.pin();
    QCOMPARE(!actualPin                    ? QString()
                 : actualPin->isCalendar() ? actualPin->series.seriesID
                                           : store.event(actualPin->eventID)->title,
             pin);
    const StoreState &s = store.state();
    QCOMPARE(s.calendarIcons.size() + s.hiddenCalendarSeries.size() + s.keptCalendarSeries.size()
                 + s.calendarReach.size() + s.calendarAnnotations.size(),
             calendarEntries);
    QCOMPARE(m_files.writes, 0); // loading never writes
    QCOMPARE(onDisk(), fixtureBytes(fixture));

    // The first save writes everything back in the current form, keeping a file it could not
    // read aside.
    if (load == Load::unreadable)
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression(QStringLiteral("^Kept the unreadable event.json")));
    QVERIFY(store.addEvent(makeEvent("New", "2026-05-01T10:00:00Z")));
    const EventStore reloaded(*m_paths, m_files);
    QCOMPARE(reloaded.state(), store.state());
    QVERIFY(!reloaded.needsReachSignalMigration());
    const QDir folder(m_paths->supportDirectory());
    const QStringList aside = folder.entryList({QStringLiteral("event (*")}, QDir::Files);
    QCOMPARE(aside.size(), load == Load::unreadable ? 1 : 0);
    if (!aside.isEmpty())
        QCOMPARE(readFile(folder.filePath(aside.first())), fixtureBytes(fixture));
}

void TestEventStore::anUpdateChangesOnlyWhatThePatchHoldsAndResorts()
{
    EventStore store(*m_paths, m_files);
    Event later = makeEvent("Later", "2026-09-01T00:00:00Z");
    later.note = QStringLiteral("Bring flowers");
    QVERIFY(store.addEvent(makeEvent("Sooner", "2026-04-01T00:00:00Z")) && store.addEvent(later));
    EventPatch patch;
    patch.targetDate = at("2026-03-15T00:00:00Z");
    patch.note = std::optional<QString>(); // present, nil: clears the note
    QVERIFY(store.updateEvent(later.id, patch));
    later.targetDate = *patch.targetDate;
    later.note.reset();
    QCOMPARE(EventStore(*m_paths, m_files).events().first(), later);
}

void TestEventStore::failuresLoseNothingAndPublishNothing()
{
    // A file that could not be read is replaced only once a copy of it is aside.
    const QString file = QStringLiteral("events/v3-no-migration.json");
    QVERIFY(installFixture(file, m_paths->supportDirectory()));
    m_files.failReads = m_files.failCopies = true;
    QTest::ignoreMessage(QtCriticalMsg, "Failed to read event.json: Permission denied");
    EventStore unread(*m_paths, m_files);
    EventStoreError error;
    QVERIFY(!unread.addEvent(makeEvent("New", "2026-05-01T10:00:00Z"), &error));
    QVERIFY(error.description.contains(u"unreadable event.json"));
    QVERIFY(unread.events().isEmpty());
    // Once it can be read, the next change is made to what it holds.
    m_files.failReads = m_files.failCopies = false;
    QVERIFY(unread.addEvent(makeEvent("New", "2026-05-01T10:00:00Z"), &error));
    QCOMPARE(unread.events().size(), 2);
    QVERIFY(installFixture(file, m_paths->supportDirectory()));
    m_files.failCopies = true;

    // A write that fails changes nothing in memory and tells no one.
    m_files.failWrites = true;
    EventStore store(*m_paths, m_files);
    const QUuid concert = store.events().constFirst().id;
    const StoreState state = store.state();
    QSignalSpy events(&store, &EventStore::eventsChanged);
    QSignalSpy pin(&store, &EventStore::pinChanged);
    QVERIFY(!store.addEvent(makeEvent("Lost", "2026-06-01T10:00:00Z"), &error));
    QCOMPARE(error.description, QStringLiteral("No space left on device"));
    QVERIFY(!store.deleteEvent(concert) && !store.setPin(PinTarget::manual(concert)));
    QCOMPARE(store.state(), state);
    QCOMPARE(events.count() + pin.count(), 0);
    QCOMPARE(onDisk(), fixtureBytes(file));
}

void TestEventStore::pinRules()
{
    EventStore store(*m_paths, m_files);
    QVERIFY(!store.setPin(PinTarget::manual(QUuid::createUuid()))); // no such event

    // A calendar pin keeps its series and is written without the older pin field.
    const PinTarget standup = PinTarget::calendarOccurrence({Standup, at("2026-03-02T09:00:00Z")});
    QVERIFY(store.setPin(standup));
    QVERIFY(store.keptCalendarSeries().contains(Standup));
    QVERIFY(!onDisk().contains("pinnedEventID"));
    QCOMPARE(EventStore(*m_paths, m_files).pin(), standup);

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
    QVERIFY(!EventStore(*m_paths, m_files).pin());
}

void TestEventStore::calendarReachRoundTripsAndAnEmptyOneIsDropped()
{
    EventStore store(*m_paths, m_files);
    CalendarReachSignals reach;
    reach.notifyOnReach = true;
    reach.reminderLeadMinutes = {5};
    reach.armed = {{at("2026-03-02T09:00:00Z"), u"Stand-up"_qs, u"https://zoom.us/j/1"_qs}};
    reach.reached = {{at("2026-03-01T09:00:00Z"), u"Stand-up"_qs, std::nullopt}};
    QVERIFY(store.setCalendarReach(Standup, reach));
    QCOMPARE(EventStore(*m_paths, m_files).state(), store.state());
    // An entry with nothing chosen says no more than a missing one.
    QVERIFY(store.setCalendarReach(Standup, CalendarReachSignals()));
    QVERIFY(EventStore(*m_paths, m_files).calendarReach().isEmpty());
}

void TestEventStore::aFileFoundByFuzzingLoadsSavesAndLoadsTheSame()
{
    // A calendar id "\t\uFEFF": the byte-order mark after an escape was dropped by each load.
    const QString file = QStringLiteral("events/fuzz-byte-order-mark-after-an-escape.json");
    QVERIFY(installFixture(file, m_paths->supportDirectory()));
    EventStore store(*m_paths, m_files);
    QVERIFY(store.calendarIcons().firstKey().calendarID.contains(QStringLiteral("\t\uFEFF")));
    QVERIFY(store.addEvent(makeEvent("New", "2026-05-01T10:00:00Z")));
    QCOMPARE(EventStore(*m_paths, m_files).state(), store.state());
}

QTEST_GUILESS_MAIN(TestEventStore)
#include "tst_eventstore.moc"

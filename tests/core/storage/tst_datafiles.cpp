// The data files on disk. event.json: files of every older version, the failure paths (nothing
// published and nothing lost when a read or write fails), pins and calendar choices.
// settings.json: defaults for missing keys, the migrations of older keys, the clamp of the title
// length, saving on every change and never on load, and what a bad file or a failed save leaves.
#include "storage/EventStore.h"
#include "storage/SettingsStore.h"
#include "json/JsonDocument.h"

#include "support/FaultyFileAccess.h"
#include "support/Fixtures.h"
#include "support/ItemFixtures.h"

#include <QSignalSpy>
#include <QTest>

namespace {

using Fixture::at;

Event makeEvent(const char *title, const char *target = "2026-05-01T10:00:00Z")
{
    return Fixture::countdown(QString::fromUtf8(title), at(target));
}

enum class Load { reads, migrates, unreadable };

const CalendarSeriesRef Standup {QStringLiteral("work"), QStringLiteral("standup@example.com")};

} // namespace

Q_DECLARE_METATYPE(Load)

class TestDataFiles : public QObject
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
    void failuresLoseNothingAndPublishNothing();
    void pinsAndCalendarChoices();
    void settingsDecoding_data();
    void settingsDecoding();
    void olderSettingsAreReadUntouchedAndEveryChangeIsSaved();
    void badSettingsGiveDefaultsUntilTheNextChange();

private:
    std::unique_ptr<TempPathProvider> m_paths;
    FaultyFileAccess m_files;
    QByteArray onDisk() const { return readFile(m_paths->eventFile()); }
};

void TestDataFiles::olderFiles_data()
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
    // A byte-order mark after an escape in a calendar id, once dropped by each load.
    row("A file found by fuzzing", "fuzz-byte-order-mark-after-an-escape", {},
        "standup@example.com", 3, Load::reads);
}

void TestDataFiles::olderFiles()
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
    QCOMPARE(onDisk(), fixtureBytes(fixture)); // loading never writes

    // The first save writes everything back in the current form.
    if (load == Load::unreadable)
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression(QStringLiteral("^Kept the unreadable event.json")));
    QVERIFY(store.addEvent(makeEvent("New")));
    const EventStore reloaded(*m_paths, m_files);
    QCOMPARE(reloaded.state(), store.state());
    QVERIFY(!reloaded.needsReachSignalMigration());
}

void TestDataFiles::failuresLoseNothingAndPublishNothing()
{
    // A file that could not be read is replaced only once a copy of it is aside.
    const QString file = QStringLiteral("events/v3-no-migration.json");
    QVERIFY(installFixture(file, m_paths->supportDirectory()));
    m_files.failReads = m_files.failCopies = true;
    QTest::ignoreMessage(QtCriticalMsg, "Failed to read event.json: Permission denied");
    EventStore unread(*m_paths, m_files);
    EventStoreError error;
    QVERIFY(!unread.addEvent(makeEvent("New"), &error));
    QVERIFY(error.description.contains(u"unreadable event.json"));
    // Once it can be read, the next change is made to what it holds.
    m_files.failReads = m_files.failCopies = false;
    QVERIFY(unread.addEvent(makeEvent("New"), &error));
    QCOMPARE(unread.events().size(), 2);
    // An id already in the list is refused rather than doubled.
    QVERIFY(!unread.addEvent(unread.events().constFirst(), &error));
    QVERIFY(error.description.startsWith(u"An event with id"));
    QCOMPARE(unread.events().size(), 2);
    QVERIFY(installFixture(file, m_paths->supportDirectory()));

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

void TestDataFiles::pinsAndCalendarChoices()
{
    EventStore store(*m_paths, m_files);
    QVERIFY(!store.setPin(PinTarget::manual(QUuid::createUuid()))); // no such event

    // A calendar pin keeps its series and is written without the older pin field; the series'
    // arrival choices are kept whole.
    CalendarReachSignals reach;
    reach.notifyOnReach = true;
    reach.reminderLeadMinutes = {5};
    reach.armed = {{at("2026-03-02T09:00:00Z"), u"Stand-up"_qs, u"https://zoom.us/j/1"_qs}};
    reach.reached = {{at("2026-03-01T09:00:00Z"), u"Stand-up"_qs, std::nullopt}};
    QVERIFY(store.setCalendarReach(Standup, reach));
    QVERIFY(store.setPin(PinTarget::calendarOccurrence({Standup, at("2026-03-02T09:00:00Z")})));
    QVERIFY(store.keptCalendarSeries().contains(Standup));
    QVERIFY(!onDisk().contains("pinnedEventID"));
    QCOMPARE(EventStore(*m_paths, m_files).state(), store.state());

    // Older versions read only pinnedEventID: it is written with a pin of an event. Deleting
    // the pinned event takes the pin with it.
    const Event event = makeEvent("Pinned");
    QVERIFY(store.addEvent(event) && store.setPin(PinTarget::manual(event.id)));
    QVERIFY(onDisk().contains("pinnedEventID"));
    QVERIFY(store.deleteEvent(event.id));
    QVERIFY(!EventStore(*m_paths, m_files).pin());
}

void TestDataFiles::settingsDecoding_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<Settings>("expected");
    Settings s;
    QTest::newRow("Missing keys take their defaults") << QByteArray("{}") << s;
    s.menubarTitleLength = 12; // and a long one is cut to 24 (below)
    QTest::newRow("A short title length is raised to 12")
        << QByteArray(R"({"menubarTitleLength": 3})") << s;
    s = Settings();
    s.legacyMenubarShowsRemaining = true;
    QTest::newRow("Remaining shown in an older version means full")
        << QByteArray(R"({"menubarShowsRemaining": true})") << s;
    s.legacyMenubarShowsRemaining = false;
    s.menubarStyle = MenubarStyle::titleOnly;
    QTest::newRow("Remaining hidden in an older version means title only")
        << QByteArray(R"({"menubarShowsRemaining": false})") << s;
    s.menubarStyle = MenubarStyle::iconOnly;
    QTest::newRow("The style key wins over the older one")
        << QByteArray(R"({"menubarStyle": "iconOnly", "menubarShowsRemaining": false})") << s;
    s = Settings();
    s.calendars.includeAllDay = true;
    QTest::newRow("A calendar choice of the wrong type costs only itself")
        << QByteArray(R"({"calendars": {"horizonDays": "soon", "includeAllDay": true}})") << s;
}

void TestDataFiles::settingsDecoding()
{
    QFETCH(QByteArray, json);
    QFETCH(Settings, expected);
    QCOMPARE(Settings::fromJson(JsonDocument::parse(json)->root(), nullptr), expected);
}

void TestDataFiles::olderSettingsAreReadUntouchedAndEveryChangeIsSaved()
{
    const QString older = QStringLiteral("settings/old-menubar-shows-remaining.json");
    QVERIFY(installFixture(older, m_paths->supportDirectory()));
    SettingsStore store(*m_paths, m_files);
    QCOMPARE(store.settings().language, LanguagePref::de);
    QCOMPARE(readFile(m_paths->settingsFile()), fixtureBytes(older));

    QSignalSpy changed(&store, &SettingsStore::settingsChanged);
    Settings next = store.settings();
    next.shortcutOverrides.insert(QStringLiteral("togglePopover"), KeyCombo {49, 0x100000});
    next.calendars.disabledCalendarIDs = {QStringLiteral("b"), QStringLiteral("a")};
    next.displayFormat = CountdownDisplayFormat::weeksDays;
    store.setSettings(next);
    store.setSettings(next); // unchanged: nothing
    QCOMPARE(changed.count(), 1);
    QCOMPARE(m_files.writes, 1);
    // Read back whole, the older keys still there for the events file's migration.
    QCOMPARE(SettingsStore(*m_paths, m_files).settings(), store.settings());
}

void TestDataFiles::badSettingsGiveDefaultsUntilTheNextChange()
{
    QString error;
    QVERIFY(m_files.writeAtomically(m_paths->settingsFile(), R"({"language": 5})", &error));
    QTest::ignoreMessage(QtCriticalMsg,
                         "Failed to decode settings.json - using defaults: "
                         R"(Expected a string for key "language" but found 5)");
    SettingsStore store(*m_paths, m_files);
    QCOMPARE(store.settings(), Settings());
    Settings next = store.settings();
    next.theme = ThemePref::dark;
    store.setSettings(next);
    QCOMPARE(SettingsStore(*m_paths, m_files).settings().theme, ThemePref::dark);

    // A save that fails keeps the new (clamped) settings in memory and says so.
    m_files.failWrites = true;
    next.menubarTitleLength = 40;
    QTest::ignoreMessage(QtCriticalMsg, "Failed to save settings.json: No space left on device");
    store.setSettings(next);
    QCOMPARE(store.settings().menubarTitleLength, 24);
    QVERIFY(store.lastSaveFailed());
}

QTEST_GUILESS_MAIN(TestDataFiles)
#include "tst_datafiles.moc"

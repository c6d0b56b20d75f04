// settings.json: defaults for missing keys, the migrations of older keys, the clamp of the title
// length, saving on every change and never on load, and what a bad file or a failed save leaves.
#include "storage/LaunchAtLogin.h"
#include "storage/SettingsStore.h"
#include "json/JsonDocument.h"

#include "support/FaultyFileAccess.h"
#include "support/Fixtures.h"

#include <QSignalSpy>
#include <QTest>

namespace {

Settings decoded(const QByteArray &json)
{
    return Settings::fromJson(JsonDocument::parse(json)->root(), nullptr).value_or(Settings());
}

class RecordingLaunchAtLogin final : public LaunchAtLoginController
{
public:
    bool enabled = false;
    int calls = 0;
    bool isEnabled() const override { return enabled; }
    void setEnabled(bool on) override { enabled = on, ++calls; }
};

const QString OlderFile = QStringLiteral("settings/old-menubar-shows-remaining.json");

} // namespace

class TestSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void decoding_data();
    void decoding();
    void olderFileIsReadUntouchedAndEveryChangeIsSaved();
    void badFileGivesDefaultsUntilTheNextChange();

    void init()
    {
        m_paths = std::make_unique<TempPathProvider>();
        m_files = FaultyFileAccess();
    }

private:
    std::unique_ptr<TempPathProvider> m_paths;
    FaultyFileAccess m_files;
};

void TestSettings::decoding_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<Settings>("expected");
    Settings s;
    QTest::newRow("Missing keys take their defaults") << QByteArray("{}") << s;
    s.menubarTitleLength = 24;
    QTest::newRow("A long title length is cut to 24")
        << QByteArray(R"({"menubarTitleLength": 100})") << s;
    s.menubarTitleLength = 12;
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

void TestSettings::decoding()
{
    QFETCH(QByteArray, json);
    QFETCH(Settings, expected);
    QCOMPARE(decoded(json), expected);
}

void TestSettings::olderFileIsReadUntouchedAndEveryChangeIsSaved()
{
    QVERIFY(installFixture(OlderFile, m_paths->supportDirectory()));
    RecordingLaunchAtLogin login;
    SettingsStore store(*m_paths, m_files, &login);
    QCOMPARE(store.settings().language, LanguagePref::de);
    QCOMPARE(store.settings().legacyCelebrationOnReach, std::optional<bool>(false));
    QCOMPARE(store.settings().legacyNotificationOnReach, std::optional<bool>(true));
    QCOMPARE(m_files.writes, 0);
    QCOMPARE(readFile(m_paths->settingsFile()), fixtureBytes(OlderFile));

    QSignalSpy changed(&store, &SettingsStore::settingsChanged);
    Settings next = store.settings();
    next.shortcutOverrides.insert(QStringLiteral("togglePopover"), KeyCombo {49, 0x100000});
    next.calendars.disabledCalendarIDs = {QStringLiteral("b"), QStringLiteral("a")};
    next.displayFormat = CountdownDisplayFormat::weeksDays;
    store.setSettings(next);
    next.launchAtLogin = true;
    store.setSettings(next);
    store.setSettings(next); // unchanged: nothing
    QCOMPARE(changed.count(), 2);
    QCOMPARE(m_files.writes, 2);
    QCOMPARE(login.calls, 1);
    QVERIFY(login.enabled);
    // Read back whole, the older keys still there for the events file's migration.
    QCOMPARE(SettingsStore(*m_paths, m_files).settings(), store.settings());
}

void TestSettings::badFileGivesDefaultsUntilTheNextChange()
{
    QString error;
    QVERIFY(m_files.writeAtomically(m_paths->settingsFile(), R"({"language": 5})", &error));
    QTest::ignoreMessage(QtCriticalMsg,
                         "Failed to decode settings.json - using defaults: "
                         R"(Expected a string for key "language" but found a number)");
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

QTEST_GUILESS_MAIN(TestSettings)
#include "tst_settings.moc"

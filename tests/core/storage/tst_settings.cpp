// settings.json: defaults for missing keys, the migrations of older keys, the clamp of the title
// length, saving on every change and never on load.
#include "storage/LaunchAtLogin.h"
#include "storage/SettingsStore.h"
#include "json/JsonDocument.h"
#include "json/JsonWriter.h"

#include "support/FaultyFileAccess.h"
#include "support/Fixtures.h"

#include <QSignalSpy>
#include <QTest>

namespace {

Settings decoded(const QByteArray &json)
{
    const std::optional<JsonDocument> document = JsonDocument::parse(json);
    return document ? Settings::fromJson(document->root(), nullptr).value_or(Settings())
                    : Settings();
}

class RecordingLaunchAtLogin final : public LaunchAtLoginController
{
public:
    bool enabled = false;
    int calls = 0;
    bool isEnabled() const override { return enabled; }
    void setEnabled(bool on) override
    {
        enabled = on;
        ++calls;
    }
};

} // namespace

class TestSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void decoding_data();
    void decoding();
    void roundTrip();
    void loadingNeverWrites();
    void everyChangeIsSavedAtOnce();
    void badFileGivesDefaultsUntilTheNextChange();
    void failedSaveKeepsTheNewSettingsInMemory();
};

void TestSettings::decoding_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<qint64>("titleLength");
    QTest::addColumn<MenubarStyle>("style");
    QTest::addColumn<LanguagePref>("language");

    QTest::newRow("An empty object is all defaults")
        << QByteArray("{}") << qint64(16) << MenubarStyle::full << LanguagePref::auto_;
    QTest::newRow("A long title length is cut to 24")
        << QByteArray(R"({"menubarTitleLength": 100})") << qint64(24) << MenubarStyle::full
        << LanguagePref::auto_;
    QTest::newRow("A short title length is raised to 12")
        << QByteArray(R"({"menubarTitleLength": 3})") << qint64(12) << MenubarStyle::full
        << LanguagePref::auto_;
    QTest::newRow("Remaining hidden in an older version means title only")
        << QByteArray(R"({"menubarShowsRemaining": false})") << qint64(16)
        << MenubarStyle::titleOnly << LanguagePref::auto_;
    QTest::newRow("Remaining shown in an older version means full")
        << QByteArray(R"({"menubarShowsRemaining": true})") << qint64(16) << MenubarStyle::full
        << LanguagePref::auto_;
    QTest::newRow("The style key wins over the older one")
        << QByteArray(
               R"({"menubarStyle": "iconOnly", "menubarShowsRemaining": false, "language": "fr"})")
        << qint64(16) << MenubarStyle::iconOnly << LanguagePref::fr;
}

void TestSettings::decoding()
{
    QFETCH(QByteArray, json);
    QFETCH(qint64, titleLength);
    QFETCH(MenubarStyle, style);
    QFETCH(LanguagePref, language);
    const Settings settings = decoded(json);
    QCOMPARE(settings.menubarTitleLength, titleLength);
    QCOMPARE(settings.menubarStyle, style);
    QCOMPARE(settings.language, language);
    QCOMPARE(settings.calendars.horizonDays, 7);
    QVERIFY(settings.calendars.skipDeclined);
    QVERIFY(settings.pastSectionExpanded && settings.celebrationConfetti
            && !settings.celebrationSound);
}

void TestSettings::roundTrip()
{
    Settings settings =
        decoded(fixtureBytes(QStringLiteral("settings/old-menubar-shows-remaining.json")));
    QCOMPARE(settings.legacyCelebrationOnReach, std::optional<bool>(false));
    QCOMPARE(settings.legacyNotificationOnReach, std::optional<bool>(true));
    settings.shortcutOverrides.insert(QStringLiteral("togglePopover"), KeyCombo {49, 0x100000});
    settings.calendars.disabledCalendarIDs = {QStringLiteral("b"), QStringLiteral("a")};
    settings.displayFormat = CountdownDisplayFormat::weeksDays;
    JsonWriter writer;
    settings.toJson(writer);
    const QByteArray bytes = writer.finish();
    QCOMPARE(decoded(bytes), settings);
    // A calendar choice of the wrong type does not cost the others.
    const Settings damaged =
        decoded(R"({"calendars": {"horizonDays": "soon", "includeAllDay": true}})");
    QCOMPARE(damaged.calendars.horizonDays, 7);
    QVERIFY(damaged.calendars.includeAllDay);
}

void TestSettings::loadingNeverWrites()
{
    TempPathProvider paths;
    QVERIFY(installFixture(QStringLiteral("settings/old-menubar-shows-remaining.json"),
                           paths.supportDirectory(), QStringLiteral("settings.json")));
    FaultyFileAccess files;
    const SettingsStore store(paths, files);
    QCOMPARE(store.settings().language, LanguagePref::de);
    QCOMPARE(files.writes, 0);
    QCOMPARE(readFile(paths.settingsFile()),
             fixtureBytes(QStringLiteral("settings/old-menubar-shows-remaining.json")));
}

void TestSettings::everyChangeIsSavedAtOnce()
{
    TempPathProvider paths;
    FaultyFileAccess files;
    RecordingLaunchAtLogin login;
    SettingsStore store(paths, files, &login);
    QSignalSpy changed(&store, &SettingsStore::settingsChanged);

    Settings next = store.settings();
    next.language = LanguagePref::tr;
    store.setSettings(next);
    next.launchAtLogin = true;
    store.setSettings(next);
    store.setSettings(next); // unchanged: nothing
    QCOMPARE(changed.count(), 2);
    QCOMPARE(files.writes, 2);
    QCOMPARE(login.calls, 1);
    QVERIFY(login.enabled);
    QCOMPARE(SettingsStore(paths, files).settings(), store.settings());
}

void TestSettings::badFileGivesDefaultsUntilTheNextChange()
{
    TempPathProvider paths;
    QFile file(paths.settingsFile());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(R"({"language": 5})");
    file.close();
    FaultyFileAccess files;
    QTest::ignoreMessage(
        QtCriticalMsg,
        R"(Failed to decode settings.json - using defaults: Expected a string for key "language" but found a number)");
    SettingsStore store(paths, files);
    QCOMPARE(store.settings(), Settings());
    Settings next = store.settings();
    next.theme = ThemePref::dark;
    store.setSettings(next);
    QCOMPARE(SettingsStore(paths, files).settings().theme, ThemePref::dark);
}

void TestSettings::failedSaveKeepsTheNewSettingsInMemory()
{
    TempPathProvider paths;
    FaultyFileAccess files;
    files.failWrites = true;
    SettingsStore store(paths, files);
    Settings next = store.settings();
    next.menubarTitleLength = 40;
    QTest::ignoreMessage(QtCriticalMsg, "Failed to save settings.json: No space left on device");
    store.setSettings(next);
    QCOMPARE(store.settings().menubarTitleLength, 24);
    QVERIFY(store.lastSaveFailed());
}

QTEST_GUILESS_MAIN(TestSettings)
#include "tst_settings.moc"

// settings.json: defaults for missing keys, the migrations of older keys, the clamp of the title
// length, saving on every change and never on load, and what a bad file or a failed save leaves.
#include "storage/SettingsStore.h"
#include "json/JsonDocument.h"
#include "json/JsonWriter.h"

#include "support/FaultyFileAccess.h"
#include "support/Fixtures.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class TestSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void decoding_data()
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

    void decoding()
    {
        QFETCH(QByteArray, json);
        QFETCH(Settings, expected);
        QCOMPARE(Settings::fromJson(JsonDocument::parse(json)->root(), nullptr), expected);
    }

    void olderFileIsReadUntouchedAndEveryChangeIsSaved()
    {
        const QString older = QStringLiteral("settings/old-menubar-shows-remaining.json");
        QVERIFY(installFixture(older, m_paths->supportDirectory()));
        SettingsStore store(*m_paths, m_files);
        QCOMPARE(store.settings().language, LanguagePref::de);
        QCOMPARE(m_files.writes, 0);
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

    void badFileGivesDefaultsUntilTheNextChange()
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
        QTest::ignoreMessage(QtCriticalMsg,
                             "Failed to save settings.json: No space left on device");
        store.setSettings(next);
        QCOMPARE(store.settings().menubarTitleLength, 24);
        QVERIFY(store.lastSaveFailed());
    }

    void whatLoadsSavesAndLoadsTheSame()
    {
        // Found by fuzzing: byte-order marks at the start of a string value are text, and were
        // dropped one per load.
        const QByteArray found = fixtureBytes(u"settings/fuzz-byte-order-marks-in-a-string.json"_s);
        for (const QByteArray &bytes : {found,
                                        QByteArray("{\"appVersion\": \"\xEF\xBB\xBF\xEF\xBB\xBF"
                                                   "1.0\"}")}) {
            const std::optional<Settings> loaded =
                Settings::fromJson(JsonDocument::parse(bytes)->root(), nullptr);
            QVERIFY(loaded && loaded->appVersion.contains(u"\uFEFF\uFEFF"_s));
            JsonWriter writer;
            loaded->toJson(writer);
            QCOMPARE(Settings::fromJson(JsonDocument::parse(writer.finish())->root(), nullptr),
                     loaded);
        }
    }

    void init()
    {
        m_paths = std::make_unique<TempPathProvider>();
        m_files = FaultyFileAccess();
    }

private:
    std::unique_ptr<TempPathProvider> m_paths;
    FaultyFileAccess m_files;
};

QTEST_GUILESS_MAIN(TestSettings)
#include "tst_settings.moc"

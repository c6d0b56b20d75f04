#include "UiWorld.h"
#include "support/Fixtures.h"
#include "ui/SettingsPageList.h"
#include <QJsonDocument>
#include <QJsonObject>

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

// The value of one key as settings.json holds it, as JSON text.
QString storedValue(const UiWorld &world, const QString &key)
{
    const QJsonObject object =
        QJsonDocument::fromJson(readFile(world.paths.settingsFile())).object();
    const QJsonValue value = object.value(key);
    return value.isString() ? value.toString()
        : value.isBool()    ? QString::fromLatin1(value.toBool() ? "true" : "false")
                            : QString::number(value.toInteger());
}

} // namespace

// The settings window's general pages: every setting written at once and read back, a write that
// fails taken back, the chip preview following style and title length.
class tst_SettingsModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everySettingIsWrittenAndReadBack_data()
    {
        QTest::addColumn<QByteArray>("property");
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("stored");

        QTest::newRow("Panel style: icon and time")
            << QByteArray("menubarStyle") << QVariant(1) << u"menubarStyle"_s << u"compact"_s;
        QTest::newRow("Title length")
            << QByteArray("titleLength") << QVariant(20) << u"menubarTitleLength"_s << u"20"_s;
        QTest::newRow("Title length beyond the longest is the longest")
            << QByteArray("titleLength") << QVariant(40) << u"menubarTitleLength"_s << u"24"_s;
        QTest::newRow("Time format: weeks and days")
            << QByteArray("displayFormat") << QVariant(2) << u"displayFormat"_s << u"weeksDays"_s;
        QTest::newRow("Language: French")
            << QByteArray("language") << QVariant(5) << u"language"_s << u"fr"_s;
        QTest::newRow("Theme: dark")
            << QByteArray("theme") << QVariant(2) << u"theme"_s << u"dark"_s;
        QTest::newRow("Launch at login")
            << QByteArray("launchAtLogin") << QVariant(true) << u"launchAtLogin"_s << u"true"_s;
        QTest::newRow("New countdowns stay silent")
            << QByteArray("newCountdownNotifies") << QVariant(false) << u"newCountdownNotifies"_s
            << u"false"_s;
        QTest::newRow("New countdowns celebrate")
            << QByteArray("newCountdownCelebrates") << QVariant(true) << u"newCountdownCelebrates"_s
            << u"true"_s;
    }

    void everySettingIsWrittenAndReadBack()
    {
        QFETCH(QByteArray, property);
        QFETCH(QVariant, value);
        QFETCH(QString, key);
        QFETCH(QString, stored);
        UiWorld world;
        QSignalSpy changed(&world.settingsModel, &SettingsModel::changed);
        QVERIFY(world.settingsModel.setProperty(property, value));
        QVERIFY(changed.count() >= 1); // a language also changes every label
        QCOMPARE(world.settingsModel.property(property),
                 value.toInt() == 40 ? QVariant(24) : value);
        QCOMPARE(storedValue(world, key), stored);
        // A second start reads it back.
        SettingsStore again(world.paths, world.disk);
        LocaleManager locale(again, [] { return QStringList {u"en"_s}; });
        SettingsModel reread(again, locale, {});
        QCOMPARE(reread.property(property), world.settingsModel.property(property));
        QVERIFY(world.settingsModel.errorText().isEmpty());
    }

    void aLanguageSwitchRelabelsAtOnce()
    {
        UiWorld world;
        world.settingsModel.setLanguage(int(LanguagePref::de));
        QCOMPARE(world.locale.activeLanguage(), u"de"_s);
        QCOMPARE(world.list.emptyTitle(), u"Noch keine Countdowns"_s);
    }

    void aSettingThatCannotBeWrittenIsTakenBack()
    {
        UiWorld world;
        world.files.failWrites = true;
        QTest::ignoreMessage(QtCriticalMsg,
                             QRegularExpression(u"Failed to save settings.json.*"_s));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"Took a setting back.*"_s));
        QTest::ignoreMessage(QtCriticalMsg,
                             QRegularExpression(u"Failed to save settings.json.*"_s));
        world.settingsModel.setTheme(int(ThemePref::dark));
        QCOMPARE(world.settingsModel.theme(), int(ThemePref::auto_));
        QVERIFY(world.settingsModel.errorText().startsWith(u"The setting could not be saved"_s));
        world.files.failWrites = false;
        world.settingsModel.setTheme(int(ThemePref::dark));
        QCOMPARE(world.settingsModel.theme(), int(ThemePref::dark));
        QVERIFY(world.settingsModel.errorText().isEmpty());
    }

    void anOlderFileLoadsWithTheArrivalDefaults()
    {
        UiWorld world;
        QVERIFY(installFixture(u"settings/old-menubar-shows-remaining.json"_s,
                               world.paths.supportDirectory()));
        const QByteArray before = readFile(world.paths.settingsFile());
        SettingsStore store(world.paths, world.disk);
        QCOMPARE(std::tuple(store.settings().newCountdownNotifies,
                            store.settings().newCountdownCelebrates),
                 std::tuple(true, false));
        QCOMPARE(readFile(world.paths.settingsFile()), before); // loading never writes
    }

    void theChipPreviewShowsStyleAndLength_data()
    {
        QTest::addColumn<int>("style");
        QTest::addColumn<int>("length");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("detail");

        QTest::newRow("Full, the default length") << 0 << 16 << u"Summer holiday…"_s << u"12d"_s;
        QTest::newRow("Full, the longest title")
            << 0 << 24 << u"Summer holiday in Lisbon"_s << u"12d"_s;
        QTest::newRow("Icon and time") << 1 << 16 << QString() << u"12d"_s;
        QTest::newRow("Icon only") << 3 << 16 << QString() << QString();
    }

    void theChipPreviewShowsStyleAndLength()
    {
        QFETCH(int, style);
        QFETCH(int, length);
        QFETCH(QString, title);
        QFETCH(QString, detail);
        UiWorld world;
        const QString before = world.settingsModel.chipPreview();
        world.settingsModel.setMenubarStyle(style);
        world.settingsModel.setTitleLength(length);
        const MenubarChipPresentation chip = world.settingsModel.chipPresentation();
        QCOMPARE(std::tuple(chip.symbolName, chip.title, chip.detail),
                 std::tuple(u"airplane"_s, title, detail));
        QVERIFY(style == 0 && length == 16 ? true : world.settingsModel.chipPreview() != before);
    }

    void pagesCanBeAddedBeforeAbout()
    {
        std::unique_ptr<SettingsPageList> pages(SettingsPageList::withGeneralPages());
        pages->addPage(u"calendars"_s, u"settings.page.calendars"_s, QUrl(u"qrc:/Calendars.qml"_s),
                       u"calendar"_s);
        QStringList ids;
        for (int row = 0; row < pages->rowCount(); ++row)
            ids << pages->index(row).data(SettingsPageList::PageIdRole).toString();
        QCOMPARE(
            ids,
            QStringList({u"general"_s, u"panel"_s, u"arrivals"_s, u"calendars"_s, u"about"_s}));
        QCOMPARE(pages->sourceAt(3), QUrl(u"qrc:/Calendars.qml"_s));
    }
};

QTEST_GUILESS_MAIN(tst_SettingsModel)
#include "tst_settingsmodel.moc"

#include "l10n/LocaleManager.h"
#include "l10n/SupportedLanguages.h"
#include "storage/FileAccess.h"
#include "storage/PathProvider.h"
#include "storage/SettingsStore.h"

#include <QSignalSpy>
#include <QTest>

class tst_LocaleManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void resolution_data();
    void resolution();
    void switchesLiveAndSignalsOnlyRealChanges();
};

void tst_LocaleManager::resolution_data()
{
    QTest::addColumn<LanguagePref>("preference");
    QTest::addColumn<QStringList>("system");
    QTest::addColumn<QString>("expected");

    QTest::newRow("the first supported system language wins, unsupported ones are skipped")
        << LanguagePref::auto_ << QStringList {"pt-BR", "fr-CA", "de-AT", "en-US"} << "fr";
    QTest::newRow("POSIX names and upper case are understood")
        << LanguagePref::auto_ << QStringList {"C", "TR_tr.UTF-8"} << "tr";
    QTest::newRow("no supported system language falls back to English")
        << LanguagePref::auto_ << QStringList {"ja-JP", "ja"} << "en";
}

void tst_LocaleManager::resolution()
{
    QFETCH(LanguagePref, preference);
    QFETCH(QStringList, system);
    QTEST(resolveLanguage(preference, system), "expected");
}

void tst_LocaleManager::switchesLiveAndSignalsOnlyRealChanges()
{
    TempPathProvider paths;
    DiskFileAccess files;
    SettingsStore store(paths, files);
    const auto change = [&](auto edit) {
        Settings settings = store.settings();
        edit(settings);
        store.setSettings(settings);
    };
    const auto chooseLanguage = [&](LanguagePref language) {
        change([&](Settings &settings) { settings.language = language; });
    };
    // A language chosen before start-up is spoken from the start.
    chooseLanguage(LanguagePref::es);
    QStringList system {"ja-JP"};
    LocaleManager manager(store, [&] { return system; });
    QSignalSpy changed(&manager, &LocaleManager::languageChanged);
    QCOMPARE(manager.activeLanguage(), QStringLiteral("es"));
    chooseLanguage(LanguagePref::auto_);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(manager.activeLanguage(), QStringLiteral("en"));
    // Dates and numbers follow the system (en_GB: LANG in CMakeLists.txt) while it speaks English.
    QCOMPARE(manager.interfaceLocale().name(), QStringLiteral("en_GB"));

    // The automatic choice follows the system's languages on refresh, announced once.
    system = {"de-DE"};
    manager.refresh();
    manager.refresh();
    QCOMPARE(changed.count(), 2);
    QCOMPARE(manager.text(QStringLiteral("countdown.unit.short.day")), QStringLiteral("T"));

    chooseLanguage(LanguagePref::fr);
    QCOMPARE(changed.count(), 3);
    QCOMPARE(manager.table().code(), QStringLiteral("fr"));
    QCOMPARE(manager.interfaceLocale().name(), QStringLiteral("fr_FR"));
    QCOMPARE(manager.text(QStringLiteral("countdown.unit.short.day")), QStringLiteral("j"));

    // Another setting changes: the language stays and nothing is announced.
    change([](Settings &settings) { settings.menubarTitleLength = 20; });
    QCOMPARE(changed.count(), 3);

    // Choosing German by name while the system already speaks it is a real change from French,
    // but going back to automatic (German again) is not.
    chooseLanguage(LanguagePref::de);
    QCOMPARE(changed.count(), 4);
    chooseLanguage(LanguagePref::auto_);
    QCOMPARE(changed.count(), 4);
    QCOMPARE(manager.activeLanguage(), QStringLiteral("de"));
}

QTEST_GUILESS_MAIN(tst_LocaleManager)
#include "tst_localemanager.moc"

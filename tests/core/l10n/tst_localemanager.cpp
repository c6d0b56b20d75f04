#include "l10n/LocaleManager.h"
#include "l10n/SupportedLanguages.h"
#include "storage/FileAccess.h"
#include "storage/PathProvider.h"
#include "storage/SettingsStore.h"

#include <QSignalSpy>
#include <QTest>

namespace {

// A settings store over a throw-away folder.
struct TempSettings
{
    TempPathProvider paths;
    DiskFileAccess files;
    SettingsStore store {paths, files};

    void setLanguage(LanguagePref language)
    {
        Settings settings = store.settings();
        settings.language = language;
        store.setSettings(settings);
    }
};

} // namespace

class tst_LocaleManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void resolution_data();
    void resolution();
    void switchesLiveAndSignalsOnlyRealChanges();
    void followsTheSystemAfterRefreshWhenAutomatic();
};

void tst_LocaleManager::resolution_data()
{
    QTest::addColumn<LanguagePref>("preference");
    QTest::addColumn<QStringList>("system");
    QTest::addColumn<QString>("expected");

    QTest::newRow("Brazilian Portuguese then Austrian German resolves to German")
        << LanguagePref::auto_ << QStringList {"pt-BR", "de-AT"} << "de";
    QTest::newRow("Japanese alone falls back to English")
        << LanguagePref::auto_ << QStringList {"ja-JP", "ja"} << "en";
    QTest::newRow("no system languages fall back to English")
        << LanguagePref::auto_ << QStringList() << "en";
    QTest::newRow("POSIX names and upper case are understood")
        << LanguagePref::auto_ << QStringList {"C", "TR_tr.UTF-8"} << "tr";
    QTest::newRow("the first supported language wins over later ones")
        << LanguagePref::auto_ << QStringList {"fr-CA", "es-ES", "en-US"} << "fr";
    QTest::newRow("a chosen language ignores the system")
        << LanguagePref::es << QStringList {"de-DE"} << "es";
}

void tst_LocaleManager::resolution()
{
    QFETCH(LanguagePref, preference);
    QFETCH(QStringList, system);
    QFETCH(QString, expected);
    QCOMPARE(resolveLanguage(preference, system), expected);

    TempSettings settings;
    settings.setLanguage(preference);
    const LocaleManager manager(settings.store, [&] { return system; });
    QCOMPARE(manager.activeLanguage(), expected);
    QCOMPARE(manager.table().code(), expected);
}

void tst_LocaleManager::switchesLiveAndSignalsOnlyRealChanges()
{
    TempPathProvider paths;
    DiskFileAccess files;
    SettingsStore store(paths, files);
    LocaleManager manager(store, [] { return QStringList {"de-DE"}; });
    QSignalSpy changed(&manager, &LocaleManager::languageChanged);
    QCOMPARE(manager.activeLanguage(), QStringLiteral("de"));
    QCOMPARE(manager.text(QStringLiteral("countdown.unit.short.day")), QStringLiteral("T"));

    Settings settings = store.settings();
    settings.language = LanguagePref::fr;
    store.setSettings(settings);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(manager.activeLanguage(), QStringLiteral("fr"));
    QCOMPARE(manager.text(QStringLiteral("countdown.unit.short.day")), QStringLiteral("j"));

    // Another setting changes: the language stays and nothing is announced.
    settings.menubarTitleLength = 20;
    store.setSettings(settings);
    QCOMPARE(changed.count(), 1);

    // Choosing German by name while the system already speaks it is a real change from French,
    // but going back to automatic (German again) is not.
    settings.language = LanguagePref::de;
    store.setSettings(settings);
    QCOMPARE(changed.count(), 2);
    settings.language = LanguagePref::auto_;
    store.setSettings(settings);
    QCOMPARE(changed.count(), 2);
    QCOMPARE(manager.activeLanguage(), QStringLiteral("de"));
}

void tst_LocaleManager::followsTheSystemAfterRefreshWhenAutomatic()
{
    TempPathProvider paths;
    DiskFileAccess files;
    SettingsStore store(paths, files);
    QStringList system {"ja-JP"};
    LocaleManager manager(store, [&] { return system; });
    QSignalSpy changed(&manager, &LocaleManager::languageChanged);
    QCOMPARE(manager.activeLanguage(), QStringLiteral("en"));

    system = {"tr-TR"};
    manager.refresh();
    QCOMPARE(changed.count(), 1);
    QCOMPARE(manager.activeLanguage(), QStringLiteral("tr"));
    manager.refresh();
    QCOMPARE(changed.count(), 1);
}

QTEST_GUILESS_MAIN(tst_LocaleManager)
#include "tst_localemanager.moc"

#include "platform/session/XdgAutostart.h"
#include "storage/FileAccess.h"
#include "storage/PathProvider.h"
#include "storage/SettingsStore.h"

#include <QProcess>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

class tst_XdgAutostart : public QObject
{
    Q_OBJECT

private:
    static QString readEntry(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

private Q_SLOTS:
    void followsTheLaunchAtLoginSetting()
    {
        QTemporaryDir config;
        XdgAutostart autostart(config.filePath(QStringLiteral("autostart")),
                               QStringLiteral("/usr/bin/tarrow"));
        TempPathProvider paths;
        DiskFileAccess files;
        SettingsStore store(paths, files, &autostart);

        Settings settings = store.settings();
        settings.launchAtLogin = true;
        store.setSettings(settings);
        QVERIFY2(QFile::exists(config.filePath(QStringLiteral("autostart/tarrow.desktop"))),
                 "switching launch at login on writes the entry, creating the folder");
        QVERIFY(autostart.isEnabled());

        settings.launchAtLogin = false;
        store.setSettings(settings);
        QVERIFY2(!QFile::exists(autostart.entryPath()), "switching it off deletes the entry");
        QVERIFY(!autostart.isEnabled());
    }

    void entryStartsTarrowAsALoginLaunch()
    {
        QTemporaryDir config;
        XdgAutostart autostart(config.path(), QStringLiteral("/usr/bin/tarrow"));
        autostart.setEnabled(true);
        autostart.setEnabled(true);

        const QSettings entry(autostart.entryPath(), QSettings::IniFormat);
        QCOMPARE(entry.value(QStringLiteral("Desktop Entry/Exec")).toString(),
                 QStringLiteral("/usr/bin/tarrow --autostart"));
        QCOMPARE(entry.value(QStringLiteral("Desktop Entry/TryExec")).toString(),
                 QStringLiteral("/usr/bin/tarrow"));
        QCOMPARE(entry.value(QStringLiteral("Desktop Entry/Type")).toString(),
                 QStringLiteral("Application"));
        QCOMPARE(entry.value(QStringLiteral("Desktop Entry/NoDisplay")).toString(),
                 QStringLiteral("true"));
        QCOMPARE(entry.value(QStringLiteral("Desktop Entry/X-KDE-autostart-after")).toString(),
                 QStringLiteral("panel"));
    }

    void quotesCommandsThatNeedIt_data()
    {
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("execLine");

        QTest::newRow("A plain path goes in as it is") << "/opt/tarrow/bin/tarrow"
                                                       << "Exec=/opt/tarrow/bin/tarrow --autostart";
        QTest::newRow("A path with a space is quoted")
            << "/home/me/My Apps/tarrow"
            << "Exec=\"/home/me/My Apps/tarrow\" --autostart";
        QTest::newRow("Dollar signs and quotes inside the path are escaped")
            << "/tmp/a$b\"c/tarrow"
            << "Exec=\"/tmp/a\\\\$b\\\\\"c/tarrow\" --autostart";
    }

    void quotesCommandsThatNeedIt()
    {
        QFETCH(QString, command);
        QFETCH(QString, execLine);
        const QStringList lines = QString::fromUtf8(XdgAutostart::entryText(command)).split(u'\n');
        QVERIFY2(lines.contains(execLine), qPrintable(lines.join(u'|')));
    }

    void entryPassesTheDesktopFileValidator()
    {
        const QString validator =
            QStandardPaths::findExecutable(QStringLiteral("desktop-file-validate"));
        if (validator.isEmpty())
            QSKIP("desktop-file-validate (desktop-file-utils) is not installed");
        QTemporaryDir config;
        XdgAutostart autostart(config.path(), QStringLiteral("/home/me/My Apps/tarrow"));
        autostart.setEnabled(true);
        QProcess process;
        process.start(validator, {autostart.entryPath()});
        QVERIFY(process.waitForFinished());
        QVERIFY2(process.exitCode() == 0, process.readAllStandardOutput().constData());
    }

    void defaultDirectoryHonoursXdgConfigHome()
    {
        QCOMPARE(XdgAutostart::defaultDirectory(),
                 qEnvironmentVariable("XDG_CONFIG_HOME") + QStringLiteral("/autostart"));
    }
};

QTEST_GUILESS_MAIN(tst_XdgAutostart)
#include "tst_xdgautostart.moc"

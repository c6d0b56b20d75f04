#include "platform/session/XdgAutostart.h"
#include "storage/FileAccess.h"
#include "storage/PathProvider.h"
#include "storage/SettingsStore.h"

#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_XdgAutostart : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void followsTheLaunchAtLoginSetting()
    {
        QTemporaryDir config;
        XdgAutostart autostart(config.filePath(u"autostart"_s), u"/home/me/My Apps/tarrow"_s);
        TempPathProvider paths;
        DiskFileAccess files;
        SettingsStore store(paths, files, &autostart);

        Settings settings = store.settings();
        settings.launchAtLogin = true;
        store.setSettings(settings);
        QFile entry(config.filePath(u"autostart/tarrow.desktop"_s));
        QVERIFY2(entry.open(QIODevice::ReadOnly), "switching on writes the entry, and its folder");
        QVERIFY(autostart.isEnabled());
        // The session starts the program as a login launch, after the panel, without showing
        // the entry in menus.
        const QStringList lines = QString::fromUtf8(entry.readAll()).split(u'\n');
        for (const QString &line : {u"[Desktop Entry]"_s, u"Type=Application"_s,
                                    u"Exec=\"/home/me/My Apps/tarrow\" --autostart"_s,
                                    u"TryExec=/home/me/My Apps/tarrow"_s, u"NoDisplay=true"_s,
                                    u"X-KDE-autostart-after=panel"_s})
            QVERIFY2(lines.contains(line), qPrintable(line));

        settings.launchAtLogin = false;
        store.setSettings(settings);
        QVERIFY2(!entry.exists(), "switching it off deletes the entry");
        QVERIFY(!autostart.isEnabled());
    }

    // Inside the quotes $ and " are escaped, and the value escapes each backslash once more.
    void escapesReservedCharactersOfTheCommand()
    {
        const QStringList lines =
            QString::fromUtf8(XdgAutostart::entryText(u"/tmp/a$b\"c/tarrow"_s)).split(u'\n');
        QVERIFY2(lines.contains(u"Exec=\"/tmp/a\\\\$b\\\\\"c/tarrow\" --autostart"_s),
                 qPrintable(lines.join(u'|')));
    }

    void entryPassesTheDesktopFileValidator()
    {
        const QString validator = QStandardPaths::findExecutable(u"desktop-file-validate"_s);
        if (validator.isEmpty())
            QSKIP("desktop-file-validate (desktop-file-utils) is not installed");
        QTemporaryDir config;
        XdgAutostart autostart(config.path(), u"/home/me/My Apps/a$b\"c/tarrow"_s);
        autostart.setEnabled(true);
        QProcess process;
        process.start(validator, {autostart.entryPath()});
        QVERIFY(process.waitForFinished());
        QVERIFY2(process.exitCode() == 0, process.readAllStandardOutput().constData());
    }

    void defaultDirectoryHonoursXdgConfigHome()
    {
        QCOMPARE(XdgAutostart::defaultDirectory(),
                 qEnvironmentVariable("XDG_CONFIG_HOME") + u"/autostart"_s);
    }
};

QTEST_GUILESS_MAIN(tst_XdgAutostart)
#include "tst_xdgautostart.moc"

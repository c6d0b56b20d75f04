#include "platform/session/LoginLaunch.h"
#include "platform/session/XdgAutostart.h"
#include "storage/FileAccess.h"
#include "storage/PathProvider.h"
#include "storage/SettingsStore.h"

#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

using Uptime = std::optional<double>;
Q_DECLARE_METATYPE(Uptime)

// Launch at login: the autostart entry the setting writes, and whether a start is a login launch.
class tst_LoginLaunch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void decidesLoginLaunch_data()
    {
        QTest::addColumn<bool>("autostartArgument");
        QTest::addColumn<Uptime>("uptime");
        QTest::addColumn<bool>("launchAtLogin");
        QTest::addColumn<bool>("loginLaunch");

        QTest::newRow("The autostart argument marks a login launch, however long the system is up")
            << true << Uptime(86400.0) << true << true;
        QTest::newRow("The autostart argument counts even with launch at login switched off")
            << true << Uptime(3600.0) << false << true;
        QTest::newRow("Without the argument, a boot 30 s ago means the session started us")
            << false << Uptime(30.0) << true << true;
        QTest::newRow("A boot 90 s ago is no longer a fresh session")
            << false << Uptime(90.0) << true << false;
        QTest::newRow("Launch at login switched off rules out the uptime rule")
            << false << Uptime(10.0) << false << false;
        QTest::newRow("An unreadable uptime is no evidence of a login")
            << false << Uptime() << true << false;
    }

    void decidesLoginLaunch()
    {
        QFETCH(bool, autostartArgument);
        QFETCH(Uptime, uptime);
        QFETCH(bool, launchAtLogin);
        QFETCH(bool, loginLaunch);
        QCOMPARE(LoginLaunch::isLoginLaunch(autostartArgument, uptime, launchAtLogin), loginLaunch);
    }

    // The first field of /proc/uptime is the time since boot; anything else gives nothing.
    void readsUptime()
    {
        QTemporaryDir dir;
        const auto uptime = [&dir](const QByteArray &contents) {
            QFile file(dir.filePath(u"uptime"_s));
            return file.open(QIODevice::WriteOnly) && file.write(contents) && file.flush()
                ? LoginLaunch::systemUptime(file.fileName())
                : Uptime(-1);
        };
        QCOMPARE(uptime("35.72 61.04\n"), Uptime(35.72));
        QCOMPARE(uptime("uptime unknown\n"), Uptime());
        QCOMPARE(LoginLaunch::systemUptime(dir.filePath(u"missing"_s)), Uptime());
    }

    void followsTheLaunchAtLoginSetting()
    {
        QCOMPARE(XdgAutostart::defaultDirectory(),
                 qEnvironmentVariable("XDG_CONFIG_HOME") + u"/autostart"_s);
        QTemporaryDir config;
        XdgAutostart autostart(config.filePath(u"autostart"_s),
                               u"/home/me/My Apps/a$b\"c/tarrow"_s);
        TempPathProvider paths;
        DiskFileAccess files;
        SettingsStore store(paths, files, &autostart);

        Settings settings = store.settings();
        settings.launchAtLogin = true;
        store.setSettings(settings);
        QFile entry(autostart.entryPath());
        QVERIFY2(entry.open(QIODevice::ReadOnly), "switching on writes the entry, and its folder");
        QVERIFY(autostart.isEnabled());
        // The session starts the program as a login launch, after the panel, without showing
        // the entry in menus. Inside the quotes $ and " are escaped, and the value escapes each
        // backslash once more.
        const QStringList lines = QString::fromUtf8(entry.readAll()).split(u'\n');
        for (const QString &line :
             {u"[Desktop Entry]"_s, u"Type=Application"_s,
              u"Exec=\"/home/me/My Apps/a\\\\$b\\\\\"c/tarrow\" --autostart"_s,
              u"TryExec=/home/me/My Apps/a$b\"c/tarrow"_s, u"NoDisplay=true"_s,
              u"X-KDE-autostart-after=panel"_s})
            QVERIFY2(lines.contains(line), qPrintable(line));

        const QString validator = QStandardPaths::findExecutable(u"desktop-file-validate"_s);
        if (!validator.isEmpty()) // its complaints go to the test's output
            QCOMPARE(QProcess::execute(validator, {autostart.entryPath()}), 0);

        settings.launchAtLogin = false;
        store.setSettings(settings);
        QVERIFY2(!entry.exists(), "switching it off deletes the entry");
        QVERIFY(!autostart.isEnabled());
    }
};

QTEST_GUILESS_MAIN(tst_LoginLaunch)
#include "tst_loginlaunch.moc"

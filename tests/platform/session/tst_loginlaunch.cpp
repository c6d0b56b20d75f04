#include "platform/session/LoginLaunch.h"

#include <QTemporaryDir>
#include <QTest>

using Uptime = std::optional<double>;
Q_DECLARE_METATYPE(Uptime)

// Whether the popup may open at launch is checked on a real process in tst_trayapplication.
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

    void readsUptime_data()
    {
        QTest::addColumn<QByteArray>("contents"); // null: no file at all
        QTest::addColumn<Uptime>("uptime");

        QTest::newRow("The first field of /proc/uptime is the time since boot")
            << QByteArray("35.72 61.04\n") << Uptime(35.72);
        QTest::newRow("A file without a number gives nothing")
            << QByteArray("uptime unknown\n") << Uptime();
        QTest::newRow("A missing file gives nothing") << QByteArray() << Uptime();
    }

    void readsUptime()
    {
        QFETCH(QByteArray, contents);
        QFETCH(Uptime, uptime);
        QTemporaryDir dir;
        QFile file(dir.filePath(QStringLiteral("uptime")));
        QVERIFY(contents.isNull() || (file.open(QIODevice::WriteOnly) && file.write(contents)));
        file.close();
        QCOMPARE(LoginLaunch::systemUptime(file.fileName()), uptime);
    }
};

QTEST_GUILESS_MAIN(tst_LoginLaunch)
#include "tst_loginlaunch.moc"

#include "platform/session/LoginLaunch.h"

#include <QTemporaryDir>
#include <QTest>

using Uptime = std::optional<double>;
Q_DECLARE_METATYPE(Uptime)

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
        QTest::newRow("A user launch an hour after boot is not a login launch")
            << false << Uptime(3600.0) << true << false;
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

    void revealsPopoverAtLaunch_data()
    {
        QTest::addColumn<bool>("onboardingCompleted");
        QTest::addColumn<bool>("loginLaunch");
        QTest::addColumn<bool>("uiTest");
        QTest::addColumn<bool>("reveals");

        QTest::newRow("A user launch after onboarding opens the popup")
            << true << false << false << true;
        QTest::newRow("Before onboarding is completed the popup stays closed")
            << false << false << false << false;
        QTest::newRow("A login launch starts quietly in the panel")
            << true << true << false << false;
        QTest::newRow("UI tests open the popup themselves") << true << false << true << false;
    }

    void revealsPopoverAtLaunch()
    {
        QFETCH(bool, onboardingCompleted);
        QFETCH(bool, loginLaunch);
        QFETCH(bool, uiTest);
        QFETCH(bool, reveals);
        QCOMPARE(LoginLaunch::revealsPopoverAtLaunch(onboardingCompleted, loginLaunch, uiTest),
                 reveals);
    }

    void readsUptime_data()
    {
        QTest::addColumn<QByteArray>("contents");
        QTest::addColumn<Uptime>("uptime");

        QTest::newRow("The first field of /proc/uptime is the time since boot")
            << QByteArray("35.72 61.04\n") << Uptime(35.72);
        QTest::newRow("A file without a number gives nothing")
            << QByteArray("uptime unknown\n") << Uptime();
        QTest::newRow("An empty file gives nothing") << QByteArray() << Uptime();
    }

    void readsUptime()
    {
        QFETCH(QByteArray, contents);
        QFETCH(Uptime, uptime);
        QTemporaryDir dir;
        QFile file(dir.filePath(QStringLiteral("uptime")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(contents);
        file.close();
        QCOMPARE(LoginLaunch::systemUptime(file.fileName()), uptime);
    }

    void missingUptimeFileGivesNothing()
    {
        QCOMPARE(LoginLaunch::systemUptime(QStringLiteral("/nonexistent/uptime")), Uptime());
    }
};

QTEST_GUILESS_MAIN(tst_LoginLaunch)
#include "tst_loginlaunch.moc"

#include "support/TarrowProcess.h"

#include <csignal>

using namespace Qt::StringLiterals;

// Two real `tarrow` processes: the later one hands its request to the running one and leaves.
class tst_SingleInstance : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void secondLaunchIsForwarded_data()
    {
        QTest::addColumn<QStringList>("secondArguments");
        QTest::addColumn<QString>("received");
        QTest::addColumn<bool>("opensPopover");

        QTest::newRow(
            "A tarrow:// link opened by the desktop reaches the running copy and opens the popup")
            << QStringList {u"tarrow://open"_s} << u"tarrow://open]"_s << true;
        QTest::newRow("Launching Tarrow again opens the popup of the running copy")
            << QStringList() << u"Received a request: [--data-dir"_s << true;
        QTest::newRow("A login launch while Tarrow runs asks for nothing")
            << QStringList {u"--autostart"_s} << u"--autostart]"_s << false;
        QTest::newRow("A link of another scheme reaches the running copy and opens nothing there")
            << QStringList {u"mailto:x@example.com"_s} << u"mailto:x@example.com]"_s << false;
    }

    void secondLaunchIsForwarded()
    {
        QFETCH(QStringList, secondArguments);
        QFETCH(QString, received);
        QFETCH(bool, opensPopover);

        QTemporaryDir world;
        TarrowProcess first(world);
        first.start();
        QVERIFY(first.waitForLog(u"Listening on"_s));

        TarrowProcess second(world);
        second.start(secondArguments);
        QVERIFY(second.process().waitForFinished(10000));
        QCOMPARE(second.process().exitStatus(), QProcess::NormalExit);
        QCOMPARE(second.process().exitCode(), 0);
        QVERIFY(second.waitForLog(u"Forwarded to the running instance"_s));

        QVERIFY(first.waitForLog(received));
        QVERIFY(opensPopover ? first.waitForLog(u"Opened the popup"_s)
                             : first.staysWithout(u"Opened the popup"_s, 500));
        QCOMPARE(first.process().state(), QProcess::Running);
    }

    // A copy killed outright leaves its lock and socket behind; the next start takes them over.
    // A copy for another data folder runs beside it.
    void killedCopyBlocksNothingAndOtherFoldersRunBeside()
    {
        QTemporaryDir world;
        {
            TarrowProcess killed(world);
            killed.start();
            QVERIFY(killed.waitForLog(u"Listening on"_s));
            ::kill(pid_t(killed.process().processId()), SIGKILL);
            QVERIFY(killed.process().waitForFinished(5000));
        }
        TarrowProcess next(world);
        next.start();
        QVERIFY(next.waitForLog(u"Listening on"_s));
        TarrowProcess beside(world);
        beside.start({}, u"other"_s);
        QVERIFY(beside.waitForLog(u"Listening on"_s));
        QCOMPARE(next.process().state(), QProcess::Running);
    }

    void simultaneousStartsLeaveOneRunning()
    {
        QTemporaryDir world;
        std::vector<std::unique_ptr<TarrowProcess>> processes;
        for (int i = 0; i < 4; ++i) {
            processes.push_back(std::make_unique<TarrowProcess>(world));
            processes.back()->start();
        }
        QTest::qWait(3000);
        int running = 0;
        for (const auto &process : processes) {
            if (process->process().state() == QProcess::Running)
                ++running;
            else
                QCOMPARE(process->process().exitCode(), 0);
        }
        QCOMPARE(running, 1);
    }
};

QTEST_GUILESS_MAIN(tst_SingleInstance)
#include "tst_singleinstance.moc"

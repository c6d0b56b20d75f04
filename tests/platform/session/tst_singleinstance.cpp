#include "support/TarrowProcess.h"

#include <csignal>
#include <deque>

using namespace Qt::StringLiterals;

// Two real `tarrow` processes: the later one hands its request to the running one and leaves.
class tst_SingleInstance : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // A later launch hands its request to the running copy and leaves: a login launch asks for
    // nothing there, launching Tarrow again opens the popup.
    void secondLaunchIsForwarded()
    {
        QTemporaryDir world;
        TarrowProcess first(world);
        first.start({u"--autostart"_s}); // so that it does not open the welcome page by itself
        QVERIFY(first.waitForLog(u"Listening on"_s));
        for (const auto &[arguments, received, opens] :
             {std::tuple {QStringList {u"--autostart"_s}, u"/data --autostart]"_s, false},
              {QStringList(), u"/data]"_s, true}}) {
            TarrowProcess second(world);
            second.start(arguments);
            QVERIFY(second.process().waitForFinished(10000));
            QCOMPARE(second.process().exitStatus(), QProcess::NormalExit);
            QCOMPARE(second.process().exitCode(), 0);
            QVERIFY(second.waitForLog(u"Forwarded to the running instance"_s));
            QVERIFY(first.waitForLog(received));
            QVERIFY(opens ? first.waitForLog(u"Opened the popup"_s)
                          : first.staysWithout(u"Opened the popup"_s, 500));
        }
        QCOMPARE(first.process().state(), QProcess::Running);
    }

    // A copy killed outright leaves its lock and socket behind: of three copies started at once
    // after it, one takes them over and the others hand over and leave. A copy for another data
    // folder runs beside it.
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
        std::deque<TarrowProcess> copies;
        for (int i = 0; i < 3; ++i)
            copies.emplace_back(world).start();
        TarrowProcess beside(world);
        beside.start({}, u"other"_s);
        QVERIFY(beside.waitForLog(u"Listening on"_s));
        const auto exitCodes = [&copies] { // -1: still running
            QList<int> codes;
            for (TarrowProcess &copy : copies)
                codes << (copy.process().state() != QProcess::NotRunning
                              ? -1
                              : copy.process().exitCode());
            std::sort(codes.begin(), codes.end());
            return codes;
        };
        QTRY_COMPARE_WITH_TIMEOUT(exitCodes(), (QList<int> {-1, 0, 0}), 10000);
        QTest::qWait(500);
        QCOMPARE(exitCodes(), (QList<int> {-1, 0, 0}));
        QCOMPARE(beside.process().state(), QProcess::Running);
    }
};

QTEST_GUILESS_MAIN(tst_SingleInstance)
#include "tst_singleinstance.moc"

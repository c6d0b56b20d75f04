#include "support/TarrowProcess.h"

#include <csignal>

// Two real `tarrow` processes: the later one hands its request to the running one and leaves.
class tst_SingleInstance : public QObject
{
    Q_OBJECT

private:
    static QStringList dataDir(const QTemporaryDir &world,
                               const QString &name = QStringLiteral("data"))
    {
        return {QStringLiteral("--data-dir"), world.filePath(name)};
    }

private Q_SLOTS:
    void secondLaunchIsForwarded_data()
    {
        QTest::addColumn<QStringList>("secondArguments");
        QTest::addColumn<QString>("received");
        QTest::addColumn<bool>("opensPopover");

        QTest::newRow(
            "A tarrow:// link opened by the desktop reaches the running copy and opens the popup")
            << QStringList {QStringLiteral("tarrow://open")} << QStringLiteral("tarrow://open]")
            << true;
        QTest::newRow("Launching Tarrow again opens the popup of the running copy")
            << QStringList {} << QStringLiteral("Received a request: [--data-dir") << true;
        QTest::newRow("A login launch while Tarrow runs asks for nothing")
            << QStringList {QStringLiteral("--autostart")} << QStringLiteral("--autostart]")
            << false;
        QTest::newRow("A link of another scheme reaches the running copy and is ignored there")
            << QStringList {QStringLiteral("mailto:x@example.com")}
            << QStringLiteral("mailto:x@example.com]") << false;
    }

    void secondLaunchIsForwarded()
    {
        QFETCH(QStringList, secondArguments);
        QFETCH(QString, received);
        QFETCH(bool, opensPopover);

        QTemporaryDir world;
        TarrowProcess first(world);
        first.start(dataDir(world));
        QVERIFY2(first.waitForLog(QStringLiteral("Listening on")), qPrintable(first.log()));

        TarrowProcess second(world);
        QElapsedTimer timer;
        timer.start();
        second.start(dataDir(world) + secondArguments);
        QVERIFY(second.process().waitForFinished(10000));
        QCOMPARE(second.process().exitStatus(), QProcess::NormalExit);
        QCOMPARE(second.process().exitCode(), 0);
        QVERIFY2(second.log().contains(QStringLiteral("Forwarded to the running instance")),
                 qPrintable(second.log()));

        QVERIFY2(first.waitForLog(received), qPrintable(first.log()));
        if (opensPopover) {
            QVERIFY2(first.waitForLog(QStringLiteral("Opened the popup")), qPrintable(first.log()));
        } else {
            QTest::qWait(500);
            QVERIFY2(!first.log().contains(QStringLiteral("Opened the popup")),
                     qPrintable(first.log()));
        }
        QCOMPARE(first.process().state(), QProcess::Running);
    }

    void differentDataFoldersRunSideBySide()
    {
        QTemporaryDir world;
        TarrowProcess first(world);
        first.start(dataDir(world, QStringLiteral("one")));
        QVERIFY2(first.waitForLog(QStringLiteral("Listening on")), qPrintable(first.log()));
        TarrowProcess second(world);
        second.start(dataDir(world, QStringLiteral("two")));
        QVERIFY2(second.waitForLog(QStringLiteral("Listening on")), qPrintable(second.log()));
        QCOMPARE(second.process().state(), QProcess::Running);
    }

    void killedInstanceDoesNotBlockTheNextStart()
    {
        QTemporaryDir world;
        {
            TarrowProcess crashed(world);
            crashed.start(dataDir(world));
            QVERIFY2(crashed.waitForLog(QStringLiteral("Listening on")), qPrintable(crashed.log()));
            ::kill(pid_t(crashed.process().processId()), SIGKILL);
            QVERIFY(crashed.process().waitForFinished(5000));
        }
        TarrowProcess next(world);
        next.start(dataDir(world));
        QVERIFY2(next.waitForLog(QStringLiteral("Listening on")), qPrintable(next.log()));
    }

    void simultaneousStartsLeaveOneRunning()
    {
        QTemporaryDir world;
        std::vector<std::unique_ptr<TarrowProcess>> processes;
        for (int i = 0; i < 4; ++i) {
            processes.push_back(std::make_unique<TarrowProcess>(world));
            processes.back()->start(dataDir(world));
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

// `tarrow --toggle-popup` and `tarrow --new-countdown`, the commands a user binds to keys on a
// desktop where apps cannot register global keys: handed to the running copy, or starting one.
#include "app/TrayApplication.h"
#include "support/TarrowProcess.h"

using namespace Qt::StringLiterals;

class tst_ForwardedCommands : public QObject
{
    Q_OBJECT

private:
    // Runs `tarrow ARGUMENT` beside `first` and waits for it to hand over and leave.
    static bool forward(const QTemporaryDir &world, const QString &argument)
    {
        TarrowProcess later(world);
        later.start({argument});
        return later.process().waitForFinished(10000) && later.process().exitCode() == 0
            && later.waitForLog(u"Forwarded to the running instance"_s);
    }

private Q_SLOTS:
    void parsing()
    {
        const TrayLaunchOptions options =
            TrayLaunchOptions::parse({u"--toggle-popup"_s, u"--new-countdown"_s});
        QVERIFY(options.togglePopup && options.newCountdown);
        QVERIFY(options.unknownOptions.isEmpty() && options.links.isEmpty());
    }

    // The toggle shows the popup, then hides it; a new countdown shows it (and keeps it shown).
    void forwardedToTheRunningCopy()
    {
        QTemporaryDir world;
        TarrowProcess first(world);
        first.start({u"--autostart"_s}); // a login launch: no popup of its own
        QVERIFY(first.waitForLog(u"Listening on"_s));
        QVERIFY(forward(world, u"--toggle-popup"_s));
        QVERIFY(first.waitForLog(u"Opened the popup"_s));
        QVERIFY(forward(world, u"--toggle-popup"_s));
        QVERIFY(first.waitForLog(u"Closed the popup"_s));
        QVERIFY(forward(world, u"--new-countdown"_s));
        QTRY_COMPARE_WITH_TIMEOUT(first.log().count(u"Opened the popup"_s), 2, 10000);
        QVERIFY(forward(world, u"--new-countdown"_s));
        QTRY_COMPARE_WITH_TIMEOUT(first.log().count(u"Opened the popup"_s), 3, 10000);
        QCOMPARE(first.log().count(u"Closed the popup"_s), 1);
    }

    // With no Tarrow running, the bound key starts one with its popup open.
    void startsTarrowWhenNoneRuns()
    {
        QTemporaryDir world;
        TarrowProcess tarrow(world);
        tarrow.start({u"--new-countdown"_s});
        QVERIFY(tarrow.waitForLog(u"Opened the popup"_s));
        QCOMPARE(tarrow.process().state(), QProcess::Running);
    }
};

QTEST_GUILESS_MAIN(tst_ForwardedCommands)
#include "tst_forwardedcommands.moc"

#include "app/AppURLRouter.h"
#include "app/TrayApplication.h"
#include "support/Fixtures.h"
#include "support/TarrowProcess.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>

#include <thread>

using namespace Qt::StringLiterals;

class tst_TrayApplication : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void recognisesAGraphicalSession_data()
    {
        QTest::addColumn<QString>("environment");
        QTest::addColumn<bool>("graphical");

        QTest::newRow("An X11 display is a graphical session") << u"DISPLAY=:0"_s << true;
        QTest::newRow("A Wayland display is a graphical session")
            << u"WAYLAND_DISPLAY=wayland-0"_s << true;
        QTest::newRow("A console login without either is not") << QString() << false;
        QTest::newRow("The offscreen platform needs no display")
            << u"QT_QPA_PLATFORM=offscreen"_s << true;
        QTest::newRow("xcb without DISPLAY cannot start")
            << u"WAYLAND_DISPLAY=wayland-0 QT_QPA_PLATFORM=xcb"_s << false;
        QTest::newRow("wayland without WAYLAND_DISPLAY cannot start")
            << u"DISPLAY=:1 QT_QPA_PLATFORM=wayland"_s << false;
    }

    void recognisesAGraphicalSession()
    {
        QFETCH(QString, environment);
        QFETCH(bool, graphical);
        QProcessEnvironment variables;
        for (const QString &variable : environment.split(u' ', Qt::SkipEmptyParts))
            variables.insert(variable.section(u'=', 0, 0), variable.section(u'=', 1));
        QCOMPARE(hasGraphicalSession(variables), graphical);
    }

    void withoutADisplayPointsToTheSubcommands()
    {
        QTemporaryDir world;
        TarrowProcess tarrow(world);
        QProcessEnvironment env = tarrow.process().processEnvironment();
        for (const QString &name : {u"QT_QPA_PLATFORM"_s, u"DISPLAY"_s, u"WAYLAND_DISPLAY"_s})
            env.remove(name);
        tarrow.process().setProcessEnvironment(env);
        tarrow.start();
        QVERIFY(tarrow.process().waitForFinished(10000));
        QCOMPARE_NE(tarrow.process().exitCode(), 0);
        const QString log = tarrow.log().trimmed();
        QVERIFY2(!log.contains(u'\n') && log.contains(u"graphical session"_s)
                     && log.contains(u"add"_s),
                 qPrintable(log));
    }

    void popupAtLaunch_data()
    {
        QTest::addColumn<bool>("onboarded");
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<bool>("opens");

        QTest::newRow("After onboarding a user launch opens the popup")
            << true << QStringList() << true;
        QTest::newRow("Before onboarding the popup opens on the welcome page")
            << false << QStringList() << true;
        QTest::newRow("A login launch stays in the panel")
            << true << QStringList {u"--autostart"_s} << false;
        QTest::newRow("A login launch before onboarding stays in the panel too")
            << false << QStringList {u"--autostart"_s} << false;
        QTest::newRow("A link given at launch opens the popup")
            << true << QStringList {u"--autostart"_s, u"tarrow://"_s} << true;
    }

    void popupAtLaunch()
    {
        QFETCH(bool, onboarded);
        QFETCH(QStringList, arguments);
        QFETCH(bool, opens);

        QTemporaryDir world;
        if (onboarded)
            QSettings(world.filePath(u"config/tarrow/tarrow.conf"_s), QSettings::IniFormat)
                .setValue(u"tarrow.onboarding.completed"_s, true);
        TarrowProcess tarrow(world);
        tarrow.start(arguments);
        QVERIFY(tarrow.waitForLog(u"Built the core"_s));
        QVERIFY(opens ? tarrow.waitForLog(u"Opened the popup"_s)
                      : tarrow.staysWithout(u"Opened the popup"_s, 700));
        // Before onboarding the popup shows the welcome page, whenever it first opens.
        QCOMPARE(tarrow.log().contains(u"Showing the welcome page"_s), !onboarded);
    }

    // Support brings the welcome page back: at launch, or asked of the running Tarrow; and
    // tarrow://settings opens the settings window.
    void resetOnboardingAndSettingsLink()
    {
        QTemporaryDir world;
        QSettings(world.filePath(u"config/tarrow/tarrow.conf"_s), QSettings::IniFormat)
            .setValue(u"tarrow.onboarding.completed"_s, true);
        TarrowProcess tarrow(world);
        tarrow.start({u"--autostart"_s});
        QVERIFY(tarrow.waitForLog(u"Built the core"_s));
        TarrowProcess second(world);
        second.start({u"--reset-onboarding"_s});
        QVERIFY(second.process().waitForFinished(10000));
        QVERIFY(tarrow.waitForLog(u"Showing the welcome page"_s));
        QVERIFY(tarrow.waitForLog(u"Opened the popup"_s));
        QVERIFY(!QSettings(world.filePath(u"config/tarrow/tarrow.conf"_s), QSettings::IniFormat)
                     .contains(u"tarrow.onboarding.completed"_s));
        TarrowProcess third(world);
        third.start({u"tarrow://settings"_s});
        QVERIFY(third.process().waitForFinished(10000));
        QVERIFY(tarrow.waitForLog(u"Opened the settings window"_s));
    }

    void commandsAndTheRunningAppKeepEveryChange()
    {
        // The app runs on a data folder while two `tarrow add` loops write to it at once. The
        // app writes too: it stamps each countdown as it arrives, a second or two after it was
        // added. No acknowledged add and no stamp may be lost.
        QTemporaryDir world;
        TarrowProcess app(world);
        app.start();
        QVERIFY(app.waitForLog(u"Built the core"_s));
        const QString folder = world.filePath(u"data"_s);
        const QDateTime start = QDateTime::currentDateTimeUtc();
        constexpr int perLoop = 12;
        QStringList acknowledged[2];
        const auto loop = [&](int which) {
            for (int i = 0; i < perLoop; ++i) {
                const QDateTime target = start.addMSecs(1500 + 250 * i);
                QProcess add;
                add.start(QStringLiteral(TARROW_EXECUTABLE),
                          {u"--data-dir"_s, folder, u"add"_s, u"loop %1 #%2"_s.arg(which).arg(i),
                           u"--date"_s, target.toString(Qt::ISODateWithMs)});
                if (add.waitForFinished(30000) && add.exitCode() == 0)
                    acknowledged[which].append(
                        QString::fromUtf8(add.readAllStandardOutput()).trimmed());
            }
        };
        std::thread first(loop, 0), second(loop, 1);
        first.join();
        second.join();
        QCOMPARE(acknowledged[0].size() + acknowledged[1].size(), 2 * perLoop);

        // Once the last one is due, every event is in the file and stamped by the app.
        const auto eventsOnDisk = [&] {
            return QJsonDocument::fromJson(readFile(QDir(folder).filePath(u"event.json"_s)))
                .object()[u"events"_s]
                .toArray();
        };
        const auto allStamped = [&] {
            const QJsonArray events = eventsOnDisk();
            return std::all_of(events.begin(), events.end(), [](const QJsonValue &event) {
                return event[u"reachedAt"_s].isString();
            });
        };
        QTRY_VERIFY_WITH_TIMEOUT(
            QDateTime::currentDateTimeUtc() > start.addMSecs(1500 + 250 * perLoop) && allStamped(),
            15000);
        QStringList stored;
        for (const QJsonValue event : eventsOnDisk())
            stored.append(event[u"id"_s].toString());
        QStringList expected = acknowledged[0] + acknowledged[1];
        stored.sort();
        expected.sort();
        QCOMPARE(stored, expected);
        QVERIFY(app.log().contains(u"Reloaded event.json after an outside change"_s));
        QCOMPARE(app.process().state(), QProcess::Running);
    }

    void routesByScheme_data()
    {
        QTest::addColumn<QString>("link");
        QTest::addColumn<bool>("opensPopover");
        QTest::addColumn<QString>("loggedScheme"); // null: nothing logged

        QTest::newRow("A tarrow:// link with host, path and query opens the popup")
            << u"tarrow://add/new?title=Dentist&date=2026-06-01"_s << true << QString();
        QTest::newRow("tarrow://settings opens the settings window")
            << u"tarrow://settings"_s << false << QString();
        QTest::newRow("A scheme in mixed case opens the popup")
            << u"TaRRow://open"_s << true << QString();
        QTest::newRow("A mailto link is ignored and logged with its scheme")
            << u"mailto:someone@example.com"_s << false << u"mailto"_s;
        QTest::newRow("A scheme that only starts like ours is not ours")
            << u"tarrowx://open"_s << false << u"tarrowx"_s;
        QTest::newRow("Text that is not a URL is dropped")
            << u"tarrow://[::1"_s << false << QString();
    }

    void routesByScheme()
    {
        QFETCH(QString, link);
        QFETCH(bool, opensPopover);
        QFETCH(QString, loggedScheme);

        if (!loggedScheme.isNull())
            QTest::ignoreMessage(
                QtCriticalMsg,
                qPrintable(u"Ignored a link Tarrow does not own: "_s + loggedScheme));
        int opened = 0;
        int settings = 0;
        AppURLRouter([&opened] { ++opened; }, [&settings] { ++settings; }).route(link);
        QCOMPARE(opened, opensPopover ? 1 : 0);
        QCOMPARE(settings, link.contains(u"//settings"_s) ? 1 : 0);
    }
};

QTEST_GUILESS_MAIN(tst_TrayApplication)
#include "tst_trayapplication.moc"

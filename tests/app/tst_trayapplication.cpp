#include "app/TrayApplication.h"
#include "support/TarrowProcess.h"

#include <QSettings>

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
        QTest::newRow("A list of platforms works when one of them can start")
            << u"DISPLAY=:1 QT_QPA_PLATFORM=wayland;xcb"_s << true;
        QTest::newRow("Plugin options after the name are allowed")
            << u"QT_QPA_PLATFORM=vnc:size=800x600"_s << true;
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
        for (const QString &name : {u"QT_QPA_PLATFORM"_s, u"DISPLAY"_s, u"WAYLAND_DISPLAY"_s})
            tarrow.setEnvironment(name, QString());
        tarrow.start();
        QVERIFY(tarrow.process().waitForFinished(10000));
        QCOMPARE_NE(tarrow.process().exitCode(), 0);
        const QStringList lines = tarrow.log().split(u'\n', Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), 1);
        QVERIFY2(lines.first().contains(u"graphical session"_s) && lines.first().contains(u"add"_s),
                 qPrintable(lines.first()));
    }

    void testHostBuildsNothing()
    {
        QTemporaryDir world;
        TarrowProcess tarrow(world);
        tarrow.setEnvironment(u"TARROW_TEST_HOST"_s, u"1"_s);
        tarrow.start();
        QVERIFY(tarrow.waitForLog(u"Running as a test host"_s));
        QVERIFY(tarrow.staysWithout(u"Built the core"_s, 300));
        QVERIFY2(!QFile::exists(world.filePath(u"data/event.json"_s)), "no store was opened");
    }

    void popupAtLaunch_data()
    {
        QTest::addColumn<bool>("onboarded");
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<bool>("opens");

        QTest::newRow("After onboarding a user launch opens the popup")
            << true << QStringList() << true;
        QTest::newRow("Before onboarding the popup stays closed")
            << false << QStringList() << false;
        QTest::newRow("A login launch stays in the panel")
            << true << QStringList {u"--autostart"_s} << false;
        QTest::newRow("UI tests keep the popup closed")
            << true << QStringList {u"--ui-test"_s} << false;
        QTest::newRow("A link given at launch opens the popup even before onboarding")
            << false << QStringList {u"tarrow://"_s} << true;
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
    }
};

QTEST_GUILESS_MAIN(tst_TrayApplication)
#include "tst_trayapplication.moc"

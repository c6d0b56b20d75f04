#include "app/TrayApplication.h"
#include "support/TarrowProcess.h"

#include <QSettings>

class tst_TrayApplication : public QObject
{
    Q_OBJECT

private:
    static void completeOnboarding(const QTemporaryDir &world)
    {
        QSettings flags(world.filePath(QStringLiteral("config/tarrow/tarrow.conf")),
                        QSettings::IniFormat);
        flags.setValue(QStringLiteral("tarrow.onboarding.completed"), true);
    }

private Q_SLOTS:
    void recognisesAGraphicalSession_data()
    {
        QTest::addColumn<QString>("display");
        QTest::addColumn<QString>("waylandDisplay");
        QTest::addColumn<QString>("platform");
        QTest::addColumn<bool>("graphical");

        QTest::newRow("An X11 display is a graphical session") << ":0"
                                                               << ""
                                                               << "" << true;
        QTest::newRow("A Wayland display is a graphical session") << ""
                                                                  << "wayland-0"
                                                                  << "" << true;
        QTest::newRow("A console login without either is not") << ""
                                                               << ""
                                                               << "" << false;
        QTest::newRow("The offscreen platform needs no display") << ""
                                                                 << ""
                                                                 << "offscreen" << true;
        QTest::newRow("xcb without DISPLAY cannot start") << ""
                                                          << "wayland-0"
                                                          << "xcb" << false;
        QTest::newRow("wayland without WAYLAND_DISPLAY cannot start") << ":1"
                                                                      << ""
                                                                      << "wayland" << false;
        QTest::newRow("A list of platforms works when one of them can start")
            << ":1"
            << ""
            << "wayland;xcb" << true;
        QTest::newRow("Plugin options after the name are allowed") << ""
                                                                   << ""
                                                                   << "vnc:size=800x600" << true;
    }

    void recognisesAGraphicalSession()
    {
        QFETCH(QString, display);
        QFETCH(QString, waylandDisplay);
        QFETCH(QString, platform);
        QFETCH(bool, graphical);
        QProcessEnvironment environment;
        environment.insert(QStringLiteral("DISPLAY"), display);
        environment.insert(QStringLiteral("WAYLAND_DISPLAY"), waylandDisplay);
        if (!platform.isEmpty())
            environment.insert(QStringLiteral("QT_QPA_PLATFORM"), platform);
        QCOMPARE(hasGraphicalSession(environment), graphical);
    }

    void withoutADisplayPointsToTheSubcommands()
    {
        QTemporaryDir world;
        TarrowProcess tarrow(world);
        tarrow.setEnvironment(QStringLiteral("QT_QPA_PLATFORM"), QString());
        tarrow.setEnvironment(QStringLiteral("DISPLAY"), QString());
        tarrow.setEnvironment(QStringLiteral("WAYLAND_DISPLAY"), QString());
        tarrow.start({QStringLiteral("--data-dir"), world.filePath(QStringLiteral("data"))});
        QVERIFY(tarrow.process().waitForFinished(10000));
        QCOMPARE_NE(tarrow.process().exitCode(), 0);
        const QStringList lines = tarrow.log().split(u'\n', Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), 1);
        QVERIFY2(lines.first().contains(QStringLiteral("graphical session")),
                 qPrintable(lines.first()));
        QVERIFY2(lines.first().contains(QStringLiteral("add")), qPrintable(lines.first()));
    }

    void testHostBuildsNothing()
    {
        QTemporaryDir world;
        TarrowProcess tarrow(world);
        tarrow.setEnvironment(QStringLiteral("TARROW_TEST_HOST"), QStringLiteral("1"));
        tarrow.start({QStringLiteral("--data-dir"), world.filePath(QStringLiteral("data"))});
        QVERIFY2(tarrow.waitForLog(QStringLiteral("Running as a test host")),
                 qPrintable(tarrow.log()));
        QTest::qWait(300);
        QVERIFY(!tarrow.log().contains(QStringLiteral("Built the core")));
        QVERIFY2(!QFile::exists(world.filePath(QStringLiteral("data/event.json"))),
                 "no store was opened");
    }

    void popupAtLaunch_data()
    {
        QTest::addColumn<bool>("onboarded");
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<bool>("opens");

        QTest::newRow("After onboarding a user launch opens the popup")
            << true << QStringList {} << true;
        QTest::newRow("Before onboarding the popup stays closed")
            << false << QStringList {} << false;
        QTest::newRow("A login launch stays in the panel")
            << true << QStringList {QStringLiteral("--autostart")} << false;
        QTest::newRow("UI tests keep the popup closed")
            << true << QStringList {QStringLiteral("--ui-test")} << false;
        QTest::newRow("A link given at launch opens the popup even before onboarding")
            << false << QStringList {QStringLiteral("tarrow://")} << true;
    }

    void popupAtLaunch()
    {
        QFETCH(bool, onboarded);
        QFETCH(QStringList, arguments);
        QFETCH(bool, opens);

        QTemporaryDir world;
        if (onboarded)
            completeOnboarding(world);
        TarrowProcess tarrow(world);
        tarrow.start(
            QStringList {QStringLiteral("--data-dir"), world.filePath(QStringLiteral("data"))}
            + arguments);
        QVERIFY2(tarrow.waitForLog(QStringLiteral("Built the core")), qPrintable(tarrow.log()));
        if (opens) {
            QVERIFY2(tarrow.waitForLog(QStringLiteral("Opened the popup")),
                     qPrintable(tarrow.log()));
        } else {
            QTest::qWait(700);
            QVERIFY2(!tarrow.log().contains(QStringLiteral("Opened the popup")),
                     qPrintable(tarrow.log()));
        }
    }
};

QTEST_GUILESS_MAIN(tst_TrayApplication)
#include "tst_trayapplication.moc"

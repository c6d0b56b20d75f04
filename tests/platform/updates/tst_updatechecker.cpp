// Update checks against an appcast served on loopback: each answer of the server, the launch and
// daily rules on a fake clock, and a build without a feed (with the stub switch).
#include "platform/updates/UpdateChecker.h"
#include "support/FakeClock.h"
#include "support/ItemFixtures.h"
#include "support/LoopbackHttp.h"

#include <QNetworkAccessManager>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;
using std::chrono::milliseconds;
using Answer = LoopbackHttp::Answer;

namespace {

// A feed with a release for another system, `newest` and an older one.
QByteArray appcast(const QByteArray &newest)
{
    return "<?xml version='1.0'?><rss version='2.0' "
           "xmlns:sparkle='http://www.andymatuschak.org/xml-namespaces/sparkle'><channel>"
           "<link>https://tarrow.example/releases</link>"
           "<item><enclosure url='https://tarrow.example/t.dmg' sparkle:version='9.0' "
           "sparkle:os='macos'/></item>"
           "<item><link>https://tarrow.example/releases/"
        + newest + "</link><enclosure url='https://tarrow.example/t.tar.gz' sparkle:version='"
        + newest
        + "'/></item><item><sparkle:version>0.0.9</sparkle:version></item>"
          "</channel></rss>";
}

// The facade and the checker over a feed, with their own defaults file and clock.
struct Updater
{
    explicit Updater(const QUrl &feed, milliseconds timeout = milliseconds(3000))
        : facade(feed, u"0.1.0"_s, network, defaults, clock)
        , checker(facade, timeout)
    {
    }
    // Waits for the check under way to end; what the About page then shows: the text's key, the
    // version and the release page.
    QString shown()
    {
        [[maybe_unused]] const bool settled = QTest::qWaitFor(
            [&] { return checker.state() != UpdateChecker::State::checking; }, 5000);
        return checker.statusKey() + u' ' + checker.version() + u' '
            + checker.releasePage().toString();
    }

    QTemporaryDir dir;
    QSettings defaults {dir.filePath(u"defaults.ini"_s), QSettings::IniFormat};
    QNetworkAccessManager network;
    FakeClock clock {Fixture::at("2026-03-01T12:00:00Z")};
    AppcastFacade facade;
    UpdateChecker checker;
};

} // namespace

class tst_UpdateChecker : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void versionsCompareAsUpdatersCompareThem_data();
    void versionsCompareAsUpdatersCompareThem();
    void checkNowEndsInTheServersAnswer_data();
    void checkNowEndsInTheServersAnswer();
    void launchCheckWaitsFourHours_data();
    void launchCheckWaitsFourHours();
    void automaticChecksComeDaily();
    void aBuildWithoutAFeedOnlyAnswersFromTheStub();
};

void tst_UpdateChecker::versionsCompareAsUpdatersCompareThem_data()
{
    QTest::addColumn<QString>("a");
    QTest::addColumn<QString>("b");
    QTest::addColumn<int>("order");
    QTest::newRow("Numbers compare by value") << u"1.10"_s << u"1.9"_s << 1;
    QTest::newRow("A further number is a later version") << u"1.0"_s << u"1.0.1"_s << -1;
    QTest::newRow("Trailing zeros change nothing") << u"0.1"_s << u"0.1.0"_s << 0;
    QTest::newRow("Letters mark a pre-release") << u"1.0b1"_s << u"1.0"_s << -1;
    QTest::newRow("A release candidate comes before the release") << u"1.0-rc1"_s << u"1.0"_s << -1;
}

void tst_UpdateChecker::versionsCompareAsUpdatersCompareThem()
{
    QFETCH(QString, a);
    QFETCH(QString, b);
    QFETCH(int, order);
    QCOMPARE(Appcast::compareVersions(a, b), order);
    QCOMPARE(Appcast::compareVersions(b, a), -order);
}

void tst_UpdateChecker::checkNowEndsInTheServersAnswer_data()
{
    QTest::addColumn<Answer>("answer");
    QTest::addColumn<QUrl>("feed"); // empty: the loopback server
    QTest::addColumn<QString>("shown");

    const QString failed = u"settings.about.updates.failed  "_s;
    QTest::newRow("The newest release for Linux is ours: up to date")
        << Answer {200, appcast("0.1.0")} << QUrl()
        << u"settings.about.updates.up_to_date %@ 0.1.0 "_s;
    QTest::newRow("A newer release is available, with its page")
        << Answer {200, appcast("0.2.0")} << QUrl()
        << u"settings.about.updates.available %@ 0.2.0 https://tarrow.example/releases/0.2.0"_s;
    QTest::newRow("A malformed feed fails")
        << Answer {200, "<rss><channel><item>"} << QUrl() << failed;
    QTest::newRow("An HTTP error fails") << Answer {500, "oops"} << QUrl() << failed;
    QTest::newRow("A server slower than the probe timeout fails")
        << Answer {200, {}, {}, true} << QUrl() << failed;
    QTest::newRow("A feed that is not HTTPS is never fetched")
        << Answer {200, appcast("0.2.0")} << QUrl(u"http://tarrow.example/appcast.xml"_s) << failed;
}

void tst_UpdateChecker::checkNowEndsInTheServersAnswer()
{
    QFETCH(QUrl, feed);
    LoopbackHttp server;
    QFETCH(Answer, answer);
    server.answers["/appcast.xml"] = answer;
    Updater updater(feed.isEmpty() ? server.url(u"/appcast.xml"_s) : feed, milliseconds(300));
    updater.checker.checkNow();
    QCOMPARE(updater.checker.state(), UpdateChecker::State::checking);
    QTEST(updater.shown(), "shown");
    QCOMPARE(updater.facade.lastUpdateCheckDate(), updater.clock.now());
}

void tst_UpdateChecker::launchCheckWaitsFourHours_data()
{
    QTest::addColumn<qint64>("lastCheckAgo"); // seconds; -1: never
    QTest::addColumn<bool>("automatic");
    QTest::addColumn<QString>("skipped"); // the log line, when the check is skipped

    QTest::newRow("A check 3 hours 59 minutes ago skips it and says how long ago")
        << qint64(14340) << true << u"skipping launch update check; last was 14340.000000s ago"_s;
    QTest::newRow("A check 4 hours and a second ago lets it run")
        << qint64(14401) << true << QString();
    QTest::newRow("With automatic checks off, it does not run")
        << qint64(-1) << false << u"skipping launch update check; automatic checks are off"_s;
}

void tst_UpdateChecker::launchCheckWaitsFourHours()
{
    QFETCH(qint64, lastCheckAgo);
    QFETCH(bool, automatic);
    QFETCH(QString, skipped);
    LoopbackHttp server;
    server.answers["/appcast.xml"] = {200, appcast("0.2.0")};
    Updater updater(server.url(u"/appcast.xml"_s));
    if (lastCheckAgo >= 0)
        updater.defaults.setValue(u"SULastCheckTime"_s, updater.clock.now().addSecs(-lastCheckAgo));
    updater.defaults.setValue(u"SUEnableAutomaticChecks"_s, automatic);
    updater.facade.start();
    if (!skipped.isEmpty())
        QTest::ignoreMessage(QtInfoMsg, qPrintable(skipped));
    updater.facade.launchCheck();
    // What a background check finds shows on the About page too.
    const auto state =
        skipped.isEmpty() ? UpdateChecker::State::updateAvailable : UpdateChecker::State::idle;
    QTest::qWait(200);
    QTRY_COMPARE(updater.checker.state(), state);
    QCOMPARE(server.requests.value("/appcast.xml").size(), skipped.isEmpty() ? 1 : 0);
}

void tst_UpdateChecker::automaticChecksComeDaily()
{
    Updater updater(QUrl(u"https://tarrow.example/appcast.xml"_s));
    const QDateTime lastCheck = updater.clock.now().addSecs(-3600);
    updater.defaults.setValue(u"SULastCheckTime"_s, lastCheck);
    updater.defaults.setValue(u"SUFeedURL"_s, u"https://elsewhere.example/feed"_s);
    updater.facade.start();
    QVERIFY(!updater.defaults.contains(u"SUFeedURL"_s));
    QCOMPARE(updater.facade.nextScheduledCheck(), lastCheck.addSecs(86400));
    updater.checker.setAutomaticChecks(false);
    QVERIFY(!updater.facade.nextScheduledCheck());
    QCOMPARE(updater.defaults.value(u"SUEnableAutomaticChecks"_s), QVariant(false));
}

void tst_UpdateChecker::aBuildWithoutAFeedOnlyAnswersFromTheStub()
{
    Updater updater {QUrl()};
    QTest::ignoreMessage(QtInfoMsg,
                         "update checks disabled for this build (no "
                         "BRDFeedURLOverride); not touching the appcast");
    updater.facade.start();
    updater.facade.launchCheck();
    QVERIFY(!updater.facade.nextScheduledCheck());
    QTest::ignoreMessage(QtInfoMsg,
                         "checkForUpdatesNow ignored: update checks disabled for this build");
    updater.checker.checkNow();
    QCOMPARE(updater.checker.state(), UpdateChecker::State::idle);
    QVERIFY(!updater.checker.updatesEnabled());
    QVERIFY(!updater.facade.lastUpdateCheckDate());

    qputenv(UpdateChecker::stubVariable, "updateAvailable:2.0:https://tarrow.example/2.0");
    QVERIFY(updater.checker.updatesEnabled());
    updater.checker.checkNow();
    QCOMPARE(updater.shown(),
             u"settings.about.updates.available %@ 2.0 https://tarrow.example/2.0"_s);
    qunsetenv(UpdateChecker::stubVariable);
}

QTEST_GUILESS_MAIN(tst_UpdateChecker)
#include "tst_updatechecker.moc"

// Added calendars read by the iCalendar provider: feeds fetched from a real HTTP server on
// loopback (ETag and Last-Modified revalidation, redirects, webcal over plain http, and every way
// a feed can fail: an HTML page, an error status, a timeout, an oversized answer, a redirect to a
// file, a closed port), each failure keeping the last good copy; the cached copy shown after a
// restart without the network; local files read again when they change or vanish.
#include "calendar/SubscriptionStore.h"
#include "platform/calendars/IcsProvider.h"
#include "storage/FileAccess.h"
#include "storage/PathProvider.h"

#include "FeedServer.h"
#include "support/FakeClock.h"
#include "support/Fixtures.h"

#include <QFile>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

using Behaviour = QList<std::pair<QString, QString>>;
const QDateTime start = QDateTime(QDate(2025, 3, 2), QTime(12, 0), Qt::UTC);

} // namespace

class TestIcsProvider : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void fetchesOnceAndRevalidates();
    void aBrokenFeedKeepsItsLastGoodCopy_data();
    void aBrokenFeedKeepsItsLastGoodCopy();
    void followsRedirectsOnTheWeb();
    void fetchesWebcalOverPlainHttpWhenTlsFails();
    void showsTheCachedCopyAfterARestartWithoutTheNetwork();
    void readsLocalFilesAgainWhenTheyChange();
    void removingACalendarDropsItsCache();

private:
    std::unique_ptr<IcsProvider> makeProvider();
    CalendarSubscription add(const QString &location);
    // The number of occurrences in March and April 2025 of every calendar.
    qsizetype occurrenceCount();
    bool settle()
    {
        return QTest::qWaitFor([this] { return !m_provider->isBusy(); }, 10'000);
    }

    std::unique_ptr<TempPathProvider> m_paths;
    DiskFileAccess m_files;
    FakeClock m_clock {start};
    std::unique_ptr<SubscriptionStore> m_subscriptions;
    QNetworkAccessManager m_network;
    std::unique_ptr<IcsProvider> m_provider;
    std::unique_ptr<FeedServer> m_server;
};

void TestIcsProvider::init()
{
    m_paths = std::make_unique<TempPathProvider>();
    m_clock.set(start);
    m_subscriptions = std::make_unique<SubscriptionStore>(*m_paths, m_files, m_clock);
    m_server = std::make_unique<FeedServer>();
    QVERIFY2(m_server->isRunning(), "the loopback feed server did not start (python3)");
    QVERIFY(m_server->set(
        u"/team.ics"_s,
        {{u"mode"_s, u"ok"_s},
         {u"body"_s, QString::fromUtf8(fixtureBytes(u"calendars/weekly-berlin.ics"_s))}}));
    m_provider = makeProvider();
}

void TestIcsProvider::cleanup()
{
    m_provider.reset();
    m_server.reset();
}

std::unique_ptr<IcsProvider> TestIcsProvider::makeProvider()
{
    IcsProvider::Options options;
    options.cacheDirectory = QDir(m_paths->supportDirectory()).filePath(u"cache"_s);
    options.webAccountTitle = u"Subscriptions"_s;
    options.filesAccountTitle = u"On this computer"_s;
    options.limits.timeoutMs = 1000;
    options.limits.maxBytes = 1024 * 1024;
    return std::make_unique<IcsProvider>(*m_subscriptions, m_network, m_files, m_clock, options);
}

CalendarSubscription TestIcsProvider::add(const QString &location)
{
    QString error;
    const auto added = m_subscriptions->add(location, {}, m_paths->supportDirectory(), &error);
    if (!added)
        qWarning() << error;
    return added.value_or(CalendarSubscription());
}

qsizetype TestIcsProvider::occurrenceCount()
{
    QSet<QString> ids;
    for (const CalendarInfo &calendar : m_provider->calendars())
        ids.insert(calendar.id);
    QFuture<QList<ProviderOccurrence>> read =
        m_provider->occurrences({ids,
                                 QDateTime(QDate(2025, 3, 1), QTime(0, 0), Qt::UTC),
                                 QDateTime(QDate(2025, 5, 1), QTime(0, 0), Qt::UTC),
                                 {}});
    read.waitForFinished();
    return read.result().size();
}

void TestIcsProvider::fetchesOnceAndRevalidates()
{
    QSignalSpy changed(m_provider.get(), &CalendarProvider::changed);
    const CalendarSubscription team = add(m_server->url(u"/team.ics"_s));
    QVERIFY(settle());
    QCOMPARE(m_provider->status(team.id).problem, SubscriptionProblem::none);
    QCOMPARE(m_provider->status(team.id).lastSuccess, start);
    QVERIFY(m_provider->hasCopy(team.id));
    QVERIFY(!changed.isEmpty());
    const CalendarInfo info = m_provider->calendars().value(0);
    QCOMPARE(info.title, u"Team"_s); // the feed's own name
    QCOMPARE(info.accountTitle, u"Subscriptions"_s);
    QCOMPARE(info.accountKind, CalendarAccountKind::subscribed);
    QVERIFY(info.isSubscribed);
    QCOMPARE(occurrenceCount(), 11);

    // Not due yet: nothing is fetched.
    m_clock.advance(60);
    m_provider->refresh();
    QVERIFY(settle());
    QCOMPARE(m_server->log(u"/team.ics"_s).size(), 1);

    // Due: asked again with the validators, answered 304.
    m_clock.advance(3600);
    m_provider->refresh();
    QVERIFY(settle());
    const QList<QByteArray> log = m_server->log(u"/team.ics"_s);
    QCOMPARE(log.size(), 2);
    QVERIFY2(log.last().contains("If-None-Match") && log.last().contains("If-Modified-Since"),
             log.last().constData());
    QCOMPARE(m_provider->status(team.id).lastSuccess, start.addSecs(3660));
    QCOMPARE(occurrenceCount(), 11);
}

void TestIcsProvider::aBrokenFeedKeepsItsLastGoodCopy_data()
{
    QTest::addColumn<Behaviour>("behaviour");
    QTest::addColumn<SubscriptionProblem>("problem");
    QTest::addColumn<QString>("detail");

    QTest::newRow("a sign-in page instead of the calendar")
        << Behaviour {{u"mode"_s, u"html"_s}} << SubscriptionProblem::notCalendar << QString();
    QTest::newRow("a server error") << Behaviour {{u"mode"_s, u"status"_s}, {u"code"_s, u"503"_s}}
                                    << SubscriptionProblem::httpStatus << u"503"_s;
    QTest::newRow("no answer in time")
        << Behaviour {{u"mode"_s, u"slow"_s}} << SubscriptionProblem::timedOut << QString();
    QTest::newRow("too large, announced")
        << Behaviour {{u"mode"_s, u"big"_s}, {u"size"_s, u"3000000"_s}}
        << SubscriptionProblem::tooLarge << u"1"_s;
    QTest::newRow("too large, not announced")
        << Behaviour {{u"mode"_s, u"big"_s}, {u"size"_s, u"3000000"_s}, {u"announce"_s, u"0"_s}}
        << SubscriptionProblem::tooLarge << u"1"_s;
    QTest::newRow("a redirect to a file")
        << Behaviour {{u"mode"_s, u"redirect"_s}, {u"to"_s, u"file:///etc/passwd"_s}}
        << SubscriptionProblem::redirectRefused << u"file:///etc/passwd"_s;
}

void TestIcsProvider::aBrokenFeedKeepsItsLastGoodCopy()
{
    QFETCH(Behaviour, behaviour);
    QFETCH(SubscriptionProblem, problem);
    QFETCH(QString, detail);
    const CalendarSubscription team = add(m_server->url(u"/team.ics"_s));
    QVERIFY(settle());
    QCOMPARE(occurrenceCount(), 11);

    QVERIFY(m_server->set(u"/team.ics"_s, behaviour));
    m_clock.advance(3600);
    m_provider->reload(team.id);
    QVERIFY(settle());
    const SubscriptionStatus status = m_provider->status(team.id);
    QCOMPARE(status.problem, problem);
    QCOMPARE(status.detail, detail);
    QCOMPARE(status.lastAttempt, start.addSecs(3600));
    QCOMPARE(status.lastSuccess, start);
    QCOMPARE(occurrenceCount(), 11);
    // The problem is kept with the cache, for the next start and the command line.
    QCOMPARE(makeProvider()->status(team.id).problem, problem);
}

void TestIcsProvider::followsRedirectsOnTheWeb()
{
    QVERIFY(m_server->set(u"/old.ics"_s,
                          {{u"mode"_s, u"redirect"_s}, {u"to"_s, m_server->url(u"/team.ics"_s)}}));
    const CalendarSubscription moved = add(m_server->url(u"/old.ics"_s));
    QVERIFY(settle());
    QCOMPARE(m_provider->status(moved.id).problem, SubscriptionProblem::none);
    QCOMPARE(occurrenceCount(), 11);

    // A closed port: the connection is refused.
    QTcpServer closed;
    QVERIFY(closed.listen(QHostAddress::LocalHost));
    const quint16 port = closed.serverPort();
    closed.close();
    const CalendarSubscription gone = add(u"http://127.0.0.1:%1/x.ics"_s.arg(port));
    QVERIFY(settle());
    QCOMPARE(m_provider->status(gone.id).problem, SubscriptionProblem::unreachable);
}

void TestIcsProvider::fetchesWebcalOverPlainHttpWhenTlsFails()
{
    const CalendarSubscription team = add(m_server->url(u"/team.ics"_s, u"webcal"_s));
    QVERIFY(settle());
    QCOMPARE(m_provider->status(team.id).problem, SubscriptionProblem::none);
    QCOMPARE(occurrenceCount(), 11);
}

void TestIcsProvider::showsTheCachedCopyAfterARestartWithoutTheNetwork()
{
    const CalendarSubscription team = add(m_server->url(u"/team.ics"_s));
    QVERIFY(settle());
    m_provider.reset();
    m_server.reset(); // no network from here on

    m_clock.advance(60);
    m_provider = makeProvider();
    QVERIFY(settle());
    QVERIFY(m_provider->hasCopy(team.id));
    QCOMPARE(m_provider->calendars().value(0).title, u"Team"_s);
    QCOMPARE(occurrenceCount(), 11);
    // Due later: the fetch fails, the copy stays.
    m_clock.advance(3600);
    m_provider->refresh();
    QVERIFY(settle());
    QCOMPARE(m_provider->status(team.id).problem, SubscriptionProblem::unreachable);
    QCOMPARE(occurrenceCount(), 11);
}

void TestIcsProvider::readsLocalFilesAgainWhenTheyChange()
{
    const QString path = QDir(m_paths->supportDirectory()).filePath(u"mine.ics"_s);
    const auto write = [&](const QByteArray &bytes) {
        QFile file(path);
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    };
    QVERIFY(write(fixtureBytes(u"calendars/weekly-berlin.ics"_s)));
    const CalendarSubscription mine = add(path);
    QVERIFY(settle());
    QCOMPARE(occurrenceCount(), 11);
    QCOMPARE(m_provider->calendars().value(0).accountKind, CalendarAccountKind::onThisMac);

    QSignalSpy changed(m_provider.get(), &CalendarProvider::changed);
    QVERIFY(write(fixtureBytes(u"calendars/all-day.ics"_s)));
    QVERIFY(changed.wait(5000));
    QVERIFY(settle());
    QCOMPARE(occurrenceCount(), 9); // the birthday, the offsite, seven Fridays off

    // Broken or gone: the last copy stays on screen, the problem is told.
    QVERIFY(write("<html>"));
    QTRY_COMPARE(m_provider->status(mine.id).problem, SubscriptionProblem::notCalendar);
    QVERIFY(QFile::remove(path));
    m_clock.advance(10);
    m_provider->refresh();
    QTRY_COMPARE(m_provider->status(mine.id).problem, SubscriptionProblem::fileUnreadable);
    QVERIFY(settle());
    QCOMPARE(occurrenceCount(), 9);
}

void TestIcsProvider::removingACalendarDropsItsCache()
{
    const CalendarSubscription team = add(m_server->url(u"/team.ics"_s));
    QVERIFY(settle());
    const QString copy =
        QDir(m_paths->supportDirectory()).filePath(u"cache/%1.ics"_s.arg(team.shortID()));
    QVERIFY(QFile::exists(copy));
    QString error;
    QVERIFY(m_subscriptions->remove(team.id, &error));
    QVERIFY(m_provider->calendars().isEmpty());
    QVERIFY(!QFile::exists(copy));
    QCOMPARE(occurrenceCount(), 0);
}

QTEST_GUILESS_MAIN(TestIcsProvider)
#include "tst_icsprovider.moc"

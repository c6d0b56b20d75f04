// The iCalendar provider's added calendars: a moved webcal feed fetched over plain http,
// revalidated and removed; every way a feed can fail keeping the last good copy, also after a
// restart; local files read again when they change or vanish.
#include "calendar/CalendarRules.h"
#include "calendar/SubscriptionStore.h"
#include "platform/calendars/IcsProvider.h"
#include "storage/FileAccess.h"
#include "storage/PathProvider.h"

#include "support/FakeClock.h"
#include "support/Fixtures.h"
#include "support/LoopbackHttp.h"

#include <QFile>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using Answer = LoopbackHttp::Answer;

static const QDateTime start = QDateTime(QDate(2025, 3, 2), QTime(12, 0), Qt::UTC);

class TestIcsProvider : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void fetchesAndRevalidates();
    void aBrokenFeedKeepsItsLastGoodCopy_data();
    void aBrokenFeedKeepsItsLastGoodCopy();
    void readsLocalFilesAgainWhenTheyChange();

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
    std::unique_ptr<LoopbackHttp> m_server;
};

void TestIcsProvider::init()
{
    m_paths = std::make_unique<TempPathProvider>();
    m_clock.set(start);
    m_subscriptions = std::make_unique<SubscriptionStore>(*m_paths, m_files, m_clock);
    m_server = std::make_unique<LoopbackHttp>();
    m_server->answers["/team.ics"] = {
        200, fixtureBytes(u"calendars/weekly-berlin.ics"_s),
        "ETag: \"1\"\r\nLast-Modified: Sun, 02 Mar 2025 10:00:00 GMT\r\n"};
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

void TestIcsProvider::fetchesAndRevalidates()
{
    // A webcal link tries https first; this server only speaks plain http, and the feed has moved.
    m_server->answers["/old.ics"] = {
        302, {}, "Location: " + m_server->url(u"/team.ics"_s).toEncoded() + "\r\n"};
    QSignalSpy changed(m_provider.get(), &CalendarProvider::changed);
    const CalendarSubscription team = add(m_server->url(u"/old.ics"_s, u"webcal"_s).toString());
    QVERIFY(settle());
    QCOMPARE(m_provider->status(team.id).problem, SubscriptionProblem::none);
    QCOMPARE(m_provider->status(team.id).lastSuccess, start);
    QVERIFY(!changed.isEmpty());
    const CalendarInfo info = m_provider->calendars().value(0); // named as the feed names itself
    QCOMPARE(info.title + u", "_s + info.accountTitle + u", "_s
                 + accountKindRawValue(info.accountKind),
             u"Team, Subscriptions, subscribed"_s);
    QCOMPARE(occurrenceCount(), 11);

    // Not due yet: nothing is fetched. Due: asked again with the validators, answered 304.
    m_clock.advance(60);
    m_provider->refresh();
    QVERIFY(settle());
    QCOMPARE(m_server->requests.value("/team.ics").size(), 1);
    m_server->answers["/team.ics"] = {304};
    m_clock.advance(3600);
    m_provider->refresh();
    QVERIFY(settle());
    const QList<QByteArray> requests = m_server->requests.value("/team.ics");
    QCOMPARE(requests.size(), 2);
    QVERIFY2(requests.last().contains("If-None-Match: \"1\"")
                 && requests.last().contains("If-Modified-Since: Sun, 02 Mar 2025"),
             requests.last().constData());
    QCOMPARE(m_provider->status(team.id).lastSuccess, start.addSecs(3660));
    QCOMPARE(occurrenceCount(), 11);

    // Removed: its copy goes too.
    const QString copy = m_paths->supportDirectory() + u"/cache/%1.ics"_s.arg(team.shortID());
    QVERIFY(QFile::exists(copy));
    QString error;
    QVERIFY(m_subscriptions->remove(team.id, &error));
    QVERIFY(m_provider->calendars().isEmpty() && !QFile::exists(copy));
}

void TestIcsProvider::aBrokenFeedKeepsItsLastGoodCopy_data()
{
    QTest::addColumn<Answer>("answer"); // status 0: the server is gone
    QTest::addColumn<SubscriptionProblem>("problem");
    QTest::addColumn<QString>("detail");

    const QByteArray huge(3'000'000, 'X');
    QTest::newRow("a sign-in page instead of the calendar")
        << Answer {200, "<html><body>Sign in first</body></html>"}
        << SubscriptionProblem::notCalendar << QString();
    QTest::newRow("a server error") << Answer {503} << SubscriptionProblem::httpStatus << u"503"_s;
    QTest::newRow("no answer in time")
        << Answer {200, {}, {}, true} << SubscriptionProblem::timedOut << QString();
    QTest::newRow("too large, announced")
        << Answer {200, huge} << SubscriptionProblem::tooLarge << u"1"_s;
    QTest::newRow("too large, not announced")
        << Answer {200, huge, {}, false, false} << SubscriptionProblem::tooLarge << u"1"_s;
    QTest::newRow("a redirect to a file")
        << Answer {302, {}, "Location: file:///etc/passwd\r\n"}
        << SubscriptionProblem::redirectRefused << u"file:///etc/passwd"_s;
    QTest::newRow("the server gone")
        << Answer {0} << SubscriptionProblem::unreachable << u"Connection refused"_s;
}

void TestIcsProvider::aBrokenFeedKeepsItsLastGoodCopy()
{
    QFETCH(Answer, answer);
    QFETCH(SubscriptionProblem, problem);
    QFETCH(QString, detail);
    const CalendarSubscription team = add(m_server->url(u"/team.ics"_s).toString());
    QVERIFY(settle());
    QCOMPARE(occurrenceCount(), 11);

    m_server->answers["/team.ics"] = answer;
    if (answer.status == 0)
        m_server.reset();
    m_clock.advance(3600);
    m_provider->reload(team.id);
    QVERIFY(settle());
    const SubscriptionStatus status = m_provider->status(team.id);
    QCOMPARE(status.problem, problem);
    QCOMPARE(status.detail, detail);
    QCOMPARE(status.lastAttempt, start.addSecs(3600));
    QCOMPARE(status.lastSuccess, start);
    QCOMPARE(occurrenceCount(), 11);
    // After a restart the copy and the problem come back from the cache.
    m_provider = makeProvider();
    QCOMPARE(m_provider->status(team.id).problem, problem);
    QVERIFY(settle());
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

QTEST_GUILESS_MAIN(TestIcsProvider)
#include "tst_icsprovider.moc"

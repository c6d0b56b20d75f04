// "calendars.json": adding files and links (what is refused and why), and a file that cannot be
// read kept aside before it is replaced (ids given in part: tst_cli; the user's addresses:
// tst_calendarsettingsmodel).
#include "calendar/SubscriptionStore.h"
#include "storage/PathProvider.h"

#include "support/FakeClock.h"
#include "support/FaultyFileAccess.h"
#include "support/Fixtures.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestSubscriptionStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_paths = std::make_unique<TempPathProvider>();
        m_file = QDir(m_paths->supportDirectory()).filePath(u"team.ics"_s);
        QFile ics(m_file);
        QVERIFY(ics.open(QIODevice::WriteOnly));
        ics.write("BEGIN:VCALENDAR\r\nEND:VCALENDAR\r\n");
    }
    void addsWhatCanBeRead_data();
    void addsWhatCanBeRead();
    void anUnreadableFileIsKeptAsideBeforeItIsReplaced();

private:
    std::unique_ptr<TempPathProvider> m_paths;
    FaultyFileAccess m_files;
    FakeClock m_clock;
    QString m_file;
};

void TestSubscriptionStore::addsWhatCanBeRead_data()
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<QString>("kept"); // the link kept, or the start of the refusal
    QTest::newRow("an https link")
        << u"https://example.com/team.ics"_s << u"https://example.com/team.ics"_s;
    QTest::newRow("a webcal link")
        << u" webcal://example.com/a/../team.ics "_s << u"webcal://example.com/team.ics"_s;
    QTest::newRow("a relative path") << u"team.ics"_s << u"file://%1"_s;
    QTest::newRow("a file link") << u"file://%1"_s << u"file://%1"_s;
    QTest::newRow("a missing file") << u"nothere.ics"_s << u"no file"_s;
    QTest::newRow("a folder") << u"."_s << u"\""_s;
    QTest::newRow("a link without host") << u"https:///team.ics"_s << u"the link"_s;
    QTest::newRow("another scheme") << u"javascript:alert(1)"_s << u"only iCalendar files"_s;
    QTest::newRow("nothing") << u"  "_s << u"give a file"_s;
}

void TestSubscriptionStore::addsWhatCanBeRead()
{
    QFETCH(QString, input);
    QFETCH(QString, kept);
    input = input.arg(m_file);
    kept = kept.arg(m_file);
    SubscriptionStore store(*m_paths, m_files, m_clock);
    QString error;
    const auto added = store.add(input, u"Team"_s, m_paths->supportDirectory(), &error);
    if (!kept.contains(u':')) {
        QVERIFY(!added);
        QVERIFY2(error.startsWith(kept), qPrintable(error));
        QVERIFY(store.subscriptions().isEmpty());
        return;
    }
    QVERIFY2(added, qPrintable(error));
    QCOMPARE(added->url.toString(), kept);
    QCOMPARE(added->addedAt, m_clock.now());
    // Written at once and read back the same (a second time refused: tst_calendarsettingsmodel).
    QCOMPARE(SubscriptionStore(*m_paths, m_files, m_clock).subscriptions(), QList {*added});
}

void TestSubscriptionStore::anUnreadableFileIsKeptAsideBeforeItIsReplaced()
{
    const QString path = QDir(m_paths->supportDirectory()).filePath(u"calendars.json"_s);
    QFile broken(path);
    QVERIFY(broken.open(QIODevice::WriteOnly));
    broken.write("{\"subscriptions\": [{\"id\": 12}");
    broken.close();

    SubscriptionStore store(*m_paths, m_files, m_clock);
    QVERIFY(store.subscriptions().isEmpty());
    QVERIFY(!store.loadError().isEmpty());
    // A failed copy stops the save: the user's file stays as it is.
    QString error;
    m_files.failCopies = true;
    QVERIFY(!store.add(u"https://example.com/a.ics"_s, {}, {}, &error));
    QVERIFY2(error.startsWith(u"could not keep a copy"), qPrintable(error));
    QCOMPARE(readFile(path), QByteArray("{\"subscriptions\": [{\"id\": 12}"));
    m_files.failCopies = false;
    QVERIFY(store.add(u"https://example.com/a.ics"_s, {}, {}, &error));
    const QStringList aside =
        QDir(m_paths->supportDirectory()).entryList({u"calendars (unreadable *).json"_s});
    QCOMPARE(aside.size(), 1);
    QCOMPARE(SubscriptionStore(*m_paths, m_files, m_clock).subscriptions().size(), 1);
}

QTEST_GUILESS_MAIN(TestSubscriptionStore)
#include "tst_subscriptionstore.moc"

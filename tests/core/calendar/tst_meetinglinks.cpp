#include "calendar/MeetingLinks.h"

#include <QTest>

class TestMeetingLinks : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void links_data();
    void links();
    void scanOrder_data();
    void scanOrder();
};

void TestMeetingLinks::links_data()
{
    QTest::addColumn<QString>("url");
    QTest::addColumn<bool>("meeting"); // joined with the Join button
    QTest::addColumn<bool>("safe"); // opened when clicked
    QTest::newRow("a known host") << "https://meet.google.com/abc-defg-hij" << true << true;
    QTest::newRow("a company's sub-domain of a known host")
        << "https://acme.zoom.us/j/1" << true << true;
    QTest::newRow("upper-case hosts match")
        << "https://TEAMS.MICROSOFT.COM/l/meetup" << true << true;
    QTest::newRow("a longer label ending in a known name is no meeting")
        << "https://notzoom.us/j/1" << false << true;
    QTest::newRow("a known name with another ending is no meeting")
        << "https://zoom.us.evil.example/" << false << true;
    QTest::newRow("a meeting app's own scheme")
        << "zoommtg://zoom.us/join?confno=1" << true << true;
    QTest::newRow("a link without a host is neither") << "mailto:someone@zoom.us" << false << false;
    QTest::newRow("files are refused") << "file:///etc/passwd" << false << false;
    QTest::newRow("scripts are refused") << "javascript:alert(1)" << false << false;
}

void TestMeetingLinks::links()
{
    QFETCH(QString, url);
    QFETCH(bool, meeting);
    QCOMPARE(MeetingLinks::isMeetingLink(QUrl(url)), meeting);
    QCOMPARE(MeetingLinks::labelKey(QUrl(url)),
             meeting ? "list.row.join_meeting" : "list.row.open_link");
    QTEST(MeetingLinks::isSafeToOpen(QUrl(url)), "safe");
}

void TestMeetingLinks::scanOrder_data()
{
    QTest::addColumn<QStringList>("fields"); // the URL field, the location, the notes
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const QStringList &fields, const QString &expected) {
        QTest::newRow(name) << fields << expected;
    };
    row("the URL field wins when it is a meeting",
        {"https://zoom.us/j/1", "https://meet.google.com/x", ""}, "https://zoom.us/j/1");
    row("the first meeting link of the text, after plain links",
        {"", "", "Docs www.example.com/doc, call (https://teams.live.com/meet/12)"},
        "https://teams.live.com/meet/12");
}

void TestMeetingLinks::scanOrder()
{
    QFETCH(QStringList, fields);
    const auto field = fields[0].isEmpty() ? std::nullopt : std::optional<QUrl>(QUrl(fields[0]));
    const auto found = MeetingLinks::findMeetingLink(field, fields[1], fields[2]);
    QTEST(found ? found->toString() : QString(), "expected");
}

QTEST_GUILESS_MAIN(TestMeetingLinks)
#include "tst_meetinglinks.moc"

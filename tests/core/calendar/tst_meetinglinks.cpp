#include "calendar/MeetingLinks.h"

#include <QTest>

class TestMeetingLinks : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void hosts_data();
    void hosts();
    void scanOrder_data();
    void scanOrder();
    void opening_data();
    void opening();
};

void TestMeetingLinks::hosts_data()
{
    QTest::addColumn<QString>("url");
    QTest::addColumn<bool>("meeting");
    QTest::newRow("a known host") << "https://meet.google.com/abc-defg-hij" << true;
    QTest::newRow("a company's sub-domain of a known host") << "https://acme.zoom.us/j/1" << true;
    QTest::newRow("upper-case hosts match") << "https://TEAMS.MICROSOFT.COM/l/meetup" << true;
    QTest::newRow("a longer label ending in a known name does not")
        << "https://notzoom.us/j/1" << false;
    QTest::newRow("a known name with another ending does not")
        << "https://zoom.us.evil.example/" << false;
    QTest::newRow("a link without a host is no meeting") << "mailto:someone@zoom.us" << false;
}

void TestMeetingLinks::hosts()
{
    QFETCH(QString, url);
    QFETCH(bool, meeting);
    QCOMPARE(MeetingLinks::isMeetingLink(QUrl(url)), meeting);
    QCOMPARE(MeetingLinks::labelKey(QUrl(url)),
             meeting ? "list.row.join_meeting" : "list.row.open_link");
}

void TestMeetingLinks::scanOrder_data()
{
    QTest::addColumn<QString>("urlField");
    QTest::addColumn<QString>("location");
    QTest::addColumn<QString>("notes");
    QTest::addColumn<QString>("expected");
    QTest::newRow("the URL field wins when it is a meeting") << "https://zoom.us/j/1"
                                                             << "https://meet.google.com/x"
                                                             << ""
                                                             << "https://zoom.us/j/1";
    QTest::newRow("an unknown URL field does not stop the scan")
        << "https://example.com/agenda"
        << ""
        << "Join: https://meet.jit.si/Standup."
        << "https://meet.jit.si/Standup";
    QTest::newRow("location comes before notes") << ""
                                                 << "Room 4 / meet.google.com/abc-defg-hij"
                                                 << "https://zoom.us/j/9"
                                                 << "https://meet.google.com/abc-defg-hij";
    QTest::newRow("the first meeting link of the text, after plain links")
        << ""
        << ""
        << "Docs www.example.com/doc, call (https://teams.live.com/meet/12)"
        << "https://teams.live.com/meet/12";
    QTest::newRow("nothing that is a meeting") << ""
                                               << "Room 4"
                                               << "see https://example.com"
                                               << "";
}

void TestMeetingLinks::scanOrder()
{
    QFETCH(QString, urlField);
    QFETCH(QString, location);
    QFETCH(QString, notes);
    QFETCH(QString, expected);
    const auto field = urlField.isEmpty() ? std::nullopt : std::optional<QUrl>(QUrl(urlField));
    const auto found = MeetingLinks::findMeetingLink(field, location, notes);
    QCOMPARE(found ? found->toString() : QString(), expected);
}

void TestMeetingLinks::opening_data()
{
    QTest::addColumn<QString>("url");
    QTest::addColumn<bool>("safe");
    QTest::newRow("web links") << "https://example.com/a" << true;
    QTest::newRow("a meeting app's scheme") << "zoommtg://zoom.us/join?confno=1" << true;
    QTest::newRow("files are refused") << "file:///etc/passwd" << false;
    QTest::newRow("other programs' handlers are refused") << "ssh://host" << false;
    QTest::newRow("scripts are refused") << "javascript:alert(1)" << false;
    QTest::newRow("a web link without a host is refused") << "https:///path" << false;
}

void TestMeetingLinks::opening()
{
    QFETCH(QString, url);
    QFETCH(bool, safe);
    QCOMPARE(MeetingLinks::isSafeToOpen(QUrl(url)), safe);
}

QTEST_GUILESS_MAIN(TestMeetingLinks)
#include "tst_meetinglinks.moc"

// iCalendar documents read with libical: recurrences (RRULE, RDATE, EXDATE, moved and cancelled
// overrides) expanded across a DST change, the zones a feed can name, all-day dates as local days,
// the user's answer to an invitation and the meeting link.
#include "platform/calendars/IcsCalendar.h"

#include "support/Fixtures.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QDateTime utc(const QString &text)
{
    return QDateTime::fromString(text, Qt::ISODate).toUTC();
}

QString iso(const QDateTime &instant)
{
    return instant.toUTC().toString(u"yyyy-MM-ddTHH:mmZ"_s);
}

// One line per occurrence: title, start, the scheduled start when it was moved, end, zone, flags.
QString describe(const ProviderOccurrence &o)
{
    QString line = o.title + u' ' + iso(o.start);
    if (o.ref.occurrenceDate != o.start)
        line += u" for "_s + iso(o.ref.occurrenceDate);
    line += o.end ? u" to "_s + iso(*o.end) : u" no end"_s;
    line += u' ' + o.timeZoneID;
    if (o.isAllDay)
        line += u" all-day"_s;
    if (o.isCancelled)
        line += u" cancelled"_s;
    return line;
}

IcsReadContext context()
{
    return {u"ics-test"_s,
            u"Test"_s,
            u"Files"_s,
            std::nullopt,
            {u"me@example.com"_s},
            QTimeZone("Europe/Istanbul")};
}

std::shared_ptr<IcsCalendar> fixture(const QString &name)
{
    QString error; // a fixture that cannot be read fails the test's QVERIFY
    return IcsCalendar::parse(fixtureBytes(u"calendars/"_s + name), &error);
}

QStringList read(const IcsCalendar &calendar, const QString &from, const QString &to)
{
    QList<ProviderOccurrence> occurrences = calendar.occurrences(context(), utc(from), utc(to));
    std::sort(occurrences.begin(), occurrences.end(),
              [](const auto &a, const auto &b) { return a.start < b.start; });
    QStringList lines;
    for (const ProviderOccurrence &occurrence : occurrences)
        lines.append(describe(occurrence));
    return lines;
}

} // namespace

class TestIcsCalendar : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void expandsInTheWindow_data();
    void expandsInTheWindow();
    void readsTheCalendarItself();
    void readsInvitationsAndMeetingLinks();
};

void TestIcsCalendar::expandsInTheWindow_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::addColumn<QStringList>("expected");

    // Berlin switches to summer time on 30 March: 09:00 is 08:00Z before and 07:00Z after.
    QTest::newRow("a weekly meeting keeps its wall time across DST, with exceptions")
        << u"weekly-berlin.ics"_s << u"2025-03-01T00:00Z"_s << u"2025-04-20T00:00Z"_s
        << QStringList {
               u"Planning 2025-03-01T09:00Z to 2025-03-01T10:00Z Europe/Berlin"_s,
               u"Stand-up 2025-03-03T08:00Z to 2025-03-03T08:15Z Europe/Berlin"_s,
               u"Stand-up 2025-03-10T08:00Z to 2025-03-10T08:15Z Europe/Berlin"_s,
               // 17 March is an EXDATE; 24 March moved to the 25th at 14:00.
               u"Stand-up (moved) 2025-03-25T13:00Z for 2025-03-24T08:00Z to 2025-03-25T13:30Z Europe/Berlin"_s,
               u"Stand-up 2025-03-29T09:00Z to 2025-03-29T09:15Z Europe/Berlin"_s, // RDATE
               u"Stand-up 2025-03-31T07:00Z to 2025-03-31T07:15Z Europe/Berlin"_s,
               u"Planning 2025-04-01T08:00Z to 2025-04-01T09:00Z Europe/Berlin"_s,
               // The June instance, brought forward into the window.
               u"Planning (brought forward) 2025-04-02T08:00Z for 2025-06-01T08:00Z to 2025-04-02T09:00Z Europe/Berlin"_s,
               u"Stand-up 2025-04-07T07:00Z to 2025-04-07T07:15Z Europe/Berlin"_s,
               u"Stand-up 2025-04-14T07:00Z no end Europe/Berlin cancelled"_s,
           };
    QTest::newRow("UNTIL and COUNT end a series")
        << u"weekly-berlin.ics"_s << u"2025-04-20T00:00Z"_s << u"2025-08-01T00:00Z"_s
        << QStringList {
               u"Stand-up 2025-04-21T07:00Z to 2025-04-21T07:15Z Europe/Berlin"_s,
               u"Planning 2025-05-01T08:00Z to 2025-05-01T09:00Z Europe/Berlin"_s,
           };
    QTest::newRow("zones: database, Windows name, UTC, the calendar's zone, unknown")
        << u"zones.ics"_s << u"2025-03-09T00:00Z"_s << u"2025-03-20T00:00Z"_s
        << QStringList {
               u"Outlook zone name 2025-03-12T08:00Z to 2025-03-12T09:00Z Europe/Berlin"_s,
               u"UTC, no end 2025-03-13T12:00Z no end UTC"_s,
               u"Floating, read in the calendar's zone 2025-03-14T00:00Z to 2025-03-14T01:00Z Asia/Tokyo"_s,
               u"Unknown zone, read as floating 2025-03-15T00:00Z no end Asia/Tokyo"_s,
               u"New York, no VTIMEZONE (EDT since 9 March) 2025-03-10T13:00Z to 2025-03-10T14:00Z America/New_York"_s,
           };
    // Dates are days of the user's zone (Istanbul, UTC+3), whatever zone the feed names.
    QTest::newRow("all-day dates start at the local midnight")
        << u"all-day.ics"_s << u"2025-03-10T00:00Z"_s << u"2025-03-22T00:00Z"_s
        << QStringList {
               u"Ada's birthday 2025-03-11T21:00Z to 2025-03-12T21:00Z Europe/Istanbul all-day"_s,
               u"Offsite 2025-03-12T21:00Z to 2025-03-14T21:00Z Europe/Istanbul all-day"_s,
               u"Friday off 2025-03-20T21:00Z to 2025-03-21T21:00Z Europe/Istanbul all-day"_s,
           };
}

void TestIcsCalendar::expandsInTheWindow()
{
    QFETCH(QString, file);
    QFETCH(QString, from);
    QFETCH(QString, to);
    QFETCH(QStringList, expected);
    const auto calendar = fixture(file);
    QVERIFY(calendar);
    QStringList lines = read(*calendar, from, to);
    if (file == u"zones.ics") // New York sorts by start; compare as sets
        std::sort(lines.begin(), lines.end()), std::sort(expected.begin(), expected.end());
    QCOMPARE(lines, expected);
}

void TestIcsCalendar::readsTheCalendarItself()
{
    const auto calendar = fixture(u"weekly-berlin.ics"_s);
    QVERIFY(calendar);
    const CalendarTint tint = calendar->color().value(); // #1BADF8FF: alpha last
    QCOMPARE((QList {qRound(tint.red * 255), qRound(tint.green * 255), qRound(tint.blue * 255)}),
             (QList {0x1B, 0xAD, 0xF8}));
    const ProviderOccurrence standup =
        calendar->occurrences(context(), utc(u"2025-03-03T00:00Z"_s), utc(u"2025-03-04T00:00Z"_s))
            .value(0);
    QCOMPARE(standup.ref.series, (CalendarSeriesRef {u"ics-test"_s, u"standup@example.com"_s}));
    QVERIFY(standup.isRecurring);
    QCOMPARE(standup.createdAt, utc(u"2025-02-01T12:00Z"_s));
}

void TestIcsCalendar::readsInvitationsAndMeetingLinks()
{
    const auto calendar = fixture(u"invitations.ics"_s);
    QVERIFY(calendar);
    // One line per event: the user's answer, the meeting link and the other link.
    const auto read = [&calendar](const IcsReadContext &context) {
        static const QStringList answers {u"not invited"_s, u"accepted"_s, u"tentative"_s,
                                          u"pending"_s, u"declined"_s};
        QStringList lines;
        for (const ProviderOccurrence &o : calendar->occurrences(
                 context, utc(u"2025-03-10T00:00Z"_s), utc(u"2025-03-11T00:00Z"_s))) {
            lines << QStringList {o.title, answers.at(int(o.participation)),
                                  o.meetingURL.value_or(QUrl()).toString(),
                                  o.externalURL.value_or(QUrl()).toString()}
                         .join(u", ");
        }
        lines.sort();
        return lines;
    };
    // The user is found by address, without case and without "mailto:"; a URL field that is no
    // meeting does not stop the scan; no PARTSTAT is a pending invitation.
    QCOMPARE(read(context()),
             (QStringList {
                 u"Called off, not invited, , "_s,
                 u"Declined review, declined, https://meet.google.com/abc-defg-hij, "
                 u"https://example.com/agenda"_s,
                 u"Maybe lunch, tentative, https://teams.microsoft.com/l/meetup-join/xyz, "_s,
                 u"New invitation, pending, https://acme.webex.com/meet/x, "
                 u"https://acme.webex.com/meet/x"_s,
                 u"No UID, not invited, , "_s,
                 u"Not invited myself, not invited, , "_s,
             }));
    IcsReadContext anonymous = context();
    anonymous.userAddresses.clear();
    QCOMPARE(read(anonymous).filter(u", not invited, "_s).size(), 6);

    // Without a UID the series is named by its title and start, the same on every read.
    const auto noUid = [](const IcsCalendar &from) {
        for (const ProviderOccurrence &o :
             from.occurrences(context(), utc(u"2025-03-10T14:00Z"_s), utc(u"2025-03-10T14:01Z"_s)))
            return o.ref.series.seriesID;
        return QString();
    };
    QVERIFY(noUid(*calendar).startsWith(u"local-"));
    QCOMPARE(noUid(*fixture(u"invitations.ics"_s)), noUid(*calendar));
}

QTEST_GUILESS_MAIN(TestIcsCalendar)
#include "tst_icscalendar.moc"

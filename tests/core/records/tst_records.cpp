// Decoding and encoding of the countdown record and its value types: the lenient rules of older
// files, the exact bytes written and lossless round trips.
#include "records/Event.h"
#include "json/IsoDate.h"
#include "json/JsonDocument.h"
#include "json/JsonWriter.h"

#include <QTest>

namespace {

// The keys every countdown record has, plus the given members.
QByteArray eventJson(const QByteArray &extra = {})
{
    return R"({"id": "6F1C9E0A-3B7D-4C2E-9A51-0D8E2F4B7C11", "title": "Trip",
        "targetDate": "2026-03-01T08:00:00Z", "includeTime": true, "timeZone": "Europe/Berlin",
        "createdAt": "2026-02-01T08:00:00Z", "celebrationAcknowledged": false)"
        + (extra.isEmpty() ? QByteArray() : ", " + extra) + "}";
}

std::optional<Event> decode(const QByteArray &json, QString *error = nullptr)
{
    const std::optional<JsonDocument> document = JsonDocument::parse(json, error);
    return document ? Event::fromJson(document->root(), error) : std::nullopt;
}

QByteArray encode(const Event &event)
{
    JsonWriter writer;
    event.toJson(writer);
    return writer.finish();
}

QDateTime at(const char *iso)
{
    return *IsoDate::parse(QByteArrayView(iso));
}

Event fullEvent()
{
    Event e;
    e.schemaVersion = 10;
    e.id = QUuid::fromString(QStringLiteral("0B6E1B2C-7D5F-4F6A-9C1E-2A3B4C5D6E7F"));
    e.title = QStringLiteral("Grand-mère’s 90th 🎂 \"party\"\n\\o/");
    e.targetDate = at("2026-07-14T16:30:00.125Z");
    e.includeTime = true;
    e.timeZone = QStringLiteral("Asia/Kolkata");
    e.icon = IconRef {QStringLiteral("birthday.cake.fill")};
    e.createdAt = at("2026-01-02T03:04:05.678Z");
    e.reachedAt = at("2026-07-14T16:30:01Z");
    e.celebrationAcknowledged = e.celebrationEnabled = e.notifyOnReach = true;
    e.recurrence = RecurrenceRule {RecurrenceRule::Frequency::weekly,
                                   {Weekday::monday, Weekday::friday},
                                   2,
                                   RecurrenceRule::End::onDate(at("2027-01-01T00:00:00Z"))};
    e.cycleAnchor = at("2026-07-07T16:30:00Z");
    e.note = QStringLiteral("Bring the photo album");
    e.link = QStringLiteral("https://meet.example.com/abc");
    e.reminderLeadMinutes = {15, 60, 1440};
    e.color = EventColor::teal;
    e.milestonesEnabled = true;
    return e;
}

} // namespace

class TestRecords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isoDates_data();
    void isoDates();
    void minimalEventTakesDefaultsAndWritesOnlyWhatIsSet();
    void eventDecoding_data();
    void eventDecoding();
    void eventRoundTrips();
};

void TestRecords::isoDates_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qint64>("msecs"); // -1: refused
    const auto row = [](const char *name, const char *text, qint64 msecs) {
        QTest::newRow(name) << QString::fromLatin1(text) << msecs;
    };
    // Whole seconds and three digits are what the app writes and the fixtures hold; a date alone
    // is refused (tst_cli: `add --date 2026-12-01` is an all-day event).
    row("With one fraction digit", "2026-03-01T08:00:00.5Z", 1772352000500);
    row("With an offset", "2026-03-01T10:00:00+02:00", 1772352000000);
    row("The 30th of February is refused", "2026-02-30T08:00:00Z", -1);
    row("No zone is refused", "2026-03-01T08:00:00", -1);
    // Four-digit years only: the first and last instant the files hold, and what older versions
    // wrote beyond them (-2: refused as out of range, which a loader tells apart).
    row("The first instant of the year 0001", "0001-01-01T00:00:00Z", IsoDate::MinMSecs);
    row("The last instant of the year 9999", "9999-12-31T23:59:59.999Z", IsoDate::MaxMSecs);
    row("The year 10000 as older versions wrote it", "10000-01-01T04:30:00.000Z", -2);
    row("A year before 0001 as older versions wrote it", "-0001-12-31T00:00:00.000Z", -2);
    row("An offset that carries 9999 into 10000 in UTC", "9999-12-31T23:30:00-05:00", -2);
}

void TestRecords::isoDates()
{
    QFETCH(QString, text);
    QFETCH(qint64, msecs);
    const std::optional<QDateTime> parsed = IsoDate::parse(QStringView(text));
    QCOMPARE(parsed ? parsed->toMSecsSinceEpoch() : IsoDate::isOutOfRange(text) ? -2 : -1, msecs);
    if (parsed) // what reads also writes, and back
        QCOMPARE(IsoDate::parse(QStringView(IsoDate::format(*parsed))), parsed);
}

void TestRecords::minimalEventTakesDefaultsAndWritesOnlyWhatIsSet()
{
    const std::optional<Event> event = decode(eventJson());
    QVERIFY(event);
    QCOMPARE(encode(*event), QByteArray(R"({
    "celebrationAcknowledged": false,
    "celebrationEnabled": false,
    "createdAt": "2026-02-01T08:00:00.000Z",
    "direction": "until",
    "id": "6F1C9E0A-3B7D-4C2E-9A51-0D8E2F4B7C11",
    "includeTime": true,
    "milestonesEnabled": false,
    "notifyOnReach": false,
    "reminderLeadMinutes": [
    ],
    "schemaVersion": 1,
    "targetDate": "2026-03-01T08:00:00.000Z",
    "timeZone": "Europe/Berlin",
    "title": "Trip"
}
)"));
}

void TestRecords::eventDecoding_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("icon"); // "fails": the record is refused
    const auto row = [](const char *name, const QByteArray &json, const char *icon) {
        QTest::newRow(name) << json << QString::fromLatin1(icon);
    };
    const auto icon = [](const char *kind) {
        return eventJson(R"("icon": {"kind": ")" + QByteArray(kind)
                         + R"(", "value": "gift.fill"})");
    };
    row("An emoji icon of older files becomes the party popper", icon("emoji"),
        "party.popper.fill");
    row("A symbol icon keeps its name", icon("symbol"), "gift.fill");
    row("An unknown icon kind fails the record", icon("sticker"), "fails");
    row("A colour this version does not know is no colour", eventJson(R"("color": "magenta")"), "");
    row("A missing title fails the record", eventJson().replace(R"("title": "Trip",)", ""),
        "fails");
    // A number that does not fit its field is an error, never 0 or a wrapped value.
    row("A schema version beyond any number fails the record",
        eventJson(R"("schemaVersion": 1e999)"), "fails");
    row("A schema version beyond 64 bits fails the record",
        eventJson(R"("schemaVersion": 9223372036854775808)"), "fails");
    row("A reminder lead of a fraction fails the record",
        eventJson(R"("reminderLeadMinutes": [15, 2.5])"), "fails");
    row("A whole number written with an exponent is fine", eventJson(R"("schemaVersion": 1e1)"),
        "");
}

void TestRecords::eventDecoding()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, icon);
    QString error;
    const std::optional<Event> event = decode(json, &error);
    QVERIFY2(!error.startsWith(u"Malformed"), qPrintable(error)); // refused for the right reason
    QCOMPARE(event.has_value(), icon != u"fails");
    if (event) {
        QCOMPARE(event->icon ? event->icon->symbol : QString(), icon);
        QVERIFY(!event->color);
    }
}

void TestRecords::eventRoundTrips()
{
    Event countUp = fullEvent();
    countUp.direction = CountdownDirection::since;
    countUp.recurrence->end = RecurrenceRule::End::afterOccurrences(5);
    countUp.icon.reset();
    countUp.note = QString(); // an empty note is still a note
    // Written, read back and written again: the same record and the same bytes.
    for (const Event &event : {fullEvent(), countUp}) {
        const QByteArray bytes = encode(event);
        const std::optional<Event> back = decode(bytes);
        QVERIFY2(back && *back == event, bytes.constData());
        QCOMPARE(encode(*back), bytes);
    }
    // Weekdays are written as numbers from Sunday = 1.
    QVERIFY(encode(countUp).contains("\"weekdays\": [\n            2,\n            6\n        ]"));

    // Lead times are kept positive, unique and sorted.
    QCOMPARE(decode(eventJson(R"("reminderLeadMinutes": [60, 0, 15, 60, -5])"))
                 .value()
                 .reminderLeadMinutes,
             (QList<qint64> {15, 60}));
}

QTEST_GUILESS_MAIN(TestRecords)
#include "tst_records.moc"

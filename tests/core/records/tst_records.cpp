// Decoding and encoding of the countdown record, its value types, the calendar records and the
// pin: the lenient rules of older files, the exact error texts, and lossless round trips.
#include "records/CalendarAssignments.h"
#include "records/Event.h"
#include "records/EventPatch.h"
#include "records/PinTarget.h"
#include "json/IsoDate.h"
#include "json/JsonDocument.h"
#include "json/JsonWriter.h"

#include <QTest>

namespace {

const QByteArray RequiredKeys = R"({"id": "6F1C9E0A-3B7D-4C2E-9A51-0D8E2F4B7C11", "title": "Trip",
    "targetDate": "2026-03-01T08:00:00Z", "includeTime": true, "timeZone": "Europe/Berlin",
    "createdAt": "2026-02-01T08:00:00Z", "celebrationAcknowledged": false)";

// The required keys plus the given members.
QByteArray eventJson(const QByteArray &extra = {})
{
    return RequiredKeys + (extra.isEmpty() ? QByteArray() : ", " + extra) + "}";
}

template<typename Record>
std::optional<Record> decode(const QByteArray &json, QString *error = nullptr)
{
    QString parseError;
    const std::optional<JsonDocument> document = JsonDocument::parse(json, &parseError);
    if (!document) {
        if (error)
            *error = parseError;
        return std::nullopt;
    }
    return Record::fromJson(document->root(), error);
}

template<typename Record>
QByteArray encode(const Record &record)
{
    JsonWriter writer;
    record.toJson(writer);
    return writer.finish();
}

template<typename Record>
void verifyRoundTrip(const Record &record)
{
    const QByteArray bytes = encode(record);
    QString error;
    const std::optional<Record> back = decode<Record>(bytes, &error);
    QVERIFY2(back.has_value(), qPrintable(error + u'\n' + QString::fromUtf8(bytes)));
    QVERIFY2(*back == record, bytes.constData());
    QCOMPARE(encode(*back), bytes);
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
    e.celebrationAcknowledged = true;
    e.recurrence = RecurrenceRule {RecurrenceRule::Frequency::weekly,
                                   {Weekday::monday, Weekday::friday},
                                   2,
                                   RecurrenceRule::End::onDate(at("2027-01-01T00:00:00Z"))};
    e.cycleAnchor = at("2026-07-07T16:30:00Z");
    e.celebrationEnabled = true;
    e.notifyOnReach = true;
    e.note = QStringLiteral("Bring the photo album");
    e.link = QStringLiteral("https://meet.example.com/abc");
    e.reminderLeadMinutes = {15, 60, 1440};
    e.direction = CountdownDirection::until;
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
    void minimalEventTakesDefaults();
    void eventDecoding_data();
    void eventDecoding();
    void eventRoundTrips();
    void encodingLeavesNilOptionalsOut();
    void weekdaysAreNumbers();
    void effectiveTargetOfAllDayEvents_data();
    void effectiveTargetOfAllDayEvents();
    void patchCopiesOnlyPresentFields();
    void pinTargets_data();
    void pinTargets();
    void calendarRecordsRoundTrip();
    void reachSignalsAreLenient();
};

void TestRecords::isoDates_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qint64>("msecs"); // -1: refused
    QTest::newRow("Without a fraction") << "2026-03-01T08:00:00Z" << Q_INT64_C(1772352000000);
    QTest::newRow("With three fraction digits")
        << "2026-03-01T08:00:00.250Z" << Q_INT64_C(1772352000250);
    QTest::newRow("With one fraction digit")
        << "2026-03-01T08:00:00.5Z" << Q_INT64_C(1772352000500);
    QTest::newRow("With six fraction digits")
        << "2026-03-01T08:00:00.123456Z" << Q_INT64_C(1772352000123);
    QTest::newRow("With an offset") << "2026-03-01T10:00:00+02:00" << Q_INT64_C(1772352000000);
    QTest::newRow("A leap day") << "2028-02-29T00:00:00Z" << Q_INT64_C(1835395200000);
    QTest::newRow("A date alone is refused") << "2026-03-01" << Q_INT64_C(-1);
    QTest::newRow("No zone is refused") << "2026-03-01T08:00:00" << Q_INT64_C(-1);
    QTest::newRow("The 30th of February is refused") << "2026-02-30T08:00:00Z" << Q_INT64_C(-1);
    QTest::newRow("Hour 24 is refused") << "2026-03-01T24:00:00Z" << Q_INT64_C(-1);
    QTest::newRow("A dangling dot is refused") << "2026-03-01T08:00:00.Z" << Q_INT64_C(-1);
    QTest::newRow("Text after the zone is refused") << "2026-03-01T08:00:00Zx" << Q_INT64_C(-1);
}

void TestRecords::isoDates()
{
    QFETCH(QString, text);
    QFETCH(qint64, msecs);
    const std::optional<QDateTime> parsed = IsoDate::parse(QStringView(text));
    if (msecs < 0) {
        QVERIFY(!parsed);
        return;
    }
    QVERIFY(parsed);
    QCOMPARE(parsed->toMSecsSinceEpoch(), msecs);
    // Written back always in UTC with three fraction digits, and read back to the same instant.
    const QString written = IsoDate::format(*parsed);
    QCOMPARE(written.size(), 24);
    QVERIFY(written.endsWith(u'Z'));
    QCOMPARE(IsoDate::parse(QStringView(written))->toMSecsSinceEpoch(), msecs);
}

void TestRecords::minimalEventTakesDefaults()
{
    QString error;
    const std::optional<Event> event = decode<Event>(eventJson(), &error);
    QVERIFY2(event, qPrintable(error));
    QCOMPARE(event->schemaVersion, 1);
    QVERIFY(!event->icon && !event->recurrence && !event->color && !event->reachedAt);
    QVERIFY(!event->celebrationEnabled && !event->notifyOnReach && !event->milestonesEnabled);
    QVERIFY(event->reminderLeadMinutes.isEmpty());
    QCOMPARE(event->direction, CountdownDirection::until);
}

void TestRecords::eventDecoding_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("error"); // empty: decodes
    QTest::addColumn<QString>("symbol"); // expected icon symbol, when it decodes with one

    QTest::newRow("An emoji icon of older files becomes the party popper")
        << eventJson(R"("icon": {"kind": "emoji", "value": "🎉"})") << QString()
        << "party.popper.fill";
    QTest::newRow("An sfSymbol icon becomes the party popper too")
        << eventJson(R"("icon": {"kind": "sfSymbol", "value": "star"})") << QString()
        << "party.popper.fill";
    QTest::newRow("A symbol icon keeps its name")
        << eventJson(R"("icon": {"kind": "symbol", "value": "gift.fill"})") << QString()
        << "gift.fill";
    QTest::newRow("An unknown icon kind fails the record")
        << eventJson(R"("icon": {"kind": "sticker", "value": "x"})")
        << "Unknown IconRef kind: sticker" << QString();
    QTest::newRow("A colour this version does not know is no colour")
        << eventJson(R"("color": "magenta")") << QString() << QString();
    QTest::newRow("A colour of the wrong type is no colour")
        << eventJson(R"("color": 7)") << QString() << QString();
    QTest::newRow("A date without time fails with the date text")
        << QByteArray(eventJson()).replace("2026-03-01T08:00:00Z", "2026-03-01")
        << "Invalid ISO8601 date: 2026-03-01" << QString();
    QTest::newRow("An unknown recurrence end fails the record") << eventJson(
        R"("recurrence": {"frequency": "daily", "weekdays": [], "interval": 1, "end": {"kind": "never"}})")
                                                                << "Unknown RecurrenceRule.End "
                                                                   "kind: never"
                                                                << QString();
    QTest::newRow("A missing title fails the record")
        << QByteArray(eventJson()).replace(R"("title": "Trip",)", "")
        << R"(No value for key "title")" << QString();
    QTest::newRow("A title of the wrong type fails the record")
        << QByteArray(eventJson()).replace(R"("Trip")", "42")
        << R"(Expected a string for key "title" but found a number)" << QString();
    QTest::newRow("An id that is no UUID fails the record")
        << QByteArray(eventJson()).replace("6F1C9E0A-3B7D", "nope")
        << "Attempted to decode UUID from invalid UUID string: nope-4C2E-9A51-0D8E2F4B7C11"
        << QString();
}

void TestRecords::eventDecoding()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, error);
    QFETCH(QString, symbol);
    QString actual;
    const std::optional<Event> event = decode<Event>(json, &actual);
    if (!error.isEmpty()) {
        QVERIFY(!event);
        QCOMPARE(actual, error);
        return;
    }
    QVERIFY2(event, qPrintable(actual));
    QCOMPARE(event->icon ? event->icon->symbol : QString(), symbol);
    QVERIFY(!event->color);
}

void TestRecords::eventRoundTrips()
{
    verifyRoundTrip(fullEvent());
    Event countUp = fullEvent();
    countUp.direction = CountdownDirection::since;
    countUp.recurrence->end = RecurrenceRule::End::afterOccurrences(5);
    countUp.icon.reset();
    countUp.note = QString(); // an empty note is still a note
    verifyRoundTrip(countUp);

    // Lead times are kept positive, unique and sorted.
    const std::optional<Event> led =
        decode<Event>(eventJson(R"("reminderLeadMinutes": [60, 0, 15, 60, -5])"));
    QVERIFY(led);
    QCOMPARE(led->reminderLeadMinutes, (QList<qint64> {15, 60}));
}

void TestRecords::encodingLeavesNilOptionalsOut()
{
    const std::optional<Event> minimal = decode<Event>(eventJson());
    QVERIFY(minimal);
    const QByteArray bytes = encode(*minimal);
    for (const char *key :
         {"icon", "reachedAt", "recurrence", "cycleAnchor", "note", "link", "color"})
        QVERIFY2(!bytes.contains(QByteArray(QByteArray("\"") + key + "\"")), key);
    for (const char *key : {"reminderLeadMinutes", "direction", "celebrationEnabled",
                            "notifyOnReach", "milestonesEnabled", "schemaVersion"})
        QVERIFY2(bytes.contains(QByteArray(QByteArray("\"") + key + "\"")), key);
    QVERIFY(bytes.contains("\"targetDate\": \"2026-03-01T08:00:00.000Z\""));
}

void TestRecords::weekdaysAreNumbers()
{
    const RecurrenceRule rule {
        RecurrenceRule::Frequency::weekly, {Weekday::monday, Weekday::friday}, 1, std::nullopt};
    QVERIFY(encode(rule).contains("\"weekdays\": [\n        2,\n        6\n    ]"));
    QVERIFY(!weekdayFromNumber(0) && !weekdayFromNumber(8));
    QCOMPARE(weekdayFromNumber(1), Weekday::sunday);
}

void TestRecords::effectiveTargetOfAllDayEvents_data()
{
    QTest::addColumn<QString>("zone");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("effective");
    QTest::newRow("Auckland: the day starts the evening before in UTC")
        << "Pacific/Auckland"
        << "2026-07-14T10:00:00Z"
        << "2026-07-13T12:00:00.000Z";
    QTest::newRow("New York keeps its own midnight") << "America/New_York"
                                                     << "2026-07-14T10:00:00Z"
                                                     << "2026-07-14T04:00:00.000Z";
    QTest::newRow("Kolkata's half-hour offset") << "Asia/Kolkata"
                                                << "2026-07-14T10:00:00Z"
                                                << "2026-07-13T18:30:00.000Z";
    QTest::newRow("A day without midnight starts at the first valid moment")
        << "America/Santiago"
        << "2026-09-06T12:00:00Z"
        << "2026-09-06T04:00:00.000Z";
}

void TestRecords::effectiveTargetOfAllDayEvents()
{
    QFETCH(QString, zone);
    QFETCH(QString, target);
    QFETCH(QString, effective);
    Event event = *decode<Event>(eventJson());
    event.timeZone = zone;
    event.targetDate = at(target.toLatin1().constData());
    event.includeTime = false;
    QCOMPARE(IsoDate::format(event.effectiveTarget()), effective);
    event.includeTime = true;
    QCOMPARE(event.effectiveTarget(), event.targetDate);
}

void TestRecords::patchCopiesOnlyPresentFields()
{
    const Event original = fullEvent();
    Event event = original;
    EventPatch().applyTo(event);
    QCOMPARE(event, original);
    QVERIFY(EventPatch().isEmpty());

    EventPatch patch;
    patch.title = QStringLiteral("Renamed");
    patch.note = std::optional<QString>(); // present, nil: clears
    patch.targetDate = at("2027-01-01T00:00:00Z"); // does not touch reachedAt
    patch.applyTo(event);
    QCOMPARE(event.title, QStringLiteral("Renamed"));
    QVERIFY(!event.note);
    QCOMPARE(event.link, original.link);
    QCOMPARE(event.reachedAt, original.reachedAt);
    QCOMPARE(event.celebrationAcknowledged, true);
    QCOMPARE(event.id, original.id);
    QVERIFY(!(patch == EventPatch()));
}

void TestRecords::pinTargets_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<bool>("decodes");
    QTest::newRow("A manual pin") << QByteArray(
        R"({"kind": "manual", "id": "0B6E1B2C-7D5F-4F6A-9C1E-2A3B4C5D6E7F"})")
                                  << true;
    QTest::newRow("A series pin") << QByteArray(
        R"({"kind": "calendarSeries", "calendarID": "c", "seriesID": "s"})")
                                  << true;
    QTest::newRow("An occurrence pin")
        << QByteArray(R"({"kind": "calendarOccurrence", "calendarID": "c", "seriesID": "s",
                          "occurrenceDate": "2026-03-02T09:00:00Z"})")
        << true;
    QTest::newRow("An unknown kind") << QByteArray(R"({"kind": "widget"})") << false;
}

void TestRecords::pinTargets()
{
    QFETCH(QByteArray, json);
    QFETCH(bool, decodes);
    QString error;
    const std::optional<PinTarget> pin = decode<PinTarget>(json, &error);
    QCOMPARE(pin.has_value(), decodes);
    if (!decodes) {
        QCOMPARE(error, QStringLiteral("Unknown PinTarget kind: widget"));
        return;
    }
    verifyRoundTrip(*pin);
}

void TestRecords::calendarRecordsRoundTrip()
{
    const CalendarSeriesRef series {QStringLiteral("work"), QStringLiteral("standup@example.com")};
    verifyRoundTrip(CalendarEventRef {series, at("2026-03-02T09:00:00Z")});
    CalendarReachSignals reach;
    reach.notifyOnReach = true;
    reach.reminderLeadMinutes = {5};
    reach.armed =
        CalendarReachSignals::Occurrence {at("2026-03-02T09:00:00Z"), QStringLiteral("Stand-up"),
                                          QStringLiteral("https://zoom.us/j/1")};
    reach.reached = CalendarReachSignals::Occurrence {
        at("2026-03-01T09:00:00Z"), QStringLiteral("Stand-up"), {}};
    verifyRoundTrip(CalendarReachAssignment {series, reach});
    verifyRoundTrip(CalendarIconAssignment {series, IconRef {QStringLiteral("calendar")}});
    verifyRoundTrip(
        CalendarAnnotationAssignment {series, CalendarAnnotation {QStringLiteral("n"), {}}});
}

void TestRecords::reachSignalsAreLenient()
{
    const auto onlyArmed = decode<CalendarReachSignals>(
        R"({"armed": {"start": "2026-03-02T09:00:00Z", "title": "Stand-up"}})");
    QVERIFY(onlyArmed);
    QVERIFY(!onlyArmed->celebrationEnabled && !onlyArmed->notifyOnReach);
    QVERIFY(onlyArmed->reminderLeadMinutes.isEmpty() && !onlyArmed->reached);
    CalendarReachSignals withLink = *onlyArmed;
    withLink.armed->link = QStringLiteral("https://meet.google.com/x");
    QVERIFY(!(withLink == *onlyArmed));
    QVERIFY(decode<CalendarAnnotation>("{}")->isEmpty());
}

QTEST_GUILESS_MAIN(TestRecords)
#include "tst_records.moc"

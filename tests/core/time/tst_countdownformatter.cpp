#include "l10n/LanguageTable.h"
#include "records/Event.h"
#include "time/CountdownFormatter.h"
#include "time/ItemTimeText.h"

#include <QTest>
#include <QTimeZone>

namespace {

const QTimeZone auckland("Pacific/Auckland");
const QTimeZone newYork("America/New_York");
const QTimeZone kolkata("Asia/Kolkata");
const QTimeZone istanbul("Europe/Istanbul");

constexpr qint64 hour = 3600;
constexpr qint64 day = 86400;

// A wall-clock moment ("2025-03-08T12:00") in `zone`, or a UTC instant ("...Z"), as an instant.
QDateTime at(const char *moment, const QTimeZone &zone = istanbul)
{
    QDateTime value = QDateTime::fromString(QString::fromLatin1(moment), Qt::ISODate);
    if (value.timeSpec() == Qt::LocalTime)
        value.setTimeZone(zone);
    return value.toUTC();
}

// The ways a span from one moment to another is written: the time left in each display format,
// the time passed, the spelled-out detail, whole days, and how far the span has come through the
// year since the last anniversary of its start.
enum class Form { left, leftInDays, leftInWeeks, passed, detail, days, progress };

QString written(Form form, const QDateTime &from, const QDateTime &to, const QTimeZone &zone,
                const LanguageTable &table)
{
    using Format = CountdownDisplayFormat;
    const Remaining left = Remaining::until(to, from);
    switch (form) {
    case Form::left:
        return CountdownFormatter::compact(left, Format::automatic, table);
    case Form::leftInDays:
        return CountdownFormatter::compact(left, Format::daysOnly, table);
    case Form::leftInWeeks:
        return CountdownFormatter::compact(left, Format::weeksDays, table);
    case Form::passed:
        return CountdownFormatter::compactElapsed(from, to, zone, Format::automatic, table);
    case Form::detail:
        return CountdownFormatter::detail(from, to, zone, 2, table);
    case Form::days:
        return CountdownFormatter::daysDetail(from, to, zone, table);
    case Form::progress:
        return QString::number(CountdownFormatter::anniversaryProgress(from, to, zone));
    }
    return {};
}

void span(const char *name, Form form, const char *from, const char *to, const QTimeZone &zone,
          const char *expected)
{
    QTest::newRow(name) << form << at(from, zone) << at(to, zone) << zone << expected;
}

// A span of a fixed length, where only the length matters.
void left(const char *name, double seconds, Form form, const char *expected)
{
    const QDateTime from = at("2026-03-04T12:00");
    QTest::newRow(name) << form << from << from.addMSecs(qint64(seconds * 1000)) << istanbul
                        << expected;
}

// An event at `targetUtc` in Istanbul, or on the day of `targetUtc` in `allDayZone`.
Event eventAt(const char *targetUtc, CountdownDirection direction = CountdownDirection::until,
              const char *allDayZone = nullptr)
{
    Event event;
    event.targetDate = at(targetUtc);
    event.includeTime = !allDayZone;
    event.timeZone = QString::fromLatin1(allDayZone ? allDayZone : "Europe/Istanbul");
    event.direction = direction;
    return event;
}

} // namespace

class tst_CountdownFormatter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void spans_data();
    void spans();
    void eventTexts_data();
    void eventTexts();
    void unitsInEveryLanguage_data();
    void unitsInEveryLanguage();
};

void tst_CountdownFormatter::spans_data()
{
    QTest::addColumn<Form>("form");
    QTest::addColumn<QDateTime>("from");
    QTest::addColumn<QDateTime>("to");
    QTest::addColumn<QTimeZone>("zone");
    QTest::addColumn<QString>("expected");

    left("the last seconds show on a padded clock, cut not rounded", 7.9, Form::left, "0:07");
    left("a target already passed leaves a zero clock", -5, Form::left, "0:00");
    left("exactly a minute still shows the clock", 60, Form::left, "1:00");
    left("just over a minute switches to minutes", 60.5, Form::left, "1m");
    left("an hour shows hours with zero minutes", hour, Form::left, "1h 0m");
    left("a day shows days with zero hours", day, Form::left, "1d 0h");
    left("seven days drop the hours", 7 * day + 23 * hour, Form::left, "7d");
    left("days only leaves spans under a day to the automatic rules", 5 * hour, Form::leftInDays,
         "5h 0m");
    left("days only writes a day without hours", day + 3 * hour, Form::leftInDays, "1d");
    left("weeks and days leaves six days to the automatic rules", 6 * day + 2 * hour,
         Form::leftInWeeks, "6d 2h");
    left("weeks and days writes exactly a week as one week", 7 * day + 2 * hour, Form::leftInWeeks,
         "1w");

    const auto ist = istanbul;
    const char *noon = "2026-03-04T12:00";
    span("time passed never shows seconds", Form::passed, "2026-03-04T11:59:30", noon, ist, "0m");
    span("a start in the future has passed zero minutes", Form::passed, "2026-03-04T12:01:30", noon,
         ist, "0m");
    span("a second under an hour shows minutes only", Form::passed, "2026-03-04T11:00:01", noon,
         ist, "59m");
    span("a day and two hours show days and hours", Form::passed, "2026-03-03T10:00", noon, ist,
         "1d 2h");
    span("seven days passed drop the hours", Form::passed, "2026-02-25T07:00", noon, ist, "7d");
    span("a leap year of 365 days is not yet a year", Form::passed, "2024-01-01T00:00",
         "2024-12-31T00:00", kolkata, "365d");
    span("a leap day start has its anniversary on 28 February", Form::passed, "2024-02-29T10:00",
         "2025-03-01T10:00", auckland, "1y 1d");
    span("calendar years count in the item's zone (a leap day in Kolkata, 28 February here)",
         Form::passed, "2024-02-28T20:00Z", "2025-02-28T21:00Z", kolkata, "1y 1d");
    span("an anniversary in the New York spring gap moves an hour later on the clock", Form::passed,
         "2025-03-08T02:30", "2026-03-08T03:30", newYork, "1y");
    span("days after the anniversary are 24-hour days across the spring change", Form::passed,
         "2024-03-01T00:30", "2025-03-10T00:30", newYork, "1y 8d");
    span("the Auckland autumn change makes two calendar days 49 hours", Form::passed,
         "2025-04-05T12:00", "2025-04-07T12:00", auckland, "2d 1h");

    const char *from = "2025-01-10T08:00";
    span("zero months are skipped before the limit is applied", Form::detail, from,
         "2026-01-13T12:00", kolkata, "1 year 3 days");
    span("ones use the singular words", Form::detail, from, "2026-02-10T08:00", kolkata,
         "1 year 1 month");
    span("under a minute reads as reached", Form::detail, from, "2025-01-10T08:00:59", kolkata,
         "less than a minute");
    span("a month from the end of January ends on the last day of February", Form::detail,
         "2025-01-31T10:00", "2025-03-01T10:00", kolkata, "1 month 1 day");
    span("the Auckland spring change day of 23 hours is one day", Form::detail, "2025-09-27T12:00",
         "2025-09-28T12:00", auckland, "1 day");
    // 30 January in Istanbul is already 31 January in Auckland, whose month ends sooner.
    span("months count in the item's zone", Form::detail, "2025-01-30T12:00Z", "2025-02-28T00:00Z",
         auckland, "1 month 12 hours");
    span("the days form counts long spans in days, not months", Form::days, "2025-06-01T09:00",
         "2025-10-22T10:00", newYork, "143 days");

    span("exactly on an anniversary the year starts again", Form::progress, "2020-06-15T09:00",
         "2025-06-15T09:00", newYork, "0");
    span("half of a common year is one half", Form::progress, "2025-01-01T00:00",
         "2025-07-02T12:00", kolkata, "0.5");
    span("a leap day start counts from 28 February in common years", Form::progress,
         "2024-02-29T08:00", "2025-02-28T08:00", auckland, "0");
}

void tst_CountdownFormatter::spans()
{
    QFETCH(Form, form);
    QFETCH(QDateTime, from);
    QFETCH(QDateTime, to);
    QFETCH(QTimeZone, zone);
    QFETCH(QString, expected);
    QCOMPARE(written(form, from, to, zone, LanguageTable::load(QStringLiteral("en"))), expected);
}

void tst_CountdownFormatter::eventTexts_data()
{
    QTest::addColumn<Event>("event");
    QTest::addColumn<QString>("language");
    QTest::addColumn<CountdownDisplayFormat>("format");
    QTest::addColumn<QString>("expected");

    const auto automatic = CountdownDisplayFormat::automatic;
    QTest::newRow("a passed countdown shows the time since with a plus")
        << eventAt("2026-03-04T10:00:00Z") << "en" << automatic << "+2h 0m";
    QTest::newRow("a countdown at its very moment has passed")
        << eventAt("2026-03-04T12:00:00Z") << "en" << automatic << "+0m";
    QTest::newRow("a count-up in days only shows the day count, not years")
        << eventAt("2025-03-01T12:00:00Z", CountdownDirection::since) << "fr"
        << CountdownDisplayFormat::daysOnly << "+368j";
    // 5 March in Auckland starts at 2026-03-04T11:00Z, an hour before now (in Istanbul it would
    // still be nine hours away).
    QTest::newRow("an all-day countdown counts from the start of its day in its own zone")
        << eventAt("2026-03-05T03:00:00Z", CountdownDirection::until, "Pacific/Auckland") << "en"
        << automatic << "+1h 0m";
}

void tst_CountdownFormatter::eventTexts()
{
    QFETCH(Event, event);
    QFETCH(QString, language);
    QFETCH(CountdownDisplayFormat, format);
    QFETCH(QString, expected);
    const QDateTime now = at("2026-03-04T12:00:00Z");
    QCOMPARE(eventTimeText(event, now, format, LanguageTable::load(language)), expected);
}

void tst_CountdownFormatter::unitsInEveryLanguage_data()
{
    // Days and hours, hours and minutes, weeks and days, years and days, and spelled out.
    QTest::addColumn<QString>("code");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("English") << "en"
                             << QStringList {"3d 4h", "5h 12m", "2w 1d", "1y 3d",
                                             "1 year 2 months"};
    QTest::newRow("Turkish uses no plural after numbers")
        << "tr" << QStringList {"3g 4sa", "5sa 12dk", "2hf 1g", "1y 3g", "1 yıl 2 ay"};
    QTest::newRow("German") << "de"
                            << QStringList {"3T 4Std", "5Std 12Min", "2W 1T", "1J 3T",
                                            "1 Jahr 2 Monate"};
    QTest::newRow("Spanish") << "es"
                             << QStringList {"3d 4h", "5h 12min", "2sem 1d", "1a 3d",
                                             "1 año 2 meses"};
    QTest::newRow("French") << "fr"
                            << QStringList {"3j 4h", "5h 12min", "2sem 1j", "1a 3j", "1 an 2 mois"};
}

void tst_CountdownFormatter::unitsInEveryLanguage()
{
    QFETCH(QString, code);
    const LanguageTable table = LanguageTable::load(code);
    const QDateTime from = at("2025-03-01T12:00");
    const auto text = [&](Form form, const QDateTime &to) {
        return written(form, from, to, istanbul, table);
    };
    const QStringList texts {text(Form::left, from.addSecs(3 * day + 4 * hour)),
                             text(Form::left, from.addSecs(5 * hour + 12 * 60)),
                             text(Form::leftInWeeks, from.addSecs(15 * day)),
                             text(Form::passed, at("2026-03-04T12:00")),
                             text(Form::detail, at("2026-05-01T12:00"))};
    QTEST(texts, "expected");
}

QTEST_GUILESS_MAIN(tst_CountdownFormatter)
#include "tst_countdownformatter.moc"

#include "l10n/LanguageTable.h"
#include "time/CountdownFormatter.h"

#include <QTest>
#include <QTimeZone>

namespace {

const QTimeZone auckland("Pacific/Auckland");
const QTimeZone newYork("America/New_York");
const QTimeZone kolkata("Asia/Kolkata");
const QTimeZone istanbul("Europe/Istanbul");

// A wall-clock moment ("2025-03-08T12:00") in `zone`, as an absolute instant.
QDateTime at(const char *local, const QTimeZone &zone)
{
    QDateTime value = QDateTime::fromString(QString::fromLatin1(local), Qt::ISODate);
    value.setTimeZone(zone);
    return value.toUTC();
}

const LanguageTable &english()
{
    static const LanguageTable table = LanguageTable::load(QStringLiteral("en"));
    return table;
}

constexpr qint64 minute = 60;
constexpr qint64 hour = 3600;
constexpr qint64 day = 86400;

} // namespace

class tst_CountdownFormatter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void compact_data();
    void compact();
    void compactElapsed_data();
    void compactElapsed();
    void anniversaryProgress_data();
    void anniversaryProgress();
    void detail_data();
    void detail();
    void daysDetail_data();
    void daysDetail();
    void unitsInEveryLanguage_data();
    void unitsInEveryLanguage();
};

void tst_CountdownFormatter::compact_data()
{
    QTest::addColumn<double>("seconds");
    QTest::addColumn<CountdownDisplayFormat>("format");
    QTest::addColumn<QString>("expected");

    const auto automatic = CountdownDisplayFormat::automatic;
    const auto daysOnly = CountdownDisplayFormat::daysOnly;
    const auto weeksDays = CountdownDisplayFormat::weeksDays;

    QTest::newRow("nothing left reads zero on the clock") << 0.0 << automatic << "0:00";
    QTest::newRow("seven seconds show on the clock") << 7.9 << automatic << "0:07";
    QTest::newRow("59 seconds show on the clock") << 59.0 << automatic << "0:59";
    QTest::newRow("exactly a minute still shows the clock") << 60.0 << automatic << "1:00";
    QTest::newRow("just over a minute switches to minutes") << 60.5 << automatic << "1m";
    QTest::newRow("61 seconds show whole minutes") << 61.0 << automatic << "1m";
    QTest::newRow("an hour shows hours with zero minutes") << 3600.0 << automatic << "1h 0m";
    QTest::newRow("a second under a day shows hours and minutes")
        << double(day - 1) << automatic << "23h 59m";
    QTest::newRow("a day shows days with zero hours") << double(day) << automatic << "1d 0h";
    QTest::newRow("90,061 seconds show a day and an hour") << 90061.0 << automatic << "1d 1h";
    QTest::newRow("six days still show hours")
        << double(6 * day + 5 * hour) << automatic << "6d 5h";
    QTest::newRow("seven days drop the hours") << double(7 * day + 23 * hour) << automatic << "7d";
    QTest::newRow("days only leaves spans under a day to the automatic rules")
        << double(5 * hour) << daysOnly << "5h 0m";
    QTest::newRow("days only writes a day without hours")
        << double(day + 3 * hour) << daysOnly << "1d";
    QTest::newRow("days only writes 400 days") << double(400 * day) << daysOnly << "400d";
    QTest::newRow("weeks and days leaves six days to the automatic rules")
        << double(6 * day + 2 * hour) << weeksDays << "6d 2h";
    QTest::newRow("weeks and days writes exactly a week as one week")
        << double(7 * day + 2 * hour) << weeksDays << "1w";
    QTest::newRow("weeks and days writes fifteen days as two weeks and a day")
        << double(15 * day) << weeksDays << "2w 1d";
}

void tst_CountdownFormatter::compact()
{
    QFETCH(double, seconds);
    QFETCH(CountdownDisplayFormat, format);
    QFETCH(QString, expected);
    QCOMPARE(CountdownFormatter::compact(Remaining::fromInterval(seconds), format, english()),
             expected);
}

void tst_CountdownFormatter::compactElapsed_data()
{
    QTest::addColumn<QDateTime>("start");
    QTest::addColumn<QDateTime>("now");
    QTest::addColumn<QTimeZone>("zone");
    QTest::addColumn<CountdownDisplayFormat>("format");
    QTest::addColumn<QString>("expected");

    const auto automatic = CountdownDisplayFormat::automatic;
    const QDateTime now = at("2026-03-04T12:00:00", istanbul);

    QTest::newRow("thirty seconds ago shows zero minutes, never seconds")
        << now.addSecs(-30) << now << istanbul << automatic << "0m";
    QTest::newRow("a start in the future shows zero minutes")
        << now.addSecs(90) << now << istanbul << automatic << "0m";
    QTest::newRow("59 minutes show minutes only")
        << now.addSecs(-59 * minute - 59) << now << istanbul << automatic << "59m";
    QTest::newRow("an hour and five minutes show both")
        << now.addSecs(-65 * minute) << now << istanbul << automatic << "1h 5m";
    QTest::newRow("a day and two hours show days and hours")
        << now.addSecs(-day - 2 * hour) << now << istanbul << automatic << "1d 2h";
    QTest::newRow("seven days show days only")
        << now.addSecs(-7 * day - 5 * hour) << now << istanbul << automatic << "7d";
    QTest::newRow("one calendar year and three days show years and days")
        << at("2025-03-01T12:00:00", istanbul) << now << istanbul << automatic << "1y 3d";
    QTest::newRow("one calendar year and three days in days only show the day count")
        << at("2025-03-01T12:00:00", istanbul) << now << istanbul
        << CountdownDisplayFormat::daysOnly << "368d";
    QTest::newRow("weeks and days do not count calendar years")
        << at("2025-03-01T12:00:00", istanbul) << now << istanbul
        << CountdownDisplayFormat::weeksDays << "52w 4d";
    QTest::newRow("a leap year of 365 days is not yet a year")
        << at("2024-01-01T00:00:00", kolkata) << at("2024-12-31T00:00:00", kolkata) << kolkata
        << automatic << "365d";
    QTest::newRow("a leap day start has its first anniversary on 28 February")
        << at("2024-02-29T10:00:00", auckland) << at("2025-02-28T10:00:00", auckland) << auckland
        << automatic << "1y";
    QTest::newRow("a leap day start is a year and a day old on 1 March")
        << at("2024-02-29T10:00:00", auckland) << at("2025-03-01T10:00:00", auckland) << auckland
        << automatic << "1y 1d";
    QTest::newRow("a leap day in Kolkata is still 28 February in Istanbul")
        << QDateTime::fromString(QStringLiteral("2024-02-28T20:00:00Z"), Qt::ISODate)
        << QDateTime::fromString(QStringLiteral("2025-02-28T21:00:00Z"), Qt::ISODate) << kolkata
        << automatic << "1y 1d";
    QTest::newRow("the same instants in Istanbul are a year and an hour apart")
        << QDateTime::fromString(QStringLiteral("2024-02-28T20:00:00Z"), Qt::ISODate)
        << QDateTime::fromString(QStringLiteral("2025-02-28T21:00:00Z"), Qt::ISODate) << istanbul
        << automatic << "1y";
    QTest::newRow("an anniversary on the New York spring change day is a whole year")
        << at("2025-03-08T12:00:00", newYork) << at("2026-03-08T12:00:00", newYork) << newYork
        << automatic << "1y";
    QTest::newRow("an anniversary in the New York spring gap moves an hour later on the clock")
        << at("2025-03-08T02:30:00", newYork) << at("2026-03-08T03:30:00", newYork) << newYork
        << automatic << "1y";
    QTest::newRow("days after the anniversary are 24-hour days across the spring change")
        << at("2024-03-01T00:30:00", newYork) << at("2025-03-10T00:30:00", newYork) << newYork
        << automatic << "1y 8d";
    QTest::newRow("the Auckland autumn change makes two calendar days 49 hours")
        << at("2025-04-05T12:00:00", auckland) << at("2025-04-07T12:00:00", auckland) << auckland
        << automatic << "2d 1h";
}

void tst_CountdownFormatter::compactElapsed()
{
    QFETCH(QDateTime, start);
    QFETCH(QDateTime, now);
    QFETCH(QTimeZone, zone);
    QFETCH(CountdownDisplayFormat, format);
    QFETCH(QString, expected);
    QCOMPARE(CountdownFormatter::compactElapsed(start, now, zone, format, english()), expected);
}

void tst_CountdownFormatter::anniversaryProgress_data()
{
    QTest::addColumn<QDateTime>("start");
    QTest::addColumn<QDateTime>("now");
    QTest::addColumn<QTimeZone>("zone");
    QTest::addColumn<double>("expected");

    QTest::newRow("a start in the future has no progress")
        << at("2026-05-01T00:00:00", kolkata) << at("2026-03-01T00:00:00", kolkata) << kolkata
        << 0.0;
    QTest::newRow("exactly on an anniversary the year starts again")
        << at("2020-06-15T09:00:00", newYork) << at("2025-06-15T09:00:00", newYork) << newYork
        << 0.0;
    QTest::newRow("half of a common year is one half")
        << at("2025-01-01T00:00:00", kolkata) << at("2025-07-02T12:00:00", kolkata) << kolkata
        << 0.5;
    QTest::newRow("a leap day start counts from 28 February in common years")
        << at("2024-02-29T08:00:00", auckland) << at("2025-02-28T08:00:00", auckland) << auckland
        << 0.0;
    QTest::newRow("a second before the anniversary is almost the whole year")
        << at("2025-01-01T00:00:00", kolkata) << at("2025-12-31T23:59:59", kolkata) << kolkata
        << (365.0 * 86400 - 1) / (365.0 * 86400);
}

void tst_CountdownFormatter::anniversaryProgress()
{
    QFETCH(QDateTime, start);
    QFETCH(QDateTime, now);
    QFETCH(QTimeZone, zone);
    QFETCH(double, expected);
    QCOMPARE(CountdownFormatter::anniversaryProgress(start, now, zone), expected);
}

void tst_CountdownFormatter::detail_data()
{
    QTest::addColumn<QDateTime>("from");
    QTest::addColumn<QDateTime>("to");
    QTest::addColumn<QTimeZone>("zone");
    QTest::addColumn<int>("maxUnits");
    QTest::addColumn<QString>("expected");

    const QDateTime from = at("2025-01-10T08:00:00", kolkata);
    QTest::newRow("zero months are skipped before the limit is applied")
        << from << at("2026-01-13T12:00:00", kolkata) << kolkata << 2 << "1 year 3 days";
    QTest::newRow("a limit of three takes the hours as well")
        << from << at("2026-01-13T12:00:00", kolkata) << kolkata << 3 << "1 year 3 days 4 hours";
    QTest::newRow("ones use the singular words")
        << from << at("2026-02-11T09:01:00", kolkata) << kolkata << 5
        << "1 year 1 month 1 day 1 hour 1 minute";
    QTest::newRow("seconds are never shown")
        << from << from.addSecs(3 * hour + 59) << kolkata << 2 << "3 hours";
    QTest::newRow("under a minute reads as reached")
        << from << from.addSecs(59) << kolkata << 2 << "less than a minute";
    QTest::newRow("a reversed span reads as reached")
        << from << from.addSecs(-day) << kolkata << 2 << "less than a minute";
    QTest::newRow("a month from the end of January ends on the last day of February")
        << at("2025-01-31T10:00:00", kolkata) << at("2025-03-01T10:00:00", kolkata) << kolkata << 2
        << "1 month 1 day";
    QTest::newRow("the Auckland spring change day of 23 hours is one day")
        << at("2025-09-27T12:00:00", auckland) << at("2025-09-28T12:00:00", auckland) << auckland
        << 2 << "1 day";
    QTest::newRow("the New York autumn change day of 25 hours is one day")
        << at("2025-11-01T12:00:00", newYork) << at("2025-11-02T12:00:00", newYork) << newYork << 2
        << "1 day";
    QTest::newRow("hours across the New York spring change are elapsed hours")
        << at("2025-03-08T22:00:00", newYork) << at("2025-03-09T04:00:00", newYork) << newYork << 2
        << "5 hours";
    QTest::newRow("a day moved into the New York spring gap lands an hour later")
        << at("2025-03-08T02:30:00", newYork) << at("2025-03-09T03:30:00", newYork) << newYork << 2
        << "1 day";
    // 30 January in Istanbul is already 31 January in Auckland, whose month ends sooner.
    const QDateTime lateJanuary =
        QDateTime::fromString(QStringLiteral("2025-01-30T12:00:00Z"), Qt::ISODate);
    const QDateTime endOfFebruary =
        QDateTime::fromString(QStringLiteral("2025-02-28T00:00:00Z"), Qt::ISODate);
    QTest::newRow("months count in the item's zone: a month has passed in Auckland")
        << lateJanuary << endOfFebruary << auckland << 2 << "1 month 12 hours";
    QTest::newRow("months count in the item's zone: not yet a month in Istanbul")
        << lateJanuary << endOfFebruary << istanbul << 2 << "28 days 12 hours";
}

void tst_CountdownFormatter::detail()
{
    QFETCH(QDateTime, from);
    QFETCH(QDateTime, to);
    QFETCH(QTimeZone, zone);
    QFETCH(int, maxUnits);
    QFETCH(QString, expected);
    QCOMPARE(CountdownFormatter::detail(from, to, zone, maxUnits, english()), expected);
}

void tst_CountdownFormatter::daysDetail_data()
{
    QTest::addColumn<QDateTime>("from");
    QTest::addColumn<QDateTime>("to");
    QTest::addColumn<QTimeZone>("zone");
    QTest::addColumn<QString>("expected");

    const QDateTime from = at("2025-06-01T09:00:00", newYork);
    QTest::newRow("23 hours 59 minutes stay in hours and minutes")
        << from << from.addSecs(day - minute) << newYork << "23 hours 59 minutes";
    QTest::newRow("exactly one calendar day is one day")
        << from << from.addDays(1) << newYork << "1 day";
    QTest::newRow("long spans are whole days, not months")
        << from << at("2025-10-22T10:00:00", newYork) << newYork << "143 days";
    QTest::newRow("the 23-hour New York spring change day is a whole day")
        << at("2025-03-08T12:00:00", newYork) << at("2025-03-09T12:00:00", newYork) << newYork
        << "1 day";
    QTest::newRow("under a minute reads as reached")
        << from << from.addSecs(30) << newYork << "less than a minute";
}

void tst_CountdownFormatter::daysDetail()
{
    QFETCH(QDateTime, from);
    QFETCH(QDateTime, to);
    QFETCH(QTimeZone, zone);
    QFETCH(QString, expected);
    QCOMPARE(CountdownFormatter::daysDetail(from, to, zone, english()), expected);
}

void tst_CountdownFormatter::unitsInEveryLanguage_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("daysAndHours");
    QTest::addColumn<QString>("hoursAndMinutes");
    QTest::addColumn<QString>("weeksAndDays");
    QTest::addColumn<QString>("yearsAndDays");
    QTest::addColumn<QString>("spelledOut");

    QTest::newRow("English") << "en"
                             << "3d 4h"
                             << "5h 12m"
                             << "2w 1d"
                             << "1y 3d"
                             << "1 year 2 months";
    QTest::newRow("Turkish uses no plural after numbers") << "tr"
                                                          << "3g 4sa"
                                                          << "5sa 12dk"
                                                          << "2hf 1g"
                                                          << "1y 3g"
                                                          << "1 yıl 2 ay";
    QTest::newRow("German") << "de"
                            << "3T 4Std"
                            << "5Std 12Min"
                            << "2W 1T"
                            << "1J 3T"
                            << "1 Jahr 2 Monate";
    QTest::newRow("Spanish") << "es"
                             << "3d 4h"
                             << "5h 12min"
                             << "2sem 1d"
                             << "1a 3d"
                             << "1 año 2 meses";
    QTest::newRow("French") << "fr"
                            << "3j 4h"
                            << "5h 12min"
                            << "2sem 1j"
                            << "1a 3j"
                            << "1 an 2 mois";
}

void tst_CountdownFormatter::unitsInEveryLanguage()
{
    QFETCH(QString, code);
    const LanguageTable table = LanguageTable::load(code);
    const auto automatic = CountdownDisplayFormat::automatic;
    const QDateTime start = at("2025-03-01T12:00:00", istanbul);

    QTEST(
        CountdownFormatter::compact(Remaining::fromInterval(3 * day + 4 * hour), automatic, table),
        "daysAndHours");
    QTEST(CountdownFormatter::compact(Remaining::fromInterval(5 * hour + 12 * minute), automatic,
                                      table),
          "hoursAndMinutes");
    QTEST(CountdownFormatter::compact(Remaining::fromInterval(15 * day),
                                      CountdownDisplayFormat::weeksDays, table),
          "weeksAndDays");
    QTEST(CountdownFormatter::compactElapsed(start, at("2026-03-04T12:00:00", istanbul), istanbul,
                                             automatic, table),
          "yearsAndDays");
    QTEST(
        CountdownFormatter::detail(start, at("2026-05-01T12:00:00", istanbul), istanbul, 2, table),
        "spelledOut");
}

QTEST_GUILESS_MAIN(tst_CountdownFormatter)
#include "tst_countdownformatter.moc"

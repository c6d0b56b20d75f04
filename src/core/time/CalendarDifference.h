#pragma once

#include <QDateTime>
#include <QFlags>
#include <QTimeZone>

// Calendar arithmetic in the Gregorian calendar of one time zone, the way a calendar library
// does it: years, months and days move the wall-clock date and keep the time of day (29 February
// plus one year is 28 February, 31 January plus one month is the last day of February); hours and
// minutes are elapsed time.
struct CalendarDifference
{
    enum class Unit { year = 0x1, month = 0x2, day = 0x4, hour = 0x8, minute = 0x10 };
    Q_DECLARE_FLAGS(Units, Unit)

    qint64 years = 0;
    qint64 months = 0;
    qint64 days = 0;
    qint64 hours = 0;
    qint64 minutes = 0;

    // The difference from `from` to `to` in the requested units, each unit taking as much as
    // fits before the next smaller one is counted. Only units asked for are counted; when `to`
    // is not later than `from` every unit is 0.
    static CalendarDifference between(const QDateTime &from, const QDateTime &to,
                                      const QTimeZone &zone, Units units);

    bool operator==(const CalendarDifference &) const = default;
};
Q_DECLARE_OPERATORS_FOR_FLAGS(CalendarDifference::Units)

// `instant` moved by `years` calendar years in `zone`, as a UTC instant.
QDateTime addCalendarYears(const QDateTime &instant, qint64 years, const QTimeZone &zone);

#include "time/CalendarDifference.h"

#include <optional>

namespace {

// The instant at which the wall clock of `zone` shows `date` and `time`. A wall time that the
// spring change skips is read with the offset before the change (02:30 becomes 03:30 summer
// time); one that the autumn change repeats is taken at its first occurrence. Done by hand
// because QDateTime of Qt 6.4 misplaces dates moved into a gap.
QDateTime fromWallClock(QDate date, QTime time, const QTimeZone &zone)
{
    constexpr qint64 msecsPerDay = 86400000;
    const qint64 wall = QDateTime(date, time, QTimeZone::utc()).toMSecsSinceEpoch();
    const auto offsetAt = [&](qint64 instant) -> qint64 {
        return zone.offsetFromUtc(QDateTime::fromMSecsSinceEpoch(instant, QTimeZone::utc()))
            * qint64(1000);
    };
    const qint64 before = offsetAt(wall - msecsPerDay);
    const qint64 after = offsetAt(wall + msecsPerDay);
    std::optional<qint64> first;
    for (const qint64 offset : {before, after}) {
        const qint64 instant = wall - offset;
        if (offsetAt(instant) == offset && (!first || instant < *first))
            first = instant;
    }
    return QDateTime::fromMSecsSinceEpoch(first.value_or(wall - before), QTimeZone::utc());
}

// `instant` with its local date in `zone` moved by `step`, keeping the time of day.
template<typename Step>
QDateTime moveDate(const QDateTime &instant, const QTimeZone &zone, Step step)
{
    const QDateTime local = instant.toTimeZone(zone);
    const QDate date = step(local.date());
    if (!date.isValid())
        return {};
    return fromWallClock(date, local.time(), zone);
}

// The largest n >= 0 with step(n) not later than `limit`, searched from a close estimate.
template<typename Step>
qint64 largestFitting(qint64 estimate, const QDateTime &limit, Step step)
{
    const auto fits = [&](qint64 n) {
        const QDateTime moved = step(n);
        return moved.isValid() && moved <= limit;
    };
    qint64 n = std::max<qint64>(estimate, 0);
    while (n > 0 && !fits(n))
        --n;
    while (fits(n + 1))
        ++n;
    return n;
}

int monthIndex(QDate date)
{
    return date.year() * 12 + date.month();
}

QDateTime addMonths(const QDateTime &instant, qint64 months, const QTimeZone &zone)
{
    return moveDate(instant, zone, [&](QDate d) { return d.addMonths(int(months)); });
}

QDateTime addDays(const QDateTime &instant, qint64 days, const QTimeZone &zone)
{
    return moveDate(instant, zone, [&](QDate d) { return d.addDays(days); });
}

} // namespace

QDateTime addCalendarYears(const QDateTime &instant, qint64 years, const QTimeZone &zone)
{
    return moveDate(instant, zone, [&](QDate d) { return d.addYears(int(years)); });
}

CalendarDifference CalendarDifference::between(const QDateTime &from, const QDateTime &to,
                                               const QTimeZone &zone, Units units)
{
    CalendarDifference result;
    if (!from.isValid() || !to.isValid() || to <= from)
        return result;
    QDateTime base = from.toUTC();
    const QDate end = to.toTimeZone(zone).date();
    const auto localDate = [&] {
        return base.toTimeZone(zone).date();
    };

    if (units & Unit::year) {
        result.years = largestFitting(end.year() - localDate().year(), to,
                                      [&](qint64 n) { return addCalendarYears(base, n, zone); });
        base = addCalendarYears(base, result.years, zone);
    }
    if (units & Unit::month) {
        result.months = largestFitting(monthIndex(end) - monthIndex(localDate()), to,
                                       [&](qint64 n) { return addMonths(base, n, zone); });
        base = addMonths(base, result.months, zone);
    }
    if (units & Unit::day) {
        result.days = largestFitting(localDate().daysTo(end), to,
                                     [&](qint64 n) { return addDays(base, n, zone); });
        base = addDays(base, result.days, zone);
    }
    qint64 rest = base.secsTo(to);
    if (units & Unit::hour) {
        result.hours = rest / 3600;
        rest -= result.hours * 3600;
    }
    if (units & Unit::minute)
        result.minutes = rest / 60;
    return result;
}

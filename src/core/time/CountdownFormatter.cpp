#include "time/CountdownFormatter.h"

#include "l10n/LanguageTable.h"
#include "time/CalendarDifference.h"

#include <QList>

namespace {

constexpr qint64 secondsPerDay = 86400;
constexpr qint64 secondsPerWeek = 7 * secondsPerDay;

// A number followed directly by a compact unit ("3d"); any spacing belongs to the unit's text.
QString shortUnit(qint64 value, const char *unitKey, const LanguageTable &table)
{
    return QString::number(value) + table.text(unitKey);
}

QString twoShortUnits(qint64 first, const char *firstKey, qint64 second, const char *secondKey,
                      const LanguageTable &table)
{
    return shortUnit(first, firstKey, table) + u' ' + shortUnit(second, secondKey, table);
}

constexpr const char *shortYear = "countdown.unit.short.year";
constexpr const char *shortWeek = "countdown.unit.short.week";
constexpr const char *shortDay = "countdown.unit.short.day";
constexpr const char *shortHour = "countdown.unit.short.hour";
constexpr const char *shortMinute = "countdown.unit.short.minute";

QString spelledOut(qint64 value, const char *singular, const char *plural,
                   const LanguageTable &table)
{
    return QString::number(value) + u' ' + table.text(value == 1 ? singular : plural);
}

} // namespace

std::optional<QString> CountdownFormatter::formatDays(qint64 days, CountdownDisplayFormat format,
                                                      const LanguageTable &table)
{
    switch (format) {
    case CountdownDisplayFormat::automatic:
        return std::nullopt;
    case CountdownDisplayFormat::daysOnly:
        if (days < 1)
            return std::nullopt;
        return shortUnit(days, shortDay, table);
    case CountdownDisplayFormat::weeksDays: {
        if (days < 7)
            return std::nullopt;
        const qint64 weeks = days / 7;
        const qint64 rest = days - 7 * weeks;
        if (rest == 0)
            return shortUnit(weeks, shortWeek, table);
        return twoShortUnits(weeks, shortWeek, rest, shortDay, table);
    }
    }
    return std::nullopt;
}

QString CountdownFormatter::compact(const Remaining &remaining, CountdownDisplayFormat format,
                                    const LanguageTable &table)
{
    if (auto days = formatDays(remaining.days, format, table))
        return *days;
    if (remaining.days >= 7)
        return shortUnit(remaining.days, shortDay, table);
    if (remaining.days >= 1)
        return twoShortUnits(remaining.days, shortDay, remaining.hours, shortHour, table);
    if (remaining.hours >= 1)
        return twoShortUnits(remaining.hours, shortHour, remaining.minutes, shortMinute, table);
    if (remaining.totalSeconds > 60)
        return shortUnit(remaining.minutes, shortMinute, table);
    return QString::number(remaining.minutes) + u':'
        + QStringLiteral("%1").arg(remaining.seconds, 2, 10, QLatin1Char('0'));
}

QString CountdownFormatter::compactElapsed(const QDateTime &start, const QDateTime &now,
                                           const QTimeZone &zone, CountdownDisplayFormat format,
                                           const LanguageTable &table)
{
    const qint64 s = wholeSeconds(secondsBetween(start, now));
    const qint64 days = s / secondsPerDay;
    if (auto text = formatDays(days, format, table))
        return *text;
    if (format == CountdownDisplayFormat::automatic) {
        const YearsAndDays span = yearsAndDays(start, now, zone);
        if (span.years >= 1) {
            if (span.days < 1)
                return shortUnit(span.years, shortYear, table);
            return twoShortUnits(span.years, shortYear, span.days, shortDay, table);
        }
    }
    if (s >= secondsPerWeek)
        return shortUnit(days, shortDay, table);
    const qint64 withinDay = s - secondsPerDay * days;
    const qint64 hours = withinDay / 3600;
    if (days >= 1)
        return twoShortUnits(days, shortDay, hours, shortHour, table);
    const qint64 minutes = (s % 3600) / 60;
    if (withinDay < 3600)
        return shortUnit(minutes, shortMinute, table);
    return twoShortUnits(hours, shortHour, minutes, shortMinute, table);
}

CountdownFormatter::YearsAndDays CountdownFormatter::yearsAndDays(const QDateTime &start,
                                                                  const QDateTime &now,
                                                                  const QTimeZone &zone)
{
    if (!(now > start))
        return {};
    const qint64 years =
        CalendarDifference::between(start, now, zone, CalendarDifference::Unit::year).years;
    const QDateTime anchor = addCalendarYears(start, years, zone);
    if (!anchor.isValid())
        return {years, 0};
    return {years, wholeSeconds(secondsBetween(anchor, now) / secondsPerDay)};
}

double CountdownFormatter::anniversaryProgress(const QDateTime &start, const QDateTime &now,
                                               const QTimeZone &zone)
{
    const qint64 years = yearsAndDays(start, now, zone).years;
    const QDateTime previous = addCalendarYears(start, years, zone);
    const QDateTime next = addCalendarYears(start, years + 1, zone);
    if (!previous.isValid() || !next.isValid())
        return 0.0;
    const double length = secondsBetween(previous, next);
    if (!(length > 0))
        return 0.0;
    return std::clamp(secondsBetween(previous, now) / length, 0.0, 1.0);
}

QString CountdownFormatter::detail(const QDateTime &from, const QDateTime &to,
                                   const QTimeZone &zone, int maxUnits, const LanguageTable &table)
{
    using Unit = CalendarDifference::Unit;
    const CalendarDifference span = CalendarDifference::between(
        from, to, zone, Unit::year | Unit::month | Unit::day | Unit::hour | Unit::minute);
    const DetailUnit units[] = {
        {span.years, "countdown.unit.year", "countdown.unit.years"},
        {span.months, "countdown.unit.month", "countdown.unit.months"},
        {span.days, "countdown.unit.day", "countdown.unit.days"},
        {span.hours, "countdown.unit.hour", "countdown.unit.hours"},
        {span.minutes, "countdown.unit.minute", "countdown.unit.minutes"},
    };
    QStringList pieces;
    for (const DetailUnit &unit : units) {
        if (pieces.size() >= maxUnits)
            break;
        if (unit.value > 0)
            pieces.append(spelledOut(unit.value, unit.singular, unit.plural, table));
    }
    if (pieces.isEmpty())
        return table.text("countdown.detail.reached");
    return pieces.join(u' ');
}

QString CountdownFormatter::daysDetail(const QDateTime &from, const QDateTime &to,
                                       const QTimeZone &zone, const LanguageTable &table)
{
    const qint64 days =
        CalendarDifference::between(from, to, zone, CalendarDifference::Unit::day).days;
    if (days >= 1)
        return spelledOut(days, "countdown.unit.day", "countdown.unit.days", table);
    return detail(from, to, zone, 2, table);
}

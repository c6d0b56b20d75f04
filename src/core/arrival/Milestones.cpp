#include "arrival/Milestones.h"

#include "l10n/LanguageTable.h"
#include "time/CalendarDifference.h"

#include <QLocale>

#include <array>

namespace {

constexpr std::array<qint64, 5> DayMilestones {100, 500, 1000, 5000, 10000};

QDateTime shifted(const QDateTime &start, const QTimeZone &zone, qint64 days, int months)
{
    return start.toTimeZone(zone).addDays(days).addMonths(months).toUTC();
}

// Every milestone that falls within [from, to], by moment.
QList<Milestone> milestonesAround(const QDateTime &start, const QTimeZone &zone,
                                  const QDateTime &now)
{
    QList<Milestone> all;
    for (qint64 days : DayMilestones)
        all.append({Milestone::Unit::days, days, shifted(start, zone, days, 0)});
    for (int month = 1; month < 12; ++month)
        all.append({Milestone::Unit::months, month, shifted(start, zone, 0, month)});
    // The anniversaries either side of now.
    const qint64 years =
        CalendarDifference::between(start, now, zone, CalendarDifference::Unit::year).years;
    for (qint64 year = std::max<qint64>(1, years); year <= years + 1; ++year)
        all.append({Milestone::Unit::years, year, addCalendarYears(start, year, zone)});
    return all;
}

} // namespace

QString Milestone::text(const LanguageTable &table) const
{
    const QString number = QLocale(table.code()).toString(count);
    switch (unit) {
    case Unit::days:
        return table.format("notification.milestone.days %lld", {number});
    case Unit::months:
        return count == 1 ? table.text("notification.milestone.month")
                          : table.format("notification.milestone.months %lld", {number});
    case Unit::years:
        return count == 1 ? table.text("notification.milestone.year")
                          : table.format("notification.milestone.years %lld", {number});
    }
    return QString();
}

namespace Milestones {

std::optional<Milestone> latest(const QDateTime &start, const QTimeZone &zone, const QDateTime &now)
{
    std::optional<Milestone> found;
    for (const Milestone &milestone : milestonesAround(start, zone, now)) {
        if (milestone.moment <= now && (!found || milestone.moment > found->moment))
            found = milestone;
    }
    return found;
}

std::optional<Milestone> next(const QDateTime &start, const QTimeZone &zone, const QDateTime &now)
{
    std::optional<Milestone> found;
    for (const Milestone &milestone : milestonesAround(start, zone, now)) {
        if (milestone.moment > now && (!found || milestone.moment < found->moment))
            found = milestone;
    }
    return found;
}

} // namespace Milestones

#include "parse/WallTime.h"

#include <optional>

namespace WallTime {
namespace {

constexpr qint64 msPerSecond = 1000;
constexpr qint64 msPerDay = 86'400'000;

int offsetAt(const QTimeZone &zone, qint64 utcMs)
{
    return zone.offsetFromUtc(QDateTime::fromMSecsSinceEpoch(utcMs, Qt::UTC));
}

} // namespace

QDateTime toInstant(QDate date, QTime time, const QTimeZone &zone)
{
    // The wall time read as if it were UTC; subtracting the zone's offset gives the instant.
    const qint64 wallMs = QDateTime(date, time, Qt::UTC).toMSecsSinceEpoch();
    // A change of offset near this wall time lies between these two; the day on either side
    // keeps real zones (which change at most twice a year) clear of a second change.
    const int offsetBefore = offsetAt(zone, wallMs - msPerDay);
    const int offsetAfter = offsetAt(zone, wallMs + msPerDay);

    std::optional<qint64> earliest;
    for (const int offset : {offsetBefore, offsetAfter}) {
        const qint64 candidate = wallMs - offset * msPerSecond;
        if (offsetAt(zone, candidate) == offset && (!earliest || candidate < *earliest))
            earliest = candidate;
    }
    // No offset reads back: the wall time falls in a gap. Reading it with the offset in force
    // before the gap lands the same distance past the gap's end.
    const qint64 utcMs = earliest.value_or(wallMs - offsetBefore * msPerSecond);
    return QDateTime::fromMSecsSinceEpoch(utcMs, Qt::UTC);
}

QDateTime startOfDay(QDate date, const QTimeZone &zone)
{
    return toInstant(date, QTime(0, 0), zone);
}

} // namespace WallTime

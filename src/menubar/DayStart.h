#pragma once

#include <QDateTime>
#include <QString>

// The start (midnight) of the calendar day on which `instant` falls in the zone named by `zoneID`
// (the system zone when the id names no zone), as a UTC instant. It is what all-day items count
// from. Zones and results are remembered per thread, so the thousands of all-day items of a list
// rebuild cost a hash look-up each after the first time; an unknown id is never remembered, so a
// change of the system zone is seen at once.
namespace DayStart {

QDateTime of(const QDateTime &instant, const QString &zoneID);

} // namespace DayStart

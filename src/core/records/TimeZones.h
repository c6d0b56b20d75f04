#pragma once

#include <QDateTime>
#include <QString>
#include <QTimeZone>

// The zone an IANA identifier names, or the system's zone when it names none.
QTimeZone zoneOrSystem(const QString &ianaId);

// The start (midnight, or the first valid moment after a DST gap) of the calendar day that
// `instant` falls on in `zone`, as a UTC instant.
QDateTime startOfDay(const QDateTime &instant, const QTimeZone &zone);

// The same for the zone an IANA identifier names (the system's when it names none). What
// all-day items count from; answers are remembered per thread, so the thousands of all-day
// items of a list cost a hash look-up each after the first time. An unknown identifier is
// never remembered, so a change of the system zone is seen at once.
QDateTime startOfDay(const QDateTime &instant, const QString &ianaId);

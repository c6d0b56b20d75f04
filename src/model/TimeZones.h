#pragma once

#include <QDateTime>
#include <QString>
#include <QTimeZone>

// The zone an IANA identifier names, or the system's zone when it names none.
QTimeZone zoneOrSystem(const QString &ianaId);

// The start (midnight, or the first valid moment after a DST gap) of the calendar day that
// `instant` falls on in `zone`, as a UTC instant.
QDateTime startOfDay(const QDateTime &instant, const QTimeZone &zone);

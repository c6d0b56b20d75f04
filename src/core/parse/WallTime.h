#pragma once

#include <QDate>
#include <QDateTime>
#include <QTime>
#include <QTimeZone>

// Turns a calendar date and a wall-clock time in a zone into an instant (UTC), with fixed rules
// for the two DST cases: a time skipped by a spring-forward change moves forward by the length
// of the gap (02:30 on a day that jumps from 02:00 to 03:00 is 03:30), and a time that occurs
// twice on a fall-back day is its first occurrence (the one still in summer time).
namespace WallTime {

QDateTime toInstant(QDate date, QTime time, const QTimeZone &zone);
QDateTime startOfDay(QDate date, const QTimeZone &zone);

} // namespace WallTime

#pragma once

#include "records/RecurrenceRule.h"

#include <QDate>
#include <QDateTime>
#include <QTime>
#include <QTimeZone>

// The dates of a repeating countdown, walked in order from its first occurrence, in the
// Gregorian calendar of the countdown's own zone. Every occurrence keeps the first one's wall
// time of day, so a 09:00 countdown stays at 09:00 across DST changes.
//
// - daily: every `interval` days;
// - weekly: on the chosen weekdays (none chosen: the first occurrence's weekday) of every
//   `interval`-th week, weeks starting on Monday;
// - monthly: on the first occurrence's day of the month, clamped to the month's last day
//   (31 January, 28 February, 31 March);
// - yearly: on the first occurrence's day and month (29 February is 28 February in common years);
// - an interval below 1 counts as 1. The first occurrence itself is always one, even on a weekday
//   the rule does not name.
//
// The end rule cuts the walk: after `count` occurrences (the first included), or after the last
// occurrence on or before the end date's day.
class RecurrenceSeries
{
public:
    RecurrenceSeries(const RecurrenceRule &rule, const QDateTime &first, const QTimeZone &zone,
                     bool allDay);

    // The occurrence the walk stands on, its number (0 for the first) and its moment: the wall
    // time in the zone, or the start of its day for an all-day countdown.
    QDate date() const { return m_date; }
    qint64 index() const { return m_index; }
    QDateTime moment() const { return momentOf(m_date); }
    // The target date to store for the occurrence: its day at the first occurrence's wall time.
    QDateTime target() const;

    // Steps to the next occurrence; false (and no step) when the end rule stops the series.
    bool advance();
    // Walks until the occurrence on `date`; false when the series never lands on it.
    bool seek(const QDate &date);

private:
    QDate dateOf(qint64 period, int slot) const;
    bool withinEnd(const QDate &date, qint64 index) const;
    QDateTime momentOf(const QDate &date) const;

    RecurrenceRule m_rule;
    QTimeZone m_zone;
    bool m_allDay = false;
    QDate m_first;
    QTime m_time;
    QList<int> m_weekdayOffsets; // days after Monday, ascending (weekly rules)
    qint64 m_period = 0;
    int m_slot = 0;
    QDate m_date;
    qint64 m_index = 0;
};

#include "arrival/RecurrenceSeries.h"

#include <algorithm>

namespace {

// Days after Monday of a Gregorian weekday (sunday = 1 ... saturday = 7).
int offsetFromMonday(Weekday day)
{
    return (int(day) + 5) % 7;
}

QDate clampedDate(int year, int month, int day)
{
    const QDate firstOfMonth(year, month, 1);
    return QDate(year, month, std::min(day, firstOfMonth.daysInMonth()));
}

} // namespace

RecurrenceSeries::RecurrenceSeries(const RecurrenceRule &rule, const QDateTime &first,
                                   const QTimeZone &zone, bool allDay)
    : m_rule(rule)
    , m_zone(zone)
    , m_allDay(allDay)
{
    const QDateTime local = first.toTimeZone(zone);
    m_first = local.date();
    m_time = local.time();
    m_rule.interval = std::max<qint64>(1, rule.interval);
    if (m_rule.frequency == RecurrenceRule::Frequency::weekly) {
        for (Weekday day : rule.weekdays)
            m_weekdayOffsets.append(offsetFromMonday(day));
        if (m_weekdayOffsets.isEmpty())
            m_weekdayOffsets.append(m_first.dayOfWeek() - 1);
        std::sort(m_weekdayOffsets.begin(), m_weekdayOffsets.end());
        m_weekdayOffsets.erase(std::unique(m_weekdayOffsets.begin(), m_weekdayOffsets.end()),
                               m_weekdayOffsets.end());
        // The first week's slots before the first occurrence are not part of the series.
        while (m_slot < m_weekdayOffsets.size() && dateOf(0, m_slot) <= m_first)
            ++m_slot;
        --m_slot; // stands "before" the next slot; advance() moves on from here
    }
    m_date = m_first;
}

QDateTime RecurrenceSeries::target() const
{
    return QDateTime(m_date, m_time, m_zone).toUTC();
}

QDateTime RecurrenceSeries::momentOf(const QDate &date) const
{
    const QDateTime moment = m_allDay ? date.startOfDay(m_zone) : QDateTime(date, m_time, m_zone);
    return moment.toUTC();
}

QDate RecurrenceSeries::dateOf(qint64 period, int slot) const
{
    const qint64 step = period * m_rule.interval;
    switch (m_rule.frequency) {
    case RecurrenceRule::Frequency::daily:
        return m_first.addDays(step);
    case RecurrenceRule::Frequency::weekly: {
        const QDate monday = m_first.addDays(1 - m_first.dayOfWeek());
        return monday.addDays(7 * step + m_weekdayOffsets.at(slot));
    }
    case RecurrenceRule::Frequency::monthly: {
        const qint64 months = qint64(m_first.month() - 1) + step;
        return clampedDate(m_first.year() + int(months / 12), int(months % 12) + 1, m_first.day());
    }
    case RecurrenceRule::Frequency::yearly:
        return clampedDate(m_first.year() + int(step), m_first.month(), m_first.day());
    }
    return QDate();
}

bool RecurrenceSeries::withinEnd(const QDate &date, qint64 index) const
{
    if (!m_rule.end)
        return date.isValid();
    if (m_rule.end->kind == RecurrenceRule::End::Kind::afterOccurrences)
        return index < m_rule.end->count;
    return date <= m_rule.end->date.toTimeZone(m_zone).date();
}

bool RecurrenceSeries::advance()
{
    qint64 period = m_period;
    int slot = m_slot;
    if (m_rule.frequency == RecurrenceRule::Frequency::weekly
        && ++slot >= m_weekdayOffsets.size()) {
        slot = 0;
        ++period;
    } else if (m_rule.frequency != RecurrenceRule::Frequency::weekly) {
        ++period;
    }
    const QDate next = dateOf(period, slot);
    if (!next.isValid() || !withinEnd(next, m_index + 1))
        return false;
    m_period = period;
    m_slot = slot;
    m_date = next;
    ++m_index;
    return true;
}

bool RecurrenceSeries::seek(const QDate &date)
{
    while (m_date < date) {
        if (!advance())
            return false;
    }
    return m_date == date;
}

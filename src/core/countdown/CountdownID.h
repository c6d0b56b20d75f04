#pragma once

#include "records/CalendarRefs.h"

#include <QUuid>

#include <variant>

// The identity of one row of the countdown list: a manual event's UUID or a calendar occurrence's
// reference. Two ids are equal when the case and the payload are equal.
class CountdownID
{
public:
    static CountdownID manual(const QUuid &eventID) { return CountdownID(eventID); }
    static CountdownID calendar(const CalendarEventRef &ref) { return CountdownID(ref); }

    bool isManual() const { return std::holds_alternative<QUuid>(m_value); }
    bool isCalendar() const { return std::holds_alternative<CalendarEventRef>(m_value); }
    // The payload of the matching case; null for the other one.
    const QUuid *eventID() const { return std::get_if<QUuid>(&m_value); }
    const CalendarEventRef *calendarRef() const { return std::get_if<CalendarEventRef>(&m_value); }

    bool operator==(const CountdownID &other) const { return m_value == other.m_value; }

private:
    explicit CountdownID(std::variant<QUuid, CalendarEventRef> value)
        : m_value(std::move(value))
    {
    }

    std::variant<QUuid, CalendarEventRef> m_value;
};

size_t qHash(const CountdownID &id, size_t seed = 0);

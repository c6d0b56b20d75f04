#pragma once

#include "countdown/CountdownID.h"
#include "records/CalendarOccurrence.h"
#include "records/Event.h"

#include <QDateTime>
#include <QMetaType>

#include <memory>
#include <optional>
#include <variant>

// One row of the merged countdown list: a countdown the user made or an occurrence of a calendar
// event. The moments every list pass needs (the item's date and its ordering date) are worked
// out once when the item is made, so scanning thousands of items on each tick does no time-zone
// work. The payload is shared and immutable, so copying an item (and the list) is cheap and an
// unchanged item compares equal at a glance. Two items are equal when their cases and payloads
// are equal.
class CountdownItem
{
public:
    static CountdownItem manual(Event event);
    static CountdownItem calendar(CalendarOccurrence occurrence);

    bool isManual() const { return m_flags & Manual; }
    bool isCalendar() const { return !(m_flags & Manual); }
    // The payload of the matching case; null for the other one.
    const Event *event() const { return std::get_if<Event>(m_payload.get()); }
    const CalendarOccurrence *occurrence() const
    {
        return std::get_if<CalendarOccurrence>(m_payload.get());
    }

    CountdownID id() const;
    const QString &title() const;
    // The user's note: the event's own, or the one attached to the calendar series.
    const std::optional<QString> &note() const;

    // The moment the item counts towards (or up from): the event's effective target (the start of
    // its day in its own zone for an all-day event), or the occurrence's start.
    QDateTime date() const { return QDateTime::fromMSecsSinceEpoch(m_dateMSecs, Qt::UTC); }
    qint64 dateMSecs() const { return m_dateMSecs; }
    // The date the menu-bar choice compares: like date(), except that an all-day calendar
    // occurrence counts from the start of its day in the occurrence's own zone.
    QDateTime orderingDate() const
    {
        return QDateTime::fromMSecsSinceEpoch(m_orderingMSecs, Qt::UTC);
    }
    qint64 orderingMSecs() const { return m_orderingMSecs; }

    // A manual item whose arrival has been stamped; calendar items are never reached.
    bool isReached() const { return m_flags & Reached; }
    // A manual item that counts up from its date (direction since).
    bool isCountUp() const { return m_flags & CountUp; }
    // Manual: not reached and counting down. Calendar: starts strictly after `now`.
    bool isUpcoming(const QDateTime &now) const { return isUpcoming(now.toMSecsSinceEpoch()); }
    bool isUpcoming(qint64 nowMSecs) const
    {
        return isManual() ? !(m_flags & (Reached | CountUp)) : m_dateMSecs > nowMSecs;
    }
    // A manual item that arrived and has nothing left to show: its celebration was seen or it
    // never asked for one. Calendar items are never settled.
    bool isSettled() const { return m_flags & Settled; }
    // A manual item that arrived and whose celebration has not been seen yet.
    bool waitsForCelebration() const { return m_flags & WaitsForCelebration; }
    // A calendar occurrence whose series is hidden, or kept out of the automatic choice.
    bool isHidden() const { return m_flags & Hidden; }
    bool isExcludedFromAutomatic() const { return m_flags & ExcludedFromAutomatic; }
    // A calendar occurrence whose series celebrates or announces its arrivals.
    bool asksForArrival() const { return m_flags & AsksForArrival; }
    // The item's own time zone (the system zone when its identifier names none).
    QTimeZone zone() const;

    bool operator==(const CountdownItem &other) const
    {
        return m_payload == other.m_payload || *m_payload == *other.m_payload;
    }

private:
    using Payload = std::variant<Event, CalendarOccurrence>;
    // What the hot loops over the list ask, kept beside the shared payload.
    enum Flag : quint16 {
        Manual = 0x1,
        CountUp = 0x2,
        Reached = 0x4,
        Settled = 0x8,
        WaitsForCelebration = 0x10,
        Hidden = 0x20,
        ExcludedFromAutomatic = 0x40,
        AsksForArrival = 0x80,
    };

    CountdownItem(Payload payload, qint64 dateMSecs, qint64 orderingMSecs, quint16 flags);

    std::shared_ptr<const Payload> m_payload;
    qint64 m_dateMSecs = 0;
    qint64 m_orderingMSecs = 0;
    quint16 m_flags = 0;
};

Q_DECLARE_METATYPE(CountdownItem)

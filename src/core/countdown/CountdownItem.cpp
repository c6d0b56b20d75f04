#include "countdown/CountdownItem.h"

#include "records/TimeZones.h"

CountdownItem::CountdownItem(Payload payload, qint64 dateMSecs, qint64 orderingMSecs, quint16 flags)
    : m_payload(std::make_shared<const Payload>(std::move(payload)))
    , m_dateMSecs(dateMSecs)
    , m_orderingMSecs(orderingMSecs)
    , m_flags(flags)
{
}

CountdownItem CountdownItem::manual(Event event)
{
    const QDateTime target = event.effectiveTarget();
    const qint64 msecs = target.toMSecsSinceEpoch();
    quint16 flags = Manual;
    if (event.direction == CountdownDirection::since)
        flags |= CountUp;
    if (event.reachedAt) {
        flags |= Reached;
        if (event.celebrationAcknowledged || !event.celebrationEnabled)
            flags |= Settled;
        if (event.celebrationEnabled && !event.celebrationAcknowledged)
            flags |= WaitsForCelebration;
    }
    return CountdownItem(std::move(event), msecs, msecs, flags);
}

CountdownItem CountdownItem::calendar(CalendarOccurrence occurrence)
{
    const qint64 start = occurrence.start.toMSecsSinceEpoch();
    const qint64 ordering = occurrence.isAllDay
        ? startOfDay(occurrence.start, occurrence.timeZoneID).toMSecsSinceEpoch()
        : start;
    quint16 flags = 0;
    if (occurrence.isHidden)
        flags |= Hidden;
    if (occurrence.excludedFromAutomatic)
        flags |= ExcludedFromAutomatic;
    if (occurrence.celebrationEnabled || occurrence.notifyOnReach)
        flags |= AsksForArrival;
    return CountdownItem(std::move(occurrence), start, ordering, flags);
}

CountdownID CountdownItem::id() const
{
    if (const Event *e = event())
        return CountdownID::manual(e->id);
    return CountdownID::calendar(occurrence()->ref);
}

const QString &CountdownItem::title() const
{
    if (const Event *e = event())
        return e->title;
    return occurrence()->title;
}

const std::optional<QString> &CountdownItem::note() const
{
    if (const Event *e = event())
        return e->note;
    return occurrence()->note;
}

QTimeZone CountdownItem::zone() const
{
    if (const Event *e = event())
        return zoneOrSystem(e->timeZone);
    return zoneOrSystem(occurrence()->timeZoneID);
}

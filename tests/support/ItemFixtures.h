#pragma once

#include "countdown/CountdownItem.h"

#include <QUuid>

// Small builders for the countdowns and calendar occurrences the list tests arrange.
namespace Fixture {

inline QDateTime at(const char *iso)
{
    return QDateTime::fromString(QString::fromLatin1(iso), Qt::ISODate).toUTC();
}

// A timed countdown in Istanbul, created ten days before its target; given a `zone`, a countdown
// to the whole day on which the target falls there.
inline Event countdown(const QString &title, const QDateTime &target, const char *zone = nullptr)
{
    Event event;
    event.id = QUuid::createUuid();
    event.title = title;
    event.targetDate = target;
    event.includeTime = !zone;
    event.timeZone = QString::fromLatin1(zone ? zone : "Europe/Istanbul");
    event.createdAt = target.addDays(-10);
    return event;
}

inline Event countUp(const QString &title, const QDateTime &start)
{
    Event event = countdown(title, start);
    event.direction = CountdownDirection::since;
    return event;
}

inline Event reached(Event event, bool celebrate = false, bool acknowledged = false)
{
    event.reachedAt = event.targetDate;
    event.celebrationEnabled = celebrate;
    event.celebrationAcknowledged = acknowledged;
    return event;
}

// An hour-long occurrence in the "work" calendar.
inline CalendarOccurrence occurrence(const QString &seriesID, const QString &title,
                                     const QDateTime &start)
{
    CalendarOccurrence occurrence;
    occurrence.ref = CalendarEventRef {CalendarSeriesRef {"work", seriesID}, start};
    occurrence.title = title;
    occurrence.start = start;
    occurrence.end = start.addSecs(3600);
    occurrence.timeZoneID = QStringLiteral("Europe/Istanbul");
    occurrence.calendarTitle = QStringLiteral("Work");
    return occurrence;
}

inline CountdownItem item(const Event &event)
{
    return CountdownItem::manual(event);
}

inline CountdownItem item(const CalendarOccurrence &occurrence)
{
    return CountdownItem::calendar(occurrence);
}

inline QStringList titles(const QList<CountdownItem> &items)
{
    QStringList result;
    for (const CountdownItem &item : items)
        result.append(item.title());
    return result;
}

} // namespace Fixture

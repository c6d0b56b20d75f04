#pragma once

#include "records/CalendarReachSignals.h"
#include "records/CalendarRefs.h"
#include "records/Event.h"
#include "records/PinTarget.h"

#include <QList>
#include <QMap>
#include <QSet>

// Everything the events file holds, in memory.
struct StoreState
{
    QList<Event> events;
    std::optional<PinTarget> pin;
    QMap<CalendarSeriesRef, IconRef> calendarIcons;
    QSet<CalendarSeriesRef> hiddenCalendarSeries;
    QSet<CalendarSeriesRef> keptCalendarSeries;
    QMap<CalendarSeriesRef, CalendarReachSignals> calendarReach;
    QMap<CalendarSeriesRef, CalendarAnnotation> calendarAnnotations;

    bool operator==(const StoreState &) const = default;
};

// What loading the events file yields.
struct LoadResult
{
    StoreState state;
    bool needsReachSignalMigration = false;
};

// The order of the stored list: pending countdowns (soonest first), then count-ups (newest
// first), then arrived events.
void sortEvents(QList<Event> &events);

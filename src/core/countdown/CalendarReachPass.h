#pragma once

#include "countdown/CountdownItem.h"
#include "records/CalendarReachSignals.h"

#include <QList>
#include <QMap>

// Arming and recording the arrivals of calendar occurrences, series by series.
//
// A series whose occurrences ask for a celebration or a notification (and that is not hidden)
// has its next occurrence armed: the visible occurrence of the series with the earliest start
// strictly after now, as a snapshot (start, title, and the series' link or else the meeting
// link). At the first pass at or after the armed start, the snapshot moves to `reached` (the
// celebration coordinator acknowledges it by clearing `reached`) and the next occurrence is
// armed. When the calendar moves or drops the armed occurrence before it starts, the arming
// follows; when the series has no occurrence in the list at all (a calendar refresh in flight),
// the armed snapshot is kept. Turning both switches off, or hiding the series, disarms it.
//
// The pass is idempotent: it proposes a change only for a series whose signals would differ.
struct CalendarReachChange
{
    CalendarSeriesRef series;
    CalendarReachSignals signals;
    bool recordsArrival = false; // `reached` changed: an occurrence arrived

    bool operator==(const CalendarReachChange &) const = default;
};

namespace CalendarReachPass {

QList<CalendarReachChange> changes(const QList<CountdownItem> &items,
                                   const QMap<CalendarSeriesRef, CalendarReachSignals> &reach,
                                   const QDateTime &now);

CalendarReachSignals::Occurrence snapshot(const CalendarOccurrence &occurrence);

} // namespace CalendarReachPass

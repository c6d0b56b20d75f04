#pragma once

#include "records/CalendarOccurrence.h"
#include "records/Settings.h"

#include <QSet>

// How the calendar store turns what the providers read into the occurrences the list shows.
//
// Shown: occurrences that have not ended at `now` (a meeting under way stays, so it can still be
// joined) and start before the horizon, of enabled calendars. Left out: cancelled occurrences,
// occurrences the user declined while `skipDeclined` is on, and all-day events while
// `includeAllDay` is off. A series the user kept (or pinned) stays even when its calendar is
// switched off or it is an all-day event; cancelled and skipped declined occurrences go all the
// same, so a pinned series moves on to its next real occurrence.
//
// `excludedFromAutomatic` marks all-day and declined occurrences: they are listed but never take
// the menu bar by themselves. `previousOccurrenceStart` is the start of the series' previous
// occurrence among those read (cancelled ones do not count).
namespace OccurrenceFilter {

// The window to read: a week back (for the previous occurrences) up to the horizon.
struct Window
{
    QDateTime from;
    QDateTime to;
};
Window readWindow(const CalendarSettings &settings, const QDateTime &now);

// Horizon in days as used: at least 1, at most 366.
qint64 horizonDays(const CalendarSettings &settings);

QList<CalendarOccurrence> apply(const QList<ProviderOccurrence> &read,
                                const CalendarSettings &settings,
                                const QSet<CalendarSeriesRef> &keptSeries, const QDateTime &now);

// The record the list shows, before the user's per-series choices are laid over it.
CalendarOccurrence copied(const ProviderOccurrence &occurrence);

} // namespace OccurrenceFilter

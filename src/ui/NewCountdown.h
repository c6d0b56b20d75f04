#pragma once

#include "records/Event.h"
#include "records/Settings.h"

// A countdown as the user starts one in the popup: made now in `zone`, with the arrival
// switches the settings choose for new countdowns.
inline Event newCountdown(const QString &title, const QDateTime &now, const QTimeZone &zone,
                          const Settings &settings)
{
    Event event = Event::created(title, now, zone);
    event.notifyOnReach = settings.newCountdownNotifies;
    event.celebrationEnabled = settings.newCountdownCelebrates;
    return event;
}

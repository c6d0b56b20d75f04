#include "records/EventPatch.h"

namespace {

template<typename T, typename U>
void copyIfPresent(const std::optional<T> &patch, U &field)
{
    if (patch)
        field = *patch;
}

} // namespace

void EventPatch::applyTo(Event &event) const
{
    copyIfPresent(title, event.title);
    copyIfPresent(targetDate, event.targetDate);
    copyIfPresent(includeTime, event.includeTime);
    copyIfPresent(timeZone, event.timeZone);
    copyIfPresent(icon, event.icon);
    copyIfPresent(reachedAt, event.reachedAt);
    copyIfPresent(celebrationAcknowledged, event.celebrationAcknowledged);
    copyIfPresent(recurrence, event.recurrence);
    copyIfPresent(cycleAnchor, event.cycleAnchor);
    copyIfPresent(celebrationEnabled, event.celebrationEnabled);
    copyIfPresent(notifyOnReach, event.notifyOnReach);
    copyIfPresent(note, event.note);
    copyIfPresent(link, event.link);
    copyIfPresent(reminderLeadMinutes, event.reminderLeadMinutes);
    copyIfPresent(direction, event.direction);
    copyIfPresent(color, event.color);
    copyIfPresent(milestonesEnabled, event.milestonesEnabled);
}

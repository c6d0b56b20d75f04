#include "records/EventPatch.h"

namespace {

template<typename T, typename U>
void copyIfPresent(const std::optional<T> &patch, U &field)
{
    if (patch)
        field = *patch;
}

template<typename T, typename U>
void setIfChanged(const U &before, const U &after, std::optional<T> &patch)
{
    if (!(before == after))
        patch = after;
}

} // namespace

EventPatch EventPatch::between(const Event &before, const Event &after)
{
    EventPatch patch;
    setIfChanged(before.title, after.title, patch.title);
    setIfChanged(before.targetDate, after.targetDate, patch.targetDate);
    setIfChanged(before.includeTime, after.includeTime, patch.includeTime);
    setIfChanged(before.timeZone, after.timeZone, patch.timeZone);
    setIfChanged(before.icon, after.icon, patch.icon);
    setIfChanged(before.reachedAt, after.reachedAt, patch.reachedAt);
    setIfChanged(before.celebrationAcknowledged, after.celebrationAcknowledged,
                 patch.celebrationAcknowledged);
    setIfChanged(before.recurrence, after.recurrence, patch.recurrence);
    setIfChanged(before.cycleAnchor, after.cycleAnchor, patch.cycleAnchor);
    setIfChanged(before.celebrationEnabled, after.celebrationEnabled, patch.celebrationEnabled);
    setIfChanged(before.notifyOnReach, after.notifyOnReach, patch.notifyOnReach);
    setIfChanged(before.note, after.note, patch.note);
    setIfChanged(before.link, after.link, patch.link);
    setIfChanged(before.reminderLeadMinutes, after.reminderLeadMinutes, patch.reminderLeadMinutes);
    setIfChanged(before.direction, after.direction, patch.direction);
    setIfChanged(before.color, after.color, patch.color);
    setIfChanged(before.milestonesEnabled, after.milestonesEnabled, patch.milestonesEnabled);
    return patch;
}

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

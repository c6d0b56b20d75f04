#pragma once

#include "records/Event.h"

#include <optional>

// A change to an Event: each field is either absent (left alone) or present with a new value.
// Fields that are optional in Event have two levels: present-with-nullopt clears the field.
struct EventPatch
{
    template<typename T>
    using Clearable = std::optional<std::optional<T>>;

    std::optional<QString> title;
    std::optional<QDateTime> targetDate;
    std::optional<bool> includeTime;
    std::optional<QString> timeZone;
    Clearable<IconRef> icon;
    Clearable<QDateTime> reachedAt;
    std::optional<bool> celebrationAcknowledged;
    Clearable<RecurrenceRule> recurrence;
    Clearable<QDateTime> cycleAnchor;
    std::optional<bool> celebrationEnabled;
    std::optional<bool> notifyOnReach;
    Clearable<QString> note;
    Clearable<QString> link;
    std::optional<QList<qint64>> reminderLeadMinutes;
    std::optional<CountdownDirection> direction;
    Clearable<EventColor> color;
    std::optional<bool> milestonesEnabled;

    // The patch that turns `before` into `after`: exactly the fields in which they differ.
    static EventPatch between(const Event &before, const Event &after);

    bool isEmpty() const { return *this == EventPatch(); }
    // Copies the present fields into the event and nothing else: no field is cleared or stamped
    // as a side effect; schemaVersion, id and createdAt never change.
    void applyTo(Event &event) const;

    bool operator==(const EventPatch &) const = default;
};

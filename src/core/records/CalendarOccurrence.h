#pragma once

#include "records/CalendarInfo.h"
#include "records/CalendarRefs.h"
#include "records/IconRef.h"

#include <QList>
#include <QUrl>

#include <optional>

// An occurrence as the lists and the menu bar show it: what the calendar says, with the user's
// per-series choices (icon, hidden, arrival switches, note, link, reminders) laid over it.
struct CalendarOccurrence
{
    CalendarEventRef ref;
    QString title;
    QDateTime start;
    std::optional<QDateTime> end;
    bool isAllDay = false;
    QString timeZoneID;
    QString calendarTitle;
    QString accountTitle;
    std::optional<CalendarTint> tint;
    std::optional<QString> location;
    bool isRecurring = false;
    std::optional<QUrl> externalURL;
    std::optional<QUrl> meetingURL;
    std::optional<QDateTime> previousOccurrenceStart;
    std::optional<QDateTime> createdAt;
    bool excludedFromAutomatic = false;
    // Laid over from the series' settings:
    std::optional<IconRef> icon;
    bool isHidden = false;
    bool celebrationEnabled = false;
    bool notifyOnReach = false;
    std::optional<QString> note;
    std::optional<QString> link;
    QList<qint64> reminderLeadMinutes;

    bool operator==(const CalendarOccurrence &) const = default;
};

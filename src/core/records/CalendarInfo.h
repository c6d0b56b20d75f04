#pragma once

#include "records/CalendarRefs.h"

#include <QList>
#include <QString>
#include <QUrl>

#include <optional>

struct CalendarTint
{
    double red = 0; // sRGB components, 0-1
    double green = 0;
    double blue = 0;
    bool operator==(const CalendarTint &) const = default;
};

enum class CalendarAccountKind {
    iCloud,
    google,
    exchange,
    subscribed,
    birthdays,
    onThisMac,
    other
};
enum class CalendarParticipation { notAnAttendee, accepted, tentative, pending, declined };

// One calendar of the user.
struct CalendarInfo
{
    QString id;
    QString title;
    QString accountTitle;
    QString accountID;
    CalendarAccountKind accountKind = CalendarAccountKind::other;
    std::optional<CalendarTint> tint;
    bool isSubscribed = false;
    bool isBirthdays = false;
    bool operator==(const CalendarInfo &) const = default;
};

// The calendars of one account, as the settings list groups them.
struct CalendarAccountGroup
{
    QString id;
    QString title;
    CalendarAccountKind kind = CalendarAccountKind::other;
    QList<CalendarInfo> calendars;
    bool operator==(const CalendarAccountGroup &) const = default;
};

// One occurrence as a calendar provider reads it.
struct ProviderOccurrence
{
    CalendarEventRef ref;
    QString title;
    QDateTime start;
    std::optional<QDateTime> end;
    bool isAllDay = false;
    QString timeZoneID;
    QString calendarID;
    QString calendarTitle;
    QString accountTitle;
    std::optional<CalendarTint> tint;
    std::optional<QString> location;
    bool isRecurring = false;
    std::optional<QUrl> externalURL;
    std::optional<QUrl> meetingURL;
    std::optional<QDateTime> createdAt;
    bool isCancelled = false;
    CalendarParticipation participation = CalendarParticipation::notAnAttendee;
    bool operator==(const ProviderOccurrence &) const = default;
};

#pragma once

#include "records/CalendarInfo.h"

#include <QList>

// The facts a calendar backend knows about a calendar's account, in backend-neutral terms.
enum class CalendarSourceType { local, exchange, calDAV, cloud, subscribed, birthdays, other };

struct CalendarAccountFacts
{
    bool isBirthdayCalendar = false;
    bool isSubscribed = false;
    std::optional<CalendarSourceType> sourceType; // none: the calendar has no account
    QString sourceTitle;
};

// Which kind of account a calendar belongs to (birthdays, subscribed, then by source type; a
// CalDAV account is Google's when its title says google or gmail).
CalendarAccountKind accountKind(const CalendarAccountFacts &facts);

enum class AttendeeStatus {
    unknown,
    pending,
    accepted,
    declined,
    tentative,
    delegated,
    completed,
    inProcess
};

struct AttendeeFacts
{
    bool isCurrentUser = false;
    AttendeeStatus status = AttendeeStatus::unknown;
};

// The user's answer to an invitation, from the first attendee that is the user.
CalendarParticipation participation(const QList<AttendeeFacts> &attendees);

// A provider's reading of an event's series: its external identifier, else its local one.
QString seriesIdentifier(const QString &externalID, const QString &localID);

// Calendars grouped by account (`accountID`), groups and calendars in the order they come.
QList<CalendarAccountGroup> groupByAccount(const QList<CalendarInfo> &calendars);

// The account kind's name as written in JSON output ("iCloud", "google", ..., "onThisMac").
QString accountKindRawValue(CalendarAccountKind kind);

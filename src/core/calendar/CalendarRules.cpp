#include "calendar/CalendarRules.h"

#include <algorithm>

CalendarAccountKind accountKind(const CalendarAccountFacts &facts)
{
    if (facts.isBirthdayCalendar)
        return CalendarAccountKind::birthdays;
    if (facts.isSubscribed)
        return CalendarAccountKind::subscribed;
    if (!facts.sourceType)
        return CalendarAccountKind::other;
    switch (*facts.sourceType) {
    case CalendarSourceType::local:
        return CalendarAccountKind::onThisMac;
    case CalendarSourceType::exchange:
        return CalendarAccountKind::exchange;
    case CalendarSourceType::calDAV: {
        const QString title = facts.sourceTitle.toLower();
        return title.contains(u"google") || title.contains(u"gmail") ? CalendarAccountKind::google
                                                                     : CalendarAccountKind::other;
    }
    case CalendarSourceType::cloud:
        return CalendarAccountKind::iCloud;
    case CalendarSourceType::subscribed:
        return CalendarAccountKind::subscribed;
    case CalendarSourceType::birthdays:
        return CalendarAccountKind::birthdays;
    case CalendarSourceType::other:
        break;
    }
    return CalendarAccountKind::other;
}

CalendarParticipation participation(const QList<AttendeeFacts> &attendees)
{
    for (const AttendeeFacts &attendee : attendees) {
        if (!attendee.isCurrentUser)
            continue;
        switch (attendee.status) {
        case AttendeeStatus::pending:
            return CalendarParticipation::pending;
        case AttendeeStatus::accepted:
            return CalendarParticipation::accepted;
        case AttendeeStatus::declined:
            return CalendarParticipation::declined;
        case AttendeeStatus::tentative:
            return CalendarParticipation::tentative;
        default:
            return CalendarParticipation::notAnAttendee;
        }
    }
    return CalendarParticipation::notAnAttendee;
}

QString seriesIdentifier(const QString &externalID, const QString &localID)
{
    return externalID.isEmpty() ? localID : externalID;
}

QList<CalendarAccountGroup> groupByAccount(const QList<CalendarInfo> &calendars)
{
    QList<CalendarAccountGroup> groups;
    for (const CalendarInfo &calendar : calendars) {
        auto group = std::find_if(groups.begin(), groups.end(), [&](const auto &candidate) {
            return candidate.id == calendar.accountID;
        });
        if (group == groups.end()) {
            groups.append({calendar.accountID, calendar.accountTitle, calendar.accountKind, {}});
            group = groups.end() - 1;
        }
        group->calendars.append(calendar);
    }
    return groups;
}

QString accountKindRawValue(CalendarAccountKind kind)
{
    switch (kind) {
    case CalendarAccountKind::iCloud:
        return QStringLiteral("iCloud");
    case CalendarAccountKind::google:
        return QStringLiteral("google");
    case CalendarAccountKind::exchange:
        return QStringLiteral("exchange");
    case CalendarAccountKind::subscribed:
        return QStringLiteral("subscribed");
    case CalendarAccountKind::birthdays:
        return QStringLiteral("birthdays");
    case CalendarAccountKind::onThisMac:
        return QStringLiteral("onThisMac");
    case CalendarAccountKind::other:
        break;
    }
    return QStringLiteral("other");
}

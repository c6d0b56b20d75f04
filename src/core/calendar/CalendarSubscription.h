#pragma once

#include <QDateTime>
#include <QList>
#include <QStringList>
#include <QUrl>
#include <QUuid>

#include <optional>

class JsonValue;
class JsonWriter;

// A calendar the user added by hand: a local iCalendar file or a web feed (http, https or
// webcal link) that is fetched again from time to time.
struct CalendarSubscription
{
    QUuid id;
    QUrl url; // file:///… for a local file
    QString title; // the user's name for it; empty: the calendar's own name
    QDateTime addedAt;

    bool isLocalFile() const { return url.isLocalFile(); }
    // The identifier of its calendar among all calendars ("ics-" and the id).
    QString calendarID() const;
    // The id as the command line shows and accepts it (lower case, no braces).
    QString shortID() const;

    static std::optional<CalendarSubscription> fromJson(const JsonValue &value, QString *error);
    void toJson(JsonWriter &writer) const;
    bool operator==(const CalendarSubscription &) const = default;
};

// Everything kept in "calendars.json": the added calendars and the user's own e-mail addresses
// (which tell the user's answer to an invitation apart from the other attendees').
struct CalendarSubscriptionList
{
    QList<CalendarSubscription> subscriptions;
    QStringList userAddresses;

    const CalendarSubscription *find(const QUuid &id) const;

    static std::optional<CalendarSubscriptionList> fromJson(const JsonValue &value, QString *error);
    QByteArray toJson() const;
    bool operator==(const CalendarSubscriptionList &) const = default;
};

// What the user typed to add a calendar, as the link to keep: an http, https or webcal link
// (webcals too) with a host, a file:// link or a path to a readable file (made absolute against
// `workingDirectory`). Anything else gives nothing and the reason in *error.
std::optional<QUrl> subscriptionURL(const QString &input, const QString &workingDirectory,
                                    QString *error);

// An e-mail address as the user typed it, normalised ("mailto:" dropped, trimmed, lower case);
// empty when it is not an address.
QString normalizedAddress(const QString &input);

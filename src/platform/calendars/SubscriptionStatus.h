#pragma once

#include <QDateTime>
#include <QString>

#include <optional>

class JsonValue;

// What went wrong the last time a calendar file or feed was read.
enum class SubscriptionProblem {
    none,
    unreachable, // no connection, a TLS or DNS failure (detail: the reason)
    timedOut,
    httpStatus, // the server answered with an error (detail: the status code)
    tooLarge, // over the size limit (detail: the limit in MB)
    notCalendar, // not an iCalendar document (an error page, a broken file)
    redirectRefused, // a redirect to anything but http or https (detail: the target)
    fileUnreadable, // a local file that is gone or cannot be read (detail: the reason)
};

QString problemRawValue(SubscriptionProblem problem);
std::optional<SubscriptionProblem> problemFromRaw(QStringView raw);
// The localisation key of the problem's message ("calendars.error.timeout", ...).
QString problemTextKey(SubscriptionProblem problem);

// The state of one added calendar: when it was last read fine, the last attempt and its problem,
// and the validators of the cached copy of a feed. Kept beside the cached copy, so the settings
// and `tarrow calendars list` show the same thing as the app.
struct SubscriptionStatus
{
    QDateTime lastSuccess;
    QDateTime lastAttempt;
    SubscriptionProblem problem = SubscriptionProblem::none;
    QString detail;
    QString etag;
    QString lastModified;

    static SubscriptionStatus fromJson(const JsonValue &value);
    QByteArray toJson() const;
    bool operator==(const SubscriptionStatus &) const = default;
};

class LanguageTable;
// The problem as the user reads it, in the table's language; empty when there is none.
QString problemMessage(const SubscriptionStatus &status, const LanguageTable &texts);

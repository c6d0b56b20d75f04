#pragma once

#include "countdown/CountdownID.h"
#include "records/Event.h"

#include <QString>
#include <QUrl>

#include <optional>

class LanguageTable;

// One notification Tarrow posts: an arrival, a reminder before a target, or a milestone of a
// count-up. Notices with the same identifier replace each other on the desktop.
struct Notice
{
    enum class Kind { arrival, reminder, milestone };

    Kind kind = Kind::arrival;
    QString identifier; // "tarrow.reached.<UUID>", "tarrow.reminder.<UUID>", ...
    QString title;
    QString body;
    // The item's link when it parses as a URL: offered as the join action.
    std::optional<QUrl> link;
    // What a plain click on the notification opens the popup at.
    std::optional<CountdownID> item;

    // The arrival of `record` (a countdown, or the record made from a calendar arrival).
    static Notice arrival(const Event &record, const std::optional<CountdownID> &item,
                          const LanguageTable &table);
    // "In 15 minutes": `title`'s target at `target` seen from `now`.
    static Notice reminder(const QUuid &noticeID, const QString &title, const QDateTime &target,
                           const QDateTime &now, const QTimeZone &zone,
                           const std::optional<QString> &link, const CountdownID &item,
                           const LanguageTable &table);

    // The text of a link when it is a URL with a scheme ("https://…", "zoommtg://…").
    static std::optional<QUrl> parseLink(const std::optional<QString> &link);
    // The identifier of an event's notices of one kind: "tarrow.reached." and the upper-case UUID.
    static QString identifierFor(Kind kind, const QUuid &id);

    bool operator==(const Notice &) const = default;
};

// A stable UUID for everything Tarrow announces about one calendar series, so its notices
// replace each other like those of a countdown.
QUuid noticeIDForSeries(const CalendarSeriesRef &series);

#pragma once

#include <QDateTime>
#include <QTimeZone>

#include <optional>

class CliContext;

struct DateArgument
{
    QDateTime instant; // UTC
    bool hasTime = false;
};

// A date given on the command line: "2026-12-24" (a day in `zone`), "2026-12-24T18:30[:00]" (a
// wall time in `zone`), or an instant with "Z" or an offset. Nothing when the text is none of
// these, or (with *problem saying so) when it names an instant outside the years 0001 to 9999
// in UTC, which the data files cannot hold.
std::optional<DateArgument> parseDateArgument(const QString &text, const QTimeZone &zone,
                                              QString *problem = nullptr);

// The instant of --now and similar options: ISO 8601 with "Z" or an offset (a wall time without
// one is read in the system zone). Reports a malformed one and gives nothing.
std::optional<QDateTime> instantArgument(const QString &text, CliContext &context);
// The message for an instant argument that is no instant, or *problem when there is one.
QString instantArgumentError(const QString &text, const QString &problem);

// The zone of --time-zone: the system's when empty; reports an unknown one and gives nothing.
std::optional<QTimeZone> zoneArgument(const QString &ianaId, CliContext &context);

// A date phrase found in a title ("dentist tomorrow at 3pm"), with the title that is left.
struct TitleDate
{
    QString title;
    QDateTime instant;
    bool hasTime = false;
};
std::optional<TitleDate> dateFromTitle(const QString &title, const QDateTime &now,
                                       const QTimeZone &zone, bool keepsPast);

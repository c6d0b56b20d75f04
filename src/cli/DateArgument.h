#pragma once

#include "parse/DateText.h"

#include <QDateTime>
#include <QTimeZone>

#include <optional>

class CliContext;

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

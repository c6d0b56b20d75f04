#pragma once

#include <QDateTime>
#include <QTimeZone>

#include <optional>

// A date written the way scripts and the command line write one.
struct DateText
{
    QDateTime instant; // UTC
    bool hasTime = false;
};

// "2026-12-24" (the start of that day in `zone`), "2026-12-24T18:30[:00]" (a wall time in `zone`;
// one skipped by a DST change moves forward, a repeated one is the first), or an instant with "Z"
// or an offset ("2026-12-24T17:30:00Z", "2026-12-24T18:30:00+01:00"). Nothing when the text is
// none of these, or (with *problem saying so) when it names an instant outside the years 0001 to
// 9999 in UTC, which the data files cannot hold.
std::optional<DateText> parseDateText(const QString &text, const QTimeZone &zone,
                                      QString *problem = nullptr);

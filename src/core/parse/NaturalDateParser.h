#pragma once

#include "parse/NaturalDateMatch.h"

#include <QDateTime>
#include <QString>
#include <QTimeZone>

#include <optional>

// Finds a date and, optionally, a time of day in a typed title, in English, Turkish, German,
// Spanish or French ("dentist tomorrow at 3pm", "Zahnarzt am 3. Juni um 15 Uhr", "cuma'ya"),
// and returns it with the title that is left once those words are taken out.
//
// Day phrases are tried by family: explicit dates first, then relative day words ("tomorrow"),
// then counts ("in 3 days"), then weekday names; the first family that finds something wins.
// All calendar arithmetic happens in `zone` (an invalid zone means the system zone).
// `keepsPast` keeps a date without a year, or a time without a day, in the past instead of moving
// it to its next occurrence. Only the first ScannedLength characters (up to a word break) are
// searched; the cleaned title keeps the rest. Stateless and safe to call from any thread.
class NaturalDateParser
{
public:
    NaturalDateParser() = delete;

    static constexpr qsizetype ScannedLength = 256;

    static std::optional<NaturalDateMatch> parse(const QString &text, const QDateTime &now,
                                                 const QTimeZone &zone, bool keepsPast);
};

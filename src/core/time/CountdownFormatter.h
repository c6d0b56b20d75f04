#pragma once

#include "records/SettingsTypes.h"
#include "time/Remaining.h"

#include <QDateTime>
#include <QString>
#include <QTimeZone>

#include <optional>

class LanguageTable;

// Writes spans of time as the user reads them: the compact form of the panel item and list rows
// ("3d 4h", "2w 1d", "0:07"), the count-up form with calendar years ("1y 3d") and the spelled-out
// form of the editor ("1 year 3 days"). Every unit word comes from the language table, so a span
// reads the same everywhere and follows the interface language. Calendar-aware forms work in the
// Gregorian calendar of the item's own zone.
class CountdownFormatter
{
public:
    // One piece of the spelled-out form: the value and the keys of its singular and plural word.
    struct DetailUnit
    {
        qint64 value = 0;
        const char *singular = nullptr;
        const char *plural = nullptr;
    };

    struct YearsAndDays
    {
        qint64 years = 0;
        qint64 days = 0;
        bool operator==(const YearsAndDays &) const = default;
    };

    CountdownFormatter() = delete;

    // The day part that the display format decides on its own ("45d", "2w 2d"), or nothing when
    // the format leaves the span to the automatic rules.
    static std::optional<QString> formatDays(qint64 days, CountdownDisplayFormat format,
                                             const LanguageTable &table);

    // Time left, e.g. "3d 4h", "5h 12m", "12m", and the clock form "0:59" for a minute or less.
    static QString compact(const Remaining &remaining, CountdownDisplayFormat format,
                           const LanguageTable &table);

    // Time passed since `start`, e.g. "1y 3d", "3d 4h", "5m"; never shows seconds.
    static QString compactElapsed(const QDateTime &start, const QDateTime &now,
                                  const QTimeZone &zone, CountdownDisplayFormat format,
                                  const LanguageTable &table);

    // Whole calendar years from `start` to `now` and the whole 86,400-second days after the last
    // anniversary.
    static YearsAndDays yearsAndDays(const QDateTime &start, const QDateTime &now,
                                     const QTimeZone &zone);

    // How far `now` lies between the last and the next anniversary of `start`, from 0 to 1.
    static double anniversaryProgress(const QDateTime &start, const QDateTime &now,
                                      const QTimeZone &zone);

    // Spelled-out span with at most `maxUnits` non-zero units among years, months, days, hours
    // and minutes ("1 year 3 days"); under a minute the "reached" text.
    static QString detail(const QDateTime &from, const QDateTime &to, const QTimeZone &zone,
                          int maxUnits, const LanguageTable &table);

    // Whole calendar days ("143 days"), or under a day the two-unit detail ("5 hours 12 minutes").
    static QString daysDetail(const QDateTime &from, const QDateTime &to, const QTimeZone &zone,
                              const LanguageTable &table);
};

#pragma once

#include <QDateTime>
#include <QList>

#include <optional>

class JsonValue;
class JsonWriter;

// Days of the week numbered as the Gregorian calendar's weekday component: sunday = 1.
enum class Weekday { sunday = 1, monday, tuesday, wednesday, thursday, friday, saturday };

std::optional<Weekday> weekdayFromNumber(qint64 number);

// How a countdown repeats. Only data here; rolling a countdown forward is done elsewhere.
struct RecurrenceRule
{
    enum class Frequency { daily, weekly, monthly, yearly };

    struct End
    {
        enum class Kind { afterOccurrences, onDate };
        Kind kind = Kind::afterOccurrences;
        qint64 count = 0; // afterOccurrences
        QDateTime date; // onDate

        static End afterOccurrences(qint64 count)
        {
            return End {Kind::afterOccurrences, count, {}};
        }
        static End onDate(const QDateTime &date) { return End {Kind::onDate, 0, date}; }
        bool operator==(const End &other) const;
    };

    Frequency frequency = Frequency::daily;
    QList<Weekday> weekdays;
    qint64 interval = 1;
    std::optional<End> end;
    // The first occurrence of the series, kept by the roll so that the day a monthly or yearly
    // series was set for (the 31st, 29 February) and the occurrences counted by the end rule
    // survive months that clamp the date. Absent until the first roll; JSON key "seriesStart",
    // written only when present.
    std::optional<QDateTime> seriesStart = std::nullopt;

    static std::optional<RecurrenceRule> fromJson(const JsonValue &value, QString *error);
    void toJson(JsonWriter &writer) const;

    bool operator==(const RecurrenceRule &) const = default;
};

#pragma once

#include <QDateTime>
#include <QHashFunctions>
#include <QString>

#include <optional>

class JsonValue;
class JsonWriter;

// A calendar series: the calendar's identifier and the event's external identifier, which all
// occurrences of a repeating event share. Every per-series choice of the user is keyed by it.
struct CalendarSeriesRef
{
    QString calendarID;
    QString seriesID;

    static std::optional<CalendarSeriesRef> fromJson(const JsonValue &value, QString *error);
    void toJson(JsonWriter &writer) const;

    bool operator==(const CalendarSeriesRef &) const = default;
    auto operator<=>(const CalendarSeriesRef &other) const
    {
        if (const int c = calendarID.compare(other.calendarID); c != 0)
            return c <=> 0;
        return seriesID.compare(other.seriesID) <=> 0;
    }
};

size_t qHash(const CalendarSeriesRef &ref, size_t seed = 0) noexcept;

// One occurrence of a series: the start it was first scheduled for.
struct CalendarEventRef
{
    CalendarSeriesRef series;
    QDateTime occurrenceDate;

    static std::optional<CalendarEventRef> fromJson(const JsonValue &value, QString *error);
    void toJson(JsonWriter &writer) const;

    bool operator==(const CalendarEventRef &) const = default;
};

size_t qHash(const CalendarEventRef &ref, size_t seed = 0) noexcept;

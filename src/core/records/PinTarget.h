#pragma once

#include "records/CalendarRefs.h"

#include <QUuid>

#include <optional>

// What the user pinned to the menu bar: one of their countdowns, whichever occurrence of a
// calendar series is next, or exactly one calendar occurrence.
struct PinTarget
{
    enum class Kind { manual, calendarSeries, calendarOccurrence };

    Kind kind = Kind::manual;
    QUuid eventID; // manual
    CalendarSeriesRef series; // calendarSeries, calendarOccurrence
    QDateTime occurrenceDate; // calendarOccurrence

    static PinTarget manual(const QUuid &id) { return PinTarget {Kind::manual, id, {}, {}}; }
    static PinTarget calendarSeries(const CalendarSeriesRef &series)
    {
        return PinTarget {Kind::calendarSeries, {}, series, {}};
    }
    static PinTarget calendarOccurrence(const CalendarEventRef &ref)
    {
        return PinTarget {Kind::calendarOccurrence, {}, ref.series, ref.occurrenceDate};
    }

    bool isCalendar() const { return kind != Kind::manual; }
    CalendarEventRef occurrence() const { return CalendarEventRef {series, occurrenceDate}; }

    // Fails with "Unknown PinTarget kind: <kind>" for a kind this version does not know.
    static std::optional<PinTarget> fromJson(const JsonValue &value, QString *error);
    void toJson(JsonWriter &writer) const;

    bool operator==(const PinTarget &other) const;
};

size_t qHash(const PinTarget &pin, size_t seed = 0) noexcept;

#pragma once

#include "records/CalendarReachSignals.h"
#include "records/CalendarRefs.h"
#include "records/IconRef.h"

// How the events file stores the per-series maps: as lists of (series, value) records.
struct CalendarIconAssignment
{
    CalendarSeriesRef series;
    IconRef icon;

    static std::optional<CalendarIconAssignment> fromJson(const JsonValue &value, QString *error);
    void toJson(JsonWriter &writer) const;
    bool operator==(const CalendarIconAssignment &) const = default;
};

struct CalendarReachAssignment
{
    CalendarSeriesRef series;
    CalendarReachSignals signals_; // stored under "signals"

    static std::optional<CalendarReachAssignment> fromJson(const JsonValue &value, QString *error);
    void toJson(JsonWriter &writer) const;
    bool operator==(const CalendarReachAssignment &) const = default;
};

struct CalendarAnnotationAssignment
{
    CalendarSeriesRef series;
    CalendarAnnotation annotation;

    static std::optional<CalendarAnnotationAssignment> fromJson(const JsonValue &value,
                                                                QString *error);
    void toJson(JsonWriter &writer) const;
    bool operator==(const CalendarAnnotationAssignment &) const = default;
};

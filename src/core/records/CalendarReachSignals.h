#pragma once

#include <QDateTime>
#include <QList>
#include <QString>

#include <optional>

class JsonValue;
class JsonWriter;

// What the user chose for the arrivals of one calendar series, and the bookkeeping of them.
struct CalendarReachSignals
{
    // A snapshot of one occurrence, so an arrival can still be shown after the calendar moved on.
    struct Occurrence
    {
        QDateTime start;
        QString title;
        std::optional<QString> link;

        static std::optional<Occurrence> fromJson(const JsonValue &value, QString *error);
        void toJson(JsonWriter &writer) const;
        bool operator==(const Occurrence &) const = default;
    };

    bool celebrationEnabled = false;
    bool notifyOnReach = false;
    QList<qint64> reminderLeadMinutes;
    std::optional<Occurrence> armed; // the occurrence whose arrival is awaited
    std::optional<Occurrence> reached; // the latest arrival not yet acknowledged

    // Nothing chosen and nothing pending: such an entry need not be stored.
    bool isEmpty() const { return *this == CalendarReachSignals(); }

    static std::optional<CalendarReachSignals> fromJson(const JsonValue &value, QString *error);
    void toJson(JsonWriter &writer) const;
    bool operator==(const CalendarReachSignals &) const = default;
};

// The user's note and link for a calendar series.
struct CalendarAnnotation
{
    std::optional<QString> note;
    std::optional<QString> link;

    bool isEmpty() const { return !note && !link; }
    static std::optional<CalendarAnnotation> fromJson(const JsonValue &value, QString *error);
    void toJson(JsonWriter &writer) const;
    bool operator==(const CalendarAnnotation &) const = default;
};

#pragma once

#include "records/EventColor.h"
#include "records/IconRef.h"
#include "records/RecurrenceRule.h"

#include <QDateTime>
#include <QList>
#include <QString>
#include <QTimeZone>
#include <QUuid>

#include <optional>

class JsonValue;
class JsonWriter;

// A countdown runs towards its target ("until"); a count-up runs from it ("since").
enum class CountdownDirection { until, since };

// One countdown or count-up the user made.
struct Event
{
    qint64 schemaVersion = 1;
    QUuid id;
    QString title;
    QDateTime targetDate;
    bool includeTime = false; // false: only the calendar day matters
    QString timeZone; // IANA identifier of the zone the target was entered in
    std::optional<IconRef> icon;
    QDateTime createdAt;
    std::optional<QDateTime> reachedAt;
    bool celebrationAcknowledged = false;
    std::optional<RecurrenceRule> recurrence;
    std::optional<QDateTime> cycleAnchor;
    bool celebrationEnabled = false;
    bool notifyOnReach = false;
    std::optional<QString> note;
    std::optional<QString> link;
    QList<qint64> reminderLeadMinutes;
    CountdownDirection direction = CountdownDirection::until;
    std::optional<EventColor> color;
    bool milestonesEnabled = false;

    // The schema version new records carry.
    static constexpr qint64 CurrentSchemaVersion = 10;
    // The longest title a new or renamed event may have, in characters. Titles already in a file
    // load whatever their length.
    static constexpr qsizetype MaxTitleLength = 200;
    static bool isTitleTooLong(QStringView title);

    // A record as the user makes one: a fresh id, the current schema version, made at `now`
    // and entered in `zone`. Target, direction and the rest are the caller's to fill.
    static Event created(const QString &title, const QDateTime &now, const QTimeZone &zone);

    // The zone named by timeZone, or the system's when the name is unknown.
    QTimeZone zone() const;
    // The moment that counts: the target itself, or for an all-day event the start of its day
    // in its own zone.
    QDateTime effectiveTarget() const;

    static std::optional<Event> fromJson(const JsonValue &value, QString *error);
    void toJson(JsonWriter &writer) const;

    bool operator==(const Event &) const = default;
};

QString rawValue(CountdownDirection direction);
std::optional<CountdownDirection> countdownDirectionFromRaw(QStringView raw);

// Lead times as stored: positive, without duplicates, ascending.
QList<qint64> normalizedReminderLeads(QList<qint64> minutes);

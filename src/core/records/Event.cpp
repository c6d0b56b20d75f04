#include "records/Event.h"

#include "records/TimeZones.h"
#include "json/JsonObjectReader.h"
#include "json/JsonWriter.h"

#include <algorithm>

using namespace Qt::StringLiterals;

QString rawValue(CountdownDirection direction)
{
    return direction == CountdownDirection::since ? QStringLiteral("since")
                                                  : QStringLiteral("until");
}

std::optional<CountdownDirection> countdownDirectionFromRaw(QStringView raw)
{
    if (raw == u"until")
        return CountdownDirection::until;
    if (raw == u"since")
        return CountdownDirection::since;
    return std::nullopt;
}

QList<qint64> normalizedReminderLeads(QList<qint64> minutes)
{
    minutes.removeIf([](qint64 lead) { return lead < 1; });
    std::sort(minutes.begin(), minutes.end());
    minutes.erase(std::unique(minutes.begin(), minutes.end()), minutes.end());
    return minutes;
}

Event Event::created(const QString &title, const QDateTime &now, const QTimeZone &zone)
{
    Event event;
    event.schemaVersion = CurrentSchemaVersion;
    event.id = QUuid::createUuid();
    event.title = title;
    event.createdAt = now;
    event.timeZone = QString::fromUtf8(zone.id());
    return event;
}

bool Event::isTitleTooLong(QStringView title)
{
    // Characters, not UTF-16 units: an emoji counts once.
    if (title.size() <= MaxTitleLength)
        return false;
    qsizetype characters = 0;
    for (const QChar unit : title)
        characters += unit.isLowSurrogate() ? 0 : 1;
    return characters > MaxTitleLength;
}

QTimeZone Event::zone() const
{
    return zoneOrSystem(timeZone);
}

QDateTime Event::effectiveTarget() const
{
    return includeTime ? targetDate : startOfDay(targetDate, timeZone);
}

std::optional<Event> Event::fromJson(const JsonValue &value, QString *error)
{
    // Members are read in the order the files keep them (sorted), which finds each at once.
    JsonObjectReader reader(value, error);
    Event event;
    event.celebrationAcknowledged = reader.boolean("celebrationAcknowledged"_L1);
    event.celebrationEnabled = reader.optionalBoolean("celebrationEnabled"_L1).value_or(false);
    // A colour this version does not know is no colour, never a broken record.
    const JsonValue color = reader.value("color"_L1);
    event.color = color.isString() ? eventColorFromRaw(color.toSharedString()) : std::nullopt;
    event.createdAt = reader.date("createdAt"_L1);
    event.cycleAnchor = reader.optionalDate("cycleAnchor"_L1);
    event.direction =
        reader.optionalEnum("direction"_L1, "CountdownDirection", countdownDirectionFromRaw)
            .value_or(CountdownDirection::until);
    event.icon = reader.optionalRecord("icon"_L1, IconRef::fromJson);
    event.id = reader.uuid("id"_L1);
    event.includeTime = reader.boolean("includeTime"_L1);
    event.link = reader.optionalString("link"_L1);
    event.milestonesEnabled = reader.optionalBoolean("milestonesEnabled"_L1).value_or(false);
    event.note = reader.optionalString("note"_L1);
    event.notifyOnReach = reader.optionalBoolean("notifyOnReach"_L1).value_or(false);
    event.reachedAt = reader.optionalDate("reachedAt"_L1);
    event.recurrence = reader.optionalRecord("recurrence"_L1, RecurrenceRule::fromJson);
    event.reminderLeadMinutes = normalizedReminderLeads(
        reader.optionalInt64List("reminderLeadMinutes"_L1).value_or(QList<qint64>()));
    event.schemaVersion = reader.optionalInt64("schemaVersion"_L1).value_or(1);
    event.targetDate = reader.date("targetDate"_L1);
    event.timeZone = reader.sharedString("timeZone"_L1);
    event.title = reader.string("title"_L1);
    if (!reader.ok())
        return std::nullopt;
    return event;
}

void Event::toJson(JsonWriter &writer) const
{
    writer.beginObject();
    writer.key("celebrationAcknowledged"_L1).boolean(celebrationAcknowledged);
    writer.key("celebrationEnabled"_L1).boolean(celebrationEnabled);
    if (color)
        writer.key("color"_L1).string(rawValue(*color));
    writer.key("createdAt"_L1).date(createdAt);
    if (cycleAnchor)
        writer.key("cycleAnchor"_L1).date(*cycleAnchor);
    writer.key("direction"_L1).string(rawValue(direction));
    if (icon) {
        writer.key("icon"_L1);
        icon->toJson(writer);
    }
    writer.key("id"_L1).uuid(id);
    writer.key("includeTime"_L1).boolean(includeTime);
    if (link)
        writer.key("link"_L1).string(*link);
    writer.key("milestonesEnabled"_L1).boolean(milestonesEnabled);
    if (note)
        writer.key("note"_L1).string(*note);
    writer.key("notifyOnReach"_L1).boolean(notifyOnReach);
    if (reachedAt)
        writer.key("reachedAt"_L1).date(*reachedAt);
    if (recurrence) {
        writer.key("recurrence"_L1);
        recurrence->toJson(writer);
    }
    writer.key("reminderLeadMinutes"_L1).beginArray();
    for (qint64 lead : reminderLeadMinutes)
        writer.integer(lead);
    writer.endArray();
    writer.key("schemaVersion"_L1).integer(schemaVersion);
    writer.key("targetDate"_L1).date(targetDate);
    writer.key("timeZone"_L1).string(timeZone);
    writer.key("title"_L1).string(title);
    writer.endObject();
}

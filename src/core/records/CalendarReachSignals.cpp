#include "records/CalendarReachSignals.h"

#include "json/JsonObjectReader.h"
#include "json/JsonWriter.h"

using namespace Qt::StringLiterals;

std::optional<CalendarReachSignals::Occurrence>
CalendarReachSignals::Occurrence::fromJson(const JsonValue &value, QString *error)
{
    JsonObjectReader reader(value, error);
    Occurrence occurrence;
    occurrence.start = reader.date("start"_L1);
    occurrence.title = reader.string("title"_L1);
    occurrence.link = reader.optionalString("link"_L1);
    return reader.ok() ? std::optional(occurrence) : std::nullopt;
}

void CalendarReachSignals::Occurrence::toJson(JsonWriter &writer) const
{
    writer.beginObject();
    if (link)
        writer.key("link"_L1).string(*link);
    writer.key("start"_L1).date(start);
    writer.key("title"_L1).string(title);
    writer.endObject();
}

std::optional<CalendarReachSignals> CalendarReachSignals::fromJson(const JsonValue &value,
                                                                   QString *error)
{
    JsonObjectReader reader(value, error);
    CalendarReachSignals signals_;
    signals_.celebrationEnabled = reader.optionalBoolean("celebrationEnabled"_L1).value_or(false);
    signals_.notifyOnReach = reader.optionalBoolean("notifyOnReach"_L1).value_or(false);
    signals_.reminderLeadMinutes =
        reader.optionalInt64List("reminderLeadMinutes"_L1).value_or(QList<qint64>());
    signals_.armed = reader.optionalRecord("armed"_L1, Occurrence::fromJson);
    signals_.reached = reader.optionalRecord("reached"_L1, Occurrence::fromJson);
    return reader.ok() ? std::optional(signals_) : std::nullopt;
}

void CalendarReachSignals::toJson(JsonWriter &writer) const
{
    writer.beginObject();
    if (armed) {
        writer.key("armed"_L1);
        armed->toJson(writer);
    }
    writer.key("celebrationEnabled"_L1).boolean(celebrationEnabled);
    writer.key("notifyOnReach"_L1).boolean(notifyOnReach);
    if (reached) {
        writer.key("reached"_L1);
        reached->toJson(writer);
    }
    writer.key("reminderLeadMinutes"_L1).beginArray();
    for (qint64 lead : reminderLeadMinutes)
        writer.integer(lead);
    writer.endArray();
    writer.endObject();
}

std::optional<CalendarAnnotation> CalendarAnnotation::fromJson(const JsonValue &value,
                                                               QString *error)
{
    JsonObjectReader reader(value, error);
    CalendarAnnotation annotation {reader.optionalString("note"_L1),
                                   reader.optionalString("link"_L1)};
    return reader.ok() ? std::optional(annotation) : std::nullopt;
}

void CalendarAnnotation::toJson(JsonWriter &writer) const
{
    writer.beginObject();
    if (link)
        writer.key("link"_L1).string(*link);
    if (note)
        writer.key("note"_L1).string(*note);
    writer.endObject();
}

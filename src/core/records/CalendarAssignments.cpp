#include "records/CalendarAssignments.h"

#include "json/JsonObjectReader.h"
#include "json/JsonWriter.h"

using namespace Qt::StringLiterals;

namespace {

// Every assignment is {"series": ..., "<name>": value}; `name` sorts after "series" only for
// "signals", so the writer is told which comes first.
template<typename Assignment, typename Value, typename Decode>
std::optional<Assignment> decodeAssignment(const JsonValue &json, QString *error,
                                           QLatin1StringView name, Decode decode)
{
    JsonObjectReader reader(json, error);
    const std::optional<CalendarSeriesRef> series =
        reader.record("series"_L1, CalendarSeriesRef::fromJson);
    const std::optional<Value> value = reader.record(name, decode);
    if (!reader.ok())
        return std::nullopt;
    return Assignment {*series, *value};
}

template<typename Value>
void encodeAssignment(JsonWriter &writer, const CalendarSeriesRef &series, QLatin1StringView name,
                      const Value &value)
{
    writer.beginObject();
    const bool nameFirst = name < "series"_L1;
    if (nameFirst) {
        writer.key(name);
        value.toJson(writer);
    }
    writer.key("series"_L1);
    series.toJson(writer);
    if (!nameFirst) {
        writer.key(name);
        value.toJson(writer);
    }
    writer.endObject();
}

} // namespace

std::optional<CalendarIconAssignment> CalendarIconAssignment::fromJson(const JsonValue &value,
                                                                       QString *error)
{
    return decodeAssignment<CalendarIconAssignment, IconRef>(value, error, "icon"_L1,
                                                             IconRef::fromJson);
}

void CalendarIconAssignment::toJson(JsonWriter &writer) const
{
    encodeAssignment(writer, series, "icon"_L1, icon);
}

std::optional<CalendarReachAssignment> CalendarReachAssignment::fromJson(const JsonValue &value,
                                                                         QString *error)
{
    return decodeAssignment<CalendarReachAssignment, CalendarReachSignals>(
        value, error, "signals"_L1, CalendarReachSignals::fromJson);
}

void CalendarReachAssignment::toJson(JsonWriter &writer) const
{
    encodeAssignment(writer, series, "signals"_L1, signals_);
}

std::optional<CalendarAnnotationAssignment>
CalendarAnnotationAssignment::fromJson(const JsonValue &value, QString *error)
{
    return decodeAssignment<CalendarAnnotationAssignment, CalendarAnnotation>(
        value, error, "annotation"_L1, CalendarAnnotation::fromJson);
}

void CalendarAnnotationAssignment::toJson(JsonWriter &writer) const
{
    encodeAssignment(writer, series, "annotation"_L1, annotation);
}

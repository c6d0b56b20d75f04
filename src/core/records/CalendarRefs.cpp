#include "records/CalendarRefs.h"

#include "json/JsonObjectReader.h"
#include "json/JsonWriter.h"

using namespace Qt::StringLiterals;

std::optional<CalendarSeriesRef> CalendarSeriesRef::fromJson(const JsonValue &value, QString *error)
{
    JsonObjectReader reader(value, error);
    CalendarSeriesRef ref {reader.string("calendarID"_L1), reader.string("seriesID"_L1)};
    return reader.ok() ? std::optional(ref) : std::nullopt;
}

void CalendarSeriesRef::toJson(JsonWriter &writer) const
{
    writer.beginObject();
    writer.key("calendarID"_L1).string(calendarID);
    writer.key("seriesID"_L1).string(seriesID);
    writer.endObject();
}

size_t qHash(const CalendarSeriesRef &ref, size_t seed) noexcept
{
    return qHashMulti(seed, ref.calendarID, ref.seriesID);
}

std::optional<CalendarEventRef> CalendarEventRef::fromJson(const JsonValue &value, QString *error)
{
    JsonObjectReader reader(value, error);
    CalendarEventRef ref;
    if (auto series = reader.record("series"_L1, CalendarSeriesRef::fromJson))
        ref.series = *series;
    ref.occurrenceDate = reader.date("occurrenceDate"_L1);
    return reader.ok() ? std::optional(ref) : std::nullopt;
}

void CalendarEventRef::toJson(JsonWriter &writer) const
{
    writer.beginObject();
    writer.key("occurrenceDate"_L1).date(occurrenceDate);
    writer.key("series"_L1);
    series.toJson(writer);
    writer.endObject();
}

size_t qHash(const CalendarEventRef &ref, size_t seed) noexcept
{
    return qHashMulti(seed, ref.series, ref.occurrenceDate.toMSecsSinceEpoch());
}

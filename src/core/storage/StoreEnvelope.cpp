#include "storage/StoreEnvelope.h"

#include "records/CalendarAssignments.h"
#include "storage/EncodedEventCache.h"
#include "json/JsonObjectReader.h"
#include "json/JsonWriter.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

QList<CalendarSeriesRef> sorted(const QSet<CalendarSeriesRef> &set)
{
    QList<CalendarSeriesRef> list(set.cbegin(), set.cend());
    std::sort(list.begin(), list.end());
    return list;
}

template<typename Value, typename Encode>
void writeAssignments(JsonWriter &writer, QLatin1StringView key,
                      const QMap<CalendarSeriesRef, Value> &map, Encode encode)
{
    writer.key(key).beginArray();
    for (auto it = map.cbegin(); it != map.cend(); ++it)
        encode(it.key(), it.value()).toJson(writer);
    writer.endArray();
}

void writeSeriesList(JsonWriter &writer, QLatin1StringView key, const QSet<CalendarSeriesRef> &set)
{
    writer.key(key).beginArray();
    for (const CalendarSeriesRef &series : sorted(set))
        series.toJson(writer);
    writer.endArray();
}

} // namespace

QByteArray StoreEnvelope::encode(const StoreState &state, EncodedEventCache *cache,
                                 QString *problem)
{
    JsonWriter writer;
    if (cache) // the events as last written, the calendar state and room for a change
        writer.reserve(cache->encodedBytes() + cache->encodedBytes() / 16 + 65536);
    writer.beginObject();
    writeAssignments(writer, "calendarAnnotations"_L1, state.calendarAnnotations,
                     [](const CalendarSeriesRef &s, const CalendarAnnotation &a) {
                         return CalendarAnnotationAssignment {s, a};
                     });
    writeAssignments(writer, "calendarIcons"_L1, state.calendarIcons,
                     [](const CalendarSeriesRef &s, const IconRef &i) {
                         return CalendarIconAssignment {s, i};
                     });
    writeAssignments(writer, "calendarReach"_L1, state.calendarReach,
                     [](const CalendarSeriesRef &s, const CalendarReachSignals &r) {
                         return CalendarReachAssignment {s, r};
                     });
    writer.key("events"_L1).beginArray();
    if (cache) {
        cache->writeAll(state.events, writer);
    } else {
        for (const Event &event : state.events)
            event.toJson(writer);
    }
    writer.endArray();
    writeSeriesList(writer, "hiddenCalendarSeries"_L1, state.hiddenCalendarSeries);
    writeSeriesList(writer, "keptCalendarSeries"_L1, state.keptCalendarSeries);
    if (state.pin) {
        writer.key("pin"_L1);
        state.pin->toJson(writer);
        if (state.pin->kind == PinTarget::Kind::manual)
            writer.key("pinnedEventID"_L1).uuid(state.pin->eventID);
    }
    writer.key("schemaVersion"_L1).integer(CurrentSchemaVersion);
    writer.endObject();
    if (problem)
        *problem = writer.problem();
    return writer.finish();
}

std::optional<StoreEnvelope::Decoded> StoreEnvelope::decode(const JsonValue &root, QString *error)
{
    JsonObjectReader reader(root, error);
    Decoded decoded;
    decoded.schemaVersion = reader.int64("schemaVersion"_L1);
    if (reader.ok() && !reader.value("events"_L1).isArray())
        reader.fail(JsonObjectReader::missingKeyMessage("events"_L1));
    decoded.state.events = reader.recordListSkippingOutOfRangeDates("events"_L1, Event::fromJson,
                                                                    &decoded.skippedDates);

    // A pin this version cannot read is no pin; the rest of the file still loads.
    const JsonValue pin = reader.value("pin"_L1);
    if (pin.isPresent())
        decoded.state.pin = PinTarget::fromJson(pin, nullptr);
    const JsonValue pinnedEventID = reader.value("pinnedEventID"_L1);
    if (!decoded.state.pin && pinnedEventID.isString()) {
        const QUuid id = QUuid::fromString(pinnedEventID.toString());
        if (!id.isNull())
            decoded.state.pin = PinTarget::manual(id);
    }

    for (const auto &a : reader.recordList("calendarIcons"_L1, CalendarIconAssignment::fromJson))
        decoded.state.calendarIcons.insert(a.series, a.icon);
    for (const auto &series :
         reader.recordList("hiddenCalendarSeries"_L1, CalendarSeriesRef::fromJson))
        decoded.state.hiddenCalendarSeries.insert(series);
    for (const auto &series :
         reader.recordList("keptCalendarSeries"_L1, CalendarSeriesRef::fromJson))
        decoded.state.keptCalendarSeries.insert(series);
    for (const auto &a : reader.recordListSkippingOutOfRangeDates(
             "calendarReach"_L1, CalendarReachAssignment::fromJson, &decoded.skippedDates))
        decoded.state.calendarReach.insert(a.series, a.signals_);
    for (const auto &a :
         reader.recordList("calendarAnnotations"_L1, CalendarAnnotationAssignment::fromJson))
        decoded.state.calendarAnnotations.insert(a.series, a.annotation);
    if (!reader.ok())
        return std::nullopt;
    return decoded;
}

#include "records/PinTarget.h"

#include "json/JsonObjectReader.h"
#include "json/JsonWriter.h"

using namespace Qt::StringLiterals;

std::optional<PinTarget> PinTarget::fromJson(const JsonValue &value, QString *error)
{
    JsonObjectReader reader(value, error);
    const QString kind = reader.string("kind"_L1);
    std::optional<PinTarget> pin;
    if (!reader.ok())
        return std::nullopt;
    if (kind == "manual"_L1) {
        pin = manual(reader.uuid("id"_L1));
    } else if (kind == "calendarSeries"_L1 || kind == "calendarOccurrence"_L1) {
        CalendarSeriesRef series {reader.string("calendarID"_L1), reader.string("seriesID"_L1)};
        pin = kind == "calendarSeries"_L1
            ? calendarSeries(series)
            : calendarOccurrence(CalendarEventRef {series, reader.date("occurrenceDate"_L1)});
    } else {
        reader.fail(QStringLiteral("Unknown PinTarget kind: ") + kind);
    }
    return reader.ok() ? pin : std::nullopt;
}

void PinTarget::toJson(JsonWriter &writer) const
{
    writer.beginObject();
    switch (kind) {
    case Kind::manual:
        writer.key("id"_L1).uuid(eventID);
        writer.key("kind"_L1).string(u"manual");
        break;
    case Kind::calendarSeries:
        writer.key("calendarID"_L1).string(series.calendarID);
        writer.key("kind"_L1).string(u"calendarSeries");
        writer.key("seriesID"_L1).string(series.seriesID);
        break;
    case Kind::calendarOccurrence:
        writer.key("calendarID"_L1).string(series.calendarID);
        writer.key("kind"_L1).string(u"calendarOccurrence");
        writer.key("occurrenceDate"_L1).date(occurrenceDate);
        writer.key("seriesID"_L1).string(series.seriesID);
        break;
    }
    writer.endObject();
}

bool PinTarget::operator==(const PinTarget &other) const
{
    if (kind != other.kind)
        return false;
    switch (kind) {
    case Kind::manual:
        return eventID == other.eventID;
    case Kind::calendarSeries:
        return series == other.series;
    case Kind::calendarOccurrence:
        return series == other.series && occurrenceDate == other.occurrenceDate;
    }
    return false;
}

size_t qHash(const PinTarget &pin, size_t seed) noexcept
{
    switch (pin.kind) {
    case PinTarget::Kind::manual:
        return qHashMulti(seed, int(pin.kind), pin.eventID);
    case PinTarget::Kind::calendarSeries:
        return qHashMulti(seed, int(pin.kind), pin.series);
    case PinTarget::Kind::calendarOccurrence:
        return qHashMulti(seed, int(pin.kind), pin.occurrence());
    }
    return seed;
}

#include "storage/EventFile.h"

#include "storage/StoreEnvelope.h"
#include "json/JsonDocument.h"

namespace EventFile {

std::optional<Contents> decode(const QByteArray &bytes, QString *error)
{
    const std::optional<JsonDocument> document = JsonDocument::parse(bytes, error);
    if (!document)
        return std::nullopt;
    if (std::optional<StoreEnvelope::Decoded> envelope =
            StoreEnvelope::decode(document->root(), error)) {
        Contents contents;
        LoadResult &result = contents.result;
        result.state = std::move(envelope->state);
        sortEvents(result.state.events);
        if (result.state.pin && result.state.pin->isCalendar())
            result.state.keptCalendarSeries.insert(result.state.pin->series);
        result.needsReachSignalMigration =
            envelope->schemaVersion < 3 && !result.state.events.isEmpty();
        contents.skippedDates = std::move(envelope->skippedDates);
        return contents;
    }
    if (std::optional<Event> legacy = Event::fromJson(document->root(), nullptr)) {
        Contents contents;
        contents.legacy = true;
        contents.result.state.pin = PinTarget::manual(legacy->id);
        contents.result.state.events.append(std::move(*legacy));
        contents.result.needsReachSignalMigration = true;
        return contents;
    }
    return std::nullopt;
}

} // namespace EventFile

#pragma once

#include "storage/StoreState.h"

#include <QByteArray>

// The top level of "event.json".
struct StoreEnvelope
{
    static constexpr qint64 CurrentSchemaVersion = 10;

    // The file's bytes for a state: schema version 10, the pin mirrored into the old
    // "pinnedEventID" field for a manual pin, the maps and sets as lists in a stable order.
    // With a cache, events unchanged since the last save reuse their bytes. *problem names what
    // the file cannot hold (a date outside the years 0001 to 9999): such bytes must not be saved.
    static QByteArray encode(const StoreState &state, class EncodedEventCache *cache = nullptr,
                             QString *problem = nullptr);

    struct Decoded
    {
        qint64 schemaVersion = 0;
        StoreState state; // as stored: not yet sorted; the pin from "pin" or "pinnedEventID"
        // Dates of records left out because they lie outside the years 0001 to 9999.
        QStringList skippedDates;
    };
    // Nothing, with the reason in *error, when the bytes are not an envelope.
    static std::optional<Decoded> decode(const class JsonValue &root, QString *error);
};

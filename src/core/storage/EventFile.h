#pragma once

#include "storage/StoreState.h"

#include <QByteArray>
#include <QStringList>

#include <optional>

// What the bytes of "event.json" hold: the current envelope, or the single event of a version 1
// file. Pure decoding, shared by the store and the fuzzing of hostile files.
namespace EventFile {

struct Contents
{
    LoadResult result; // events sorted; a pinned calendar series counts as kept
    bool legacy = false; // a version 1 file: one event, which is pinned
    // Dates of records left out because they lie outside the years 0001 to 9999 (older
    // versions could write them); the rest of the file still loads.
    QStringList skippedDates;
};

// Nothing when the bytes are neither an envelope nor a legacy event; *error then says why the
// envelope could not be read.
std::optional<Contents> decode(const QByteArray &bytes, QString *error = nullptr);

} // namespace EventFile

// Any bytes as "event.json": loading never crashes, and whatever loads is written without a
// problem and loads back as the same state, written again byte for byte the same.
#include "storage/EventFile.h"
#include "storage/StoreEnvelope.h"

#include "FuzzCheck.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    const std::optional<EventFile::Contents> loaded = EventFile::decode(bytes);
    if (!loaded)
        return 0;
    QString problem;
    const QByteArray saved = StoreEnvelope::encode(loaded->result.state, nullptr, &problem);
    FUZZ_CHECK(problem.isEmpty());
    const std::optional<EventFile::Contents> again = EventFile::decode(saved);
    FUZZ_CHECK(again);
    FUZZ_CHECK(again->skippedDates.isEmpty() && !again->legacy);
    FUZZ_CHECK(again->result.state == loaded->result.state);
    FUZZ_CHECK(StoreEnvelope::encode(again->result.state) == saved);
    return 0;
}

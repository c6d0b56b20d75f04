// Any bytes as "settings.json": decoding never crashes, and settings that decode are written as
// valid JSON that decodes to the same settings, written again byte for byte the same.
#include "records/Settings.h"
#include "json/JsonDocument.h"
#include "json/JsonWriter.h"

#include "FuzzCheck.h"

#include <cstddef>
#include <cstdint>

namespace {

QByteArray encode(const Settings &settings)
{
    JsonWriter writer;
    settings.toJson(writer);
    return writer.finish();
}

std::optional<Settings> decode(const QByteArray &bytes)
{
    const std::optional<JsonDocument> document = JsonDocument::parse(bytes);
    return document ? Settings::fromJson(document->root(), nullptr) : std::nullopt;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const std::optional<Settings> loaded =
        decode(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)));
    if (!loaded)
        return 0;
    const QByteArray saved = encode(*loaded);
    const std::optional<Settings> again = decode(saved);
    FUZZ_CHECK(again);
    FUZZ_CHECK(*again == *loaded);
    FUZZ_CHECK(encode(*again) == saved);
    return 0;
}

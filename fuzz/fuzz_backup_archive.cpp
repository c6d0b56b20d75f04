// Any bytes as a backup file: reading never crashes, and an archive that reads is written as a
// file that reads back to the same countdowns, written again byte for byte the same.
#include "backup/BackupArchive.h"

#include "FuzzCheck.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const auto read =
        BackupArchive::read(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)));
    const auto *archive = std::get_if<BackupArchive>(&read);
    if (!archive)
        return 0;
    const QByteArray saved = archive->encode();
    const auto again = BackupArchive::read(saved);
    const auto *reread = std::get_if<BackupArchive>(&again);
    FUZZ_CHECK(reread);
    FUZZ_CHECK(reread->events == archive->events);
    FUZZ_CHECK(reread->encode() == saved);
    return 0;
}

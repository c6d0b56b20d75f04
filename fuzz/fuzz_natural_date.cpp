// Any text, at any instant and in a few zones, through the natural date parser: no crash, no
// hang, and a match is a valid instant with a cleaned title no longer than the text.
//
// Input: one byte of options (keeps-past, zone), eight bytes of the instant (milliseconds within
// a few centuries of 2026), then the text as UTF-8.
#include "parse/NaturalDateParser.h"

#include "FuzzCheck.h"

#include <QTimeZone>

#include <cstddef>
#include <cstdint>
#include <cstring>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const QTimeZone zones[] = {QTimeZone("Europe/Istanbul"),
                                      QTimeZone("America/New_York"),
                                      QTimeZone("Pacific/Chatham"),
                                      QTimeZone("Australia/Lord_Howe"),
                                      QTimeZone::utc(),
                                      QTimeZone("Asia/Kathmandu"),
                                      QTimeZone("America/St_Johns"),
                                      QTimeZone("Europe/Berlin")};
    if (size < 9)
        return 0;
    const uint8_t options = data[0];
    qint64 offset;
    std::memcpy(&offset, data + 1, sizeof offset);
    // 2026-03-01 plus or minus about 290 years.
    const qint64 msecs = 1772323200000 + offset % (qint64(290) * 365 * 86400000);
    const QDateTime now = QDateTime::fromMSecsSinceEpoch(msecs, Qt::UTC);
    const QString text =
        QString::fromUtf8(reinterpret_cast<const char *>(data + 9), qsizetype(size - 9));
    const std::optional<NaturalDateMatch> match =
        NaturalDateParser::parse(text, now, zones[options & 7], options & 8);
    if (match) {
        FUZZ_CHECK(match->date.isValid());
        FUZZ_CHECK(match->cleanedTitle.size() <= text.size());
    }
    return 0;
}

// Any bytes as an iCalendar file or feed: parsing and expanding a year of occurrences never
// crashes, and every occurrence returned overlaps the window asked for.
#include "platform/calendars/IcsCalendar.h"

#include "FuzzCheck.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    QString error;
    const auto calendar = IcsCalendar::parse(
        QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)), &error);
    if (!calendar)
        return 0;
    IcsReadContext context;
    context.calendarID = QStringLiteral("fuzz");
    context.userAddresses = {QStringLiteral("me@example.org")};
    context.localZone = QTimeZone("Europe/Berlin");
    const QDateTime from(QDate(2026, 1, 1), QTime(0, 0), QTimeZone::utc());
    const QDateTime to = from.addDays(366);
    for (const ProviderOccurrence &occurrence : calendar->occurrences(context, from, to)) {
        FUZZ_CHECK(occurrence.start.isValid());
        FUZZ_CHECK(occurrence.start < to);
        FUZZ_CHECK(occurrence.end.value_or(occurrence.start) >= from || occurrence.start >= from);
    }
    return 0;
}

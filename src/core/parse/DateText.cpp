#include "parse/DateText.h"

#include "parse/WallTime.h"
#include "json/IsoDate.h"

std::optional<DateText> parseDateText(const QString &text, const QTimeZone &zone)
{
    const QString trimmed = text.trimmed();
    if (const std::optional<QDateTime> instant = IsoDate::parse(QStringView(trimmed)))
        return DateText {*instant, true};
    const QDate day = QDate::fromString(trimmed, Qt::ISODate);
    if (day.isValid() && trimmed.size() == 10) {
        const QDateTime start = WallTime::startOfDay(day, zone);
        if (start.isValid())
            return DateText {start.toUTC(), false};
    }
    for (const QString &format :
         {QStringLiteral("yyyy-MM-ddTHH:mm"), QStringLiteral("yyyy-MM-ddTHH:mm:ss")}) {
        const QDateTime local = QDateTime::fromString(trimmed, format);
        if (!local.isValid())
            continue;
        const QDateTime zoned = WallTime::toInstant(local.date(), local.time(), zone);
        if (zoned.isValid())
            return DateText {zoned.toUTC(), true};
    }
    return std::nullopt;
}

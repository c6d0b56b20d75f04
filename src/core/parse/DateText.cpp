#include "parse/DateText.h"

#include "parse/WallTime.h"
#include "json/IsoDate.h"

namespace {

std::optional<DateText> readDate(const QString &trimmed, const QTimeZone &zone)
{
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

} // namespace

std::optional<DateText> parseDateText(const QString &text, const QTimeZone &zone, QString *problem)
{
    const QString trimmed = text.trimmed();
    const std::optional<DateText> date = readDate(trimmed, zone);
    if (date && IsoDate::isWritable(date->instant))
        return date;
    if (problem && date)
        *problem = QStringLiteral("\"%1\" is %2 in UTC, outside the years 0001 to 9999 that "
                                  "Tarrow can keep")
                       .arg(text, IsoDate::format(date->instant));
    else if (problem && IsoDate::isOutOfRange(trimmed))
        *problem = QStringLiteral("\"%1\" is outside the years 0001 to 9999 that Tarrow can keep")
                       .arg(text);
    return std::nullopt;
}

#include "cli/DateArgument.h"

#include "cli/CliContext.h"
#include "parse/NaturalDateParser.h"
#include "parse/WallTime.h"
#include "json/IsoDate.h"

namespace {

std::optional<DateArgument> parseDate(const QString &trimmed, const QTimeZone &zone)
{
    if (const std::optional<QDateTime> instant = IsoDate::parse(QStringView(trimmed)))
        return DateArgument {*instant, true};
    const QDate day = QDate::fromString(trimmed, Qt::ISODate);
    if (day.isValid() && trimmed.size() == 10) {
        const QDateTime start = WallTime::startOfDay(day, zone);
        if (start.isValid())
            return DateArgument {start.toUTC(), false};
    }
    for (const QString &format :
         {QStringLiteral("yyyy-MM-ddTHH:mm"), QStringLiteral("yyyy-MM-ddTHH:mm:ss")}) {
        const QDateTime local = QDateTime::fromString(trimmed, format);
        if (!local.isValid())
            continue;
        // A wall time skipped by a DST change moves forward; a repeated one is the first.
        const QDateTime zoned = WallTime::toInstant(local.date(), local.time(), zone);
        if (zoned.isValid())
            return DateArgument {zoned.toUTC(), true};
    }
    return std::nullopt;
}

} // namespace

std::optional<DateArgument> parseDateArgument(const QString &text, const QTimeZone &zone,
                                              QString *problem)
{
    const QString trimmed = text.trimmed();
    const std::optional<DateArgument> date = parseDate(trimmed, zone);
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

QString instantArgumentError(const QString &text, const QString &problem)
{
    if (!problem.isEmpty())
        return problem;
    return QStringLiteral(
               "\"%1\" is not an instant: write it as ISO 8601, for example 2026-12-24T18:30:00Z")
        .arg(text);
}

std::optional<QDateTime> instantArgument(const QString &text, CliContext &context)
{
    QString problem;
    if (const std::optional<DateArgument> date =
            parseDateArgument(text, QTimeZone::systemTimeZone(), &problem))
        return date->instant;
    context.fail(instantArgumentError(text, problem));
    return std::nullopt;
}

std::optional<QTimeZone> zoneArgument(const QString &ianaId, CliContext &context)
{
    if (ianaId.isEmpty())
        return QTimeZone::systemTimeZone();
    const QTimeZone zone(ianaId.toUtf8());
    if (!zone.isValid()) {
        context.fail(
            QStringLiteral("unknown time zone \"%1\" (use an IANA name such as Europe/Berlin)")
                .arg(ianaId));
        return std::nullopt;
    }
    return zone;
}

std::optional<TitleDate> dateFromTitle(const QString &title, const QDateTime &now,
                                       const QTimeZone &zone, bool keepsPast)
{
    const std::optional<NaturalDateMatch> match =
        NaturalDateParser::parse(title, now, zone, keepsPast);
    if (!match)
        return std::nullopt;
    // A title that was nothing but the date keeps its words.
    const QString rest = match->cleanedTitle.isEmpty() ? title : match->cleanedTitle;
    return TitleDate {rest, match->date.toUTC(), match->includeTime};
}

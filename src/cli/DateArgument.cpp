#include "cli/DateArgument.h"

#include "cli/CliContext.h"
#include "parse/NaturalDateParser.h"

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
    if (const std::optional<DateText> date =
            parseDateText(text, QTimeZone::systemTimeZone(), &problem))
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

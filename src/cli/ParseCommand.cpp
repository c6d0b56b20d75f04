#include "cli/ParseCommand.h"

#include "cli/CliContext.h"
#include "cli/CommandArguments.h"
#include "cli/DateArgument.h"
#include "parse/NaturalDateParser.h"
#include "json/IsoDate.h"

#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

const QString nowOption = QStringLiteral("now");
const QString zoneOption = QStringLiteral("time-zone");
const QString keepsPastOption = QStringLiteral("keeps-past");
const QString linesOption = QStringLiteral("jsonl");

QString jsonString(const QString &text)
{
    const QByteArray array = QJsonDocument(QJsonArray {text}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(array.mid(1, array.size() - 2));
}

// The keys in reading order: date, includeTime, cleanedTitle.
QString resultLine(const std::optional<NaturalDateMatch> &match)
{
    if (!match)
        return QStringLiteral(R"({"match":null})");
    return u"{\"date\":\"" % IsoDate::format(match->date) % u"\",\"includeTime\":"
        % (match->includeTime ? u"true" : u"false") % u",\"cleanedTitle\":"
        % jsonString(match->cleanedTitle) % u'}';
}

QString errorLine(const QString &message)
{
    return u"{\"error\":" % jsonString(message) % u'}';
}

QString notAnInstant(const QString &text)
{
    return QStringLiteral("\"%1\" is not an instant: write it as ISO 8601, for example "
                          "2026-12-24T18:30:00Z")
        .arg(text);
}

QString unknownZone(const QString &ianaId)
{
    return QStringLiteral("unknown time zone \"%1\" (use an IANA name such as Europe/Berlin)")
        .arg(ianaId);
}

// Zones by name for a run of lines: building a QTimeZone reads the zone database.
class ZoneCache
{
public:
    std::optional<QTimeZone> find(const QString &ianaId)
    {
        if (ianaId.isEmpty())
            return QTimeZone::systemTimeZone();
        auto it = m_zones.find(ianaId);
        if (it == m_zones.end())
            it = m_zones.insert(ianaId, QTimeZone(ianaId.toUtf8()));
        return it->isValid() ? std::optional<QTimeZone>(*it) : std::nullopt;
    }

private:
    QHash<QString, QTimeZone> m_zones;
};

// One request line: {"text": string, "now": ISO 8601 (default: the clock), "tz": IANA name
// (default: the system zone), "keepsPast": bool (default false)}.
QString answerLine(const QByteArray &line, const QDateTime &clockNow, ZoneCache &zones)
{
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(line, &parseError);
    if (parseError.error != QJsonParseError::NoError)
        return errorLine(QStringLiteral("not JSON: %1").arg(parseError.errorString()));
    if (!document.isObject())
        return errorLine(QStringLiteral("not a JSON object"));
    const QJsonObject request = document.object();

    const QJsonValue text = request.value(u"text");
    if (!text.isString())
        return errorLine(QStringLiteral("\"text\" must be a string"));

    const QJsonValue tz = request.value(u"tz");
    if (!tz.isUndefined() && !tz.isNull() && !tz.isString())
        return errorLine(QStringLiteral("\"tz\" must be a string"));
    const std::optional<QTimeZone> zone = zones.find(tz.toString());
    if (!zone)
        return errorLine(unknownZone(tz.toString()));

    QDateTime now = clockNow;
    const QJsonValue nowValue = request.value(u"now");
    if (!nowValue.isUndefined() && !nowValue.isNull()) {
        const auto parsed = parseDateText(nowValue.toString(), QTimeZone::systemTimeZone());
        if (!nowValue.isString() || !parsed)
            return errorLine(notAnInstant(nowValue.toVariant().toString()));
        now = parsed->instant;
    }

    const QJsonValue keepsPast = request.value(u"keepsPast");
    if (!keepsPast.isUndefined() && !keepsPast.isNull() && !keepsPast.isBool())
        return errorLine(QStringLiteral("\"keepsPast\" must be true or false"));

    return resultLine(NaturalDateParser::parse(text.toString(), now, *zone, keepsPast.toBool()));
}

} // namespace

QString ParseCommand::usage() const
{
    return QStringLiteral(
        "parse TEXT [--now ISO8601] [--time-zone ZONE] [--keeps-past] | parse --jsonl");
}

int ParseCommand::run(const QStringList &arguments, CliContext &context)
{
    CommandArguments args({
        QCommandLineOption(nowOption, QString(), QStringLiteral("ISO8601")),
        QCommandLineOption(zoneOption, QString(), QStringLiteral("ZONE")),
        QCommandLineOption(keepsPastOption),
        QCommandLineOption(linesOption),
    });
    const bool lines = arguments.contains(u"--" % linesOption);
    if (!args.parse(arguments, context, lines ? 0 : 1, lines ? 0 : 1, usage()))
        return 1;
    if (lines)
        return runLines(context);

    const std::optional<QTimeZone> zone = zoneArgument(args.value(zoneOption), context);
    if (!zone)
        return 1;
    QDateTime now = context.clock().now();
    if (args.isSet(nowOption)) {
        const std::optional<QDateTime> given = instantArgument(args.value(nowOption), context);
        if (!given)
            return 1;
        now = *given;
    }
    const auto match = NaturalDateParser::parse(args.positional().constFirst(), now, *zone,
                                                args.isSet(keepsPastOption));
    context.out() << resultLine(match) << '\n';
    context.out().flush();
    return 0;
}

// Answers every line of stdin in order; a malformed line gets an error line and the run goes on.
// Blank lines are skipped.
int ParseCommand::runLines(CliContext &context)
{
    ZoneCache zones;
    const QDateTime clockNow = context.clock().now();
    QTextStream &in = context.in();
    QTextStream &out = context.out();
    QString line;
    while (in.readLineInto(&line)) {
        if (line.trimmed().isEmpty())
            continue;
        out << answerLine(line.toUtf8(), clockNow, zones) << '\n';
    }
    out.flush();
    return 0;
}

#include "cli/ParseCommand.h"

#include "cli/CliContext.h"
#include "cli/CommandArguments.h"
#include "cli/DateArgument.h"
#include "parse/NaturalDateParser.h"
#include "json/IsoDate.h"
#include "json/JsonDocument.h"
#include "json/JsonWriter.h"

#include <QFileDevice>
#include <QHash>

using namespace Qt::StringLiterals;

namespace {

const QString nowOption = QStringLiteral("now");
const QString zoneOption = QStringLiteral("time-zone");
const QString keepsPastOption = QStringLiteral("keeps-past");
const QString linesOption = QStringLiteral("jsonl");

// One answer as a line of compact JSON, keys in reading order: date, includeTime, cleanedTitle.
QByteArray resultLine(const std::optional<NaturalDateMatch> &match)
{
    JsonWriter writer(JsonWriter::Layout::compact);
    writer.beginObject();
    if (!match) {
        writer.key("match"_L1).null();
    } else if (!IsoDate::isWritable(match->date)) {
        writer.key("error"_L1).string(IsoDate::outOfRangeMessage(match->date));
    } else {
        writer.key("date"_L1).date(match->date);
        writer.key("includeTime"_L1).boolean(match->includeTime);
        writer.key("cleanedTitle"_L1).string(match->cleanedTitle);
    }
    writer.endObject();
    return writer.finishFragment();
}

QByteArray errorLine(const QString &message)
{
    JsonWriter writer(JsonWriter::Layout::compact);
    writer.beginObject();
    writer.key("error"_L1).string(message);
    writer.endObject();
    return writer.finishFragment();
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

bool isAbsent(const JsonValue &value)
{
    return value.isUndefined() || value.isNull();
}

// One request line: {"text": string, "now": ISO 8601 (default: the clock), "tz": IANA name
// (default: the system zone), "keepsPast": bool (default false)}.
QByteArray answerLine(const QByteArray &line, const QDateTime &clockNow, ZoneCache &zones)
{
    QString parseError;
    const std::optional<JsonDocument> document = JsonDocument::parse(line, &parseError);
    if (!document)
        return errorLine(QStringLiteral("not JSON: %1").arg(parseError));
    const JsonValue request = document->root();
    if (!request.isObject())
        return errorLine(QStringLiteral("not a JSON object"));

    const JsonValue text = request["text"_L1];
    if (!text.isString())
        return errorLine(QStringLiteral("\"text\" must be a string"));

    const JsonValue tz = request["tz"_L1];
    if (!isAbsent(tz) && !tz.isString())
        return errorLine(QStringLiteral("\"tz\" must be a string"));
    const std::optional<QTimeZone> zone = zones.find(tz.toString());
    if (!zone)
        return errorLine(unknownZone(tz.toString()));

    QDateTime now = clockNow;
    const JsonValue nowValue = request["now"_L1];
    if (!isAbsent(nowValue)) {
        const QString given = nowValue.isString() ? nowValue.toString()
            : nowValue.isNumber()                 ? nowValue.numberText()
                                                  : describeJsonType(nowValue);
        QString problem;
        const auto parsed = nowValue.isString()
            ? parseDateArgument(given, QTimeZone::systemTimeZone(), &problem)
            : std::nullopt;
        if (!parsed)
            return errorLine(instantArgumentError(given, problem));
        now = parsed->instant;
    }

    const JsonValue keepsPast = request["keepsPast"_L1];
    if (!isAbsent(keepsPast) && !keepsPast.isBool())
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
    context.out() << QString::fromUtf8(resultLine(match)) << '\n';
    context.out().flush();
    return 0;
}

// Answers every line of stdin in order; a malformed line gets an error line and the run goes on.
// Blank lines are skipped. On real standard streams the bytes go straight through, without a
// round trip through UTF-16 on either side.
int ParseCommand::runLines(CliContext &context)
{
    ZoneCache zones;
    const QDateTime clockNow = context.clock().now();
    QIODevice *const input = context.in().device();
    QIODevice *const output = context.out().device();
    QTextStream &out = context.out();
    out.flush();
    const auto answer = [&](const QByteArray &line) {
        if (line.trimmed().isEmpty())
            return;
        QByteArray reply = answerLine(line, clockNow, zones);
        if (output) {
            reply += '\n';
            output->write(reply);
        } else {
            out << QString::fromUtf8(reply) << '\n';
        }
    };
    if (input) {
        for (QByteArray line = input->readLine(); !line.isEmpty(); line = input->readLine())
            answer(line);
    } else {
        QString line;
        while (context.in().readLineInto(&line))
            answer(line.toUtf8());
    }
    out.flush();
    if (auto *file = qobject_cast<QFileDevice *>(output))
        file->flush();
    return 0;
}

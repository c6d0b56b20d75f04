#include "cli/ParseCommand.h"

#include "cli/CliContext.h"
#include "cli/CommandArguments.h"
#include "cli/DateArgument.h"
#include "parse/NaturalDateParser.h"
#include "json/IsoDate.h"
#include "json/JsonDocument.h"
#include "json/JsonWriter.h"

#include <QFile>
#include <QFileDevice>
#include <QHash>

#ifdef Q_OS_UNIX
#include <unistd.h>

#include <cerrno>
#endif

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

bool isAbsent(const JsonValue &value)
{
    return value.isUndefined() || value.isNull();
}

// Answers request lines: {"text": string, "now": ISO 8601 (default: the clock), "tz": IANA name
// (default: the system zone), "keepsPast": bool (default false)}. Zones and instants recur from
// line to line; each distinct one is read once.
class Requests
{
public:
    explicit Requests(QDateTime clockNow)
        : m_clockNow(std::move(clockNow))
    {
    }

    QByteArray answer(const QByteArray &line)
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
        const QTimeZone *zone = zoneNamed(tz.toSharedString());
        if (!zone)
            return errorLine(unknownZone(tz.toString()));

        QDateTime now = m_clockNow;
        const JsonValue nowValue = request["now"_L1];
        if (!isAbsent(nowValue)) {
            QString problem;
            const std::optional<QDateTime> given = instant(nowValue, &problem);
            if (!given)
                return errorLine(problem);
            now = *given;
        }

        const JsonValue keepsPast = request["keepsPast"_L1];
        if (!isAbsent(keepsPast) && !keepsPast.isBool())
            return errorLine(QStringLiteral("\"keepsPast\" must be true or false"));

        return resultLine(
            NaturalDateParser::parse(text.toString(), now, *zone, keepsPast.toBool()));
    }

private:
    // Building a QTimeZone reads the zone database.
    const QTimeZone *zoneNamed(const QString &ianaId)
    {
        auto it = m_zones.find(ianaId);
        if (it == m_zones.end())
            it = m_zones.insert(ianaId,
                                ianaId.isEmpty() ? QTimeZone::systemTimeZone()
                                                 : QTimeZone(ianaId.toUtf8()));
        return it->isValid() ? &*it : nullptr;
    }

    std::optional<QDateTime> instant(const JsonValue &value, QString *problem)
    {
        const QString given = value.isString() ? value.toString()
            : value.isNumber()                 ? value.numberText()
                                               : describeJsonType(value);
        if (value.isString() && given == m_lastNowText)
            return m_lastNow;
        QString outOfRange;
        const std::optional<DateText> parsed = value.isString()
            ? parseDateText(given, QTimeZone::systemTimeZone(), &outOfRange)
            : std::nullopt;
        if (!parsed) {
            *problem = instantArgumentError(given, outOfRange);
            return std::nullopt;
        }
        m_lastNowText = given;
        m_lastNow = parsed->instant;
        return m_lastNow;
    }

    QDateTime m_clockNow;
    QHash<QString, QTimeZone> m_zones;
    QString m_lastNowText;
    QDateTime m_lastNow;
};

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

namespace {

// The standard input's descriptor when it is a real file or pipe, so that it can be read in
// blocks: what has arrived is answered at once, so a program that writes a line and waits for
// its answer is served as well as a file of a million lines.
int descriptorOf(QIODevice *device)
{
#ifdef Q_OS_UNIX
    if (auto *file = qobject_cast<QFile *>(device))
        return file->handle();
#else
    Q_UNUSED(device)
#endif
    return -1;
}

} // namespace

// Answers every line of stdin in order; a malformed line gets an error line and the run goes on.
// Blank lines are skipped. On real standard streams the bytes go straight through, in blocks,
// without a round trip through UTF-16 on either side.
int ParseCommand::runLines(CliContext &context)
{
    Requests requests(context.clock().now());
    QIODevice *const output = context.out().device();
    QTextStream &out = context.out();
    out.flush();
    QByteArray answers;
    const auto answer = [&](QByteArrayView line) {
        if (line.trimmed().isEmpty())
            return;
        answers += requests.answer(QByteArray::fromRawData(line.data(), line.size()));
        answers += '\n';
    };
    const auto send = [&] {
        if (output) {
            output->write(answers);
            if (auto *file = qobject_cast<QFileDevice *>(output))
                file->flush();
        } else {
            out << QString::fromUtf8(answers);
            out.flush();
        }
        answers.clear();
    };

    const int fd = descriptorOf(context.in().device());
    if (fd < 0) {
        QString line;
        while (context.in().readLineInto(&line))
            answer(line.toUtf8());
        send();
        return 0;
    }
#ifdef Q_OS_UNIX
    QByteArray pending;
    char block[65536];
    while (true) {
        const ssize_t got = ::read(fd, block, sizeof block);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            break;
        pending.append(block, got);
        qsizetype start = 0;
        for (qsizetype end; (end = pending.indexOf('\n', start)) >= 0; start = end + 1)
            answer(QByteArrayView(pending).sliced(start, end - start));
        pending.remove(0, start);
        send();
    }
    answer(pending); // a last line without its line break
    send();
#endif
    return 0;
}

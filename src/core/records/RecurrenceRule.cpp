#include "records/RecurrenceRule.h"

#include "json/JsonObjectReader.h"
#include "json/JsonWriter.h"

using namespace Qt::StringLiterals;

namespace {

constexpr const char16_t *FrequencyNames[] = {u"daily", u"weekly", u"monthly", u"yearly"};

std::optional<RecurrenceRule::End> decodeEnd(const JsonValue &value, QString *error)
{
    using End = RecurrenceRule::End;
    JsonObjectReader reader(value, error);
    const QString kind = reader.string("kind"_L1);
    if (!reader.ok())
        return std::nullopt;
    std::optional<End> end;
    if (kind == "afterOccurrences"_L1)
        end = End::afterOccurrences(reader.int64("count"_L1));
    else if (kind == "onDate"_L1)
        end = End::onDate(reader.date("date"_L1));
    else
        reader.fail(QStringLiteral("Unknown RecurrenceRule.End kind: ") + kind);
    return reader.ok() ? end : std::nullopt;
}

void encodeEnd(const RecurrenceRule::End &end, JsonWriter &writer)
{
    writer.beginObject();
    if (end.kind == RecurrenceRule::End::Kind::afterOccurrences) {
        writer.key("count"_L1).integer(end.count);
        writer.key("kind"_L1).string(u"afterOccurrences");
    } else {
        writer.key("date"_L1).date(end.date);
        writer.key("kind"_L1).string(u"onDate");
    }
    writer.endObject();
}

} // namespace

std::optional<Weekday> weekdayFromNumber(qint64 number)
{
    if (number < 1 || number > 7)
        return std::nullopt;
    return Weekday(number);
}

bool RecurrenceRule::End::operator==(const End &other) const
{
    if (kind != other.kind)
        return false;
    return kind == Kind::afterOccurrences ? count == other.count : date == other.date;
}

std::optional<RecurrenceRule> RecurrenceRule::fromJson(const JsonValue &value, QString *error)
{
    JsonObjectReader reader(value, error);
    RecurrenceRule rule;
    const QString frequency = reader.string("frequency"_L1);
    const QList<qint64> weekdays =
        reader.optionalInt64List("weekdays"_L1).value_or(QList<qint64>());
    if (!reader.has("weekdays"_L1))
        reader.required("weekdays"_L1);
    rule.interval = reader.int64("interval"_L1);
    rule.end = reader.optionalRecord("end"_L1, decodeEnd);
    rule.seriesStart = reader.optionalDate("seriesStart"_L1);
    if (!reader.ok())
        return std::nullopt;

    const auto known =
        std::find_if(std::begin(FrequencyNames), std::end(FrequencyNames),
                     [&](const char16_t *name) { return frequency == QStringView(name); });
    if (known == std::end(FrequencyNames)) {
        reader.fail(QStringLiteral("Cannot initialize Frequency from invalid String value ")
                    + frequency);
        return std::nullopt;
    }
    rule.frequency = Frequency(known - std::begin(FrequencyNames));
    for (qint64 number : weekdays) {
        const std::optional<Weekday> day = weekdayFromNumber(number);
        if (!day) {
            reader.fail(
                QStringLiteral("Cannot initialize Weekday from invalid Int value %1").arg(number));
            return std::nullopt;
        }
        rule.weekdays.append(*day);
    }
    return rule;
}

void RecurrenceRule::toJson(JsonWriter &writer) const
{
    writer.beginObject();
    if (end) {
        writer.key("end"_L1);
        encodeEnd(*end, writer);
    }
    writer.key("frequency"_L1).string(QStringView(FrequencyNames[int(frequency)]));
    writer.key("interval"_L1).integer(interval);
    if (seriesStart)
        writer.key("seriesStart"_L1).date(*seriesStart);
    writer.key("weekdays"_L1).beginArray();
    for (Weekday day : weekdays)
        writer.integer(int(day));
    writer.endArray();
    writer.endObject();
}

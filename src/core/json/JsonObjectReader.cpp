#include "json/JsonObjectReader.h"

#include "json/IsoDate.h"

JsonObjectReader::JsonObjectReader(const JsonValue &object, QString *error)
    : m_object(object)
    , m_error(error)
{
    if (!object.isObject())
        fail(QStringLiteral("Expected an object but found %1").arg(describeJsonType(object)));
}

void JsonObjectReader::fail(const QString &message)
{
    if (!m_ok)
        return;
    m_ok = false;
    if (m_error)
        *m_error = message;
}

QString JsonObjectReader::missingKeyMessage(QLatin1StringView key)
{
    return QStringLiteral("No value for key \"%1\"").arg(key);
}

void JsonObjectReader::typeMismatch(QLatin1StringView key, const char *expected,
                                    const JsonValue &found)
{
    // A number that does not fit ("1e999" for a whole number) is named by its text.
    fail(QStringLiteral("Expected %1 for key \"%2\" but found %3")
             .arg(QLatin1StringView(expected), key,
                  found.isNumber() ? found.numberText() : describeJsonType(found)));
}

JsonValue JsonObjectReader::member(QLatin1StringView key, bool isRequired)
{
    if (!m_ok)
        return {};
    const JsonValue value = find(key);
    if (!value.isPresent()) {
        if (isRequired)
            fail(missingKeyMessage(key));
        return {};
    }
    return value;
}

JsonValue JsonObjectReader::required(QLatin1StringView key)
{
    return member(key, true);
}

namespace {

std::optional<JsonValue> stringValue(const JsonValue &v)
{
    return v.isString() ? std::optional(v) : std::nullopt;
}

std::optional<QString> stringOf(const JsonValue &v)
{
    return v.isString() ? std::optional(v.toString()) : std::nullopt;
}

std::optional<QString> sharedStringOf(const JsonValue &v)
{
    return v.isString() ? std::optional(v.toSharedString()) : std::nullopt;
}

std::optional<bool> booleanOf(const JsonValue &v)
{
    return v.isBool() ? std::optional(v.toBool()) : std::nullopt;
}

std::optional<qint64> int64Of(const JsonValue &v)
{
    return v.toInt64();
}

std::optional<double> numberOf(const JsonValue &v)
{
    return v.toFiniteDouble();
}

} // namespace

template<typename Convert>
auto JsonObjectReader::read(QLatin1StringView key, bool isRequired, const char *expected,
                            Convert convert) -> decltype(convert(JsonValue()))
{
    const JsonValue value = member(key, isRequired);
    if (value.isUndefined())
        return std::nullopt;
    auto converted = convert(value);
    if (!converted)
        typeMismatch(key, expected, value);
    return converted;
}

QString JsonObjectReader::string(QLatin1StringView key)
{
    return read(key, true, "a string", stringOf).value_or(QString());
}

QString JsonObjectReader::sharedString(QLatin1StringView key)
{
    return read(key, true, "a string", sharedStringOf).value_or(QString());
}

std::optional<QString> JsonObjectReader::optionalSharedString(QLatin1StringView key)
{
    return read(key, false, "a string", sharedStringOf);
}

bool JsonObjectReader::boolean(QLatin1StringView key)
{
    return read(key, true, "a boolean", booleanOf).value_or(false);
}

qint64 JsonObjectReader::int64(QLatin1StringView key)
{
    return read(key, true, "a whole number", int64Of).value_or(0);
}

qint64 JsonObjectReader::int64(QLatin1StringView key, qint64 min, qint64 max)
{
    const std::optional<qint64> value = read(key, true, "a whole number", int64Of);
    if (value && (*value < min || *value > max)) {
        fail(QStringLiteral("Expected a whole number from %1 to %2 for key \"%3\" but found %4")
                 .arg(min)
                 .arg(max)
                 .arg(key)
                 .arg(*value));
        return 0;
    }
    return value.value_or(0);
}

double JsonObjectReader::number(QLatin1StringView key)
{
    return read(key, true, "a number", numberOf).value_or(0);
}

QDateTime JsonObjectReader::date(QLatin1StringView key)
{
    return readDate(key, true).value_or(QDateTime());
}

QUuid JsonObjectReader::uuid(QLatin1StringView key)
{
    return readUuid(key, true).value_or(QUuid());
}

std::optional<QString> JsonObjectReader::optionalString(QLatin1StringView key)
{
    return read(key, false, "a string", stringOf);
}

std::optional<bool> JsonObjectReader::optionalBoolean(QLatin1StringView key)
{
    return read(key, false, "a boolean", booleanOf);
}

std::optional<qint64> JsonObjectReader::optionalInt64(QLatin1StringView key)
{
    return read(key, false, "a whole number", int64Of);
}

std::optional<double> JsonObjectReader::optionalNumber(QLatin1StringView key)
{
    return read(key, false, "a number", numberOf);
}

std::optional<QDateTime> JsonObjectReader::optionalDate(QLatin1StringView key)
{
    return readDate(key, false);
}

std::optional<QUuid> JsonObjectReader::optionalUuid(QLatin1StringView key)
{
    return readUuid(key, false);
}

// Dates and UUIDs are plain ASCII in every file the app writes: they are read from the source
// bytes without making a QString first.
std::optional<QDateTime> JsonObjectReader::readDate(QLatin1StringView key, bool isRequired)
{
    const std::optional<JsonValue> text = read(key, isRequired, "a string", stringValue);
    if (!text)
        return std::nullopt;
    const std::optional<QByteArrayView> plain = text->plainUtf8();
    std::optional<QDateTime> date =
        plain ? IsoDate::parse(*plain) : IsoDate::parse(QStringView(text->toString()));
    if (!date)
        fail(IsoDate::invalidDateMessage(text->toString()));
    return date;
}

std::optional<QUuid> JsonObjectReader::readUuid(QLatin1StringView key, bool isRequired)
{
    const std::optional<JsonValue> text = read(key, isRequired, "a string", stringValue);
    if (!text)
        return std::nullopt;
    const std::optional<QByteArrayView> plain = text->plainUtf8();
    const QUuid id =
        plain ? QUuid::fromString(QUtf8StringView(*plain)) : QUuid::fromString(text->toString());
    if (id.isNull()) {
        fail(QStringLiteral("Attempted to decode UUID from invalid UUID string: %1")
                 .arg(text->toString()));
        return std::nullopt;
    }
    return id;
}

std::optional<QList<qint64>> JsonObjectReader::optionalInt64List(QLatin1StringView key)
{
    return read(key, false, "an array of whole numbers",
                [](const JsonValue &v) -> std::optional<QList<qint64>> {
                    if (!v.isArray())
                        return std::nullopt;
                    QList<qint64> list;
                    for (const JsonValue element : v.elements()) {
                        const std::optional<qint64> number = element.toInt64();
                        if (!number)
                            return std::nullopt;
                        list.append(*number);
                    }
                    return list;
                });
}

std::optional<QStringList> JsonObjectReader::optionalStringList(QLatin1StringView key)
{
    return read(key, false, "an array of strings",
                [](const JsonValue &v) -> std::optional<QStringList> {
                    if (!v.isArray())
                        return std::nullopt;
                    QStringList list;
                    for (const JsonValue element : v.elements()) {
                        if (!element.isString())
                            return std::nullopt;
                        list.append(element.toString());
                    }
                    return list;
                });
}

std::optional<QString> outOfRangeDateIn(const JsonValue &value)
{
    if (value.isString()) {
        const QString text = value.toString();
        return IsoDate::isOutOfRange(text) ? std::optional(text) : std::nullopt;
    }
    // Nesting is bounded by the parser.
    for (const JsonValue element : value.elements()) {
        if (std::optional<QString> found = outOfRangeDateIn(element))
            return found;
    }
    return std::nullopt;
}

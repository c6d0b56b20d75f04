#include "model/json/JsonObjectReader.h"

#include "model/IsoDate.h"

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

void JsonObjectReader::typeMismatch(QLatin1StringView key, const char *expected, const JsonValue &found)
{
    fail(QStringLiteral("Expected %1 for key \"%2\" but found %3")
             .arg(QLatin1StringView(expected), key, describeJsonType(found)));
}

JsonValue JsonObjectReader::member(QLatin1StringView key, bool isRequired)
{
    if (!m_ok)
        return {};
    const JsonValue value = m_object[key];
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

QString JsonObjectReader::string(QLatin1StringView key)
{
    return required(key).isUndefined() ? QString() : optionalString(key).value_or(QString());
}

bool JsonObjectReader::boolean(QLatin1StringView key)
{
    return required(key).isUndefined() ? false : optionalBoolean(key).value_or(false);
}

qint64 JsonObjectReader::int64(QLatin1StringView key)
{
    return required(key).isUndefined() ? 0 : optionalInt64(key).value_or(0);
}

double JsonObjectReader::number(QLatin1StringView key)
{
    return required(key).isUndefined() ? 0 : optionalNumber(key).value_or(0);
}

QDateTime JsonObjectReader::date(QLatin1StringView key)
{
    return required(key).isUndefined() ? QDateTime() : optionalDate(key).value_or(QDateTime());
}

QUuid JsonObjectReader::uuid(QLatin1StringView key)
{
    return required(key).isUndefined() ? QUuid() : optionalUuid(key).value_or(QUuid());
}

std::optional<QString> JsonObjectReader::optionalString(QLatin1StringView key)
{
    const JsonValue value = member(key, false);
    if (value.isUndefined())
        return std::nullopt;
    if (!value.isString()) {
        typeMismatch(key, "a string", value);
        return std::nullopt;
    }
    return value.toString();
}

std::optional<bool> JsonObjectReader::optionalBoolean(QLatin1StringView key)
{
    const JsonValue value = member(key, false);
    if (value.isUndefined())
        return std::nullopt;
    if (!value.isBool()) {
        typeMismatch(key, "a boolean", value);
        return std::nullopt;
    }
    return value.toBool();
}

std::optional<qint64> JsonObjectReader::optionalInt64(QLatin1StringView key)
{
    const JsonValue value = member(key, false);
    if (value.isUndefined())
        return std::nullopt;
    const std::optional<qint64> number = value.toInt64();
    if (!number)
        typeMismatch(key, "a whole number", value);
    return number;
}

std::optional<double> JsonObjectReader::optionalNumber(QLatin1StringView key)
{
    const JsonValue value = member(key, false);
    if (value.isUndefined())
        return std::nullopt;
    if (!value.isNumber()) {
        typeMismatch(key, "a number", value);
        return std::nullopt;
    }
    return value.toDouble();
}

std::optional<QDateTime> JsonObjectReader::optionalDate(QLatin1StringView key)
{
    const std::optional<QString> text = optionalString(key);
    if (!text)
        return std::nullopt;
    std::optional<QDateTime> date = IsoDate::parse(QStringView(*text));
    if (!date)
        fail(IsoDate::invalidDateMessage(*text));
    return date;
}

std::optional<QUuid> JsonObjectReader::optionalUuid(QLatin1StringView key)
{
    const std::optional<QString> text = optionalString(key);
    if (!text)
        return std::nullopt;
    const QUuid id = QUuid::fromString(*text);
    if (id.isNull()) {
        fail(QStringLiteral("Attempted to decode UUID from invalid UUID string: %1").arg(*text));
        return std::nullopt;
    }
    return id;
}

std::optional<QList<qint64>> JsonObjectReader::optionalInt64List(QLatin1StringView key)
{
    const JsonValue value = member(key, false);
    if (value.isUndefined())
        return std::nullopt;
    if (!value.isArray()) {
        typeMismatch(key, "an array", value);
        return std::nullopt;
    }
    QList<qint64> list;
    for (const JsonValue element : value.elements()) {
        const std::optional<qint64> number = element.toInt64();
        if (!number) {
            typeMismatch(key, "whole numbers", element);
            return std::nullopt;
        }
        list.append(*number);
    }
    return list;
}

std::optional<QStringList> JsonObjectReader::optionalStringList(QLatin1StringView key)
{
    const JsonValue value = member(key, false);
    if (value.isUndefined())
        return std::nullopt;
    if (!value.isArray()) {
        typeMismatch(key, "an array", value);
        return std::nullopt;
    }
    QStringList list;
    for (const JsonValue element : value.elements()) {
        if (!element.isString()) {
            typeMismatch(key, "strings", element);
            return std::nullopt;
        }
        list.append(element.toString());
    }
    return list;
}

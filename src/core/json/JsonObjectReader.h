#pragma once

#include "json/JsonDocument.h"

#include <QDateTime>
#include <QList>
#include <QUuid>

#include <optional>

// The first string anywhere in the value that is an ISO 8601 date outside the years 0001 to 9999
// (what older versions could write for a date beyond them), or nothing.
std::optional<QString> outOfRangeDateIn(const JsonValue &value);

// Reads the members of one JSON object into a record. Required members fail the record when
// missing or null; optional members are read when present and not null. Any member of the wrong
// type fails it too. The first failure is kept in *error and every later read returns a default,
// so a decoder reads all its fields straight through and checks ok() once at the end.
class JsonObjectReader
{
public:
    JsonObjectReader(const JsonValue &object, QString *error);

    bool ok() const { return m_ok; }
    bool has(QLatin1StringView key) const { return find(key).isPresent(); }
    JsonValue value(QLatin1StringView key) const { return find(key); }
    void fail(const QString &message);

    QString string(QLatin1StringView key);
    // A string that recurs across records (a zone or icon name): one shared copy per document.
    QString sharedString(QLatin1StringView key);
    std::optional<QString> optionalSharedString(QLatin1StringView key);
    bool boolean(QLatin1StringView key);
    qint64 int64(QLatin1StringView key);
    // A required whole number that must lie in [min, max] (a field narrower than 64 bits).
    qint64 int64(QLatin1StringView key, qint64 min, qint64 max);
    double number(QLatin1StringView key);
    QDateTime date(QLatin1StringView key);
    QUuid uuid(QLatin1StringView key);
    // A required member that must be present (not null); for nested records.
    JsonValue required(QLatin1StringView key);

    std::optional<QString> optionalString(QLatin1StringView key);
    std::optional<bool> optionalBoolean(QLatin1StringView key);
    std::optional<qint64> optionalInt64(QLatin1StringView key);
    std::optional<double> optionalNumber(QLatin1StringView key);
    std::optional<QDateTime> optionalDate(QLatin1StringView key);
    std::optional<QUuid> optionalUuid(QLatin1StringView key);
    std::optional<QList<qint64>> optionalInt64List(QLatin1StringView key);
    std::optional<QStringList> optionalStringList(QLatin1StringView key);

    // Decodes a nested record with `decode(JsonValue, QString *error)` when the member is present.
    template<typename Decode>
    auto optionalRecord(QLatin1StringView key, Decode decode)
        -> decltype(decode(JsonValue(), nullptr))
    {
        const JsonValue member = find(key);
        if (!m_ok || !member.isPresent())
            return std::nullopt;
        QString nested;
        auto result = decode(member, &nested);
        if (!result)
            fail(nested);
        return result;
    }
    template<typename Decode>
    auto record(QLatin1StringView key, Decode decode) -> decltype(decode(JsonValue(), nullptr))
    {
        const JsonValue member = required(key);
        if (!m_ok)
            return std::nullopt;
        QString nested;
        auto result = decode(member, &nested);
        if (!result)
            fail(nested);
        return result;
    }
    // Decodes every element of an array member (absent: empty list); one bad element fails all.
    template<typename Decode>
    auto recordList(QLatin1StringView key, Decode decode)
    {
        return decodeList(key, decode, nullptr);
    }
    // The same, except that an element that fails only because it holds a date outside the
    // years 0001 to 9999 (which older versions could write) is left out, with the date's text
    // added to *skipped.
    template<typename Decode>
    auto recordListSkippingOutOfRangeDates(QLatin1StringView key, Decode decode,
                                           QStringList *skipped)
    {
        return decodeList(key, decode, skipped);
    }

    // An enumeration stored by its raw text; an unknown text fails the record.
    template<typename FromRaw>
    auto optionalEnum(QLatin1StringView key, const char *typeName, FromRaw fromRaw)
        -> decltype(fromRaw(QStringView()))
    {
        const std::optional<QString> raw = optionalSharedString(key);
        if (!raw)
            return std::nullopt;
        const auto value = fromRaw(*raw);
        if (!value)
            fail(QStringLiteral("Cannot initialize %1 from invalid String value %2")
                     .arg(QLatin1StringView(typeName), *raw));
        return value;
    }

    static QString missingKeyMessage(QLatin1StringView key);

private:
    template<typename Decode>
    auto decodeList(QLatin1StringView key, Decode decode, QStringList *skipped)
    {
        using Record = typename decltype(decode(JsonValue(), nullptr))::value_type;
        QList<Record> list;
        const JsonValue member = find(key);
        if (!m_ok || !member.isPresent())
            return list;
        if (!member.isArray()) {
            typeMismatch(key, "an array", member);
            return list;
        }
        list.reserve(member.size());
        for (const JsonValue element : member.elements()) {
            QString nested;
            auto decoded = decode(element, &nested);
            if (decoded) {
                list.append(std::move(*decoded));
                continue;
            }
            const std::optional<QString> outOfRange =
                skipped ? outOfRangeDateIn(element) : std::nullopt;
            if (!outOfRange) {
                fail(nested);
                return QList<Record>();
            }
            skipped->append(*outOfRange);
        }
        return list;
    }

    // Looks the member up once and converts it; a value `convert` refuses is of the wrong type.
    template<typename Convert>
    auto read(QLatin1StringView key, bool isRequired, const char *expected, Convert convert)
        -> decltype(convert(JsonValue()));
    std::optional<QDateTime> readDate(QLatin1StringView key, bool isRequired);
    std::optional<QUuid> readUuid(QLatin1StringView key, bool isRequired);
    void typeMismatch(QLatin1StringView key, const char *expected, const JsonValue &found);
    JsonValue member(QLatin1StringView key, bool required);

    // Members are looked up from the one found last: decoders that read keys in the order the
    // files keep them (sorted) find each at once.
    JsonValue find(QLatin1StringView key) const { return m_object.member(key, &m_hint); }

    JsonValue m_object;
    QString *m_error;
    bool m_ok = true;
    mutable quint32 m_hint = 0;
};

#pragma once

#include <QByteArray>
#include <QHash>
#include <QLatin1StringView>
#include <QString>

#include <optional>
#include <vector>

class JsonValue;

// A read-only JSON document parsed straight from UTF-8 into one flat array of nodes. Strings and
// numbers stay as byte ranges of the source until they are asked for, which makes loading a large
// events file several times faster than going through QJsonDocument.
//
// The grammar is RFC 8259's, with one allowance: a UTF-8 byte-order mark in front of the document
// is skipped (some editors write one). Hostile input is bounded: nesting deeper than MaxDepth and
// documents of more than MaxValues values are refused, so memory stays proportional to the text.
class JsonDocument
{
public:
    enum class Type : quint8 { Null, Bool, Number, String, Array, Object };

    static constexpr int MaxDepth = 256;
    static constexpr qsizetype MaxValues = qsizetype(8) << 20;

    // The parsed document, or nothing with a description of the first syntax error.
    static std::optional<JsonDocument> parse(const QByteArray &utf8, QString *error = nullptr);

    JsonValue root() const;

private:
    friend class JsonValue;
    friend class JsonParser;

    struct Node
    {
        Type type = Type::Null;
        // Bool: the value; String: holds escapes; Object: its keys are plain and strictly sorted
        bool flag = false;
        quint32 next = 0; // next sibling (array element or object key), 0 when last
        union {
            quint32 first = 0; // containers: first child, 0 when empty
            quint32 begin; // String/Number: byte range in the source
        };
        quint32 length = 0;
    };

    QByteArray m_source;
    std::vector<Node> m_nodes;
    // Short strings that recur, converted once (see JsonValue::toSharedString()).
    mutable QHash<QByteArrayView, QString> m_shared;
};

// A position in a JsonDocument; cheap to copy. An absent member is "undefined".
class JsonValue
{
public:
    JsonValue() = default;

    bool isUndefined() const { return !m_doc; }
    bool isNull() const { return m_doc && node().type == JsonDocument::Type::Null; }
    bool isBool() const { return is(JsonDocument::Type::Bool); }
    bool isNumber() const { return is(JsonDocument::Type::Number); }
    bool isString() const { return is(JsonDocument::Type::String); }
    bool isArray() const { return is(JsonDocument::Type::Array); }
    bool isObject() const { return is(JsonDocument::Type::Object); }
    // Present and not null: the test for "decode if present".
    bool isPresent() const { return m_doc && node().type != JsonDocument::Type::Null; }

    bool toBool() const { return isBool() && node().flag; }
    // The number as a double; 0 for anything else or a number a double cannot hold.
    double toDouble() const { return toFiniteDouble().value_or(0); }
    // The number as a double, or nothing for anything else or a number a double cannot hold
    // (1e999, 1e-999).
    std::optional<double> toFiniteDouble() const;
    // The number as a whole 64-bit integer, or nothing for a fraction or a value out of range.
    std::optional<qint64> toInt64() const;
    QString toString() const;
    // The same text, shared with every equal short string of the document that was asked for
    // this way: for names that recur in every record (zones, icons), converted only once.
    QString toSharedString() const;
    // A number as it is written in the source ("1e999"), for messages.
    QString numberText() const { return isNumber() ? QString::fromLatin1(raw()) : QString(); }
    // A string without escapes: its UTF-8 bytes in the source, without a copy.
    std::optional<QByteArrayView> plainUtf8() const;
    // True when this is a string equal to the given ASCII text (no allocation).
    bool equals(QLatin1StringView text) const;

    // Object member, or undefined.
    JsonValue operator[](QLatin1StringView key) const;
    // The same, searching from the member after the one *hint names (0: from the first) and
    // round to it; *hint then names the member found. Reading the members in the order they
    // stand finds each one at once.
    JsonValue member(QLatin1StringView key, quint32 *hint) const;

    // Array elements and object members, in document order.
    class Iterator
    {
    public:
        Iterator(const JsonDocument *doc, quint32 index, bool members)
            : m_doc(doc)
            , m_index(index)
            , m_members(members)
        {
        }
        JsonValue operator*() const;
        Iterator &operator++();
        bool operator!=(const Iterator &other) const { return m_index != other.m_index; }
        // For object members: the key of the current member.
        QString key() const;

    private:
        const JsonDocument *m_doc;
        quint32 m_index;
        bool m_members;
    };
    struct Range
    {
        Iterator b, e;
        Iterator begin() const { return b; }
        Iterator end() const { return e; }
    };
    Range elements() const;
    qsizetype size() const;

private:
    friend class JsonDocument;
    JsonValue(const JsonDocument *doc, quint32 index)
        : m_doc(doc)
        , m_index(index)
    {
    }
    const JsonDocument::Node &node() const { return m_doc->m_nodes[m_index]; }
    bool is(JsonDocument::Type type) const { return m_doc && node().type == type; }
    QByteArrayView raw() const;

    const JsonDocument *m_doc = nullptr;
    quint32 m_index = 0;
};

// A short name for a value's JSON type, for error messages ("a string", "an object", ...).
QString describeJsonType(const JsonValue &value);

#include "json/JsonDocument.h"

#include <QStringDecoder>

#include <charconv>
#include <cmath>
#include <cstring>

namespace {

constexpr int MaxDepth = JsonDocument::MaxDepth;
constexpr quint64 EveryByte = 0x0101010101010101;

quint64 load8(const char *p)
{
    quint64 word;
    std::memcpy(&word, p, sizeof word);
    return word;
}

// Some byte of the word is below `limit` (at most 0x80); may also report a byte just above one
// that is, which only costs a closer look.
quint64 anyBelow(quint64 word, quint8 limit)
{
    return (word - EveryByte * limit) & ~word & (EveryByte * 0x80);
}

// Some byte of the eight may end or escape a string: a quote, a backslash or a control character.
bool mayEndPlainRun(quint64 word)
{
    return anyBelow(word ^ (EveryByte * '"'), 1) | anyBelow(word ^ (EveryByte * '\\'), 1)
        | anyBelow(word, 0x20);
}

bool isDigit(const char *p, const char *end)
{
    return p != end && *p >= '0' && *p <= '9';
}

// Byte-wise order, as the writer sorts keys.
int compareBytes(QByteArrayView a, QByteArrayView b)
{
    const int common = std::memcmp(a.data(), b.data(), size_t(qMin(a.size(), b.size())));
    if (common != 0)
        return common;
    return a.size() < b.size() ? -1 : a.size() > b.size() ? 1 : 0;
}

int hexValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

} // namespace

// Recursive-descent parser over the UTF-8 bytes, appending nodes in document order. An object's
// key node is always followed directly by its value node.
class JsonParser
{
public:
    JsonParser(const QByteArray &source, std::vector<JsonDocument::Node> &nodes)
        : m_p(source.constData())
        , m_begin(source.constData())
        , m_end(source.constData() + source.size())
        , m_nodes(nodes)
    {
    }

    bool parseDocument()
    {
        if (m_end - m_p >= 3 && std::memcmp(m_p, "\xEF\xBB\xBF", 3) == 0)
            m_p += 3; // a byte-order mark some editors put in front
        skipSpace();
        if (!parseValue(0))
            return false;
        skipSpace();
        if (m_p != m_end)
            return fail("unexpected text after the document");
        return true;
    }

    QString error() const { return m_error; }

private:
    using Node = JsonDocument::Node;
    using Type = JsonDocument::Type;

    bool fail(const char *what)
    {
        if (m_error.isEmpty())
            m_error = QStringLiteral("Malformed JSON at byte %1: %2")
                          .arg(m_p - m_begin)
                          .arg(QLatin1StringView(what));
        return false;
    }

    void skipSpace()
    {
        // Pretty-printed files are mostly indentation: step over it eight spaces at a time.
        while (m_p != m_end && *m_p == '\n') {
            ++m_p;
            while (m_end - m_p >= 8 && load8(m_p) == EveryByte * ' ')
                m_p += 8;
        }
        while (m_p != m_end && (*m_p == ' ' || *m_p == '\n' || *m_p == '\r' || *m_p == '\t'))
            ++m_p;
    }

    // The index of the new node, or 0 (never a valid index after the root) when the document
    // already holds as many values as it may.
    quint32 append(Type type)
    {
        if (qsizetype(m_nodes.size()) >= JsonDocument::MaxValues) {
            fail("too many values");
            return 0;
        }
        m_nodes.emplace_back().type = type;
        return quint32(m_nodes.size() - 1);
    }

    bool full() const { return qsizetype(m_nodes.size()) >= JsonDocument::MaxValues; }

    bool parseValue(int depth)
    {
        if (m_p == m_end)
            return fail("unexpected end of the document");
        switch (*m_p) {
        case '{':
            return parseObject(depth + 1);
        case '[':
            return parseArray(depth + 1);
        case '"':
            return parseString() != 0;
        case 't':
            return parseLiteral("true", Type::Bool, true);
        case 'f':
            return parseLiteral("false", Type::Bool, false);
        case 'n':
            return parseLiteral("null", Type::Null, false);
        default:
            return parseNumber();
        }
    }

    bool parseLiteral(const char *word, Type type, bool value)
    {
        const qsizetype length = qsizetype(strlen(word));
        if (m_end - m_p < length || memcmp(m_p, word, size_t(length)) != 0)
            return fail("unknown literal");
        m_p += length;
        const quint32 index = append(type);
        if (full() && !index)
            return false;
        m_nodes[index].flag = value;
        return true;
    }

    // -?(0|[1-9][0-9]*)(\.[0-9]+)?([eE][+-]?[0-9]+)?
    bool parseNumber()
    {
        const char *start = m_p;
        if (*m_p == '-')
            ++m_p;
        if (!isDigit(m_p, m_end))
            return fail(m_p == start ? "expected a value" : "malformed number");
        if (*m_p++ != '0') {
            while (isDigit(m_p, m_end))
                ++m_p;
        }
        if (m_p != m_end && *m_p == '.') {
            if (!isDigit(++m_p, m_end))
                return fail("malformed number");
            while (isDigit(m_p, m_end))
                ++m_p;
        }
        if (m_p != m_end && (*m_p == 'e' || *m_p == 'E')) {
            ++m_p;
            if (m_p != m_end && (*m_p == '+' || *m_p == '-'))
                ++m_p;
            if (!isDigit(m_p, m_end))
                return fail("malformed number");
            while (isDigit(m_p, m_end))
                ++m_p;
        }
        if (isDigit(m_p, m_end)) // a leading zero followed by more digits
            return fail("malformed number");
        const quint32 index = append(Type::Number);
        if (!index)
            return false;
        m_nodes[index].begin = quint32(start - m_begin);
        m_nodes[index].length = quint32(m_p - start);
        return true;
    }

    // Steps over one escape sequence, from its backslash: one of eight letters or \uXXXX.
    bool skipEscape()
    {
        if (++m_p == m_end)
            return fail("unterminated string");
        const char kind = *m_p++;
        if (kind != 'u')
            return (kind && std::strchr("\"\\/bfnrt", kind)) || fail("unknown escape");
        for (int i = 0; i < 4; ++i, ++m_p) {
            if (m_p == m_end || hexValue(*m_p) < 0)
                return fail("malformed unicode escape");
        }
        return true;
    }

    // Returns the node index (never 0 for a string: the root is node 0) or 0 on error.
    quint32 parseString()
    {
        ++m_p; // opening quote
        const char *start = m_p;
        bool escaped = false;
        while (true) {
            while (m_end - m_p >= 8 && !mayEndPlainRun(load8(m_p)))
                m_p += 8;
            if (m_p == m_end) {
                fail("unterminated string");
                return 0;
            }
            const char c = *m_p;
            if (c == '"')
                break;
            if (c == '\\') {
                escaped = true;
                if (!skipEscape())
                    return 0;
                continue;
            }
            if (static_cast<unsigned char>(c) < 0x20) {
                fail("control character in a string");
                return 0;
            }
            ++m_p;
        }
        const quint32 index = append(Type::String);
        if (full() && !index)
            return 0;
        Node &node = m_nodes[index];
        node.flag = escaped;
        node.begin = quint32(start - m_begin);
        node.length = quint32(m_p - start);
        ++m_p; // closing quote
        return index == 0 ? quint32(-1) : index;
    }

    bool parseArray(int depth)
    {
        if (depth > MaxDepth)
            return fail("nesting too deep");
        const quint32 array = append(Type::Array);
        if (full() && !array)
            return false;
        ++m_p;
        skipSpace();
        if (m_p != m_end && *m_p == ']') {
            ++m_p;
            return true;
        }
        quint32 previous = 0;
        while (true) {
            skipSpace();
            const quint32 element = quint32(m_nodes.size());
            if (!parseValue(depth))
                return false;
            if (previous)
                m_nodes[previous].next = element;
            else
                m_nodes[array].first = element;
            previous = element;
            skipSpace();
            if (m_p == m_end)
                return fail("unterminated array");
            if (*m_p == ',') {
                ++m_p;
                continue;
            }
            if (*m_p == ']') {
                ++m_p;
                return true;
            }
            return fail("expected ',' or ']'");
        }
    }

    int compareKeys(quint32 a, quint32 b) const
    {
        return compareKey(m_nodes[a],
                          QByteArrayView(m_begin + m_nodes[b].begin, m_nodes[b].length));
    }
    bool keyLess(quint32 a, quint32 b) const { return compareKeys(a, b) < 0; }
    int compareKey(const Node &key, QByteArrayView text) const
    {
        return compareBytes(QByteArrayView(m_begin + key.begin, key.length), text);
    }

    bool parseObject(int depth)
    {
        if (depth > MaxDepth)
            return fail("nesting too deep");
        const quint32 object = append(Type::Object);
        if (full() && !object)
            return false;
        ++m_p;
        skipSpace();
        if (m_p != m_end && *m_p == '}') {
            ++m_p;
            return true;
        }
        quint32 previous = 0;
        bool sorted = true;
        while (true) {
            skipSpace();
            if (m_p == m_end || *m_p != '"')
                return fail("expected a key");
            const quint32 key = parseString();
            if (!key)
                return false;
            sorted = sorted && !m_nodes[key].flag && (!previous || keyLess(previous, key));
            m_nodes[object].flag = sorted;
            skipSpace();
            if (m_p == m_end || *m_p != ':')
                return fail("expected ':'");
            ++m_p;
            skipSpace();
            if (!parseValue(depth))
                return false;
            if (previous)
                m_nodes[previous].next = key;
            else
                m_nodes[object].first = key;
            previous = key;
            skipSpace();
            if (m_p == m_end)
                return fail("unterminated object");
            if (*m_p == ',') {
                ++m_p;
                continue;
            }
            if (*m_p == '}') {
                ++m_p;
                return true;
            }
            return fail("expected ',' or '}'");
        }
    }

    const char *m_p;
    const char *m_begin;
    const char *m_end;
    std::vector<Node> &m_nodes;
    QString m_error;
};

std::optional<JsonDocument> JsonDocument::parse(const QByteArray &utf8, QString *error)
{
    JsonDocument doc;
    doc.m_source = utf8;
    // Pretty-printed files take about sixteen bytes a value.
    doc.m_nodes.reserve(size_t(utf8.size() / 16 + 16));
    JsonParser parser(doc.m_source, doc.m_nodes);
    if (!parser.parseDocument()) {
        if (error)
            *error = parser.error();
        return std::nullopt;
    }
    return doc;
}

JsonValue JsonDocument::root() const
{
    return JsonValue(this, 0);
}

QByteArrayView JsonValue::raw() const
{
    const auto &n = node();
    return QByteArrayView(m_doc->m_source.constData() + n.begin, n.length);
}

std::optional<double> JsonValue::toFiniteDouble() const
{
    if (!isNumber())
        return std::nullopt;
    const QByteArrayView text = raw();
    double value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    // Beyond what a double holds, in either direction (1e999, 1e-999): no value, never 0.
    if (result.ec != std::errc() || !std::isfinite(value))
        return std::nullopt;
    return value;
}

std::optional<qint64> JsonValue::toInt64() const
{
    if (!isNumber())
        return std::nullopt;
    const QByteArrayView text = raw();
    qint64 value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec == std::errc() && result.ptr == text.data() + text.size())
        return value;
    // "60.0" or "1e3" still name whole numbers; "1e999" names none.
    const std::optional<double> d = toFiniteDouble();
    if (d && *d == std::trunc(*d) && std::fabs(*d) < 9.2e18)
        return qint64(*d);
    return std::nullopt;
}

namespace {

// Converts UTF-8 runs straight into a string's buffer. Unlike QString::fromUtf8 it keeps a
// byte-order mark at the start of a run: inside a string value it is text (U+FEFF) and must
// survive a save and a load.
class Utf8Appender
{
public:
    explicit Utf8Appender(qsizetype maxUnits)
        : m_out(maxUnits, Qt::Uninitialized)
        , m_end(m_out.data())
    {
    }
    void append(QByteArrayView bytes) { m_end = m_decoder.appendToBuffer(m_end, bytes); }
    void append(QChar unit) { *m_end++ = unit; }
    QString take()
    {
        m_out.truncate(m_end - m_out.constData());
        return std::move(m_out);
    }

private:
    QStringDecoder m_decoder {QStringDecoder::Utf8,
                              QStringDecoder::Flag::Stateless
                                  | QStringDecoder::Flag::ConvertInitialBom};
    QString m_out;
    QChar *m_end;
};

QString fromUtf8(QByteArrayView bytes)
{
    if (!bytes.startsWith("\xEF\xBB\xBF"))
        return QString::fromUtf8(bytes);
    Utf8Appender out(bytes.size());
    out.append(bytes);
    return out.take();
}

// Every escape is shorter than the unit it stands for, and no UTF-8 byte becomes more than one
// UTF-16 unit: the text's length in bytes bounds the result.
QString unescape(QByteArrayView text)
{
    Utf8Appender out(text.size());
    qsizetype runStart = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] != '\\')
            continue;
        out.append(text.sliced(runStart, i - runStart));
        ++i;
        const char c = text[i];
        switch (c) {
        case 'n':
            out.append(u'\n');
            break;
        case 't':
            out.append(u'\t');
            break;
        case 'r':
            out.append(u'\r');
            break;
        case 'b':
            out.append(u'\b');
            break;
        case 'f':
            out.append(u'\f');
            break;
        case 'u': {
            int code = 0;
            for (int k = 1; k <= 4 && i + k < text.size(); ++k) {
                const int h = hexValue(text[i + k]);
                code = code * 16 + (h < 0 ? 0 : h);
            }
            out.append(QChar(char16_t(code)));
            i += 4;
            break;
        }
        default:
            out.append(QChar::fromLatin1(c));
            break; // \" \\ \/
        }
        runStart = i + 1;
    }
    out.append(text.sliced(qMin(runStart, text.size())));
    return out.take();
}

} // namespace

QString JsonValue::toString() const
{
    if (!isString())
        return {};
    return node().flag ? unescape(raw()) : fromUtf8(raw());
}

QString JsonValue::toSharedString() const
{
    constexpr quint32 MaxShared = 64;
    if (!isString() || node().flag || node().length > MaxShared)
        return toString();
    const QByteArrayView text = raw();
    auto found = m_doc->m_shared.constFind(text);
    if (found == m_doc->m_shared.constEnd())
        found = m_doc->m_shared.insert(text, fromUtf8(text));
    return *found;
}

std::optional<QByteArrayView> JsonValue::plainUtf8() const
{
    if (!isString() || node().flag)
        return std::nullopt;
    return raw();
}

bool JsonValue::equals(QLatin1StringView text) const
{
    if (!isString())
        return false;
    if (node().flag)
        return toString() == text;
    return raw() == QByteArrayView(text.data(), text.size());
}

JsonValue JsonValue::operator[](QLatin1StringView key) const
{
    quint32 hint = 0;
    return member(key, &hint);
}

JsonValue JsonValue::member(QLatin1StringView key, quint32 *hint) const
{
    if (!isObject())
        return {};
    const auto &nodes = m_doc->m_nodes;
    const char *source = m_doc->m_source.constData();
    const auto matches = [&](quint32 k) {
        const JsonDocument::Node &name = nodes[k];
        return name.flag ? JsonValue(m_doc, k).toString() == key
                         : name.length == quint32(key.size())
                && std::memcmp(source + name.begin, key.data(), name.length) == 0;
    };
    const quint32 first = node().first;
    if (node().flag) {
        // Sorted plain keys: from the member found last, up to the first key beyond this one.
        const QByteArrayView wanted(key.data(), key.size());
        const auto order = [&](quint32 k) {
            return compareBytes(QByteArrayView(source + nodes[k].begin, nodes[k].length), wanted);
        };
        quint32 k = *hint ? *hint : first;
        if (k && order(k) > 0)
            k = first;
        for (; k; k = nodes[k].next) {
            const int o = order(k);
            if (o == 0) {
                *hint = k;
                return JsonValue(m_doc, k + 1);
            }
            if (o > 0)
                break;
        }
        return {};
    }
    const quint32 start = *hint && nodes[*hint].next ? nodes[*hint].next : first;
    for (quint32 k = start; k; k = nodes[k].next) {
        if (matches(k)) {
            *hint = k;
            return JsonValue(m_doc, k + 1);
        }
    }
    for (quint32 k = first; k && k != start; k = nodes[k].next) {
        if (matches(k)) {
            *hint = k;
            return JsonValue(m_doc, k + 1);
        }
    }
    return {};
}

JsonValue::Range JsonValue::elements() const
{
    const bool members = isObject();
    const quint32 first = (isArray() || members) ? node().first : 0;
    return Range {Iterator(m_doc, first, members), Iterator(m_doc, 0, members)};
}

qsizetype JsonValue::size() const
{
    qsizetype count = 0;
    for (auto it = elements().begin(); it != elements().end(); ++it)
        ++count;
    return count;
}

JsonValue JsonValue::Iterator::operator*() const
{
    return JsonValue(m_doc, m_members ? m_index + 1 : m_index);
}

JsonValue::Iterator &JsonValue::Iterator::operator++()
{
    m_index = m_doc->m_nodes[m_index].next;
    return *this;
}

QString JsonValue::Iterator::key() const
{
    return m_members ? JsonValue(m_doc, m_index).toString() : QString();
}

QString describeJsonType(const JsonValue &value)
{
    if (value.isUndefined())
        return QStringLiteral("nothing");
    if (value.isNull())
        return QStringLiteral("null");
    if (value.isBool())
        return QStringLiteral("a boolean");
    if (value.isNumber())
        return QStringLiteral("a number");
    if (value.isString())
        return QStringLiteral("a string");
    if (value.isArray())
        return QStringLiteral("an array");
    return QStringLiteral("an object");
}

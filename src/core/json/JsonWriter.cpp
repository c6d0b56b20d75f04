#include "json/JsonWriter.h"

#include "json/IsoDate.h"

#include <charconv>
#include <cmath>
#include <cstring>

namespace {

constexpr int IndentWidth = 4;
// The most bytes one UTF-16 unit can become: a "\u00XX" escape or a "\uDXXX" lone surrogate.
constexpr qsizetype MaxBytesPerUnit = 6;

char hexDigit(uint value)
{
    return char(value < 10 ? '0' + value : 'a' + value - 10);
}

char *writeHex4(char *out, char16_t unit)
{
    *out++ = '\\';
    *out++ = 'u';
    for (int shift = 12; shift >= 0; shift -= 4)
        *out++ = hexDigit((unit >> shift) & 0xf);
    return out;
}

char *writeAsciiEscaped(char *out, char16_t c)
{
    if (c >= 0x20 && c != '"' && c != '\\') {
        *out++ = char(c);
        return out;
    }
    *out++ = '\\';
    switch (c) {
    case '"':
        *out++ = '"';
        break;
    case '\\':
        *out++ = '\\';
        break;
    case '\b':
        *out++ = 'b';
        break;
    case '\f':
        *out++ = 'f';
        break;
    case '\n':
        *out++ = 'n';
        break;
    case '\r':
        *out++ = 'r';
        break;
    case '\t':
        *out++ = 't';
        break;
    default:
        *out++ = 'u';
        *out++ = '0';
        *out++ = '0';
        *out++ = hexDigit(c >> 4);
        *out++ = hexDigit(c & 0xf);
    }
    return out;
}

// One non-ASCII character as UTF-8; a surrogate without its partner becomes a "\uDXXX" escape,
// as QJsonDocument writes it. Advances `next` past a low surrogate it consumed.
char *writeUtf8(char *out, char16_t c, const char16_t *&next, const char16_t *end)
{
    if (c < 0x800) {
        *out++ = char(0xc0 | (c >> 6));
        *out++ = char(0x80 | (c & 0x3f));
        return out;
    }
    if (!QChar::isSurrogate(c)) {
        *out++ = char(0xe0 | (c >> 12));
        *out++ = char(0x80 | ((c >> 6) & 0x3f));
        *out++ = char(0x80 | (c & 0x3f));
        return out;
    }
    if (!QChar::isHighSurrogate(c) || next == end || !QChar::isLowSurrogate(*next))
        return writeHex4(out, c);
    const char32_t code = QChar::surrogateToUcs4(c, *next++);
    *out++ = char(0xf0 | (code >> 18));
    *out++ = char(0x80 | ((code >> 12) & 0x3f));
    *out++ = char(0x80 | ((code >> 6) & 0x3f));
    *out++ = char(0x80 | (code & 0x3f));
    return out;
}

char *writeUuidPart(char *out, quint64 value, int digits)
{
    static constexpr char Hex[] = "0123456789ABCDEF";
    for (int shift = (digits - 1) * 4; shift >= 0; shift -= 4)
        *out++ = Hex[(value >> shift) & 0xf];
    return out;
}

} // namespace

JsonWriter::JsonWriter()
    : m_out(4096, Qt::Uninitialized)
    , m_cursor(m_out.data())
{
}

JsonWriter::JsonWriter(int baseDepth)
    : JsonWriter()
{
    m_baseDepth = baseDepth;
}

JsonWriter::JsonWriter(Layout layout)
    : m_out(layout == Layout::compact ? 256 : 4096, Qt::Uninitialized)
    , m_cursor(m_out.data())
    , m_compact(layout == Layout::compact)
{
}

char *JsonWriter::grow(qsizetype bytes)
{
    const qsizetype used = m_cursor - m_out.data();
    if (m_out.size() - used < bytes) {
        m_out.resize(qMax(2 * m_out.size(), used + bytes));
        m_cursor = m_out.data() + used;
    }
    return m_cursor;
}

void JsonWriter::put(QByteArrayView bytes)
{
    char *out = grow(bytes.size());
    std::memcpy(out, bytes.data(), size_t(bytes.size()));
    trimTo(out + bytes.size());
}

// The separator before a member or element: a comma unless it is the first, a line break and
// the indentation of the current depth.
char *JsonWriter::newLine(char *out, bool first) const
{
    if (!first)
        *out++ = ',';
    if (m_compact)
        return out;
    *out++ = '\n';
    const size_t indent = size_t(IndentWidth * depth());
    std::memset(out, ' ', indent);
    return out + indent;
}

void JsonWriter::beforeValue()
{
    if (m_keyPending) {
        m_keyPending = false;
        return;
    }
    if (m_levels.empty())
        return;
    Level &level = m_levels.back();
    Q_ASSERT_X(!level.isObject, "JsonWriter", "a value inside an object needs a key first");
    trimTo(newLine(grow(2 + IndentWidth * qsizetype(depth())), level.count == 0));
    ++level.count;
}

JsonWriter &JsonWriter::key(QLatin1StringView name)
{
    Q_ASSERT_X(!m_levels.empty() && m_levels.back().isObject, "JsonWriter",
               "key outside an object");
    Level &level = m_levels.back();
    Q_ASSERT_X(m_compact || level.count == 0
                   || QByteArrayView(level.lastKey) < QByteArrayView(name.data(), name.size()),
               "JsonWriter", "object keys must be written in sorted order");
#ifndef QT_NO_DEBUG
    level.lastKey = QByteArray(name.data(), name.size());
#endif
    char *out = newLine(grow(6 + IndentWidth * qsizetype(depth()) + name.size()), level.count == 0);
    *out++ = '"';
    std::memcpy(out, name.data(), size_t(name.size()));
    out += name.size();
    std::memcpy(out, "\": ", 3);
    trimTo(out + (m_compact ? 2 : 3));
    ++level.count;
    m_keyPending = true;
    return *this;
}

JsonWriter &JsonWriter::key(QStringView name)
{
    Q_ASSERT_X(!m_levels.empty() && m_levels.back().isObject, "JsonWriter",
               "key outside an object");
    Level &level = m_levels.back();
    trimTo(newLine(grow(2 + IndentWidth * qsizetype(depth())), level.count == 0));
    appendEscaped(name);
    put(m_compact ? QByteArrayView(":") : QByteArrayView(": "));
    ++level.count;
    m_keyPending = true;
    return *this;
}

void JsonWriter::openContainer(char bracket)
{
    beforeValue();
    put(QByteArrayView(&bracket, 1));
    m_levels.push_back(Level {bracket == '{', 0, {}});
}

void JsonWriter::closeContainer(char bracket)
{
    Q_ASSERT(!m_levels.empty());
    m_levels.pop_back();
    char *out = grow(3 + IndentWidth * qsizetype(depth()));
    if (!m_compact)
        out = newLine(out, true);
    *out++ = bracket;
    trimTo(out);
}

void JsonWriter::beginObject()
{
    openContainer('{');
}
void JsonWriter::endObject()
{
    closeContainer('}');
}
void JsonWriter::beginArray()
{
    openContainer('[');
}
void JsonWriter::endArray()
{
    closeContainer(']');
}

void JsonWriter::string(QStringView text)
{
    beforeValue();
    appendEscaped(text);
}

void JsonWriter::boolean(bool value)
{
    beforeValue();
    put(value ? "true" : "false");
}

void JsonWriter::integer(qint64 value)
{
    beforeValue();
    char *out = grow(20);
    trimTo(std::to_chars(out, out + 20, value).ptr);
}

void JsonWriter::number(double value)
{
    beforeValue();
    if (std::isfinite(value))
        put(QByteArray::number(value, 'g', QLocale::FloatingPointShortest));
    else
        put("null");
}

void JsonWriter::encoded(QByteArrayView fragment)
{
    beforeValue();
    put(fragment);
}

void JsonWriter::null()
{
    beforeValue();
    put("null");
}

void JsonWriter::reportProblem(const QString &problem)
{
    if (m_problem.isEmpty() && !problem.isEmpty())
        m_problem = problem;
}

void JsonWriter::date(const QDateTime &instant)
{
    if (!IsoDate::isWritable(instant))
        reportProblem(IsoDate::outOfRangeMessage(instant));
    beforeValue();
    char *out = grow(2 + IsoDate::MaxLength);
    *out++ = '"';
    out = IsoDate::write(out, instant);
    *out++ = '"';
    trimTo(out);
}

void JsonWriter::uuid(const QUuid &id)
{
    beforeValue();
    char *out = grow(38);
    *out++ = '"';
    out = writeUuidPart(out, id.data1, 8);
    *out++ = '-';
    out = writeUuidPart(out, id.data2, 4);
    *out++ = '-';
    out = writeUuidPart(out, id.data3, 4);
    *out++ = '-';
    out = writeUuidPart(out, quint64(id.data4[0]) << 8 | id.data4[1], 4);
    *out++ = '-';
    for (int i = 2; i < 8; ++i)
        out = writeUuidPart(out, id.data4[i], 2);
    *out++ = '"';
    trimTo(out);
}

// The text in quotes, escaped and encoded as QJsonDocument writes it.
void JsonWriter::appendEscaped(QStringView text)
{
    char *out = grow(2 + MaxBytesPerUnit * text.size());
    *out++ = '"';
    const char16_t *next = text.utf16();
    const char16_t *const end = next + text.size();
    while (next != end) {
        const char16_t c = *next++;
        out = c < 0x80 ? writeAsciiEscaped(out, c) : writeUtf8(out, c, next, end);
    }
    *out++ = '"';
    trimTo(out);
}

QByteArray JsonWriter::finish()
{
    Q_ASSERT(m_levels.empty());
    put("\n");
    m_out.truncate(m_cursor - m_out.data());
    m_cursor = nullptr;
    return std::exchange(m_out, {});
}

QByteArray JsonWriter::finishFragment()
{
    Q_ASSERT(m_levels.empty());
    m_out.truncate(m_cursor - m_out.data());
    m_cursor = nullptr;
    return std::exchange(m_out, {});
}

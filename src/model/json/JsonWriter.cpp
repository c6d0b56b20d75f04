#include "model/json/JsonWriter.h"

#include "model/IsoDate.h"

#include <cmath>

namespace {

constexpr int IndentWidth = 4;

char hexDigit(uint value)
{
    return char(value < 10 ? '0' + value : 'a' + value - 10);
}

} // namespace

JsonWriter::JsonWriter()
{
    m_out.reserve(4096);
}

void JsonWriter::beforeValue()
{
    if (m_keyPending) {
        m_keyPending = false;
        return;
    }
    if (m_levels.isEmpty())
        return;
    Level &level = m_levels.last();
    Q_ASSERT_X(!level.isObject, "JsonWriter", "a value inside an object needs a key first");
    m_out += level.count == 0 ? "\n" : ",\n";
    m_out.append(qsizetype(IndentWidth * m_levels.size()), ' ');
    ++level.count;
}

JsonWriter &JsonWriter::key(QLatin1StringView name)
{
    Q_ASSERT_X(!m_levels.isEmpty() && m_levels.last().isObject, "JsonWriter", "key outside an object");
    Level &level = m_levels.last();
    Q_ASSERT_X(level.count == 0 || QByteArrayView(level.lastKey) < QByteArrayView(name.data(), name.size()),
               "JsonWriter", "object keys must be written in sorted order");
#ifndef QT_NO_DEBUG
    level.lastKey = QByteArray(name.data(), name.size());
#endif
    m_out += level.count == 0 ? "\n" : ",\n";
    m_out.append(qsizetype(IndentWidth * m_levels.size()), ' ');
    m_out += '"';
    m_out.append(name.data(), name.size());
    m_out += "\": ";
    ++level.count;
    m_keyPending = true;
    return *this;
}

void JsonWriter::openContainer(char bracket)
{
    beforeValue();
    m_out += bracket;
    m_levels.append(Level{bracket == '{', 0, {}});
}

void JsonWriter::closeContainer(char bracket)
{
    Q_ASSERT(!m_levels.isEmpty());
    m_levels.removeLast();
    m_out += '\n';
    m_out.append(qsizetype(IndentWidth * m_levels.size()), ' ');
    m_out += bracket;
}

void JsonWriter::beginObject() { openContainer('{'); }
void JsonWriter::endObject() { closeContainer('}'); }
void JsonWriter::beginArray() { openContainer('['); }
void JsonWriter::endArray() { closeContainer(']'); }

void JsonWriter::string(QStringView text)
{
    beforeValue();
    m_out += '"';
    appendEscaped(text);
    m_out += '"';
}

void JsonWriter::boolean(bool value)
{
    beforeValue();
    m_out += value ? "true" : "false";
}

void JsonWriter::integer(qint64 value)
{
    beforeValue();
    m_out += QByteArray::number(value);
}

void JsonWriter::number(double value)
{
    beforeValue();
    if (std::isfinite(value))
        m_out += QByteArray::number(value, 'g', QLocale::FloatingPointShortest);
    else
        m_out += "null";
}

void JsonWriter::null()
{
    beforeValue();
    m_out += "null";
}

void JsonWriter::date(const QDateTime &instant)
{
    beforeValue();
    m_out += '"';
    IsoDate::appendTo(m_out, instant);
    m_out += '"';
}

void JsonWriter::uuid(const QUuid &id)
{
    beforeValue();
    m_out += '"';
    m_out += id.toByteArray(QUuid::WithoutBraces).toUpper();
    m_out += '"';
}

void JsonWriter::appendEscaped(QStringView text)
{
    // ASCII fast path; anything else goes through UTF-8 as QJsonDocument does.
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        if (c >= 0x80) {
            qsizetype end = i + 1;
            while (end < text.size() && text[end].unicode() >= 0x80)
                ++end;
            m_out += text.sliced(i, end - i).toUtf8();
            i = end - 1;
            continue;
        }
        switch (c) {
        case '"': m_out += "\\\""; break;
        case '\\': m_out += "\\\\"; break;
        case '\b': m_out += "\\b"; break;
        case '\f': m_out += "\\f"; break;
        case '\n': m_out += "\\n"; break;
        case '\r': m_out += "\\r"; break;
        case '\t': m_out += "\\t"; break;
        default:
            if (c < 0x20) {
                m_out += "\\u00";
                m_out += hexDigit(c >> 4);
                m_out += hexDigit(c & 0xf);
            } else {
                m_out += char(c);
            }
        }
    }
}

QByteArray JsonWriter::finish()
{
    Q_ASSERT(m_levels.isEmpty());
    m_out += '\n';
    return std::exchange(m_out, {});
}

#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QLatin1StringView>
#include <QStringView>
#include <QUuid>

#include <vector>

// Streams pretty-printed JSON, byte for byte what QJsonDocument::toJson(Indented) writes for the
// same document, without building the document first. Callers write object keys in sorted
// order (the order QJsonObject keeps); debug builds assert it.
class JsonWriter
{
public:
    JsonWriter();
    // A writer of a fragment that will stand `baseDepth` levels deep in a larger document, so
    // its lines are indented as they will be there (see encoded()).
    explicit JsonWriter(int baseDepth);
    Q_DISABLE_COPY_MOVE(JsonWriter)

    void beginObject();
    void endObject();
    void beginArray();
    void endArray();

    // The next value belongs to this member of the current object.
    JsonWriter &key(QLatin1StringView name);

    void string(QStringView text);
    void boolean(bool value);
    void integer(qint64 value);
    void number(double value);
    void null();
    void date(const QDateTime &instant); // ISO 8601 in UTC with milliseconds
    void uuid(const QUuid &id); // canonical upper-case text

    // A value written earlier by a fragment writer of the current depth, spliced in as it is.
    void encoded(QByteArrayView fragment);
    int depth() const { return m_baseDepth + int(m_levels.size()); }

    // The finished document (with the trailing newline of a top-level container).
    QByteArray finish();
    // The finished fragment (no trailing newline).
    QByteArray finishFragment();

private:
    void beforeValue();
    void openContainer(char bracket);
    void closeContainer(char bracket);
    void appendEscaped(QStringView text);
    // Room for `bytes` more bytes at the end of the output; trimTo() ends the output at the first
    // byte not written.
    char *grow(qsizetype bytes);
    void trimTo(char *end) { m_cursor = end; }
    void put(QByteArrayView bytes);
    char *newLine(char *out, bool first) const;

    struct Level
    {
        bool isObject = false;
        int count = 0;
        QByteArray lastKey;
    };

    QByteArray m_out; // sized to its capacity; the text ends at m_cursor
    char *m_cursor = nullptr;
    std::vector<Level> m_levels;
    bool m_keyPending = false;
    int m_baseDepth = 0;
};

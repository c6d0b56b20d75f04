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
//
// The compact layout writes one line without spaces, as QJsonDocument::toJson(Compact) does,
// with keys in the order they are written: for JSON Lines meant to be read in that order.
class JsonWriter
{
public:
    enum class Layout { indented, compact };

    JsonWriter();
    explicit JsonWriter(Layout layout);
    // A writer of a fragment that will stand `baseDepth` levels deep in a larger document, so
    // its lines are indented as they will be there (see encoded()).
    explicit JsonWriter(int baseDepth);
    Q_DISABLE_COPY_MOVE(JsonWriter)

    void beginObject();
    void endObject();
    void beginArray();
    void endArray();

    // The next value belongs to this member of the current object. The name is written as it
    // is: a plain ASCII name without quotes or backslashes.
    JsonWriter &key(QLatin1StringView name);
    // The same for a name from the user's data, escaped as a string value is.
    JsonWriter &key(QStringView name);

    void string(QStringView text);
    void boolean(bool value);
    void integer(qint64 value);
    void number(double value);
    void null();
    void date(const QDateTime &instant); // ISO 8601 in UTC with milliseconds
    void uuid(const QUuid &id); // canonical upper-case text

    // A value written earlier by a fragment writer of the current depth, spliced in as it is.
    void encoded(QByteArrayView fragment);

    // The first value that could not be written so that it reads back the same (a date outside
    // the years 0001 to 9999, or an invalid one), or an empty text. Such a value is still
    // written, so that output meant for people shows it; data files must not be saved then.
    const QString &problem() const { return m_problem; }
    void reportProblem(const QString &problem);
    int depth() const { return m_baseDepth + int(m_levels.size()); }

    // Room for this many bytes of output, so that a large document is not copied as it grows.
    void reserve(qsizetype bytes) { grow(bytes); }

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
    bool m_compact = false;
    QString m_problem;
};

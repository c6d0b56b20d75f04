#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QLatin1StringView>
#include <QList>
#include <QStringView>
#include <QUuid>

// Streams pretty-printed JSON, byte for byte what QJsonDocument::toJson(Indented) writes for the
// same document, without building the document first. Callers write object keys in sorted
// order (the order QJsonObject keeps); debug builds assert it.
class JsonWriter
{
public:
    JsonWriter();

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
    void date(const QDateTime &instant);  // ISO 8601 in UTC with milliseconds
    void uuid(const QUuid &id);           // canonical upper-case text

    // The finished document (with the trailing newline of a top-level container).
    QByteArray finish();

private:
    void beforeValue();
    void openContainer(char bracket);
    void closeContainer(char bracket);
    void appendEscaped(QStringView text);

    struct Level
    {
        bool isObject = false;
        int count = 0;
        QByteArray lastKey;
    };

    QByteArray m_out;
    QList<Level> m_levels;
    bool m_keyPending = false;
};

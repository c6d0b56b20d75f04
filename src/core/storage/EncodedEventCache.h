#pragma once

#include "records/Event.h"

#include <QByteArray>
#include <QHash>

class JsonWriter;

// Keeps each event's JSON from the last save, so that saving after a change re-encodes only the
// events that changed and copies the rest: a one-event change to a list of thousands then costs
// little more than writing the bytes.
class EncodedEventCache
{
public:
    // Writes the events as the elements of the array the writer is in, reusing the bytes of
    // every event that is the same as when it was last written. Forgets events no longer listed.
    void writeAll(const QList<Event> &events, JsonWriter &writer);
    // The bytes of all events kept, as last written.
    qsizetype encodedBytes() const { return m_encodedBytes; }

private:
    struct Entry
    {
        Event event;
        QByteArray json;
    };
    QHash<QUuid, Entry> m_entries;
    qsizetype m_encodedBytes = 0;
};

#include "storage/EncodedEventCache.h"

#include "json/JsonWriter.h"

void EncodedEventCache::writeAll(const QList<Event> &events, JsonWriter &writer)
{
    const int elementDepth = writer.depth();
    QHash<QUuid, Entry> kept;
    kept.reserve(events.size());
    m_encodedBytes = 0;
    for (const Event &event : events) {
        auto cached = m_entries.find(event.id);
        if (cached == m_entries.end() || !(cached->event == event) || kept.contains(event.id)) {
            JsonWriter fragment(elementDepth);
            event.toJson(fragment);
            // An event that cannot be written is never kept (the save fails, and so does every
            // later one with it); neither is a second event of the same id in a damaged file.
            if (!fragment.problem().isEmpty() || kept.contains(event.id)) {
                writer.reportProblem(fragment.problem());
                writer.encoded(fragment.finishFragment());
                continue;
            }
            cached = m_entries.insert(event.id, Entry {event, fragment.finishFragment()});
        }
        writer.encoded(cached->json);
        m_encodedBytes += cached->json.size();
        kept.insert(event.id, std::move(*cached));
    }
    m_entries = std::move(kept);
}

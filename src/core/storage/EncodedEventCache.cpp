#include "storage/EncodedEventCache.h"

#include "json/JsonWriter.h"

void EncodedEventCache::writeAll(const QList<Event> &events, JsonWriter &writer)
{
    const int elementDepth = writer.depth();
    QHash<QUuid, Entry> kept;
    kept.reserve(events.size());
    for (const Event &event : events) {
        auto cached = m_entries.find(event.id);
        if (cached == m_entries.end() || !(cached->event == event)) {
            JsonWriter fragment(elementDepth);
            event.toJson(fragment);
            cached = m_entries.insert(event.id, Entry {event, fragment.finishFragment()});
        }
        writer.encoded(cached->json);
        kept.insert(event.id, std::move(*cached));
    }
    m_entries = std::move(kept);
}

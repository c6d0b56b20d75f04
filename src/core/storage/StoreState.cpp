#include "storage/StoreState.h"

#include <algorithm>

namespace {

int rankOf(const Event &event)
{
    if (event.reachedAt)
        return 2;
    return event.direction == CountdownDirection::since ? 1 : 0;
}

} // namespace

void sortEvents(QList<Event> &events)
{
    // The effective target needs zone arithmetic: work it out once per event, not per comparison.
    struct Key
    {
        int rank;
        bool countUp;
        qint64 target;
        qsizetype index;
    };
    QList<Key> keys;
    keys.reserve(events.size());
    for (qsizetype i = 0; i < events.size(); ++i) {
        const Event &event = events.at(i);
        keys.append(Key {rankOf(event), event.direction == CountdownDirection::since,
                         event.effectiveTarget().toMSecsSinceEpoch(), i});
    }
    std::stable_sort(keys.begin(), keys.end(), [](const Key &a, const Key &b) {
        if (a.rank != b.rank)
            return a.rank < b.rank;
        // Count-ups newest first, countdowns soonest first. Arrived events can hold both
        // directions; there countdowns come before count-ups, which keeps this a proper order.
        if (a.countUp != b.countUp)
            return b.countUp;
        return a.countUp ? a.target > b.target : a.target < b.target;
    });
    bool inOrder = true;
    for (qsizetype i = 0; i < keys.size() && inOrder; ++i)
        inOrder = keys[i].index == i;
    if (inOrder)
        return;
    QList<Event> ordered;
    ordered.reserve(events.size());
    for (const Key &key : keys)
        ordered.append(std::move(events[key.index]));
    events = std::move(ordered);
}

#include "countdown/CountdownRegistry.h"

#include "calendar/CalendarSource.h"
#include "storage/EventStore.h"

#include <algorithm>
#include <utility>

CountdownRegistry::CountdownRegistry(EventStore &store, QObject *parent)
    : QObject(parent)
    , m_store(store)
    , m_events(store.events())
    , m_calendarIcons(store.calendarIcons())
    , m_hiddenSeries(store.hiddenCalendarSeries())
    , m_calendarReach(store.calendarReach())
    , m_calendarAnnotations(store.calendarAnnotations())
{
    connect(&store, &EventStore::eventsChanged, this, [this] {
        m_events = m_store.events();
        rebuildManualItems();
        publishMerged();
    });
    followSeriesSettings(&EventStore::calendarIconsChanged, &CountdownRegistry::m_calendarIcons,
                         &EventStore::calendarIcons);
    followSeriesSettings(&EventStore::hiddenCalendarSeriesChanged,
                         &CountdownRegistry::m_hiddenSeries, &EventStore::hiddenCalendarSeries);
    followSeriesSettings(&EventStore::calendarReachChanged, &CountdownRegistry::m_calendarReach,
                         &EventStore::calendarReach);
    followSeriesSettings(&EventStore::calendarAnnotationsChanged,
                         &CountdownRegistry::m_calendarAnnotations,
                         &EventStore::calendarAnnotations);
    rebuildManualItems();
    publishMerged();
}

template<typename Value>
void CountdownRegistry::followSeriesSettings(void (EventStore::*changed)(),
                                             Value CountdownRegistry::*kept,
                                             const Value &(EventStore::*read)() const)
{
    connect(&m_store, changed, this, [this, kept, read] {
        this->*kept = (m_store.*read)();
        rebuildCalendarItems();
        publishMerged();
    });
}

void CountdownRegistry::attachCalendarSource(CalendarSource *source)
{
    if (source == m_calendarSource)
        return;
    disconnect(m_calendarConnection);
    m_calendarSource = source;
    if (source) {
        m_calendarConnection = connect(source, &CalendarSource::occurrencesChanged, this,
                                       &CountdownRegistry::takeOccurrences);
        takeOccurrences();
    } else if (!m_occurrences.isEmpty()) {
        m_occurrences.clear();
        rebuildCalendarItems();
        publishMerged();
    }
}

void CountdownRegistry::takeOccurrences()
{
    if (!m_calendarSource)
        return;
    QList<CalendarOccurrence> occurrences = m_calendarSource->occurrences();
    if (occurrences.constData() == m_occurrences.constData()
        && occurrences.size() == m_occurrences.size())
        return;
    // An equal list keeps every item and publishes nothing.
    const QList<CalendarOccurrence> previous = std::exchange(m_occurrences, std::move(occurrences));
    if (rebuildCalendarItems(&previous))
        publishMerged();
}

CalendarOccurrence CountdownRegistry::decorated(CalendarOccurrence occurrence) const
{
    const CalendarSeriesRef &series = occurrence.ref.series;
    const auto icon = m_calendarIcons.constFind(series);
    occurrence.icon =
        icon == m_calendarIcons.constEnd() ? std::nullopt : std::optional<IconRef>(*icon);
    occurrence.isHidden = m_hiddenSeries.contains(series);
    const CalendarReachSignals reach = m_calendarReach.value(series);
    occurrence.celebrationEnabled = reach.celebrationEnabled;
    occurrence.notifyOnReach = reach.notifyOnReach;
    occurrence.reminderLeadMinutes = reach.reminderLeadMinutes;
    const CalendarAnnotation annotation = m_calendarAnnotations.value(series);
    occurrence.note = annotation.note;
    occurrence.link = annotation.link;
    return occurrence;
}

void CountdownRegistry::rebuildManualItems()
{
    QList<CountdownItem> items;
    items.reserve(m_events.size());
    for (qsizetype i = 0; i < m_events.size(); ++i) {
        const Event &event = m_events.at(i);
        const bool unchanged = i < m_manualItems.size() && *m_manualItems.at(i).event() == event;
        items.append(unchanged ? m_manualItems.at(i) : CountdownItem::manual(event));
    }
    m_manualItems = std::move(items);
}

bool CountdownRegistry::rebuildCalendarItems(const QList<CalendarOccurrence> *previous)
{
    QList<CountdownItem> items;
    items.reserve(m_occurrences.size());
    bool changed = !previous || previous->size() != m_occurrences.size();
    for (qsizetype i = 0; i < m_occurrences.size(); ++i) {
        const CalendarOccurrence &occurrence = m_occurrences.at(i);
        const bool unchanged = previous && i < previous->size() && i < m_calendarItems.size()
            && previous->at(i) == occurrence;
        changed = changed || !unchanged;
        items.append(unchanged ? m_calendarItems.at(i)
                               : CountdownItem::calendar(decorated(occurrence)));
    }
    m_calendarItems = std::move(items);
    return changed;
}

void CountdownRegistry::publishMerged()
{
    QList<CountdownItem> items;
    items.reserve(m_manualItems.size() + m_calendarItems.size());
    items.append(m_manualItems);
    items.append(m_calendarItems);
    sort(items);
    if (items == m_items)
        return;
    m_items = std::move(items);
    Q_EMIT itemsChanged();
}

bool CountdownRegistry::pinMatches(const std::optional<PinTarget> &pin, const CountdownItem &item)
{
    if (!pin)
        return false;
    switch (pin->kind) {
    case PinTarget::Kind::manual: {
        const Event *event = item.event();
        return event && event->id == pin->eventID;
    }
    case PinTarget::Kind::calendarSeries: {
        const CalendarOccurrence *occurrence = item.occurrence();
        return occurrence && occurrence->ref.series == pin->series;
    }
    case PinTarget::Kind::calendarOccurrence: {
        const CalendarOccurrence *occurrence = item.occurrence();
        return occurrence && occurrence->ref == pin->occurrence();
    }
    }
    return false;
}

namespace {

// Countdowns to come, then count-ups, then arrived countdowns.
int orderGroup(const CountdownItem &item)
{
    if (item.isCountUp())
        return 1;
    return item.isReached() ? 2 : 0;
}

struct SortKey
{
    int group;
    qint64 date;
    qsizetype index;
};

} // namespace

void CountdownRegistry::sort(QList<CountdownItem> &items)
{
    std::vector<SortKey> keys;
    keys.reserve(size_t(items.size()));
    for (qsizetype i = 0; i < items.size(); ++i)
        keys.push_back({orderGroup(items.at(i)), items.at(i).dateMSecs(), i});
    // Titles are read only to break ties, so sorting touches little more than the keys.
    const auto comesBefore = [&items](const SortKey &a, const SortKey &b) {
        if (a.group != b.group)
            return a.group < b.group;
        if (a.date != b.date)
            return a.group == 1 ? a.date > b.date : a.date < b.date;
        return items.at(a.index).title() < items.at(b.index).title();
    };
    std::stable_sort(keys.begin(), keys.end(), comesBefore);
    QList<CountdownItem> sorted;
    sorted.reserve(items.size());
    for (const SortKey &key : keys)
        sorted.append(items.at(key.index));
    items = std::move(sorted);
}

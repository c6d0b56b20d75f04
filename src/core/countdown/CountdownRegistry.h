#pragma once

#include "countdown/CountdownItem.h"
#include "records/CalendarReachSignals.h"
#include "records/PinTarget.h"

#include <QList>
#include <QMap>
#include <QObject>
#include <QPointer>
#include <QSet>

class CalendarSource;
class EventStore;

// The one ordered list of countdown items that the engine, the pin resolver, the popover and the
// widget read: every event of the store and every occurrence of the calendar source, each
// occurrence decorated with what the user attached to its series (icon, hidden flag, arrival
// settings, note and link).
//
// Order: countdowns still to come, then count-ups, then arrived countdowns. Count-ups run from the
// most recently started; everything else from the earliest date. Equal dates go by title (plain
// string order), equal titles keep their input order (events first, then occurrences).
//
// The list is rebuilt whenever one of its inputs really changes (an occurrence list equal to the
// last one is ignored) and `itemsChanged` is emitted only when the rebuilt list differs. A rebuild
// keeps the items whose input did not change, so a refresh that changes one occurrence costs a
// merge and a sort, not the copying of every record.
class CountdownRegistry : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QList<CountdownItem> items READ items NOTIFY itemsChanged)

public:
    explicit CountdownRegistry(EventStore &store, QObject *parent = nullptr);

    // Follows `source` from now on (replacing any earlier source); null detaches.
    void attachCalendarSource(CalendarSource *source);

    const QList<CountdownItem> &items() const { return m_items; }

    // Whether the pin names this item: the manual event with the pinned id, any occurrence of the
    // pinned series, or exactly the pinned occurrence. An absent pin matches nothing.
    static bool pinMatches(const std::optional<PinTarget> &pin, const CountdownItem &item);

    // The registry's order, exposed for callers that merge lists of their own.
    static void sort(QList<CountdownItem> &items);

Q_SIGNALS:
    void itemsChanged();

private:
    // Keeps `kept` equal to the store's value and rebuilds the occurrences when it changes.
    template<typename Value>
    void followSeriesSettings(void (EventStore::*changed)(), Value CountdownRegistry::*kept,
                              const Value &(EventStore::*read)() const);
    void takeOccurrences();
    void rebuildManualItems();
    // Lays the series' settings over every occurrence again; with `previous`, an occurrence equal
    // to the one at its place in `previous` keeps its item. True when any item changed.
    bool rebuildCalendarItems(const QList<CalendarOccurrence> *previous = nullptr);
    void publishMerged();
    CalendarOccurrence decorated(CalendarOccurrence occurrence) const;

    QList<CountdownItem> m_items;
    QList<CountdownItem> m_manualItems; // in the order of m_events
    QList<CountdownItem> m_calendarItems; // in the order of m_occurrences
    EventStore &m_store;
    QPointer<CalendarSource> m_calendarSource;
    QMetaObject::Connection m_calendarConnection;
    QList<Event> m_events;
    QList<CalendarOccurrence> m_occurrences;
    QMap<CalendarSeriesRef, IconRef> m_calendarIcons;
    QSet<CalendarSeriesRef> m_hiddenSeries;
    QMap<CalendarSeriesRef, CalendarReachSignals> m_calendarReach;
    QMap<CalendarSeriesRef, CalendarAnnotation> m_calendarAnnotations;
};

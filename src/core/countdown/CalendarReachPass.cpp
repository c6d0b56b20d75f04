#include "countdown/CalendarReachPass.h"

#include <QHash>

namespace {

struct SeriesView
{
    bool hidden = false;
    const CalendarOccurrence *next = nullptr; // earliest start after now
};

// What the list shows of every series that asks for arrivals.
QHash<CalendarSeriesRef, SeriesView> viewSeries(const QList<CountdownItem> &items, qint64 nowMSecs)
{
    QHash<CalendarSeriesRef, SeriesView> views;
    for (const CountdownItem &item : items) {
        if (!item.asksForArrival())
            continue;
        const CalendarOccurrence *occurrence = item.occurrence();
        SeriesView &view = views[occurrence->ref.series];
        view.hidden = view.hidden || occurrence->isHidden;
        if (occurrence->isHidden || item.dateMSecs() <= nowMSecs)
            continue;
        if (!view.next || occurrence->start < view.next->start)
            view.next = occurrence;
    }
    return views;
}

} // namespace

CalendarReachSignals::Occurrence CalendarReachPass::snapshot(const CalendarOccurrence &occurrence)
{
    // Built in one expression: GCC 12 at -O2 takes an optional QString assigned later for
    // one that may be read uninitialised.
    if (occurrence.link || !occurrence.meetingURL)
        return {occurrence.start, occurrence.title, occurrence.link};
    return {occurrence.start, occurrence.title, occurrence.meetingURL->toString()};
}

QList<CalendarReachChange>
CalendarReachPass::changes(const QList<CountdownItem> &items,
                           const QMap<CalendarSeriesRef, CalendarReachSignals> &reach,
                           const QDateTime &now)
{
    const QHash<CalendarSeriesRef, SeriesView> views = viewSeries(items, now.toMSecsSinceEpoch());
    QList<CalendarReachChange> result;
    for (auto entry = reach.cbegin(); entry != reach.cend(); ++entry) {
        const CalendarReachSignals &current = entry.value();
        const auto view = views.constFind(entry.key());
        const bool shown = view != views.cend();
        const bool wanted =
            (current.celebrationEnabled || current.notifyOnReach) && !(shown && view->hidden);

        CalendarReachSignals next = current;
        if (!wanted) {
            next.armed.reset();
        } else {
            if (next.armed && next.armed->start <= now) {
                next.reached = next.armed;
                next.armed.reset();
            }
            if (shown)
                next.armed = view->next ? std::optional(snapshot(*view->next)) : std::nullopt;
        }
        if (next != current)
            result.append({entry.key(), next, next.reached != current.reached});
    }
    return result;
}

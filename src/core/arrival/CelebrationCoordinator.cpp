#include "arrival/CelebrationCoordinator.h"

#include "arrival/CelebrationPresenter.h"
#include "arrival/ReachNotifying.h"
#include "countdown/CountdownRegistry.h"
#include "l10n/LocaleManager.h"
#include "storage/EventStore.h"

#include <algorithm>

Q_LOGGING_CATEGORY(lcCelebrationCoordinator, "CelebrationCoordinator")

namespace {

// The record a calendar arrival is announced and celebrated as.
Event recordOfCalendarArrival(const CalendarSeriesRef &series, const CalendarReachSignals &reach)
{
    const CalendarReachSignals::Occurrence &occurrence = *reach.reached;
    Event record;
    record.id = noticeIDForSeries(series);
    record.title = occurrence.title;
    record.targetDate = occurrence.start;
    record.includeTime = true;
    record.createdAt = occurrence.start;
    record.reachedAt = occurrence.start;
    record.celebrationEnabled = reach.celebrationEnabled;
    record.notifyOnReach = reach.notifyOnReach;
    record.link = occurrence.link;
    return record;
}

} // namespace

CelebrationCoordinator::CelebrationCoordinator(EventStore &store, CountdownRegistry &registry,
                                               ReachNotifying &notifier,
                                               CelebrationPresenter &presenter,
                                               const LocaleManager &locale, QObject *parent)
    : QObject(parent)
    , m_store(store)
    , m_registry(registry)
    , m_notifier(notifier)
    , m_presenter(presenter)
    , m_locale(locale)
{
    connect(&registry, &CountdownRegistry::itemsChanged, this,
            &CelebrationCoordinator::handleArrivals);
    connect(&store, &EventStore::calendarReachChanged, this,
            &CelebrationCoordinator::handleArrivals);
    connect(&presenter, &CelebrationPresenter::dismissed, this,
            &CelebrationCoordinator::acknowledgeCurrent);
    // Arrivals stamped while Tarrow was not running wait for the first turn of the event loop.
    QMetaObject::invokeMethod(this, &CelebrationCoordinator::handleArrivals, Qt::QueuedConnection);
}

QList<CelebrationCoordinator::PendingReach> CelebrationCoordinator::pendingReaches() const
{
    QList<PendingReach> pending;
    for (const CountdownItem &item : m_registry.items()) {
        const Event *event = item.event();
        if (event && event->reachedAt && !event->celebrationAcknowledged && !item.isCountUp())
            pending.append({*event, std::nullopt, item.date()});
    }
    const auto &reach = m_store.calendarReach();
    for (auto entry = reach.cbegin(); entry != reach.cend(); ++entry) {
        if (entry->reached) {
            pending.append({recordOfCalendarArrival(entry.key(), entry.value()), entry.key(),
                            entry->reached->start});
        }
    }
    // The list keeps arrived countdowns in date order; calendar arrivals join them by start.
    std::stable_sort(
        pending.begin(), pending.end(),
        [](const PendingReach &a, const PendingReach &b) { return a.start < b.start; });
    return pending;
}

void CelebrationCoordinator::handleArrivals()
{
    if (m_currentReach || m_presenter.isPresenting())
        return;
    const QList<PendingReach> pending = pendingReaches();
    if (pending.isEmpty())
        return;
    m_currentReach = pending.constFirst();
    const Event &record = m_currentReach->event;
    const std::optional<CountdownID> item = m_currentReach->series
        ? CountdownID::calendar(CalendarEventRef {*m_currentReach->series, m_currentReach->start})
        : CountdownID::manual(record.id);

    const QString key = arrivalKey(*m_currentReach);
    if (record.notifyOnReach && !m_announced.contains(key)) {
        m_announced.insert(key);
        m_notifier.post(Notice::arrival(record, item, m_locale.table()));
    }
    if (record.celebrationEnabled) {
        m_presenter.present(Celebration {*item, record.title, record.icon, record.color});
        return;
    }
    QMetaObject::invokeMethod(this, &CelebrationCoordinator::acknowledgeCurrent,
                              Qt::QueuedConnection);
}

void CelebrationCoordinator::acknowledgeCurrent()
{
    if (!m_currentReach)
        return;
    // Cleared first: the store republishes while it writes, and that change takes the next one.
    const PendingReach reach = *std::exchange(m_currentReach, std::nullopt);
    EventStoreError error;
    if (reach.series) {
        CalendarReachSignals signals = m_store.calendarReach().value(*reach.series);
        if (!signals.reached || signals.reached->start != reach.start)
            return; // already acknowledged, or a newer arrival of the series is waiting
        signals.reached.reset();
        if (!m_store.setCalendarReach(*reach.series, signals, &error)) {
            qCCritical(lcCelebrationCoordinator).noquote()
                << QStringLiteral("Failed to acknowledge a calendar arrival: %1")
                       .arg(error.description);
        }
        return;
    }
    EventPatch patch;
    patch.celebrationAcknowledged = true;
    if (!m_store.updateEvent(reach.event.id, patch, &error)) {
        qCWarning(lcCelebrationCoordinator).noquote()
            << QStringLiteral("Failed to persist celebrationAcknowledged for %1: %2")
                   .arg(reach.event.id.toString(QUuid::WithoutBraces), error.description);
    }
}

QString CelebrationCoordinator::arrivalKey(const PendingReach &reach)
{
    const QDateTime moment =
        reach.series ? reach.start : reach.event.reachedAt.value_or(QDateTime());
    return reach.event.id.toString() + u'@' + QString::number(moment.toMSecsSinceEpoch());
}

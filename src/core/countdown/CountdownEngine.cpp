#include "countdown/CountdownEngine.h"

#include "countdown/CalendarReachPass.h"
#include "countdown/CountdownProgress.h"
#include "countdown/CountdownRegistry.h"
#include "countdown/PinResolver.h"
#include "countdown/TickScheduler.h"
#include "records/EventPatch.h"
#include "storage/EventStore.h"
#include "time/Clock.h"

#include <QLoggingCategory>
#include <QPointer>

#include <algorithm>

Q_LOGGING_CATEGORY(lcCountdownEngine, "CountdownEngine")

namespace {

// A pin whose target is missing this many passes in a row is given up.
constexpr qint64 missesBeforeUnresolvable = 3;

} // namespace

CountdownEngine::CountdownEngine(EventStore &store, CountdownRegistry &registry, const Clock &clock,
                                 TickScheduler &scheduler, QObject *parent)
    : QObject(parent)
    , m_store(store)
    , m_registry(registry)
    , m_clock(clock)
    , m_scheduler(scheduler)
{
    connect(&registry, &CountdownRegistry::itemsChanged, this, &CountdownEngine::takeInputs);
    connect(&store, &EventStore::pinChanged, this, &CountdownEngine::takeInputs);
    connect(&store, &EventStore::calendarReachChanged, this, &CountdownEngine::queueFullPass);
    m_items = registry.items();
    m_pin = store.pin();
    rebuildPendingArrivals();
    refreshPinned(clock.now());
    queueFullPass();
}

CountdownEngine::~CountdownEngine()
{
    if (m_currentBucket)
        m_scheduler.cancel();
}

void CountdownEngine::takeInputs()
{
    const QList<CountdownItem> &items = m_registry.items();
    const std::optional<PinTarget> &pin = m_store.pin();
    if (items == m_items && pin == m_pin)
        return;
    m_items = items;
    m_pin = pin;
    rebuildPendingArrivals();
    refreshPinned(m_clock.now());
}

void CountdownEngine::rebuildPendingArrivals()
{
    m_pendingArrivals.clear();
    for (const CountdownItem &item : std::as_const(m_items)) {
        if (item.isManual() && item.isUpcoming(0)) // not reached, counting down
            m_pendingArrivals.push_back({item.dateMSecs(), item.event()->id});
    }
    std::sort(m_pendingArrivals.begin(), m_pendingArrivals.end(),
              [](const PendingArrival &a, const PendingArrival &b) {
                  return a.reachMSecs < b.reachMSecs;
              });
}

void CountdownEngine::queueFullPass()
{
    if (m_hasQueuedCalendarReachPass)
        return;
    m_hasQueuedCalendarReachPass = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_hasQueuedCalendarReachPass = false;
            runFullPass();
        },
        Qt::QueuedConnection);
}

void CountdownEngine::runFullPass()
{
    const QDateTime now = m_clock.now();
    stampArrivals(now);
    runCalendarReachPass(now);
    validatePin(now);
    refreshPinned(now);
    Q_EMIT passCompleted();
}

void CountdownEngine::stampArrivals(const QDateTime &now)
{
    // Stamping republishes the list, which rebuilds the pending arrivals: take the due ones first.
    // All of them go into one write, however many arrive at once.
    const qint64 nowMSecs = now.toMSecsSinceEpoch();
    QList<std::pair<QUuid, EventPatch>> due;
    for (const PendingArrival &pending : m_pendingArrivals) {
        if (pending.reachMSecs > nowMSecs)
            break;
        EventPatch patch;
        patch.reachedAt = std::optional<QDateTime>(now);
        due.append({pending.eventID, patch});
    }
    if (due.isEmpty())
        return;
    EventStoreError error;
    if (m_store.updateEvents(due, &error))
        return;
    for (const auto &arrival : std::as_const(due))
        logFailedStamp(arrival.first, error);
}

void CountdownEngine::logFailedStamp(const QUuid &eventID, const EventStoreError &error)
{
    qCWarning(lcCountdownEngine).noquote()
        << QStringLiteral("Failed to stamp reachedAt for event %1: %2")
               .arg(eventID.toString(QUuid::WithoutBraces), error.description);
}

void CountdownEngine::runCalendarReachPass(const QDateTime &now)
{
    const QList<CalendarReachChange> changes =
        CalendarReachPass::changes(m_items, m_store.calendarReach(), now);
    for (const CalendarReachChange &change : changes) {
        EventStoreError error;
        if (m_store.setCalendarReach(change.series, change.signals, &error))
            continue;
        const QString message = change.recordsArrival
            ? QStringLiteral("Failed to record a calendar arrival: %1")
            : QStringLiteral("Failed to arm a calendar reach: %1");
        qCWarning(lcCountdownEngine).noquote() << message.arg(error.description);
    }
}

void CountdownEngine::validatePin(const QDateTime &now)
{
    if (!m_pin)
        return;
    switch (PinResolver::resolve(m_pin, m_items, now).storedTarget) {
    case PinResolver::StoredTargetState::automatic:
    case PinResolver::StoredTargetState::resolved:
        m_consecutiveMissingResolutions = 0;
        break;
    case PinResolver::StoredTargetState::released:
        m_consecutiveMissingResolutions = 0;
        clearPin(QStringLiteral("spent"));
        break;
    case PinResolver::StoredTargetState::missing:
        if (++m_consecutiveMissingResolutions >= missesBeforeUnresolvable) {
            m_consecutiveMissingResolutions = 0;
            clearPin(QStringLiteral("unresolvable"));
        }
        break;
    }
}

void CountdownEngine::clearPin(const QString &reason)
{
    EventStoreError error;
    if (m_store.setPin(std::nullopt, &error)) {
        qCInfo(lcCountdownEngine).noquote()
            << QStringLiteral("Returned the menubar to automatic: pin was %1").arg(reason);
    } else {
        qCWarning(lcCountdownEngine).noquote()
            << QStringLiteral("Failed to clear the pin: %1").arg(error.description);
    }
}

void CountdownEngine::refreshPinned(const QDateTime &now)
{
    // Stamping an arrival republishes the list while we compute; compute again with it then.
    if (m_refreshing) {
        m_refreshAgain = true;
        return;
    }
    m_refreshing = true;
    do {
        m_refreshAgain = false;
        computePinned(now);
    } while (m_refreshAgain);
    m_refreshing = false;
}

void CountdownEngine::computePinned(const QDateTime &now)
{
    std::optional<CountdownItem> item = PinResolver::resolve(m_pin, m_items, now).item;
    if (!item) {
        publish(std::nullopt, ReachState::idle(), 0.0);
        stopTimer();
        return;
    }

    const double progress = CountdownProgress::at(*item, now);
    const Event *event = item->event();
    ReachState state;
    if (item->isCountUp()) {
        state = ReachState::elapsed(item->date(), now);
    } else if (event && event->celebrationAcknowledged) {
        state = ReachState::acknowledged();
    } else if (event && event->reachedAt) {
        state = ReachState::reached(*event->reachedAt);
    } else if (now.toMSecsSinceEpoch() >= item->dateMSecs()) {
        // With every other arrival that is due, in one write.
        if (event)
            stampArrivals(now);
        state = ReachState::reached(now);
    } else {
        state = ReachState::counting(Remaining::until(item->date(), now));
    }
    publish(std::move(item), state, progress);
    rearmTimer(now);
}

void CountdownEngine::publish(std::optional<CountdownItem> pinned, ReachState state,
                              double progress)
{
    // All three values are in place before anyone hears of a change.
    const bool pinnedChanges = !(pinned == m_pinned);
    const bool stateChanges = !(state == m_state);
    const bool progressChanges = progress != m_progress;
    m_pinned = std::move(pinned);
    m_state = std::move(state);
    m_progress = progress;
    if (pinnedChanges)
        Q_EMIT pinnedChanged();
    if (stateChanges)
        Q_EMIT stateChanged();
    if (progressChanges)
        Q_EMIT progressChanged();
}

void CountdownEngine::rearmTimer(const QDateTime &now)
{
    const qint64 nowMSecs = now.toMSecsSinceEpoch();
    std::optional<qint64> nearest;
    const auto consider = [&](qint64 msecs) {
        const qint64 ahead = msecs - nowMSecs;
        if (ahead > 0 && (!nearest || ahead < *nearest))
            nearest = ahead;
    };

    if (m_pinned && m_pinned->isUpcoming(nowMSecs) && !m_pinned->isCountUp())
        consider(m_pinned->dateMSecs());
    const auto nextArrival = std::upper_bound(
        m_pendingArrivals.cbegin(), m_pendingArrivals.cend(), nowMSecs,
        [](qint64 msecs, const PendingArrival &pending) { return msecs < pending.reachMSecs; });
    if (nextArrival != m_pendingArrivals.cend())
        consider(nextArrival->reachMSecs);
    for (const CalendarReachSignals &reach : m_store.calendarReach()) {
        if (reach.armed)
            consider(reach.armed->start.toMSecsSinceEpoch());
    }

    std::optional<RefreshBucket> bucket;
    if (nearest)
        bucket = RefreshBuckets::forDeadline(double(*nearest) / 1000.0);
    if (m_pinned && m_pinned->isCountUp()) {
        const double elapsed = double(nowMSecs - m_pinned->dateMSecs()) / 1000.0;
        bucket = RefreshBuckets::combine(bucket, RefreshBuckets::forElapsed(elapsed));
    }

    if (!bucket) {
        stopTimer();
        return;
    }
    if (bucket == m_currentBucket)
        return;
    m_currentBucket = bucket;
    m_scheduler.schedule(RefreshBuckets::tickInterval(*bucket),
                         [engine = QPointer<CountdownEngine>(this)] {
                             if (!engine)
                                 return;
                             qCDebug(lcCountdownEngine) << "Tick";
                             engine->runFullPass();
                         });
}

void CountdownEngine::stopTimer()
{
    if (!m_currentBucket)
        return;
    m_currentBucket.reset();
    m_scheduler.cancel();
}

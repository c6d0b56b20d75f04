#pragma once

#include "countdown/CountdownItem.h"
#include "countdown/ReachState.h"
#include "countdown/RefreshBucket.h"
#include "records/PinTarget.h"

#include <QList>
#include <QObject>

#include <optional>
#include <vector>

class Clock;
class CountdownRegistry;
class EventStore;
struct EventStoreError;
class TickScheduler;

// The main loop: follows the registry's list and the stored pin, and on every tick stamps
// arrivals into the store, arms and records calendar arrivals, drops a pin that can no longer be
// shown, and publishes the item that holds the menu bar with its arrival state and progress.
//
// The tick adapts to the nearest deadline (a manual countdown's arrival, the pinned item's target,
// an armed calendar arrival): every 60 s while it is days away, 30 s within a day, every second
// within the hour; a pinned count-up ticks every second in its first hour, every 30 s in its
// first day. The timer is left alone while its cadence holds and stopped when nothing needs it.
//
// A change of the list or the pin recomputes the published values at once; a change of the
// calendar reach signals queues one full pass on the event loop, however many changes arrive
// before it runs. The constructor publishes the first values and queues the first full pass.
class CountdownEngine : public QObject
{
    Q_OBJECT
    Q_PROPERTY(ReachState state READ state NOTIFY stateChanged)
    Q_PROPERTY(double progress READ progress NOTIFY progressChanged)
    Q_PROPERTY(std::optional<CountdownItem> pinned READ pinned NOTIFY pinnedChanged)

public:
    CountdownEngine(EventStore &store, CountdownRegistry &registry, const Clock &clock,
                    TickScheduler &scheduler, QObject *parent = nullptr);
    ~CountdownEngine() override;

    const ReachState &state() const { return m_state; }
    double progress() const { return m_progress; }
    const std::optional<CountdownItem> &pinned() const { return m_pinned; }

    const QList<CountdownItem> &items() const { return m_items; }
    // The cadence of the running tick; absent when no tick runs.
    std::optional<RefreshBucket> currentBucket() const { return m_currentBucket; }
    qint64 consecutiveMissingResolutions() const { return m_consecutiveMissingResolutions; }

    // Stamps arrivals, records calendar arrivals, validates the pin and refreshes the published
    // values, all at one reading of the clock. The tick and the queued calendar pass run it.
    void runFullPass();

Q_SIGNALS:
    void stateChanged();
    void progressChanged();
    void pinnedChanged();
    // After every full pass, once the published values are up to date.
    void passCompleted();

private:
    struct PendingArrival
    {
        qint64 reachMSecs;
        QUuid eventID;
    };

    void takeInputs();
    void rebuildPendingArrivals();
    void queueFullPass();
    void stampArrivals(const QDateTime &now);
    void logFailedStamp(const QUuid &eventID, const EventStoreError &error);
    void runCalendarReachPass(const QDateTime &now);
    void validatePin(const QDateTime &now);
    void clearPin(const QString &reason);
    void refreshPinned(const QDateTime &now);
    void computePinned(const QDateTime &now);
    void publish(std::optional<CountdownItem> pinned, ReachState state, double progress);
    void rearmTimer(const QDateTime &now);
    void stopTimer();

    ReachState m_state;
    double m_progress = 0.0;
    std::optional<CountdownItem> m_pinned;
    EventStore &m_store;
    CountdownRegistry &m_registry;
    const Clock &m_clock;
    TickScheduler &m_scheduler;
    std::optional<RefreshBucket> m_currentBucket;
    QList<CountdownItem> m_items;
    std::optional<PinTarget> m_pin;
    qint64 m_consecutiveMissingResolutions = 0;
    bool m_hasQueuedCalendarReachPass = false;
    // Manual countdowns still to arrive, earliest first; rebuilt when the list changes so a tick
    // does no time-zone work.
    std::vector<PendingArrival> m_pendingArrivals;
    bool m_refreshing = false;
    bool m_refreshAgain = false;
};

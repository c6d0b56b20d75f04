#pragma once

#include "arrival/Notice.h"
#include "records/CalendarRefs.h"
#include "records/Event.h"

#include <QLoggingCategory>
#include <QObject>
#include <QSet>

#include <optional>

class CelebrationPresenter;
class CountdownRegistry;
class EventStore;
class LocaleManager;
class ReachNotifying;

Q_DECLARE_LOGGING_CATEGORY(lcCelebrationCoordinator)

// Takes the arrivals that are stamped but not acknowledged, one at a time, and for each: posts the
// arrival notification when the item asks for one, then shows the celebration when it asks for
// one (the arrival is acknowledged when the celebration is dismissed), or else acknowledges the
// arrival on the next turn of the event loop. Countdowns are acknowledged in the record
// (`celebrationAcknowledged`), calendar arrivals in their series' reach signals. The next arrival
// is taken at the next change of the list, the engine's state or the calendar reach signals.
//
// An arrival is announced once per run even when acknowledging it fails and it comes round again.
class CelebrationCoordinator : public QObject
{
    Q_OBJECT

public:
    // One arrival waiting to be handled: a countdown, or a record made from a calendar arrival
    // (then `series` names its series).
    struct PendingReach
    {
        Event event;
        std::optional<CalendarSeriesRef> series;
        QDateTime start; // the calendar occurrence's start (calendar arrivals)

        bool operator==(const PendingReach &) const = default;
    };

    CelebrationCoordinator(EventStore &store, CountdownRegistry &registry, ReachNotifying &notifier,
                           CelebrationPresenter &presenter, const LocaleManager &locale,
                           QObject *parent = nullptr);

    // The arrivals waiting, in the list's order (calendar arrivals by their start among them).
    QList<PendingReach> pendingReaches() const;
    const std::optional<PendingReach> &currentReach() const { return m_currentReach; }

public Q_SLOTS:
    // Takes the next arrival unless one is being handled or a celebration is shown.
    void handleArrivals();

private:
    void acknowledgeCurrent();
    static QString arrivalKey(const PendingReach &reach);

    EventStore &m_store;
    CountdownRegistry &m_registry;
    ReachNotifying &m_notifier;
    CelebrationPresenter &m_presenter;
    const LocaleManager &m_locale;
    std::optional<PendingReach> m_currentReach;
    QSet<QString> m_announced;
};

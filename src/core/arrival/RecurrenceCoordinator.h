#pragma once

#include "records/EventPatch.h"

#include <QLoggingCategory>
#include <QObject>

class Clock;
class EventStore;

Q_DECLARE_LOGGING_CATEGORY(lcRecurrenceCoordinator)

// Rolls a repeating countdown to its next occurrence once its arrival has been acknowledged, so
// it counts down again. The roll is one change of the record: the next target strictly after now
// (cycles missed while the computer was off are skipped, so they bring one arrival, not one each),
// the cycle anchor at the occurrence just passed (the progress bar starts again from there), and
// the arrival stamp and acknowledgement cleared. A series whose end rule has run out is not rolled:
// its last arrival stays settled.
class RecurrenceCoordinator : public QObject
{
    Q_OBJECT

public:
    RecurrenceCoordinator(EventStore &store, const Clock &clock, QObject *parent = nullptr);

    // The change that rolls `event` at `now`, or nothing when it is not due for a roll (not
    // recurring, not arrived or not acknowledged, a count-up) or its series has ended.
    static std::optional<EventPatch> roll(const Event &event, const QDateTime &now);

public Q_SLOTS:
    // Rolls every event that is due.
    void rollDueEvents();

private:
    EventStore &m_store;
    const Clock &m_clock;
    bool m_queued = false;
};

#pragma once

#include "countdown/CountdownEngine.h"
#include "countdown/CountdownRegistry.h"
#include "countdown/TickScheduler.h"
#include "time/Clock.h"

// The menu bar's view of the data at one instant, for front ends that run once (the command
// line): a registry and an engine over `store` with the clock standing at `now`, after one full
// pass. The pass stamps arrivals and clears spent pins in the store exactly as the app does.
// With a calendar source, its occurrences join the list before the pass.
class SinglePassEngine
{
public:
    SinglePassEngine(EventStore &store, const QDateTime &now, CalendarSource *calendar = nullptr);

    const CountdownEngine &engine() const { return m_engine; }
    const CountdownRegistry &registry() const { return m_registry; }

private:
    FixedClock m_clock;
    NoTickScheduler m_scheduler;
    CountdownRegistry m_registry;
    CountdownEngine m_engine;
};

#include "countdown/SinglePassEngine.h"

SinglePassEngine::SinglePassEngine(EventStore &store, const QDateTime &now,
                                   CalendarSource *calendar)
    : m_clock(now)
    , m_registry(store)
    , m_engine(store, m_registry, m_clock, m_scheduler)
{
    if (calendar)
        m_registry.attachCalendarSource(calendar);
    m_engine.runFullPass();
}

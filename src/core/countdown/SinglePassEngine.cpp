#include "countdown/SinglePassEngine.h"

SinglePassEngine::SinglePassEngine(EventStore &store, const QDateTime &now)
    : m_clock(now)
    , m_registry(store)
    , m_engine(store, m_registry, m_clock, m_scheduler)
{
    m_engine.runFullPass();
}

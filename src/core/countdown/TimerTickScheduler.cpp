#include "countdown/TimerTickScheduler.h"

TimerTickScheduler::TimerTickScheduler()
{
    m_timer.setTimerType(Qt::CoarseTimer);
    m_timer.setSingleShot(false);
}

TimerTickScheduler::~TimerTickScheduler() = default;

void TimerTickScheduler::schedule(std::chrono::seconds interval, std::function<void()> action)
{
    cancel();
    m_connection = QObject::connect(&m_timer, &QTimer::timeout, &m_timer, std::move(action));
    m_timer.start(interval);
}

void TimerTickScheduler::cancel()
{
    m_timer.stop();
    QObject::disconnect(m_connection);
}

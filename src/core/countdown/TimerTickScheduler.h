#pragma once

#include "countdown/TickScheduler.h"

#include <QTimer>

// The tick on the main event loop: one repeating coarse QTimer. Qt lets a coarse timer fire up to
// 5 % of its interval early or late (a 10 % window), so it can be woken together with other
// timers; that slack is the tolerance this tick allows.
class TimerTickScheduler final : public TickScheduler
{
public:
    TimerTickScheduler();
    ~TimerTickScheduler() override;

    void schedule(std::chrono::seconds interval, std::function<void()> action) override;
    void cancel() override;

    bool isRunning() const { return m_timer.isActive(); }
    std::chrono::milliseconds interval() const { return m_timer.intervalAsDuration(); }

private:
    QTimer m_timer;
    QMetaObject::Connection m_connection;
};

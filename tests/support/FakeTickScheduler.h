#pragma once

#include "countdown/TickScheduler.h"

// A tick that fires only when the test says so; it remembers how it was asked to run.
class FakeTickScheduler final : public TickScheduler
{
public:
    void schedule(std::chrono::seconds interval, std::function<void()> action) override
    {
        m_interval = interval;
        m_action = std::move(action);
        ++m_scheduleCount;
    }
    void cancel() override { m_action = nullptr; }

    bool isRunning() const { return bool(m_action); }
    std::chrono::seconds interval() const { return m_interval; }
    int scheduleCount() const { return m_scheduleCount; }
    const std::function<void()> &action() const { return m_action; }

    // Runs the tick once, as the timer would; false when no tick runs.
    bool fire()
    {
        if (!m_action)
            return false;
        const std::function<void()> action = m_action; // the tick may replace itself
        action();
        return true;
    }

private:
    std::chrono::seconds m_interval {0};
    std::function<void()> m_action;
    int m_scheduleCount = 0;
};

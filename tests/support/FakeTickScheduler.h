#pragma once

#include "countdown/TickScheduler.h"

// A tick that fires only when the test says so.
class FakeTickScheduler final : public TickScheduler
{
public:
    void schedule(std::chrono::seconds interval, std::function<void()> action) override
    {
        m_interval = interval;
        m_action = std::move(action);
    }
    void cancel() override { m_action = nullptr; }

    bool isRunning() const { return bool(m_action); }
    std::chrono::seconds interval() const { return m_interval; }

    // Runs the tick once, as the timer would.
    void fire()
    {
        if (const std::function<void()> action = m_action) // the tick may replace itself
            action();
    }

private:
    std::chrono::seconds m_interval {0};
    std::function<void()> m_action;
};

#pragma once

#include <chrono>
#include <functional>

// The engine's repeating tick.
class TickScheduler
{
public:
    virtual ~TickScheduler() = default;
    // Calls `action` every `interval` from now on, replacing any tick already running.
    virtual void schedule(std::chrono::seconds interval, std::function<void()> action) = 0;
    // Stops the tick.
    virtual void cancel() = 0;
};

// A tick that never runs: for a single pass of the engine (the command line, benchmarks).
class NoTickScheduler final : public TickScheduler
{
public:
    void schedule(std::chrono::seconds, std::function<void()>) override { }
    void cancel() override { }
};

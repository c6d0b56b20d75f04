#pragma once

#include <QDateTime>

// Where every time rule gets "now" from. The application uses SystemClock; tests drive their own.
class Clock
{
public:
    virtual ~Clock() = default;
    virtual QDateTime now() const = 0;
};

class SystemClock final : public Clock
{
public:
    QDateTime now() const override { return QDateTime::currentDateTimeUtc(); }
};

// A clock that stands still at one instant (front ends that run once, at a given moment).
class FixedClock final : public Clock
{
public:
    explicit FixedClock(QDateTime now)
        : m_now(std::move(now))
    {
    }
    QDateTime now() const override { return m_now; }

private:
    QDateTime m_now;
};

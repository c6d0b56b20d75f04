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

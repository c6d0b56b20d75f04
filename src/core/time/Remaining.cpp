#include "time/Remaining.h"

#include <cmath>
#include <limits>

Remaining Remaining::fromInterval(double interval)
{
    const qint64 s = wholeSeconds(interval);
    Remaining r;
    r.totalSeconds = interval > 0 ? interval : 0.0;
    r.days = s / 86400;
    r.hours = (s % 86400) / 3600;
    r.minutes = (s % 3600) / 60;
    r.seconds = s % 60;
    return r;
}

Remaining Remaining::until(const QDateTime &target, const QDateTime &now)
{
    return fromInterval(secondsBetween(now, target));
}

Remaining Remaining::since(const QDateTime &start, const QDateTime &now)
{
    return fromInterval(secondsBetween(start, now));
}

double secondsBetween(const QDateTime &from, const QDateTime &to)
{
    if (!from.isValid() || !to.isValid())
        return std::numeric_limits<double>::quiet_NaN();
    return static_cast<double>(from.msecsTo(to)) / 1000.0;
}

qint64 wholeSeconds(double interval)
{
    // 2^63 is exactly representable; every double below it truncates into range.
    constexpr double limit = 9223372036854775808.0;
    if (!std::isfinite(interval) || interval >= limit || interval <= -limit)
        qFatal("Time span of %f seconds cannot be counted in whole seconds", interval);
    return interval > 0 ? static_cast<qint64>(std::trunc(interval)) : 0;
}

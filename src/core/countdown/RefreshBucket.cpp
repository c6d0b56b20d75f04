#include "countdown/RefreshBucket.h"

namespace {

constexpr double secondsPerMinute = 60;
constexpr double secondsPerHour = 3600;
constexpr double secondsPerDay = 86400;

} // namespace

std::chrono::seconds RefreshBuckets::tickInterval(RefreshBucket bucket)
{
    switch (bucket) {
    case RefreshBucket::days:
        return std::chrono::seconds(60);
    case RefreshBucket::hours:
        return std::chrono::seconds(30);
    case RefreshBucket::minutes:
    case RefreshBucket::seconds:
        break;
    }
    return std::chrono::seconds(1);
}

RefreshBucket RefreshBuckets::forDeadline(double seconds)
{
    if (seconds > secondsPerDay)
        return RefreshBucket::days;
    if (seconds > secondsPerHour)
        return RefreshBucket::hours;
    if (seconds > secondsPerMinute)
        return RefreshBucket::minutes;
    return RefreshBucket::seconds;
}

RefreshBucket RefreshBuckets::forElapsed(double seconds)
{
    if (seconds < secondsPerHour)
        return RefreshBucket::minutes;
    if (seconds < secondsPerDay)
        return RefreshBucket::hours;
    return RefreshBucket::days;
}

RefreshBucket RefreshBuckets::finer(RefreshBucket first, RefreshBucket second)
{
    if (first == RefreshBucket::days)
        return second;
    if (first == RefreshBucket::hours)
        return second == RefreshBucket::days ? first : second;
    return first;
}

std::optional<RefreshBucket> RefreshBuckets::combine(std::optional<RefreshBucket> candidate,
                                                     std::optional<RefreshBucket> other)
{
    if (!candidate)
        return other;
    if (!other)
        return candidate;
    return finer(*candidate, *other);
}

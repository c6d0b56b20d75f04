#pragma once

#include <chrono>
#include <optional>

// How often the engine ticks, chosen by how near the nearest deadline is.
enum class RefreshBucket {
    days, // the nearest deadline is more than a day away: every 60 s
    hours, // more than an hour and at most a day: every 30 s
    minutes, // more than a minute and at most an hour: every second
    seconds, // at most a minute: every second
};

namespace RefreshBuckets {

std::chrono::seconds tickInterval(RefreshBucket bucket);
// The bucket for a deadline `seconds` ahead (a positive number).
RefreshBucket forDeadline(double seconds);
// The bucket for a count-up that started `seconds` ago: it shows minutes for its first hour,
// hours for its first day, then days.
RefreshBucket forElapsed(double seconds);
// The finer of two buckets; minutes and seconds both tick every second, so between them the
// first is kept.
RefreshBucket finer(RefreshBucket first, RefreshBucket second);
// `candidate` refined by `other` when both are present.
std::optional<RefreshBucket> combine(std::optional<RefreshBucket> candidate,
                                     std::optional<RefreshBucket> other);

} // namespace RefreshBuckets

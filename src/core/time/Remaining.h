#pragma once

#include <QDateTime>
#include <QtGlobal>

// Time left until a target (or passed since a start), in whole fixed 86,400-second days, hours,
// minutes and seconds. It ignores the calendar and time zones; spans that would be negative are
// zero.
struct Remaining
{
    qint64 days = 0;
    qint64 hours = 0; // 0-23
    qint64 minutes = 0; // 0-59
    qint64 seconds = 0; // 0-59
    double totalSeconds = 0; // the whole span, never negative

    // A span of `interval` seconds (clamped to zero when negative).
    static Remaining fromInterval(double interval);
    // What is left from `now` until `target`.
    static Remaining until(const QDateTime &target, const QDateTime &now);
    // What has passed from `start` until `now`.
    static Remaining since(const QDateTime &start, const QDateTime &now);

    bool operator==(const Remaining &) const = default;
};

// Seconds from `from` to `to` (negative when `to` is earlier); NaN when either is invalid.
double secondsBetween(const QDateTime &from, const QDateTime &to);

// `interval` clamped to zero and truncated to whole seconds. A span that is not a number or does
// not fit 64 bits can only come from a programming error and stops the process.
qint64 wholeSeconds(double interval);

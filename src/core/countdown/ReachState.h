#pragma once

#include "time/Remaining.h"

#include <QDateTime>
#include <QMetaType>

// The arrival state of the item that holds the menu bar.
struct ReachState
{
    enum class Kind {
        counting, // the target is still ahead: `remaining` is what is left
        reached, // the target was reached at `at` and is not yet acknowledged
        elapsed, // a count-up running from `since`; `at` is the moment of computation
        idle, // nothing to show
        acknowledged, // reached and the celebration was seen
    };

    Kind kind = Kind::idle;
    Remaining remaining;
    QDateTime at;
    QDateTime since;

    static ReachState counting(const Remaining &remaining)
    {
        return {Kind::counting, remaining, {}, {}};
    }
    static ReachState reached(const QDateTime &at) { return {Kind::reached, {}, at, {}}; }
    static ReachState elapsed(const QDateTime &since, const QDateTime &at)
    {
        return {Kind::elapsed, {}, at, since};
    }
    static ReachState idle() { return {}; }
    static ReachState acknowledged() { return {Kind::acknowledged, {}, {}, {}}; }

    bool operator==(const ReachState &) const = default;
};

Q_DECLARE_METATYPE(ReachState)

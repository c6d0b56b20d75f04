#pragma once

#include "arrival/Notice.h"

// Where arrivals, reminders and milestones are announced: the desktop's notification server, or
// a sandbox's notification portal. Posting never blocks and never fails loudly: a desktop without
// a notification server simply shows nothing.
class ReachNotifying
{
public:
    virtual ~ReachNotifying() = default;

    // Shows `notice` now, replacing an earlier one with the same identifier.
    virtual void post(const Notice &notice) = 0;
    // Withdraws every notice of this run that is still shown.
    virtual void withdrawAll() = 0;
};

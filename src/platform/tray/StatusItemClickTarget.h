#pragma once

#include "platform/tray/StatusItemHost.h"

#include <functional>

// The receiver of the status item's clicks; the application core sets `onClick` to open or
// close the popup beside the item.
struct StatusItemClickTarget
{
    std::function<void(const StatusItemClick &)> onClick;

    void handle(const StatusItemClick &click) const
    {
        if (onClick) {
            onClick(click);
        }
    }
};

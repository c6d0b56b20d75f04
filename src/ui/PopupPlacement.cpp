#include "ui/PopupPlacement.h"

#include <algorithm>

namespace {

// The start coordinate that keeps a span of `length` inside [first, first + room), preferring
// `wanted`; a span longer than the room starts at `first`.
int clampSpan(int wanted, int length, int first, int room)
{
    return std::max(first, std::min(wanted, first + room - length));
}

} // namespace

PopupPlacement::Edge PopupPlacement::nearestEdge(const QRect &available, QPoint point)
{
    // Distances are negative for a point outside the area (on a panel), which then wins.
    const int distances[] = {point.y() - available.top(), available.bottom() - point.y(),
                             point.x() - available.left(), available.right() - point.x()};
    const auto nearest = std::min_element(std::begin(distances), std::end(distances));
    return static_cast<Edge>(nearest - std::begin(distances));
}

QPoint PopupPlacement::topLeft(const QRect &available, const QRect &anchor, const QSize &popup)
{
    const QPoint centre = anchor.center();
    int x = centre.x() - popup.width() / 2;
    int y = centre.y() - popup.height() / 2;
    switch (nearestEdge(available, centre)) {
    case Edge::top:
        y = anchor.bottom() + 1 + gap;
        break;
    case Edge::bottom:
        y = anchor.top() - gap - popup.height();
        break;
    case Edge::left:
        x = anchor.right() + 1 + gap;
        break;
    case Edge::right:
        x = anchor.left() - gap - popup.width();
        break;
    }
    return {clampSpan(x, popup.width(), available.left(), available.width()),
            clampSpan(y, popup.height(), available.top(), available.height())};
}

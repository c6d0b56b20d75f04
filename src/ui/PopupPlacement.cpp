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

QRect PopupPlacement::panelCorner(const QRect &screen, const QRect &available)
{
    const int top = available.top() - screen.top();
    const int bottom = screen.bottom() - available.bottom();
    const int left = available.left() - screen.left();
    const int right = screen.right() - available.right();
    // The strip itself, so the anchor's centre lies outside the work area, on the panel.
    if (bottom > std::max({top, left, right}))
        return QRect(available.right(), available.bottom() + 1, 1, bottom);
    if (left > std::max(top, right))
        return QRect(screen.left(), available.bottom(), left, 1);
    if (right > top)
        return QRect(available.right() + 1, available.bottom(), right, 1);
    return QRect(available.right(), screen.top(), 1, std::max(1, top));
}

#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

// Where the popup goes next to the tray item. The panel is taken to lie on the screen edge nearest
// the anchor: the popup opens away from that edge, centred on the anchor along it, and is then
// kept inside the screen's available area. All rectangles are in global (virtual desktop)
// coordinates, so screens with offsets need no special handling.
class PopupPlacement
{
public:
    enum class Edge { top, bottom, left, right };

    static constexpr int gap = 4;

    // `available`: available geometry of the screen holding the anchor; `anchor`: the item's
    // geometry, or a 1×1 rectangle at the click or pointer position.
    static QPoint topLeft(const QRect &available, const QRect &anchor, const QSize &popup);

    static Edge nearestEdge(const QRect &available, QPoint point);

    // A stand-in anchor for a popup that opens without a click and without a known item
    // position: the end of the panel where trays sit. The panel is taken to lie along the edge
    // where the work area (`available`) leaves the widest strip of the screen (`screen`) free;
    // the item then sits at the right end of a horizontal panel, the bottom end of a vertical
    // one. Without any strip (no panel reserves space) the top right corner stands in.
    static QRect panelCorner(const QRect &screen, const QRect &available);
};

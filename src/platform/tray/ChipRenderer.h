#pragma once

#include "countdown/MenubarChipPresentation.h"

#include <QImage>
#include <QPointF>

// Where the parts of one chip go, in logical pixels (the chip is 24 high).
struct ChipLayout
{
    qreal width = 0; // whole logical pixels
    qreal titleWidth = 0; // 0 for an empty title
    qreal detailWidth = 0; // 0 for an empty detail
    QPointF symbolOrigin; // top-left corner of the symbol square
    QPointF titleBaseline;
    QPointF detailBaseline;
};

// Draws the menu-bar chip: a white capsule with the pale progress fill, a thin outline, the
// symbol, the title and the time. The image keeps its colours on light and dark panels.
class ChipRenderer
{
public:
    static ChipLayout layout(const MenubarChipPresentation &presentation);
    // The chip at `devicePixelRatio` device pixels per logical pixel; the image carries the ratio.
    static QImage render(const MenubarChipPresentation &presentation, qreal devicePixelRatio = 1.0);
};

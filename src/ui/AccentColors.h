#pragma once

#include "records/CalendarInfo.h"
#include "records/EventColor.h"

#include <QColor>

#include <optional>

// The accent colours items are drawn in, and shades of them that stay readable as text.
namespace AccentColors {

// The display colour of an item's accent; invalid for the default accent (the palette's highlight).
QColor of(std::optional<EventColor> color);
QColor of(const std::optional<CalendarTint> &tint);

// WCAG relative luminance and contrast ratio (1 to 21).
double luminance(const QColor &color);
double contrast(const QColor &a, const QColor &b);

// `accent` itself when it reaches `minimumContrast` against `background`, else the nearest shade
// of it (darker on a light background, lighter on a dark one) that does.
QColor legibleOn(const QColor &accent, const QColor &background, double minimumContrast = 4.5);

} // namespace AccentColors

#pragma once

#include <QColor>
#include <QFont>

// Colours, fonts and sizes the menu-bar chip is drawn with. Sizes are logical pixels; the
// renderers scale them by the device pixel ratio.
namespace ChipStyle {

inline constexpr qreal height = 24.0;
inline constexpr qreal textPixelSize = 12.0;
inline constexpr qreal symbolPointSize = 11.5;
// A symbol drawn at 11.5 points fills a square about 1.2 times its point size.
inline constexpr qreal symbolSide = 14.0;
inline constexpr qreal symbolLeft = 8.0;
inline constexpr qreal textLeft = 27.0;
inline constexpr qreal titleDetailGap = 8.0;
inline constexpr qreal textRightPadding = 10.0;
inline constexpr qreal symbolOnlyMinimumSide = 12.0;
inline constexpr qreal symbolOnlyPadding = 16.0;
inline constexpr qreal fallbackSymbolOnlyWidth = 28.0;

QColor textColor();
QColor fillColor();
QColor outlineColor();
QColor backgroundColor();

// The system font, regular weight.
QFont titleFont();
// A semibold font whose ten digits all have the same advance, so the time does not jiggle as it
// counts: the system font when its digits are tabular already, else the system fixed-pitch font.
QFont detailFont();

} // namespace ChipStyle

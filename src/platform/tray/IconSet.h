#pragma once

#include <QColor>
#include <QImage>
#include <QSizeF>
#include <QStringList>

// The symbols items can carry, drawn from SVG files bundled with the application and keyed by the
// names stored in the data ("hourglass", "calendar", "party.popper.fill", ...).
class IconSet
{
public:
    static const QString fallbackName; // "hourglass"

    // Every bundled symbol, in the order an icon picker offers them.
    static QStringList names();
    static bool contains(const QString &name);
    // `name` when it is bundled, else the fallback.
    static QString resolvedName(const QString &name);

    // The symbol tinted with `color`, fitted into `logicalSize` and drawn at `devicePixelRatio`.
    // Unknown names draw the fallback. The image carries the device pixel ratio.
    static QImage render(const QString &name, const QSizeF &logicalSize, qreal devicePixelRatio,
                         const QColor &color);
    // The same for any SVG file (a resource path such as ":/tarrow/glyphs/plus.svg").
    static QImage renderFile(const QString &path, const QSizeF &logicalSize, qreal devicePixelRatio,
                             const QColor &color);
};

#pragma once

#include "countdown/MenubarChipPresentation.h"

#include <QImage>
#include <QList>

// A square stand-in for the chip, for panels that squeeze every tray icon into a square cell
// (KDE Plasma, XFCE, XEmbed trays): the symbol, the largest unit of the time left ("2d" of
// "2d 4h") and the progress as a bar along the bottom, legible from 22 pixels up.
class TrayIconRenderer
{
public:
    // The time text the square shows: the first word of the detail.
    static QString shortDetail(const QString &detail);
    static QImage render(const MenubarChipPresentation &presentation, int side);
    // The sizes handed to tray hosts, which pick the one closest to their cell.
    static QList<int> standardSides();
};

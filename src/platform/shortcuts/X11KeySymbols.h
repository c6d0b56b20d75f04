#pragma once

#include <QString>
#include <Qt>

#include <optional>

// X11 keysyms of the keys a shortcut can use (see core/shortcuts/KeyCodeTable), and their names
// as xkbcommon and the desktop portal write them ("t", "space", "F5", "bracketleft").
namespace X11KeySymbols {

std::optional<quint32> keysymOf(Qt::Key key);
std::optional<Qt::Key> qtKeyOf(quint32 keysym);
QString nameOf(Qt::Key key);

} // namespace X11KeySymbols

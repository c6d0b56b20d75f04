#pragma once

#include "shortcuts/GlobalHotkeyController.h"

#include <QDBusConnection>
#include <QMap>

#include <memory>

// Picks the desktop's hot-key engine once, at start: kglobalaccel where it runs (Plasma, on X11
// and Wayland), else key grabs on an X11 session, else the portal's GlobalShortcuts where the
// desktop offers it. Null when none can register keys (GNOME on Wayland before version 48, most
// wlroots compositors): there the user binds `tarrow --toggle-popup` and `tarrow --new-countdown`
// in the desktop's keyboard settings.
std::unique_ptr<GlobalHotkeyController>
createGlobalHotkeyController(const QDBusConnection &bus,
                             const QMap<ShortcutAction, QString> &actionNames);

#pragma once

#include "records/Settings.h"

#include <QHashFunctions>
#include <QList>
#include <QString>

#include <optional>

// The two things a global shortcut can do.
enum class ShortcutAction { togglePopover, newCountdown };

inline size_t qHash(ShortcutAction action, size_t seed = 0)
{
    return ::qHash(int(action), seed);
}

// Both actions, in the order the settings list them.
const QList<ShortcutAction> &allShortcutActions();

// "togglePopover", "newCountdown": the keys of the settings' shortcutOverrides.
QString rawValue(ShortcutAction action);
std::optional<ShortcutAction> shortcutActionFromRaw(const QString &raw);

// The localisation keys of the action's title and help text in the settings.
QString titleKey(ShortcutAction action);
QString helpKey(ShortcutAction action);

// The combination an action has until the user records another: Ctrl+Super+T shows or hides the
// popup, Ctrl+Super+N starts a new countdown. No major Linux desktop binds either.
KeyCombo defaultCombo(ShortcutAction action);

// The action's combination in `settings`: the user's override, else the default.
KeyCombo comboIn(const Settings &settings, ShortcutAction action);

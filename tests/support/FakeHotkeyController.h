#pragma once

#include "shortcuts/GlobalHotkeyController.h"

#include <QMap>
#include <QStringList>

// A hot-key engine that logs what it is asked and refuses the combinations "another app" holds,
// with the status an X server gives.
class FakeHotkeyController : public GlobalHotkeyController
{
public:
    explicit FakeHotkeyController(QList<KeyCombo> refusing = {})
        : refused(std::move(refusing))
    {
    }
    Engine engine() const override { return Engine::x11; }
    void unregisterHotKey(ShortcutAction action) override
    {
        if (registered.remove(action))
            calls << QStringLiteral("unregister ") + rawValue(action);
    }
    void press(ShortcutAction action) { Q_EMIT activated(action); }
    void refuseLater(ShortcutAction action) { reportLateFailure(action, 2); }

    QList<KeyCombo> refused;
    QMap<ShortcutAction, KeyCombo> registered;
    QStringList calls;

protected:
    int registerWithEngine(ShortcutAction action, const KeyCombo &combo) override
    {
        calls << QStringLiteral("register %1 %2/%3")
                     .arg(rawValue(action))
                     .arg(combo.keyCode)
                     .arg(combo.modifierFlags, 0, 16);
        if (refused.contains(combo))
            return 10;
        registered.insert(action, combo);
        return 0;
    }
};

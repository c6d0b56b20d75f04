#pragma once

#include "shortcuts/GlobalHotkeyController.h"

#include <QMap>
#include <QStringList>

// A hot-key engine that keeps what it was asked in a log and refuses the combinations the test
// names, with the status an X server gives for a key another client holds.
class FakeHotkeyController : public GlobalHotkeyController
{
public:
    explicit FakeHotkeyController(Engine engine = Engine::x11)
        : m_engine(engine)
    {
    }

    Engine engine() const override { return m_engine; }
    void unregisterHotKey(ShortcutAction action) override
    {
        if (registered.remove(action))
            calls << QStringLiteral("unregister %1").arg(rawValue(action));
    }

    void press(ShortcutAction action) { Q_EMIT activated(action); }
    void refuseLater(ShortcutAction action) { reportLateFailure(action, 2); }

    QList<KeyCombo> refused; // combinations the "desktop" holds already
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

private:
    Engine m_engine;
};

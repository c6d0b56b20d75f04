#pragma once

#include "records/Settings.h"
#include "shortcuts/ShortcutAction.h"

#include <QLoggingCategory>
#include <QObject>

Q_DECLARE_LOGGING_CATEGORY(lcGlobalHotkeyController)

// Registers system-wide key combinations with one of the desktop's hot-key services (X11 key
// grabs, KDE's kglobalaccel, the desktop portal) and reports their presses. The engine is chosen
// once at start; a desktop that offers none gets no controller at all.
class GlobalHotkeyController : public QObject
{
    Q_OBJECT

public:
    enum class Engine { x11, kglobalaccel, portal };

    using QObject::QObject;

    virtual Engine engine() const = 0;

    // Registers `combo` for `action`, replacing what the action had. Returns true when the
    // desktop took it (or, for a service that answers later, when the request went out; a late
    // refusal arrives as registrationFailed()). A refusal is logged with the engine's status.
    bool registerHotKey(ShortcutAction action, const KeyCombo &combo);
    virtual void unregisterHotKey(ShortcutAction action) = 0;

Q_SIGNALS:
    // The combination of `action` was pressed.
    void activated(ShortcutAction action);
    // The desktop refused a registration after registerHotKey() returned.
    void registrationFailed(ShortcutAction action);
    // The user gave `action` another combination in the desktop's own shortcut settings.
    void comboChangedOnDesktop(ShortcutAction action, const KeyCombo &combo);

protected:
    // The engine's own registration: 0 when it took the combination, else its status (an X11
    // error code, a service's answer), which is logged.
    virtual int registerWithEngine(ShortcutAction action, const KeyCombo &combo) = 0;
    // For engines whose answer arrives later: logs the status and emits registrationFailed().
    void reportLateFailure(ShortcutAction action, int status);

private:
    static void logFailure(ShortcutAction action, int status);
};

// "x11", "kglobalaccel", "portal": for logs.
QString engineName(GlobalHotkeyController::Engine engine);

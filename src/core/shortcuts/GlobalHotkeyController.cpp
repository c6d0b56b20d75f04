#include "shortcuts/GlobalHotkeyController.h"

Q_LOGGING_CATEGORY(lcGlobalHotkeyController, "GlobalHotkeyController")

bool GlobalHotkeyController::registerHotKey(ShortcutAction action, const KeyCombo &combo)
{
    const int status = registerWithEngine(action, combo);
    if (status != 0)
        logFailure(action, status);
    return status == 0;
}

void GlobalHotkeyController::reportLateFailure(ShortcutAction action, int status)
{
    logFailure(action, status);
    Q_EMIT registrationFailed(action);
}

void GlobalHotkeyController::logFailure(ShortcutAction action, int status)
{
    qCWarning(lcGlobalHotkeyController).noquote()
        << QStringLiteral("Could not register the %1 shortcut (status %2) - most likely another "
                          "app holds it")
               .arg(rawValue(action))
               .arg(status);
}

QString engineName(GlobalHotkeyController::Engine engine)
{
    switch (engine) {
    case GlobalHotkeyController::Engine::x11:
        return QStringLiteral("x11");
    case GlobalHotkeyController::Engine::kglobalaccel:
        return QStringLiteral("kglobalaccel");
    case GlobalHotkeyController::Engine::portal:
        return QStringLiteral("portal");
    }
    Q_UNREACHABLE();
    return {};
}

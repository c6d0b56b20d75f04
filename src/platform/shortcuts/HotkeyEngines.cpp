#include "platform/shortcuts/HotkeyEngines.h"

#include "platform/shortcuts/KGlobalAccelController.h"
#include "platform/shortcuts/PortalShortcutsController.h"
#include "platform/shortcuts/X11HotkeyController.h"

std::unique_ptr<GlobalHotkeyController>
createGlobalHotkeyController(const QDBusConnection &bus,
                             const QMap<ShortcutAction, QString> &actionNames)
{
    std::unique_ptr<GlobalHotkeyController> controller;
    if (KGlobalAccelController::isAvailable(bus))
        controller = std::make_unique<KGlobalAccelController>(bus, actionNames);
    else
        controller = X11HotkeyController::create();
    if (!controller && PortalShortcutsController::isAvailable(bus))
        controller = std::make_unique<PortalShortcutsController>(bus, actionNames);
    if (controller) {
        qCInfo(lcGlobalHotkeyController).noquote()
            << QStringLiteral("Global shortcuts through %1").arg(engineName(controller->engine()));
    } else {
        qCInfo(lcGlobalHotkeyController)
            << "This desktop lets no app register global keys: bind `tarrow --toggle-popup` and "
               "`tarrow --new-countdown` in its keyboard settings";
    }
    return controller;
}

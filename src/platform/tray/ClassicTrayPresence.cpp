#include "platform/tray/ClassicTrayPresence.h"

#include "platform/tray/XEmbedTrayWatcher.h"

#include <QGuiApplication>
#include <QSystemTrayIcon>

std::unique_ptr<ClassicTrayPresence> ClassicTrayPresence::forPlatform()
{
    const QString platform = QGuiApplication::platformName();
    if (platform == QLatin1String("xcb")) {
        if (auto watcher = XEmbedTrayWatcher::create())
            return watcher;
        return std::make_unique<FixedTrayPresence>(false);
    }
    // Wayland has no classic tray, and asking Qt there would make it decide, once and for the
    // whole process, whether its tray icon speaks D-Bus. Windows and macOS always have a tray.
    const bool displayless = platform.startsWith(QLatin1String("wayland"))
        || platform == QLatin1String("offscreen") || platform == QLatin1String("minimal");
    return std::make_unique<FixedTrayPresence>(!displayless
                                               && QSystemTrayIcon::isSystemTrayAvailable());
}

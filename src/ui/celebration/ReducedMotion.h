#pragma once

#include <QDBusConnection>
#include <QString>

#include <optional>

// Whether the desktop asks apps to keep motion down: GNOME's "enable-animations" switched off (read
// through the settings portal) or KDE's animation speed set to instant (kdeglobals). Unknown
// counts as no.
namespace ReducedMotion {

bool isPreferred(QDBusConnection sessionBus, const QString &configHome);

// The parts, for tests: the kdeglobals file's answer (nullopt when it does not say).
std::optional<bool> fromKdeGlobals(const QString &path);

} // namespace ReducedMotion

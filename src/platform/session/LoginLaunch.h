#pragma once

#include <QString>

#include <optional>

// Whether this process was started by the desktop session at login, and with it whether the popup
// may open by itself. A login launch is marked by the "--autostart" argument that the autostart
// entry passes; without it, a system that has been up for less than 90 s counts as a login too,
// unless launch at login is switched off.
class LoginLaunch
{
public:
    static constexpr double recentBootSeconds = 90.0;

    static bool isLoginLaunch(bool autostartArgument, std::optional<double> uptimeSeconds,
                              bool launchAtLoginEnabled);

    // The popup opens at launch only for a user who finished onboarding, on a launch the user made
    // (not a login launch), outside UI tests.
    static bool revealsPopoverAtLaunch(bool onboardingCompleted, bool loginLaunch, bool uiTest);

    // Seconds since boot, the first field of /proc/uptime; nothing when it cannot be read.
    static std::optional<double>
    systemUptime(const QString &uptimeFile = QStringLiteral("/proc/uptime"));
};

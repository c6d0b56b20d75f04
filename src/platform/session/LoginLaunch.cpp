#include "platform/session/LoginLaunch.h"

#include <QFile>

bool LoginLaunch::isLoginLaunch(bool autostartArgument, std::optional<double> uptimeSeconds,
                                bool launchAtLoginEnabled)
{
    if (autostartArgument)
        return true;
    // Nothing starts Tarrow at login when the user switched that off, however fresh the boot.
    if (!launchAtLoginEnabled || !uptimeSeconds)
        return false;
    return *uptimeSeconds < recentBootSeconds;
}

bool LoginLaunch::revealsPopoverAtLaunch(bool onboardingCompleted, bool loginLaunch, bool uiTest)
{
    return onboardingCompleted && !loginLaunch && !uiTest;
}

std::optional<double> LoginLaunch::systemUptime(const QString &uptimeFile)
{
    QFile file(uptimeFile);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QList<QByteArray> fields = file.readLine().simplified().split(' ');
    bool ok = false;
    const double seconds = fields.value(0).toDouble(&ok);
    if (!ok || seconds < 0)
        return std::nullopt;
    return seconds;
}

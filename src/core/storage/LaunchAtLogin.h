#pragma once

// Keeps the system's "start at login" entry in step with the launchAtLogin setting.
class LaunchAtLoginController
{
public:
    virtual ~LaunchAtLoginController() = default;
    virtual bool isEnabled() const = 0;
    virtual void setEnabled(bool enabled) = 0;
};

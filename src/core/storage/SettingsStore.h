#pragma once

#include "records/Settings.h"
#include "storage/FileAccess.h"
#include "storage/PathProvider.h"

#include <QLoggingCategory>
#include <QObject>

Q_DECLARE_LOGGING_CATEGORY(lcSettingsStore)

class LaunchAtLoginController;

// Keeps the user's settings in "settings.json". Loading never writes; every later change is
// written at once. A file that cannot be decoded gives the defaults until the next change
// replaces it.
class SettingsStore : public QObject
{
    Q_OBJECT
public:
    SettingsStore(const PathProvider &paths, FileAccess &files,
                  LaunchAtLoginController *launchAtLogin = nullptr, QObject *parent = nullptr);

    const Settings &settings() const { return m_settings; }
    // Publishes and saves the new settings when they differ from the current ones.
    void setSettings(const Settings &settings);
    // The last write of settings.json failed (it is retried by the next change).
    bool lastSaveFailed() const { return m_lastSaveFailed; }

Q_SIGNALS:
    void settingsChanged();

private:
    void save();

    const PathProvider &m_paths;
    FileAccess &m_files;
    LaunchAtLoginController *m_launchAtLogin;
    Settings m_settings;
    bool m_lastSaveFailed = false;
};

#pragma once

#include "records/Settings.h"
#include "storage/DataFile.h"
#include "storage/FileAccess.h"
#include "storage/PathProvider.h"

#include <QLoggingCategory>
#include <QObject>

Q_DECLARE_LOGGING_CATEGORY(lcSettingsStore)

class LaunchAtLoginController;

// Keeps the user's settings in "settings.json". Loading never writes; every later change is
// written at once. A file that cannot be decoded gives the defaults until the next change
// replaces it (a copy of it is kept aside first).
//
// Like the events file, every save is a read-modify-write under the lock beside the file: a
// change another process saved meanwhile is taken in, and only the fields this store changed
// are written over it. reloadIfChanged() takes in an outside change on its own.
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

    // Takes in a change another process saved and publishes it; true when there was one. A
    // file that cannot be read is logged and leaves the settings as they are.
    bool reloadIfChanged();

Q_SIGNALS:
    void settingsChanged();

private:
    // The file's settings when they differ from what this store last read or wrote; `atStart`
    // chooses the messages of the first load.
    std::optional<Settings> outsideChange(bool atStart);
    void apply(const Settings &settings);

    DataFile m_file;
    LaunchAtLoginController *m_launchAtLogin;
    Settings m_settings;
    bool m_lastSaveFailed = false;
};

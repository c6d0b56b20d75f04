#pragma once

#include "storage/EventStore.h"
#include "storage/FileAccess.h"
#include "storage/PathProvider.h"
#include "storage/SettingsStore.h"

#include <memory>

// The user's data as a front end opens it: the events file, the settings file, and the start-up
// migrations run exactly as the app runs them.
class DataFolder
{
public:
    // An empty folder means the user's own data folder.
    explicit DataFolder(const QString &folder);
    ~DataFolder();

    const PathProvider &paths() const { return *m_paths; }
    EventStore &events() { return *m_events; }
    SettingsStore &settings() { return *m_settings; }
    FileAccess &files() { return m_files; }

private:
    std::unique_ptr<PathProvider> m_paths;
    DiskFileAccess m_files;
    std::unique_ptr<EventStore> m_events;
    std::unique_ptr<SettingsStore> m_settings;
};

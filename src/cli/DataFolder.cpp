#include "cli/DataFolder.h"

#include "storage/StartupMigrations.h"

DataFolder::DataFolder(const QString &folder)
    : m_paths(folder.isEmpty()
                  ? std::make_unique<DefaultPathProvider>()
                  : std::make_unique<DefaultPathProvider>(DefaultPathProvider::inFolder(folder)))
    , m_events(std::make_unique<EventStore>(*m_paths, m_files))
    , m_settings(std::make_unique<SettingsStore>(*m_paths, m_files))
{
    runStartupMigrations(*m_events, *m_settings);
}

DataFolder::~DataFolder() = default;

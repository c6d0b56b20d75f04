#include "storage/DataFolderWatcher.h"

#include "storage/EventStore.h"
#include "storage/PathProvider.h"
#include "storage/SettingsStore.h"

#include <QFileInfo>

DataFolderWatcher::DataFolderWatcher(const PathProvider &paths, EventStore &events,
                                     SettingsStore &settings, QObject *parent)
    : QObject(parent)
    , m_paths(paths)
    , m_events(events)
    , m_settings(settings)
{
    m_settle.setSingleShot(true);
    m_settle.setInterval(SettleMs);
    connect(&m_settle, &QTimer::timeout, this, &DataFolderWatcher::check);
    connect(&m_watcher, &QFileSystemWatcher::directoryChanged, this, &DataFolderWatcher::schedule);
    connect(&m_watcher, &QFileSystemWatcher::fileChanged, this, &DataFolderWatcher::schedule);
    m_watcher.addPath(m_paths.supportDirectory());
    watchFiles();
}

void DataFolderWatcher::schedule()
{
    // Not restarted by later changes: a steady stream of saves is still looked at in time.
    if (!m_settle.isActive())
        m_settle.start();
}

void DataFolderWatcher::check()
{
    watchFiles();
    m_events.reloadIfChanged();
    m_settings.reloadIfChanged();
    Q_EMIT checked();
}

// A file's watch ends when the file is replaced or removed; it is taken up again for the file
// now there.
void DataFolderWatcher::watchFiles()
{
    const QStringList watched = m_watcher.files();
    for (const QString &file : {m_paths.eventFile(), m_paths.settingsFile()}) {
        if (!watched.contains(file) && QFileInfo(file).isFile())
            m_watcher.addPath(file);
    }
}

#pragma once

#include <QFileSystemWatcher>
#include <QObject>
#include <QTimer>

class EventStore;
class PathProvider;
class SettingsStore;

// Lets the running app see what `tarrow` commands (or an editor) change in its data folder. It
// watches the folder (saves replace the files by renaming, which a watch on the file itself
// would miss) and the two files (for editors that write in place), waits for a burst of changes
// to settle, and asks both stores to take the new contents in; each store publishes what
// changed, so the popup and the panel follow within a moment.
class DataFolderWatcher : public QObject
{
    Q_OBJECT
public:
    // How long a burst of changes may last before the stores look (a save touches the folder
    // several times).
    static constexpr int SettleMs = 150;

    DataFolderWatcher(const PathProvider &paths, EventStore &events, SettingsStore &settings,
                      QObject *parent = nullptr);

Q_SIGNALS:
    // After the stores looked at the folder again (for tests).
    void checked();

private:
    void schedule();
    void check();
    void watchFiles();

    const PathProvider &m_paths;
    EventStore &m_events;
    SettingsStore &m_settings;
    QFileSystemWatcher m_watcher;
    QTimer m_settle;
};

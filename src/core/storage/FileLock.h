#pragma once

#include <QString>

#include <memory>

class QLockFile;

// The advisory lock beside a data file ("event.json.lock"), held for one read-modify-write so
// that the app and any number of `tarrow` commands take turns. On Unix it is an flock() on the
// lock file, which the system lets go of when its holder exits or dies: a lock never goes stale,
// and taking it writes nothing, so it works on a full disk too. Elsewhere a QLockFile stands in.
// Locks of one process exclude each other as well.
class FileLock
{
public:
    explicit FileLock(const QString &dataFile);
    ~FileLock();
    Q_DISABLE_COPY_MOVE(FileLock)

    // How long lock() waits for another holder before it gives up.
    static constexpr int TimeoutMs = 10000;

    // Waits for the lock; false with the reason when it cannot be had.
    bool lock(QString *error, int timeoutMs = TimeoutMs);
    void unlock();
    bool isLocked() const { return m_locked; }

private:
    QString m_path;
    bool m_locked = false;
#ifdef Q_OS_UNIX
    int m_fd = -1;
#else
    std::unique_ptr<QLockFile> m_lockFile;
#endif
};

#include "storage/FileLock.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QThread>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#endif

FileLock::FileLock(const QString &dataFile)
    : m_path(dataFile + QStringLiteral(".lock"))
{
}

FileLock::~FileLock()
{
    unlock();
}

namespace {

QString lockedByOther(const QString &path, int timeoutMs)
{
    return QStringLiteral("%1 is locked by another process (waited %2 s)")
        .arg(QFileInfo(path).completeBaseName())
        .arg(double(timeoutMs) / 1000.0);
}

} // namespace

#ifdef Q_OS_UNIX

bool FileLock::lock(QString *error, int timeoutMs)
{
    if (m_locked)
        return true;
    if (m_fd < 0) {
        // What stops this (a missing or read-only folder) would stop the save as well: the
        // reason is the system's own.
        m_fd = ::open(QFile::encodeName(m_path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
        if (m_fd < 0) {
            if (error)
                *error = qt_error_string(errno);
            return false;
        }
    }
    // Polled rather than blocking, so that the wait has an end; turns are short (one save).
    QDeadlineTimer deadline(timeoutMs);
    int pauseMs = 1;
    while (::flock(m_fd, LOCK_EX | LOCK_NB) != 0) {
        const int failure = errno;
        const bool busy = failure == EWOULDBLOCK || failure == EINTR;
        if (!busy || deadline.hasExpired()) {
            if (error)
                *error = busy ? lockedByOther(m_path, timeoutMs) : qt_error_string(failure);
            unlock();
            return false;
        }
        QThread::msleep(pauseMs);
        pauseMs = qMin(pauseMs * 2, 16);
    }
    m_locked = true;
    return true;
}

void FileLock::unlock()
{
    if (m_locked)
        ::flock(m_fd, LOCK_UN);
    m_locked = false;
    if (m_fd >= 0)
        ::close(m_fd);
    m_fd = -1;
}

#else

bool FileLock::lock(QString *error, int timeoutMs)
{
    if (m_locked)
        return true;
    m_lockFile = std::make_unique<QLockFile>(m_path);
    m_lockFile->setStaleLockTime(30000);
    if (!m_lockFile->tryLock(timeoutMs)) {
        if (error)
            *error = m_lockFile->error() == QLockFile::LockFailedError
                ? lockedByOther(m_path, timeoutMs)
                : QStringLiteral("could not lock %1").arg(QFileInfo(m_path).completeBaseName());
        m_lockFile.reset();
        return false;
    }
    m_locked = true;
    return true;
}

void FileLock::unlock()
{
    if (m_lockFile)
        m_lockFile->unlock();
    m_lockFile.reset();
    m_locked = false;
}

#endif

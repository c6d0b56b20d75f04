#include "storage/FileAccess.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#endif

namespace {

bool failWith(QString *error, const QString &reason)
{
    if (error)
        *error = reason;
    return false;
}

QString tooLarge()
{
    return QStringLiteral("larger than %1 MB, the most a data file may hold")
        .arg(FileAccess::MaxFileBytes >> 20);
}

QString notRegular()
{
    return QStringLiteral("not a regular file");
}

// Reads the `expected` bytes into a buffer of that size, then whatever the file grew by
// meanwhile, up to one byte more than a data file may hold.
std::optional<QByteArray> readBounded(QFile &file, qint64 expected, QString *error)
{
    QByteArray bytes(qMin(expected, FileAccess::MaxFileBytes), Qt::Uninitialized);
    const qint64 got = file.read(bytes.data(), bytes.size());
    if (got >= 0) {
        bytes.truncate(got);
        bytes += file.read(FileAccess::MaxFileBytes + 1 - got);
    }
    if (got < 0 || file.error() != QFileDevice::NoError) {
        failWith(error, file.errorString());
        return std::nullopt;
    }
    if (bytes.size() > FileAccess::MaxFileBytes) {
        failWith(error, tooLarge());
        return std::nullopt;
    }
    return bytes;
}

} // namespace

bool DiskFileAccess::exists(const QString &path) const
{
    return QFileInfo::exists(path);
}

std::optional<QByteArray> DiskFileAccess::read(const QString &path, QString *error) const
{
#ifdef Q_OS_UNIX
    // Opened without blocking, so that a FIFO in the file's place is refused instead of waited
    // on; the checks are made again on what was opened, which may differ from what was looked at.
    const QByteArray native = QFile::encodeName(path);
    struct stat status;
    if (::stat(native.constData(), &status) == 0 && !S_ISREG(status.st_mode)) {
        failWith(error, notRegular());
        return std::nullopt;
    }
    const int fd = ::open(native.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) {
        failWith(error, qt_error_string(errno));
        return std::nullopt;
    }
    if (::fstat(fd, &status) != 0 || !S_ISREG(status.st_mode) || status.st_size > MaxFileBytes) {
        const bool regular = S_ISREG(status.st_mode);
        ::close(fd);
        failWith(error, regular ? tooLarge() : notRegular());
        return std::nullopt;
    }
    QFile file;
    if (!file.open(fd, QIODevice::ReadOnly | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle)) {
        ::close(fd);
        failWith(error, file.errorString());
        return std::nullopt;
    }
    return readBounded(file, status.st_size, error);
#else
    const QFileInfo info(path);
    if (info.exists() && !info.isFile()) {
        failWith(error, notRegular());
        return std::nullopt;
    }
    if (info.size() > MaxFileBytes) {
        failWith(error, tooLarge());
        return std::nullopt;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        failWith(error, file.errorString());
        return std::nullopt;
    }
    return readBounded(file, info.size(), error);
#endif
}

bool DiskFileAccess::writeAtomically(const QString &path, const QByteArray &bytes, QString *error)
{
    // Unbuffered, so that a failing write reports the system's reason ("No space left on
    // device") rather than the buffer's "Unknown error" at commit().
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return failWith(error, file.errorString());
    if (file.write(bytes) != bytes.size()) {
        const QString reason = file.errorString();
        file.cancelWriting();
        return failWith(error, reason);
    }
    if (!file.commit())
        return failWith(error, file.errorString());
    return true;
}

bool DiskFileAccess::copy(const QString &from, const QString &to, QString *error)
{
    const QFileInfo info(from); // follows links
    if (info.isFile()) {
        QFile source(from);
        return source.copy(to) || failWith(error, source.errorString());
    }
    // A FIFO, a device, a folder or a link to one: the thing itself goes aside.
#ifdef Q_OS_UNIX
    return ::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0
        || failWith(error, qt_error_string(errno));
#else
    return QDir().rename(from, to)
        || failWith(error, QStringLiteral("could not move %1 aside").arg(from));
#endif
}

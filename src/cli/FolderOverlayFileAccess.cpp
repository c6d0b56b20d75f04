#include "cli/FolderOverlayFileAccess.h"

bool FolderOverlayFileAccess::exists(const QString &path) const
{
    return m_written.contains(path) || m_disk.exists(path);
}

std::optional<QByteArray> FolderOverlayFileAccess::read(const QString &path, QString *error) const
{
    const auto written = m_written.constFind(path);
    if (written != m_written.cend())
        return *written;
    return m_disk.read(path, error);
}

bool FolderOverlayFileAccess::writeAtomically(const QString &path, const QByteArray &bytes,
                                              QString *)
{
    m_written.insert(path, bytes);
    return true;
}

bool FolderOverlayFileAccess::copy(const QString &, const QString &, QString *)
{
    return true;
}

#include "storage/FileAccess.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

bool DiskFileAccess::exists(const QString &path) const
{
    return QFileInfo::exists(path);
}

std::optional<QByteArray> DiskFileAccess::read(const QString &path, QString *error) const
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (error)
            *error = file.errorString();
        return std::nullopt;
    }
    QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        if (error)
            *error = file.errorString();
        return std::nullopt;
    }
    return bytes;
}

bool DiskFileAccess::writeAtomically(const QString &path, const QByteArray &bytes, QString *error)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        if (error)
            *error = file.errorString();
        return false;
    }
    return true;
}

bool DiskFileAccess::copy(const QString &from, const QString &to, QString *error)
{
    QFile source(from);
    if (!source.copy(to)) {
        if (error)
            *error = source.errorString();
        return false;
    }
    return true;
}

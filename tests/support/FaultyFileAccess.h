#pragma once

#include "storage/FileAccess.h"

// The real disk, with switches that make reads or writes fail the way a full or read-only disk
// would (running as root, a read-only folder does not stop writes, so tests inject the failure).
class FaultyFileAccess final : public FileAccess
{
public:
    bool failReads = false;
    bool failWrites = false;
    bool failCopies = false;
    int writes = 0;

    bool exists(const QString &path) const override { return m_disk.exists(path); }
    std::optional<QByteArray> read(const QString &path, QString *error) const override
    {
        if (failReads) {
            *error = QStringLiteral("Permission denied");
            return std::nullopt;
        }
        return m_disk.read(path, error);
    }
    bool writeAtomically(const QString &path, const QByteArray &bytes, QString *error) override
    {
        if (failWrites) {
            *error = QStringLiteral("No space left on device");
            return false;
        }
        ++writes;
        return m_disk.writeAtomically(path, bytes, error);
    }
    bool copy(const QString &from, const QString &to, QString *error) override
    {
        if (failCopies) {
            *error = QStringLiteral("Permission denied");
            return false;
        }
        return m_disk.copy(from, to, error);
    }

private:
    DiskFileAccess m_disk;
};

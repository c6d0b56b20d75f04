#pragma once

#include "storage/FileAccess.h"

// The real disk, with switches that make reads or writes fail the way a full or read-only disk
// would (running as root, a read-only folder does not stop writes, so tests inject the failure).
class FaultyFileAccess final : public FileAccess
{
public:
    bool failReads = false, failWrites = false, failCopies = false;
    int writes = 0; // attempted

    bool exists(const QString &path) const override { return m_disk.exists(path); }
    std::optional<QByteArray> read(const QString &path, QString *error) const override
    {
        return fails(failReads, "Permission denied", error) ? std::nullopt
                                                            : m_disk.read(path, error);
    }
    bool writeAtomically(const QString &path, const QByteArray &bytes, QString *error) override
    {
        ++writes;
        return !fails(failWrites, "No space left on device", error)
            && m_disk.writeAtomically(path, bytes, error);
    }
    bool copy(const QString &from, const QString &to, QString *error) override
    {
        return !fails(failCopies, "Permission denied", error) && m_disk.copy(from, to, error);
    }

private:
    static bool fails(bool fail, const char *reason, QString *error)
    {
        if (fail)
            *error = QString::fromLatin1(reason);
        return fail;
    }
    DiskFileAccess m_disk;
};

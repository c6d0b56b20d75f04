#pragma once

#include "storage/FileAccess.h"

#include <QHash>

// The data folder as a viewer sees it: files are read from disk, and what the stores write
// (arrival stamps, migrations) stays in memory, so a long-running viewer never changes the
// user's files behind the app's back.
class FolderOverlayFileAccess final : public FileAccess
{
public:
    bool exists(const QString &path) const override;
    std::optional<QByteArray> read(const QString &path, QString *error) const override;
    bool writeAtomically(const QString &path, const QByteArray &bytes, QString *error) override;
    bool copy(const QString &from, const QString &to, QString *error) override;

private:
    DiskFileAccess m_disk;
    QHash<QString, QByteArray> m_written;
};

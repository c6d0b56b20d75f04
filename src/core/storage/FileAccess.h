#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

// The file system as the stores use it: whole files, written atomically. Tests put a failing
// implementation in its place.
class FileAccess
{
public:
    virtual ~FileAccess() = default;
    virtual bool exists(const QString &path) const = 0;
    // The file's bytes, or nothing with the reason in *error.
    virtual std::optional<QByteArray> read(const QString &path, QString *error) const = 0;
    // Replaces the file in one step (a temporary file renamed over it): never half a file.
    virtual bool writeAtomically(const QString &path, const QByteArray &bytes, QString *error) = 0;
    // Copies a file aside; false with the reason when that fails.
    virtual bool copy(const QString &from, const QString &to, QString *error) = 0;
};

class DiskFileAccess final : public FileAccess
{
public:
    bool exists(const QString &path) const override;
    std::optional<QByteArray> read(const QString &path, QString *error) const override;
    bool writeAtomically(const QString &path, const QByteArray &bytes, QString *error) override;
    bool copy(const QString &from, const QString &to, QString *error) override;
};

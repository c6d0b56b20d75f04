#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

// The file system as the stores use it: whole files, written atomically. Tests put a failing
// implementation in its place.
class FileAccess
{
public:
    // The most a data file may hold; a larger one is refused unread. Ten thousand countdowns
    // take about 10 MB.
    static constexpr qint64 MaxFileBytes = qint64(64) << 20;

    virtual ~FileAccess() = default;
    virtual bool exists(const QString &path) const = 0;
    // The bytes of a regular file of at most MaxFileBytes, or nothing with the reason in *error.
    // Anything else (a FIFO, a device, a folder, a link to one) is refused without waiting.
    virtual std::optional<QByteArray> read(const QString &path, QString *error) const = 0;
    // Replaces the file in one step (a temporary file renamed over it): never half a file. A
    // failure names its cause ("No space left on device", "Permission denied").
    virtual bool writeAtomically(const QString &path, const QByteArray &bytes, QString *error) = 0;
    // Keeps a file aside under a new name: a regular file is copied byte for byte; anything
    // else in its place (a FIFO, a device, a link to one) has no bytes to copy and is moved
    // aside as it is. False with the reason when that fails.
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

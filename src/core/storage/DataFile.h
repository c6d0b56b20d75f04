#pragma once

#include "storage/FileLock.h"

#include <QByteArray>
#include <QString>

#include <optional>

class FileAccess;
class QLoggingCategory;

// One file of the data folder ("event.json", "settings.json") as its store keeps it: what the
// store last read or wrote there, so that a change by another process is recognised (by its
// size and a hash of its bytes); the advisory lock beside it for a read-modify-write; and a file
// the store could not read, which is kept aside byte for byte before it is ever replaced.
class DataFile
{
public:
    using Category = const QLoggingCategory &(*)();
    // Logs under the category of the store that owns the file.
    DataFile(QString path, FileAccess &files, Category category);

    const QString &path() const { return m_path; }
    // "event.json", for messages.
    QString name() const;

    struct Read
    {
        enum class Kind {
            unchanged, // the same as last read or written
            missing, // gone (or never there)
            changed, // new bytes: decode them, then accept() or reject() them
            failed, // cannot be read (error says why): it counts as unreadable
        };
        Kind kind = Kind::unchanged;
        QByteArray bytes;
        QString error;
    };
    // Reads the file unless it is the same as the store last saw it.
    Read readIfChanged();
    // The store took these bytes in (decoded them, or wrote them).
    void accept(const QByteArray &bytes);
    // The store could not decode these bytes: the file is unreadable and is kept aside before
    // the next write replaces it.
    void reject(const QByteArray &bytes);
    bool isUnreadable() const { return m_unreadable; }

    bool lock(QString *error) { return m_lock.lock(error); }
    void unlock() { m_lock.unlock(); }

    // Writes the bytes atomically. A file the store could not read is first kept aside, as
    // "<name> (unreadable <date time>).json"; when that fails nothing is written.
    bool write(const QByteArray &bytes, QString *error);

private:
    struct Fingerprint
    {
        bool exists = false;
        qsizetype size = 0;
        quint64 hash = 0;
        bool operator==(const Fingerprint &) const = default;
    };
    static Fingerprint fingerprintOf(const QByteArray &bytes);
    bool keepAside(QString *error);

    QString m_path;
    FileAccess &m_files;
    Category m_category;
    FileLock m_lock;
    std::optional<Fingerprint> m_known; // nothing before the first read
    bool m_unreadable = false;
    QString m_failure; // why the last read failed, reported once
};

#pragma once

#include "records/Event.h"

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QLoggingCategory>
#include <QString>

#include <optional>
#include <variant>

class JsonValue;

Q_DECLARE_LOGGING_CATEGORY(lcBackupArchive)

// A backup file: every countdown the user made, as the events file stores them, under a kind and
// a layout version that say whether this version of Tarrow can read it. Calendar items and the
// per-series calendar choices are not part of a backup.
struct BackupArchive
{
    // The layout this version writes, and the only one it reads.
    static constexpr qint64 currentVersion = 1;
    // A backup of 100,000 countdowns stays well below this; a larger file is refused unread.
    static constexpr qint64 maximumFileSize = 64 * 1024 * 1024;

    std::optional<QString> kind; // written always; a file without it is still read
    qint64 version = currentVersion;
    QDateTime exportedAt;
    QList<Event> events;

    // What is read first, to decide whether the file can be read at all.
    struct Header
    {
        std::optional<QString> kind;
        qint64 version = 0;

        static std::optional<Header> fromJson(const JsonValue &value, QString *error);
    };

    enum class ReadError { unreadable, newer };

    // The document type of backups: the app's id followed by ".backup".
    static QString documentKind();

    // An archive of `events` (in the store's order) exported at `now`.
    static BackupArchive of(const QList<Event> &events, const QDateTime &now);

    // The file's bytes, written like the events file: indented, keys sorted, dates in UTC with
    // milliseconds.
    QByteArray encode() const;

    // The archive in a file's bytes. A file of another kind, of a version below 1, or one that
    // does not decode is unreadable; one of a later version is newer.
    static std::variant<BackupArchive, ReadError> read(const QByteArray &bytes);
};

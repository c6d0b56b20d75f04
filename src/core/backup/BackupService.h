#pragma once

#include "backup/BackupArchive.h"
#include "backup/BackupMessage.h"
#include "storage/EventStore.h"

#include <optional>

class Clock;
class FileAccess;

// The steps of exporting and importing backups, shared by the data page of the settings window and
// the command line; the questions in between belong to their callers. Every step ends in the
// message the user is shown. An import changes the store only in its last step, and the store
// writes atomically, so no failure leaves half a change behind.
class BackupService
{
public:
    BackupService(EventStore &store, FileAccess &files, const Clock &clock);

    // "Tarrow Backup 2026-06-03.json", with today's date in the system's zone.
    static QString proposedFileName(const QDateTime &now);

    // The archive of the store's events as they are now, encoded.
    struct Prepared
    {
        QByteArray bytes;
        qsizetype count = 0;
    };
    Prepared prepareExport() const;
    // Writes a prepared export atomically: the "done" message, or "failed" when the write fails.
    BackupMessage writeExport(const Prepared &prepared, const QString &path);

    // The archive in a file, or the message that refuses it: the file cannot be read, is larger
    // than a backup can be, is not a backup of this version (unreadable or newer), or holds no
    // countdowns (empty).
    struct Reading
    {
        std::optional<BackupArchive> archive;
        BackupMessage refusal;
    };
    Reading read(const QString &path) const;

    // The question asked before an import: "Import 1 countdown?" or "Import %1 countdowns?".
    static BackupMessage confirmation(const BackupArchive &archive);

    // Hands the archive's events to the store: the counts of added and already present events,
    // or "failed" when the store could not save.
    BackupMessage import(const BackupArchive &archive, BackupImportMode mode);

private:
    EventStore &m_store;
    FileAccess &m_files;
    const Clock &m_clock;
};

#include "backup/BackupService.h"

#include "storage/FileAccess.h"
#include "time/Clock.h"

#include <QFile>

namespace {

// At most `limit` + 1 bytes of the file, so a huge file (or a device that never ends) is found
// out without being read into memory.
std::optional<QByteArray> readBounded(const QString &path, qint64 limit, QString *reason)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *reason = file.errorString();
        return std::nullopt;
    }
    if (file.size() > limit) {
        *reason = QStringLiteral("%1 bytes is more than a backup can hold").arg(file.size());
        return std::nullopt;
    }
    QByteArray bytes = file.read(limit + 1);
    if (file.error() != QFileDevice::NoError) {
        *reason = file.errorString();
        return std::nullopt;
    }
    if (bytes.size() > limit) {
        *reason = QStringLiteral("more than %1 bytes is more than a backup can hold").arg(limit);
        return std::nullopt;
    }
    return bytes;
}

} // namespace

BackupService::BackupService(EventStore &store, FileAccess &files, const Clock &clock)
    : m_store(store)
    , m_files(files)
    , m_clock(clock)
{
}

QString BackupService::proposedFileName(const QDateTime &now)
{
    return QStringLiteral("Tarrow Backup %1.json")
        .arg(now.toLocalTime().date().toString(Qt::ISODate));
}

BackupService::Prepared BackupService::prepareExport() const
{
    const BackupArchive archive = BackupArchive::of(m_store.events(), m_clock.now());
    return Prepared {archive.encode(), archive.events.size()};
}

BackupMessage BackupService::writeExport(const Prepared &prepared, const QString &path)
{
    QString reason;
    if (path.isEmpty() || !m_files.writeAtomically(path, prepared.bytes, &reason)) {
        qCWarning(lcBackupArchive).noquote()
            << QStringLiteral("Failed to write the backup %1: %2").arg(path, reason);
        return BackupMessage::error("settings.data.export.failed");
    }
    if (prepared.count == 1)
        return BackupMessage::info("settings.data.export.done.one");
    return BackupMessage::info("settings.data.export.done %lld", {prepared.count});
}

BackupService::Reading BackupService::read(const QString &path) const
{
    QString reason;
    const std::optional<QByteArray> bytes =
        readBounded(path, BackupArchive::maximumFileSize, &reason);
    if (!bytes) {
        qCWarning(lcBackupArchive).noquote()
            << QStringLiteral("Failed to read the backup %1: %2").arg(path, reason);
        return {std::nullopt, BackupMessage::error("settings.data.import.unreadable")};
    }
    std::variant<BackupArchive, BackupArchive::ReadError> read = BackupArchive::read(*bytes);
    if (const auto *error = std::get_if<BackupArchive::ReadError>(&read)) {
        return {std::nullopt,
                BackupMessage::error(*error == BackupArchive::ReadError::newer
                                         ? "settings.data.import.newer"
                                         : "settings.data.import.unreadable")};
    }
    BackupArchive &archive = std::get<BackupArchive>(read);
    if (archive.events.isEmpty())
        return {std::nullopt, BackupMessage::info("settings.data.import.empty")};
    return {std::move(archive), {}};
}

BackupMessage BackupService::confirmation(const BackupArchive &archive)
{
    if (archive.events.size() == 1)
        return BackupMessage::info("settings.data.import.confirm.one");
    return BackupMessage::info("settings.data.import.confirm %lld", {archive.events.size()});
}

BackupMessage BackupService::import(const BackupArchive &archive, BackupImportMode mode)
{
    BackupImportCounts counts;
    EventStoreError error;
    if (!m_store.importBackup(archive.events, mode, &counts, &error)) {
        qCWarning(lcBackupArchive).noquote()
            << QStringLiteral("Failed to import a backup: %1").arg(error.description);
        return BackupMessage::error("settings.data.import.failed");
    }
    return BackupMessage::info("settings.data.import.done %lld %lld",
                               {counts.added, counts.skipped});
}

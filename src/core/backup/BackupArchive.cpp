#include "backup/BackupArchive.h"

#include "json/JsonDocument.h"
#include "json/JsonObjectReader.h"
#include "json/JsonWriter.h"

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(lcBackupArchive, "BackupArchive")

namespace {

std::optional<BackupArchive> decodeArchive(const JsonValue &root, QString *error)
{
    JsonObjectReader reader(root, error);
    BackupArchive archive;
    archive.kind = reader.optionalString("kind"_L1);
    archive.version = reader.int64("version"_L1);
    archive.exportedAt = reader.date("exportedAt"_L1);
    if (reader.ok() && !reader.value("events"_L1).isArray())
        reader.fail(JsonObjectReader::missingKeyMessage("events"_L1));
    archive.events = reader.recordList("events"_L1, Event::fromJson);
    if (!reader.ok())
        return std::nullopt;
    return archive;
}

BackupArchive::ReadError refuse(BackupArchive::ReadError error, const QString &reason)
{
    qCInfo(lcBackupArchive).noquote() << QStringLiteral("Refused a backup: %1").arg(reason);
    return error;
}

} // namespace

QString BackupArchive::documentKind()
{
    return QStringLiteral(TARROW_APP_ID ".backup");
}

BackupArchive BackupArchive::of(const QList<Event> &events, const QDateTime &now)
{
    return BackupArchive {documentKind(), currentVersion, now, events};
}

std::optional<BackupArchive::Header> BackupArchive::Header::fromJson(const JsonValue &value,
                                                                     QString *error)
{
    JsonObjectReader reader(value, error);
    Header header;
    header.kind = reader.optionalString("kind"_L1);
    header.version = reader.int64("version"_L1);
    if (!reader.ok())
        return std::nullopt;
    return header;
}

QByteArray BackupArchive::encode() const
{
    JsonWriter writer;
    writer.beginObject();
    writer.key("events"_L1).beginArray();
    for (const Event &event : events)
        event.toJson(writer);
    writer.endArray();
    writer.key("exportedAt"_L1).date(exportedAt);
    writer.key("kind"_L1).string(kind.value_or(documentKind()));
    writer.key("version"_L1).integer(version);
    writer.endObject();
    return writer.finish();
}

std::variant<BackupArchive, BackupArchive::ReadError> BackupArchive::read(const QByteArray &bytes)
{
    QString error;
    const std::optional<JsonDocument> document = JsonDocument::parse(bytes, &error);
    if (!document)
        return refuse(ReadError::unreadable, error);
    const std::optional<Header> header = Header::fromJson(document->root(), &error);
    if (!header)
        return refuse(ReadError::unreadable, error);
    if (header->kind && *header->kind != documentKind())
        return refuse(ReadError::unreadable, QStringLiteral("its kind is %1").arg(*header->kind));
    if (header->version > currentVersion)
        return refuse(ReadError::newer, QStringLiteral("version %1").arg(header->version));
    if (header->version < currentVersion)
        return refuse(ReadError::unreadable, QStringLiteral("version %1").arg(header->version));
    std::optional<BackupArchive> archive = decodeArchive(document->root(), &error);
    if (!archive)
        return refuse(ReadError::unreadable, error);
    return std::move(*archive);
}

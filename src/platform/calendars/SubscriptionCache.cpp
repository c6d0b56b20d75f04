#include "platform/calendars/SubscriptionCache.h"

#include "storage/FileAccess.h"
#include "storage/PathProvider.h"
#include "json/JsonDocument.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

SubscriptionCache::SubscriptionCache(QString directory, FileAccess &files)
    : m_directory(std::move(directory))
    , m_files(files)
{
}

QString SubscriptionCache::directoryFor(const QString &dataDirectory)
{
    const QString own = QDir(dataDirectory).absolutePath();
    if (own != QDir(DefaultPathProvider().supportDirectory()).absolutePath())
        return QDir(own).filePath(u"cache/calendars"_s);
    QString base = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
    if (base.isEmpty())
        base = QDir::tempPath();
    return QDir(base).filePath(u"tarrow/calendars"_s);
}

QString SubscriptionCache::filePath(const QUuid &id, const char *suffix) const
{
    return QDir(m_directory)
        .filePath(id.toString(QUuid::WithoutBraces) + QLatin1StringView(suffix));
}

QString SubscriptionCache::copyPath(const QUuid &id) const
{
    return filePath(id, ".ics");
}

SubscriptionStatus SubscriptionCache::status(const QUuid &id) const
{
    QString error;
    const std::optional<QByteArray> bytes = m_files.read(filePath(id, ".json"), &error);
    if (!bytes)
        return {};
    const std::optional<JsonDocument> document = JsonDocument::parse(*bytes);
    return document ? SubscriptionStatus::fromJson(document->root()) : SubscriptionStatus();
}

bool SubscriptionCache::writeStatus(const QUuid &id, const SubscriptionStatus &status,
                                    QString *error)
{
    QDir().mkpath(m_directory);
    return m_files.writeAtomically(filePath(id, ".json"), status.toJson(), error);
}

bool SubscriptionCache::writeCopy(const QUuid &id, const QByteArray &bytes, QString *error)
{
    QDir().mkpath(m_directory);
    return m_files.writeAtomically(copyPath(id), bytes, error);
}

void SubscriptionCache::remove(const QUuid &id)
{
    QFile::remove(copyPath(id));
    QFile::remove(filePath(id, ".json"));
}

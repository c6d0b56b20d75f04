#include "automation/WidgetSnapshotWriter.h"

#include "automation/StatusFeed.h"
#include "countdown/CountdownRegistry.h"
#include "storage/FileAccess.h"
#include "time/Clock.h"
#include "json/JsonWriter.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

Q_LOGGING_CATEGORY(lcWidgetSnapshot, "WidgetSnapshotWriter")

namespace {

QString kindOf(const CountdownItem &item)
{
    if (item.isCalendar())
        return QStringLiteral("calendar");
    return item.isCountUp() ? QStringLiteral("countUp") : QStringLiteral("countdown");
}

QString symbolOf(const CountdownItem &item)
{
    if (const Event *event = item.event())
        return event->icon ? event->icon->symbol : QStringLiteral("hourglass");
    return item.occurrence()->icon ? item.occurrence()->icon->symbol : QStringLiteral("calendar");
}

void writeItem(JsonWriter &writer, const CountdownItem &item)
{
    writer.beginObject();
    writer.key("date"_L1).date(item.date());
    writer.key("kind"_L1).string(kindOf(item));
    writer.key("reached"_L1).boolean(item.isReached());
    writer.key("symbol"_L1).string(symbolOf(item));
    writer.key("title"_L1).string(item.title());
    writer.endObject();
}

} // namespace

WidgetSnapshotWriter::WidgetSnapshotWriter(const StatusFeed &feed,
                                           const CountdownRegistry &registry, const Clock &clock,
                                           FileAccess &files, QString path, QObject *parent)
    : QObject(parent)
    , m_feed(feed)
    , m_registry(registry)
    , m_clock(clock)
    , m_files(files)
    , m_path(std::move(path))
{
    connect(&feed, &StatusFeed::snapshotChanged, this, &WidgetSnapshotWriter::write);
    connect(&registry, &CountdownRegistry::itemsChanged, this, &WidgetSnapshotWriter::write);
    write();
}

WidgetSnapshotWriter::~WidgetSnapshotWriter()
{
    QFile::remove(m_path);
}

QString WidgetSnapshotWriter::defaultPath(const QString &runtimeDirectory,
                                          const QString &dataDirectory, bool usersOwnFolder)
{
    const QDir folder(QDir(runtimeDirectory).filePath(QStringLiteral("tarrow")));
    if (usersOwnFolder)
        return folder.filePath(QStringLiteral("widget-snapshot.json"));
    const QByteArray digest = QCryptographicHash::hash(QDir(dataDirectory).absolutePath().toUtf8(),
                                                       QCryptographicHash::Sha1);
    return folder.filePath(QStringLiteral("widget-snapshot-%1.json")
                               .arg(QString::fromLatin1(digest.toHex().left(16))));
}

QByteArray WidgetSnapshotWriter::encode() const
{
    JsonWriter writer;
    writer.beginObject();
    writer.key("items"_L1).beginArray();
    qsizetype written = 0;
    for (const CountdownItem &item : m_registry.items()) {
        if (item.isHidden())
            continue;
        if (written++ == maximumItems)
            break;
        writeItem(writer, item);
    }
    writer.endArray();
    writer.key("status"_L1);
    m_feed.snapshot().write(writer, true);
    writer.key("updatedAt"_L1).date(m_clock.now());
    writer.endObject();
    return writer.finish();
}

void WidgetSnapshotWriter::write()
{
    const QString folder = QFileInfo(m_path).path();
    if (!QFileInfo::exists(folder) && QDir().mkpath(folder))
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    QString reason;
    const bool written = m_files.writeAtomically(m_path, encode(), &reason);
    if (!written && !m_lastWriteFailed) {
        qCWarning(lcWidgetSnapshot).noquote()
            << QStringLiteral("Failed to write %1: %2").arg(m_path, reason);
    }
    m_lastWriteFailed = !written;
}

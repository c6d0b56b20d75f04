#include "calendar/SubscriptionStore.h"

#include "storage/FileAccess.h"
#include "storage/PathProvider.h"
#include "time/Clock.h"
#include "json/JsonDocument.h"

#include <QDir>
#include <QFileInfo>
#include <QFileSystemWatcher>

Q_LOGGING_CATEGORY(lcSubscriptionStore, "SubscriptionStore")

using namespace Qt::StringLiterals;

SubscriptionStore::SubscriptionStore(const PathProvider &paths, FileAccess &files,
                                     const Clock &clock, QObject *parent)
    : QObject(parent)
    , m_path(QDir(paths.supportDirectory()).filePath(fileName()))
    , m_files(files)
    , m_clock(clock)
{
    load();
}

SubscriptionStore::~SubscriptionStore() = default;

void SubscriptionStore::load()
{
    m_loadError.clear();
    m_unreadableFileOnDisk = false;
    m_list = {};
    if (!m_files.exists(m_path))
        return;
    QString error;
    const std::optional<QByteArray> bytes = m_files.read(m_path, &error);
    if (bytes) {
        if (const auto document = JsonDocument::parse(*bytes, &error)) {
            if (auto list = CalendarSubscriptionList::fromJson(document->root(), &error)) {
                m_list = std::move(*list);
                return;
            }
        }
    }
    m_loadError = error;
    m_unreadableFileOnDisk = true;
    qCWarning(lcSubscriptionStore).noquote()
        << u"Failed to read %1 - no added calendars until it is fixed: %2"_s.arg(m_path, error);
}

void SubscriptionStore::reload()
{
    const CalendarSubscriptionList before = m_list;
    load();
    if (m_list != before)
        Q_EMIT changed();
}

void SubscriptionStore::watchFile()
{
    if (m_watcher)
        return;
    m_watcher = std::make_unique<QFileSystemWatcher>();
    // Atomic saves replace the file, so the folder is watched too.
    m_watcher->addPath(QFileInfo(m_path).absolutePath());
    if (QFileInfo::exists(m_path))
        m_watcher->addPath(m_path);
    const auto follow = [this] {
        if (QFileInfo::exists(m_path) && !m_watcher->files().contains(m_path))
            m_watcher->addPath(m_path);
        reload();
    };
    connect(m_watcher.get(), &QFileSystemWatcher::fileChanged, this, follow);
    connect(m_watcher.get(), &QFileSystemWatcher::directoryChanged, this, follow);
}

bool SubscriptionStore::commit(CalendarSubscriptionList next, QString *error)
{
    QString reason;
    if (m_unreadableFileOnDisk && m_files.exists(m_path)) {
        const QString stamp = m_clock.now().toLocalTime().toString(u"yyyy-MM-dd HH.mm.ss"_s);
        const QString aside =
            QFileInfo(m_path).dir().filePath(u"calendars (unreadable %1).json"_s.arg(stamp));
        if (!m_files.copy(m_path, aside, &reason)) {
            *error = u"could not keep a copy of the unreadable %1: %2"_s.arg(fileName(), reason);
            return false;
        }
        qCWarning(lcSubscriptionStore).noquote()
            << u"Kept the unreadable %1 as %2 before replacing it"_s.arg(fileName(), aside);
    }
    if (!m_files.writeAtomically(m_path, next.toJson(), &reason)) {
        *error = u"could not save %1: %2"_s.arg(fileName(), reason);
        return false;
    }
    m_unreadableFileOnDisk = false;
    m_loadError.clear();
    if (next == m_list)
        return true;
    m_list = std::move(next);
    Q_EMIT changed();
    return true;
}

std::optional<CalendarSubscription> SubscriptionStore::add(const QString &input,
                                                           const QString &title,
                                                           const QString &workingDirectory,
                                                           QString *error)
{
    const std::optional<QUrl> url = subscriptionURL(input, workingDirectory, error);
    if (!url)
        return std::nullopt;
    for (const CalendarSubscription &existing : m_list.subscriptions) {
        if (existing.url == *url) {
            *error = u"%1 is already added (%2)"_s.arg(url->toDisplayString(), existing.shortID());
            return std::nullopt;
        }
    }
    CalendarSubscription subscription {QUuid::createUuid(), *url, title.trimmed(), m_clock.now()};
    CalendarSubscriptionList next = m_list;
    next.subscriptions.append(subscription);
    if (!commit(std::move(next), error))
        return std::nullopt;
    return subscription;
}

bool SubscriptionStore::remove(const QUuid &id, QString *error)
{
    CalendarSubscriptionList next = m_list;
    const qsizetype removed = next.subscriptions.removeIf(
        [&](const CalendarSubscription &subscription) { return subscription.id == id; });
    if (removed == 0) {
        *error = u"no added calendar has the id %1"_s.arg(id.toString(QUuid::WithoutBraces));
        return false;
    }
    return commit(std::move(next), error);
}

bool SubscriptionStore::rename(const QUuid &id, const QString &title, QString *error)
{
    CalendarSubscriptionList next = m_list;
    for (CalendarSubscription &subscription : next.subscriptions) {
        if (subscription.id == id) {
            subscription.title = title.trimmed();
            return commit(std::move(next), error);
        }
    }
    *error = u"no added calendar has the id %1"_s.arg(id.toString(QUuid::WithoutBraces));
    return false;
}

bool SubscriptionStore::setUserAddresses(const QStringList &addresses, QString *error)
{
    QStringList normalized;
    for (const QString &address : addresses) {
        if (address.trimmed().isEmpty())
            continue;
        const QString clean = normalizedAddress(address);
        if (clean.isEmpty()) {
            *error = u"\"%1\" is not an e-mail address"_s.arg(address.trimmed());
            return false;
        }
        if (!normalized.contains(clean))
            normalized.append(clean);
    }
    CalendarSubscriptionList next = m_list;
    next.userAddresses = normalized;
    return next == m_list || commit(std::move(next), error);
}

std::optional<CalendarSubscription> SubscriptionStore::findByID(const QString &text,
                                                                QString *error) const
{
    const QString wanted = text.trimmed().toLower().remove(u'{').remove(u'}');
    if (wanted.size() < 4) {
        *error = u"give at least the first 4 characters of the id"_s;
        return std::nullopt;
    }
    std::optional<CalendarSubscription> found;
    for (const CalendarSubscription &subscription : m_list.subscriptions) {
        if (!subscription.shortID().startsWith(wanted))
            continue;
        if (found) {
            *error = u"\"%1\" matches more than one calendar: give more of the id"_s.arg(text);
            return std::nullopt;
        }
        found = subscription;
    }
    if (!found)
        *error = u"no added calendar has the id %1"_s.arg(text);
    return found;
}

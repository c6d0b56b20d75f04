#pragma once

#include "calendar/CalendarSubscription.h"

#include <QLoggingCategory>
#include <QObject>

#include <memory>

Q_DECLARE_LOGGING_CATEGORY(lcSubscriptionStore)

class Clock;
class FileAccess;
class PathProvider;
class QFileSystemWatcher;

// Keeps "calendars.json" in the data folder: the calendar files and feeds the user added and the
// user's e-mail addresses. Every change is written first (atomically) and published after; a
// file that cannot be read is copied aside before the first change replaces it, and until then
// the list is empty. With watchFile(), edits by another process (`tarrow calendars add`) are
// picked up.
class SubscriptionStore : public QObject
{
    Q_OBJECT
public:
    SubscriptionStore(const PathProvider &paths, FileAccess &files, const Clock &clock,
                      QObject *parent = nullptr);
    ~SubscriptionStore() override;

    static QString fileName() { return QStringLiteral("calendars.json"); }
    QString filePath() const { return m_path; }

    const CalendarSubscriptionList &list() const { return m_list; }
    const QList<CalendarSubscription> &subscriptions() const { return m_list.subscriptions; }
    const QStringList &userAddresses() const { return m_list.userAddresses; }
    // Why the file could not be read (empty when it could, or when there is none).
    QString loadError() const { return m_loadError; }

    // Adds a file or link (see subscriptionURL); relative paths count from `workingDirectory`.
    std::optional<CalendarSubscription> add(const QString &input, const QString &title,
                                            const QString &workingDirectory, QString *error);
    bool remove(const QUuid &id, QString *error);
    bool rename(const QUuid &id, const QString &title, QString *error);
    // Keeps the valid addresses, normalised, without duplicates; false with the first invalid one.
    bool setUserAddresses(const QStringList &addresses, QString *error);

    // The subscription whose id is `text` or starts with it (at least 4 characters); nothing when
    // none or several match, with the reason in *error.
    std::optional<CalendarSubscription> findByID(const QString &text, QString *error) const;

    void watchFile();
    void reload();

Q_SIGNALS:
    void changed();

private:
    bool commit(CalendarSubscriptionList next, QString *error);
    void load();

    QString m_path;
    FileAccess &m_files;
    const Clock &m_clock;
    CalendarSubscriptionList m_list;
    QString m_loadError;
    bool m_unreadableFileOnDisk = false;
    std::unique_ptr<QFileSystemWatcher> m_watcher;
};

#pragma once

#include "calendar/CalendarProvider.h"
#include "calendar/CalendarSubscription.h"
#include "platform/calendars/SubscriptionCache.h"
#include "platform/calendars/SubscriptionFetcher.h"

#include <QHash>
#include <QLoggingCategory>
#include <QThreadPool>

#include <memory>

Q_DECLARE_LOGGING_CATEGORY(lcIcsProvider)

class Clock;
class FileAccess;
class IcsCalendar;
class QFileSystemWatcher;
class SubscriptionStore;

// The calendars the user added by hand: iCalendar files on disk and feeds on the web, one
// calendar each, read with libical.
//
// Feeds are fetched when they are due (every `refreshIntervalSecs`, sooner after a failure) and
// kept in the cache folder; files are read again when they change. Parsing, expanding and
// writing the cached copy run on one worker thread, never on the main thread. A feed that cannot
// be fetched, or that answers with something that is not a calendar, keeps its last good copy:
// its status carries the problem, its occurrences stay.
class IcsProvider : public CalendarProvider
{
    Q_OBJECT
public:
    struct Options
    {
        QString cacheDirectory;
        QString filesAccountTitle; // the account of local files ("On this computer")
        QString webAccountTitle; // the account of feeds ("Subscriptions")
        int refreshIntervalSecs = 30 * 60;
        int retryAfterFailureSecs = 10 * 60;
        SubscriptionFetcher::Limits limits;
    };

    IcsProvider(SubscriptionStore &subscriptions, QNetworkAccessManager &network, FileAccess &files,
                const Clock &clock, Options options, QObject *parent = nullptr);
    ~IcsProvider() override;

    QList<CalendarInfo> calendars() const override;
    QFuture<QList<ProviderOccurrence>> occurrences(const OccurrenceQuery &query) override;
    // Fetches the feeds that are due and reads files that changed.
    void refresh() override;
    // Fetches one feed now, due or not (or reads the file again).
    void reload(const QUuid &id);

    SubscriptionStatus status(const QUuid &id) const;
    // The calendar's own name, once it has been read.
    QString calendarName(const QUuid &id) const;
    // Whether a copy of the calendar has been read (the feed was fetched once, the file read).
    bool hasCopy(const QUuid &id) const;
    // Fetches or reads under way.
    bool isBusy() const override { return m_busy > 0; }

Q_SIGNALS:
    void statusChanged(const QUuid &id);
    void busyChanged();

private:
    struct Entry
    {
        CalendarSubscription subscription;
        std::shared_ptr<IcsCalendar> calendar;
        SubscriptionStatus status;
        QDateTime fileStamp; // a local file's modification time when last read
        bool fetching = false;
    };
    struct ParseResult
    {
        std::shared_ptr<IcsCalendar> calendar;
        SubscriptionProblem problem = SubscriptionProblem::none;
        QString detail;
    };

    // Runs on the worker.
    static ParseResult parseFile(const QString &path, const FileAccess &files);
    void follow();
    void readFile(Entry &entry);
    void readCachedCopy(Entry &entry);
    void fetch(Entry &entry);
    void takeFetch(const QUuid &id, const FetchResult &result);
    // Parses on the worker; `then` runs on this thread with the result.
    void parse(const QUuid &id, std::function<ParseResult()> work,
               std::function<void(Entry &, ParseResult)> then);
    void setStatus(Entry &entry, const SubscriptionStatus &status);
    bool isDue(const Entry &entry) const;
    void setBusy(int delta);
    CalendarInfo info(const Entry &entry) const;

    SubscriptionStore &m_subscriptions;
    FileAccess &m_files;
    const Clock &m_clock;
    Options m_options;
    SubscriptionCache m_cache;
    SubscriptionFetcher m_fetcher;
    QHash<QUuid, Entry> m_entries;
    QList<QUuid> m_order;
    std::unique_ptr<QFileSystemWatcher> m_watcher;
    // libical is used from this one thread only.
    QThreadPool m_worker;
    int m_busy = 0;
};

#include "platform/calendars/IcsProvider.h"

#include "calendar/CalendarRules.h"
#include "calendar/SubscriptionStore.h"
#include "platform/calendars/IcsCalendar.h"
#include "storage/FileAccess.h"
#include "time/Clock.h"

#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QFutureWatcher>
#include <QtConcurrent/QtConcurrentRun>

Q_LOGGING_CATEGORY(lcIcsProvider, "IcsProvider")

using namespace Qt::StringLiterals;

namespace {

const QString filesAccountID = u"ics-files"_s;
const QString webAccountID = u"ics-web"_s;

// Colours for calendars that name none, picked by the calendar's id so each keeps its own.
CalendarTint defaultTint(const QUuid &id)
{
    static const CalendarTint palette[] = {
        {0.20, 0.52, 0.89}, {0.18, 0.65, 0.40}, {0.90, 0.38, 0.32}, {0.58, 0.38, 0.85},
        {0.95, 0.60, 0.15}, {0.12, 0.62, 0.66}, {0.85, 0.33, 0.58}, {0.55, 0.45, 0.35},
    };
    return palette[qHash(id) % std::size(palette)];
}

} // namespace

IcsProvider::IcsProvider(SubscriptionStore &subscriptions, QNetworkAccessManager &network,
                         FileAccess &files, const Clock &clock, Options options, QObject *parent)
    : CalendarProvider(parent)
    , m_subscriptions(subscriptions)
    , m_files(files)
    , m_clock(clock)
    , m_options(std::move(options))
    , m_cache(m_options.cacheDirectory, files)
    , m_fetcher(network, m_options.limits)
    , m_watcher(std::make_unique<QFileSystemWatcher>())
{
    m_worker.setMaxThreadCount(1);
    connect(&subscriptions, &SubscriptionStore::changed, this, &IcsProvider::follow);
    connect(m_watcher.get(), &QFileSystemWatcher::fileChanged, this, [this](const QString &path) {
        // Editors that save by renaming a new file over the old one end the watch: watch again.
        if (QFileInfo::exists(path) && !m_watcher->files().contains(path))
            m_watcher->addPath(path);
        for (Entry &entry : m_entries) {
            if (entry.subscription.isLocalFile() && entry.subscription.url.toLocalFile() == path)
                readFile(entry);
        }
    });
    follow();
}

IcsProvider::~IcsProvider()
{
    m_worker.clear();
    m_worker.waitForDone();
}

void IcsProvider::follow()
{
    const QList<CalendarSubscription> &subscriptions = m_subscriptions.subscriptions();
    bool changedAny = false;
    QList<QUuid> order;
    for (const CalendarSubscription &subscription : subscriptions) {
        order.append(subscription.id);
        auto existing = m_entries.find(subscription.id);
        if (existing != m_entries.end()) {
            changedAny = changedAny || existing->subscription.title != subscription.title;
            existing->subscription = subscription;
            continue;
        }
        Entry &entry = *m_entries.insert(subscription.id, Entry {subscription, {}, {}, {}, false});
        changedAny = true;
        if (subscription.isLocalFile()) {
            m_watcher->addPath(subscription.url.toLocalFile());
            readFile(entry);
        } else {
            entry.status = m_cache.status(subscription.id);
            readCachedCopy(entry);
            if (isDue(entry))
                fetch(entry);
        }
    }
    for (auto it = m_entries.begin(); it != m_entries.end();) {
        if (order.contains(it.key())) {
            ++it;
            continue;
        }
        if (it->subscription.isLocalFile())
            m_watcher->removePath(it->subscription.url.toLocalFile());
        else
            m_cache.remove(it.key());
        it = m_entries.erase(it);
        changedAny = true;
    }
    m_order = order;
    if (changedAny)
        Q_EMIT changed();
}

void IcsProvider::setBusy(int delta)
{
    const bool was = m_busy > 0;
    m_busy += delta;
    if (was != (m_busy > 0))
        Q_EMIT busyChanged();
}

void IcsProvider::parse(const QUuid &id, std::function<ParseResult()> work,
                        std::function<void(Entry &, ParseResult)> then)
{
    auto *watcher = new QFutureWatcher<ParseResult>(this);
    connect(watcher, &QFutureWatcherBase::finished, this, [this, watcher, id, then] {
        watcher->deleteLater();
        setBusy(-1);
        const auto entry = m_entries.find(id);
        if (entry == m_entries.end() || watcher->future().resultCount() == 0)
            return;
        then(*entry, watcher->result());
    });
    setBusy(+1);
    watcher->setFuture(QtConcurrent::run(&m_worker, std::move(work)));
}

void IcsProvider::setStatus(Entry &entry, const SubscriptionStatus &status)
{
    if (entry.status == status)
        return;
    entry.status = status;
    if (!entry.subscription.isLocalFile()) {
        QString error;
        if (!m_cache.writeStatus(entry.subscription.id, status, &error))
            qCWarning(lcIcsProvider).noquote()
                << u"Failed to save a calendar's status: %1"_s.arg(error);
    }
    Q_EMIT statusChanged(entry.subscription.id);
}

IcsProvider::ParseResult IcsProvider::parseFile(const QString &path, const FileAccess &files)
{
    ParseResult result;
    QString error;
    const std::optional<QByteArray> bytes = files.read(path, &error);
    if (!bytes)
        return ParseResult {{}, SubscriptionProblem::fileUnreadable, error};
    result.calendar = IcsCalendar::parse(*bytes, &error);
    if (!result.calendar)
        result.problem = SubscriptionProblem::notCalendar;
    return result;
}

void IcsProvider::readFile(Entry &entry)
{
    const QString path = entry.subscription.url.toLocalFile();
    entry.fileStamp = QFileInfo(path).lastModified();
    FileAccess &files = m_files;
    parse(
        entry.subscription.id, [path, &files] { return parseFile(path, files); },
        [this](Entry &target, ParseResult result) {
            SubscriptionStatus status = target.status;
            status.lastAttempt = m_clock.now();
            status.problem = result.problem;
            status.detail = result.detail;
            if (result.calendar) {
                status.lastSuccess = status.lastAttempt;
                target.calendar = std::move(result.calendar);
                Q_EMIT changed();
            } else {
                qCWarning(lcIcsProvider).noquote() << u"Keeping the last copy of %1: %2"_s.arg(
                    target.subscription.url.toLocalFile(), problemRawValue(result.problem));
            }
            setStatus(target, status);
        });
}

void IcsProvider::readCachedCopy(Entry &entry)
{
    const QString path = m_cache.copyPath(entry.subscription.id);
    if (!QFileInfo::exists(path))
        return;
    FileAccess &files = m_files;
    parse(
        entry.subscription.id, [path, &files] { return parseFile(path, files); },
        [this](Entry &target, ParseResult result) {
            // A fetch that finished first has the newer copy.
            if (!result.calendar || target.calendar)
                return;
            target.calendar = std::move(result.calendar);
            Q_EMIT changed();
        });
}

bool IcsProvider::isDue(const Entry &entry) const
{
    if (entry.subscription.isLocalFile() || entry.fetching)
        return false;
    const QDateTime last = std::max(entry.status.lastSuccess, entry.status.lastAttempt);
    if (!last.isValid())
        return true;
    const int wait = entry.status.problem == SubscriptionProblem::none
        ? m_options.refreshIntervalSecs
        : m_options.retryAfterFailureSecs;
    return last.secsTo(m_clock.now()) >= wait;
}

void IcsProvider::fetch(Entry &entry)
{
    entry.fetching = true;
    setBusy(+1);
    const QUuid id = entry.subscription.id;
    // Validators only for a copy we still have: a lost cache needs the whole feed.
    const bool haveCopy = QFileInfo::exists(m_cache.copyPath(id));
    qCDebug(lcIcsProvider).noquote()
        << u"Fetching %1"_s.arg(entry.subscription.url.toDisplayString());
    m_fetcher.fetch(entry.subscription.url, haveCopy ? entry.status.etag : QString(),
                    haveCopy ? entry.status.lastModified : QString(),
                    [this, id](const FetchResult &result) {
                        setBusy(-1);
                        takeFetch(id, result);
                    });
}

void IcsProvider::takeFetch(const QUuid &id, const FetchResult &result)
{
    const auto found = m_entries.find(id);
    if (found == m_entries.end())
        return;
    Entry &entry = *found;
    entry.fetching = false;
    const QDateTime now = m_clock.now();
    SubscriptionStatus status = entry.status;
    status.lastAttempt = now;
    switch (result.kind) {
    case FetchResult::Kind::notModified:
        status.lastSuccess = now;
        status.problem = SubscriptionProblem::none;
        status.detail.clear();
        setStatus(entry, status);
        return;
    case FetchResult::Kind::failed:
        status.problem = result.problem;
        status.detail = result.detail;
        qCWarning(lcIcsProvider).noquote() << u"Keeping the last copy of %1: %2 %3"_s.arg(
            entry.subscription.url.toDisplayString(), problemRawValue(result.problem),
            result.detail);
        setStatus(entry, status);
        return;
    case FetchResult::Kind::fresh:
        break;
    }
    SubscriptionCache &cache = m_cache;
    const QByteArray body = result.body;
    parse(
        id,
        [body, id, &cache] {
            ParseResult parsed;
            QString error;
            parsed.calendar = IcsCalendar::parse(body, &error);
            if (!parsed.calendar) {
                parsed.problem = SubscriptionProblem::notCalendar;
                return parsed;
            }
            if (!cache.writeCopy(id, body, &error))
                qCWarning(lcIcsProvider).noquote()
                    << u"Failed to keep a calendar's copy: %1"_s.arg(error);
            return parsed;
        },
        [this, status, result](Entry &target, ParseResult parsed) mutable {
            status.problem = parsed.problem;
            status.detail.clear();
            if (parsed.calendar) {
                status.lastSuccess = status.lastAttempt;
                status.etag = result.etag;
                status.lastModified = result.lastModified;
                target.calendar = std::move(parsed.calendar);
                Q_EMIT changed();
            }
            setStatus(target, status);
        });
}

void IcsProvider::refresh()
{
    for (Entry &entry : m_entries) {
        if (entry.subscription.isLocalFile()) {
            if (QFileInfo(entry.subscription.url.toLocalFile()).lastModified() != entry.fileStamp)
                readFile(entry);
        } else if (isDue(entry)) {
            fetch(entry);
        }
    }
}

void IcsProvider::reload(const QUuid &id)
{
    const auto found = m_entries.find(id);
    if (found == m_entries.end())
        return;
    if (found->subscription.isLocalFile())
        readFile(*found);
    else if (!found->fetching)
        fetch(*found);
}

SubscriptionStatus IcsProvider::status(const QUuid &id) const
{
    return m_entries.value(id).status;
}

QString IcsProvider::calendarName(const QUuid &id) const
{
    const auto found = m_entries.constFind(id);
    return found != m_entries.cend() && found->calendar ? found->calendar->name() : QString();
}

bool IcsProvider::hasCopy(const QUuid &id) const
{
    const auto found = m_entries.constFind(id);
    return found != m_entries.cend() && found->calendar;
}

CalendarInfo IcsProvider::info(const Entry &entry) const
{
    const CalendarSubscription &subscription = entry.subscription;
    const bool web = !subscription.isLocalFile();
    CalendarInfo info;
    info.id = subscription.calendarID();
    info.title = subscription.title;
    if (info.title.isEmpty() && entry.calendar)
        info.title = entry.calendar->name();
    if (info.title.isEmpty())
        info.title = web ? subscription.url.host()
                         : QFileInfo(subscription.url.toLocalFile()).completeBaseName();
    info.accountID = web ? webAccountID : filesAccountID;
    info.accountTitle = web ? m_options.webAccountTitle : m_options.filesAccountTitle;
    CalendarAccountFacts facts;
    facts.isSubscribed = web;
    facts.sourceType = web ? CalendarSourceType::subscribed : CalendarSourceType::local;
    info.accountKind = accountKind(facts);
    info.tint = entry.calendar && entry.calendar->color() ? entry.calendar->color()
                                                          : defaultTint(subscription.id);
    info.isSubscribed = web;
    return info;
}

QList<CalendarInfo> IcsProvider::calendars() const
{
    QList<CalendarInfo> list;
    for (const QUuid &id : m_order) {
        const auto found = m_entries.constFind(id);
        if (found != m_entries.cend())
            list.append(info(*found));
    }
    return list;
}

QFuture<QList<ProviderOccurrence>> IcsProvider::occurrences(const OccurrenceQuery &query)
{
    struct Job
    {
        IcsReadContext context;
        std::shared_ptr<IcsCalendar> calendar;
    };
    QList<Job> jobs;
    QStringList addresses;
    for (const QString &address : query.userAddresses) {
        const QString clean = normalizedAddress(address);
        if (!clean.isEmpty())
            addresses.append(clean);
    }
    for (const QUuid &id : std::as_const(m_order)) {
        const Entry &entry = m_entries[id];
        if (!entry.calendar || !query.calendarIDs.contains(entry.subscription.calendarID()))
            continue;
        const CalendarInfo calendar = info(entry);
        jobs.append({{calendar.id, calendar.title, calendar.accountTitle, calendar.tint, addresses,
                      QTimeZone::systemTimeZone()},
                     entry.calendar});
    }
    return QtConcurrent::run(&m_worker, [jobs, from = query.from, to = query.to] {
        QList<ProviderOccurrence> all;
        for (const Job &job : jobs)
            all.append(job.calendar->occurrences(job.context, from, to));
        return all;
    });
}

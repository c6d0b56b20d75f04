#include "calendar/CalendarStore.h"

#include "calendar/CalendarProvider.h"
#include "calendar/CalendarRules.h"
#include "calendar/OccurrenceFilter.h"
#include "calendar/SubscriptionStore.h"
#include "storage/EventStore.h"
#include "storage/SettingsStore.h"
#include "time/Clock.h"

#include <QFutureWatcher>

Q_LOGGING_CATEGORY(lcCalendarStore, "CalendarStore")

namespace {

constexpr int defaultRefreshInterval = 5 * 60 * 1000;

} // namespace

CalendarStore::CalendarStore(QList<CalendarProvider *> providers, const SettingsStore &settings,
                             const EventStore &events, const SubscriptionStore *subscriptions,
                             const Clock &clock, QObject *parent)
    : CalendarSource(parent)
    , m_settings(settings)
    , m_events(events)
    , m_subscriptions(subscriptions)
    , m_clock(clock)
    , m_appliedSettings(settings.settings().calendars)
{
    m_coalesce.setSingleShot(true);
    m_coalesce.setInterval(250);
    connect(&m_coalesce, &QTimer::timeout, this, &CalendarStore::startRead);
    m_interval.setInterval(defaultRefreshInterval);
    connect(&m_interval, &QTimer::timeout, this, &CalendarStore::refresh);
    m_interval.start();

    for (CalendarProvider *provider : providers) {
        m_providers.append(provider);
        connect(provider, &CalendarProvider::changed, this, [this] {
            Q_EMIT calendarsChanged();
            reread();
        });
    }
    connect(&settings, &SettingsStore::settingsChanged, this, [this] {
        const CalendarSettings next = m_settings.settings().calendars;
        if (next == m_appliedSettings)
            return;
        const bool windowChanged = next.horizonDays != m_appliedSettings.horizonDays;
        m_appliedSettings = next;
        // A longer horizon needs a new read; everything else only filters again.
        if (windowChanged)
            reread();
        else
            applyFilter();
    });
    connect(&events, &EventStore::keptCalendarSeriesChanged, this, &CalendarStore::applyFilter);
    if (subscriptions) {
        // The user's addresses decide which attendee is the user.
        connect(subscriptions, &SubscriptionStore::changed, this, &CalendarStore::reread);
    }
    reread();
}

CalendarStore::~CalendarStore() = default;

void CalendarStore::setRefreshInterval(int milliseconds)
{
    if (milliseconds <= 0) {
        m_interval.stop();
        return;
    }
    m_interval.start(milliseconds);
}

QList<CalendarInfo> CalendarStore::calendars() const
{
    QList<CalendarInfo> all;
    for (const auto &provider : m_providers) {
        if (provider)
            all.append(provider->calendars());
    }
    return all;
}

QList<CalendarAccountGroup> CalendarStore::accountGroups() const
{
    QList<CalendarAccountGroup> groups;
    for (const auto &provider : m_providers) {
        if (provider)
            groups.append(provider->accountGroups());
    }
    return groups;
}

bool CalendarStore::isSettled() const
{
    if (m_reading || hasPendingRead())
        return false;
    return std::none_of(m_providers.cbegin(), m_providers.cend(),
                        [](const auto &provider) { return provider && provider->isBusy(); });
}

void CalendarStore::refresh()
{
    for (const auto &provider : std::as_const(m_providers)) {
        if (provider)
            provider->refresh();
    }
    reread();
}

void CalendarStore::reread()
{
    if (m_reading) {
        m_readAgain = true;
        return;
    }
    if (!m_coalesce.isActive())
        m_coalesce.start();
}

void CalendarStore::setReading(bool reading)
{
    if (m_reading == reading)
        return;
    m_reading = reading;
    Q_EMIT readingChanged();
}

void CalendarStore::startRead()
{
    if (m_reading) {
        m_readAgain = true;
        return;
    }
    const OccurrenceFilter::Window window =
        OccurrenceFilter::readWindow(m_appliedSettings, m_clock.now());
    const QStringList addresses =
        m_subscriptions ? m_subscriptions->userAddresses() : QStringList();
    QList<CalendarProvider *> live;
    for (const auto &provider : std::as_const(m_providers)) {
        if (provider)
            live.append(provider);
    }
    if (live.isEmpty()) {
        ++m_completedReads;
        applyFilter();
        Q_EMIT readFinished();
        return;
    }
    setReading(true);
    m_pendingProviders = int(live.size());
    for (CalendarProvider *provider : live) {
        // Every calendar is read, so a kept series of a switched-off calendar stays.
        QSet<QString> ids;
        for (const CalendarInfo &calendar : provider->calendars())
            ids.insert(calendar.id);
        auto *watcher = new QFutureWatcher<QList<ProviderOccurrence>>(this);
        connect(watcher, &QFutureWatcherBase::finished, this, [this, watcher, provider] {
            watcher->deleteLater();
            const QFuture<QList<ProviderOccurrence>> future = watcher->future();
            if (future.isCanceled() || future.resultCount() == 0)
                finishProviderRead(provider, std::nullopt);
            else
                finishProviderRead(provider, future.result());
        });
        watcher->setFuture(provider->occurrences({ids, window.from, window.to, addresses}));
    }
}

void CalendarStore::finishProviderRead(CalendarProvider *provider,
                                       std::optional<QList<ProviderOccurrence>> read)
{
    if (read)
        m_read.insert(provider, std::move(*read));
    else
        qCWarning(lcCalendarStore) << "A calendar provider could not read; keeping what it had";
    if (--m_pendingProviders > 0)
        return;
    // Providers that went away take their occurrences with them.
    for (auto it = m_read.begin(); it != m_read.end();) {
        const bool alive = std::any_of(m_providers.cbegin(), m_providers.cend(),
                                       [&](const auto &p) { return p == it.key(); });
        it = alive ? std::next(it) : m_read.erase(it);
    }
    ++m_completedReads;
    setReading(false);
    applyFilter();
    Q_EMIT readFinished();
    if (std::exchange(m_readAgain, false))
        reread();
}

void CalendarStore::applyFilter()
{
    QList<ProviderOccurrence> all;
    for (const QList<ProviderOccurrence> &read : std::as_const(m_read))
        all.append(read);
    QList<CalendarOccurrence> next = OccurrenceFilter::apply(
        all, m_appliedSettings, m_events.keptCalendarSeries(), m_clock.now());
    if (next == m_occurrences)
        return;
    m_occurrences = std::move(next);
    qCDebug(lcCalendarStore) << "Showing" << m_occurrences.size() << "calendar occurrences";
    Q_EMIT occurrencesChanged();
}

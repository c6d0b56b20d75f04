#pragma once

#include "calendar/CalendarSource.h"
#include "records/CalendarInfo.h"
#include "records/Settings.h"

#include <QHash>
#include <QLoggingCategory>
#include <QObject>
#include <QPointer>
#include <QTimer>

Q_DECLARE_LOGGING_CATEGORY(lcCalendarStore)

class CalendarProvider;
class Clock;
class EventStore;
class SettingsStore;
class SubscriptionStore;

// The calendar occurrences the countdown list shows, read from every provider under the user's
// calendar settings (see OccurrenceFilter for what is shown).
//
// Reading happens off the main thread (providers answer with futures); the store keeps each
// provider's last good answer, so a provider that fails keeps its occurrences on screen rather
// than emptying the list. Reads are coalesced: any number of requests in a burst (a provider's
// change signals, settings edits) give one read, and a request during a read gives one more read
// after it. `refresh()` (on wake, when the popup opens, on the refresh interval) also asks the
// providers to bring their copies up to date. Nothing here runs on the engine's tick.
class CalendarStore : public CalendarSource
{
    Q_OBJECT
    Q_PROPERTY(bool reading READ isReading NOTIFY readingChanged)

public:
    CalendarStore(QList<CalendarProvider *> providers, const SettingsStore &settings,
                  const EventStore &events, const SubscriptionStore *subscriptions,
                  const Clock &clock, QObject *parent = nullptr);
    ~CalendarStore() override;

    QList<CalendarOccurrence> occurrences() const override { return m_occurrences; }
    // Every provider's calendars, and the same grouped by account for the settings list.
    QList<CalendarInfo> calendars() const;
    QList<CalendarAccountGroup> accountGroups() const;
    bool isReading() const { return m_reading; }
    // A read is asked for and has not started yet.
    bool hasPendingRead() const { return m_coalesce.isActive() || m_readAgain; }
    // No provider is busy and no read is under way or asked for.
    bool isSettled() const;
    // Reads done since the store was built (for callers that wait for the first one).
    int completedReads() const { return m_completedReads; }

    // Default 250 ms; how long a burst of requests is gathered before one read.
    void setCoalescingDelay(int milliseconds) { m_coalesce.setInterval(milliseconds); }
    // Default 5 minutes; 0 turns the periodic refresh off.
    void setRefreshInterval(int milliseconds);

public Q_SLOTS:
    // Asks the providers to bring their copies up to date, then reads.
    void refresh();
    // Reads again (coalesced).
    void reread();

Q_SIGNALS:
    void calendarsChanged();
    void readingChanged();
    // One read finished (whether or not the occurrences changed).
    void readFinished();

private:
    void startRead();
    void finishProviderRead(CalendarProvider *provider, std::optional<QList<ProviderOccurrence>>);
    void applyFilter();
    void setReading(bool reading);

    QList<QPointer<CalendarProvider>> m_providers;
    const SettingsStore &m_settings;
    const EventStore &m_events;
    QPointer<const SubscriptionStore> m_subscriptions;
    const Clock &m_clock;
    CalendarSettings m_appliedSettings;
    QHash<CalendarProvider *, QList<ProviderOccurrence>> m_read;
    QList<CalendarOccurrence> m_occurrences;
    QTimer m_coalesce;
    QTimer m_interval;
    int m_pendingProviders = 0;
    int m_completedReads = 0;
    bool m_reading = false;
    bool m_readAgain = false;
};

#pragma once

#include "calendar/CalendarProviderPlugin.h"

#include <QHash>
#include <QLoggingCategory>
#include <QThreadPool>

Q_DECLARE_LOGGING_CATEGORY(lcEdsProvider)

// GLib types, kept out of the header so Qt code never sees GLib's headers.
typedef struct _ESourceRegistry ESourceRegistry;
typedef struct _ESource ESource;
typedef struct _ECalClient ECalClient;
typedef struct _ECalClientView ECalClientView;
typedef struct _GCancellable GCancellable;

// The calendars of Evolution Data Server (what GNOME Online Accounts, Evolution and GNOME
// Calendar set up: local calendars, Google, Microsoft 365 and Exchange, CalDAV, webcal, birthdays).
//
// Everything talks to EDS asynchronously on the main thread's GLib loop (Qt runs on it): the
// source registry, one client and one live view per enabled calendar; the views' change signals
// and the registry's source changes make `changed`. Occurrences are expanded by EDS
// (generate_instances) on a worker thread.
class EdsProvider final : public CalendarBackend
{
public:
    EdsProvider();
    ~EdsProvider() override;
    Q_DISABLE_COPY_MOVE(EdsProvider)

    QList<CalendarInfo> calendars() const override { return m_calendars; }
    QFuture<QList<ProviderOccurrence>> occurrences(const OccurrenceQuery &query) override;
    bool isBusy() const override { return m_pending > 0; }
    void setChangeHandler(std::function<void()> changed) override
    {
        m_changed = std::move(changed);
    }

private:
    struct Connection
    {
        CalendarInfo info;
        ECalClient *client = nullptr;
        ECalClientView *view = nullptr;
    };

    friend struct EdsCallbacks; // the GLib callbacks, in the .cpp

    void followSources();
    CalendarInfo info(ESource *source) const;
    void release(Connection &connection);
    void done();
    void announceChange()
    {
        if (m_changed)
            m_changed();
    }

    ESourceRegistry *m_registry = nullptr;
    GCancellable *m_cancellable = nullptr;
    QHash<QString, Connection> m_connections; // by source uid
    QList<CalendarInfo> m_calendars;
    QThreadPool m_worker;
    int m_pending = 0;
    std::function<void()> m_changed;
};

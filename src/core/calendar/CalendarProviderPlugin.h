#pragma once

#include "calendar/CalendarProvider.h"

#include <QtPlugin>

#include <functional>
#include <memory>

// A calendar backend built as a loadable plugin (Evolution Data Server), so the application runs
// where the backend's libraries are missing. Plain C++ rather than a QObject: a plugin carries its
// own copy of the code it links, so signals are not shared across the boundary; the application
// wraps the backend in a PluginCalendarProvider.
class CalendarBackend
{
public:
    virtual ~CalendarBackend() = default;
    virtual QList<CalendarInfo> calendars() const = 0;
    virtual QFuture<QList<ProviderOccurrence>> occurrences(const OccurrenceQuery &query) = 0;
    virtual bool isBusy() const = 0;
    // Called on the main thread whenever the backend's calendars or events change.
    virtual void setChangeHandler(std::function<void()> changed) = 0;
};

class CalendarProviderPlugin
{
public:
    virtual ~CalendarProviderPlugin() = default;
    // A short identifier of the backend ("eds").
    virtual QString backendID() const = 0;
    virtual std::unique_ptr<CalendarBackend> createBackend() = 0;
};

#define CalendarProviderPlugin_iid "org.tarrow.CalendarProviderPlugin/1"
Q_DECLARE_INTERFACE(CalendarProviderPlugin, CalendarProviderPlugin_iid)

// A plugin's backend as a provider of the calendar store.
class PluginCalendarProvider final : public CalendarProvider
{
    Q_OBJECT
public:
    explicit PluginCalendarProvider(std::unique_ptr<CalendarBackend> backend,
                                    QObject *parent = nullptr)
        : CalendarProvider(parent)
        , m_backend(std::move(backend))
    {
        m_backend->setChangeHandler([this] { Q_EMIT changed(); });
    }
    ~PluginCalendarProvider() override { m_backend->setChangeHandler({}); }

    QList<CalendarInfo> calendars() const override { return m_backend->calendars(); }
    QFuture<QList<ProviderOccurrence>> occurrences(const OccurrenceQuery &query) override
    {
        return m_backend->occurrences(query);
    }
    bool isBusy() const override { return m_backend->isBusy(); }

private:
    std::unique_ptr<CalendarBackend> m_backend;
};

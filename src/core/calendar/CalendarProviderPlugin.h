#pragma once

#include <QtPlugin>

#include <memory>

class CalendarProvider;

// A calendar backend built as a loadable plugin (Evolution Data Server), so the application runs
// where the backend's libraries are missing.
class CalendarProviderPlugin
{
public:
    virtual ~CalendarProviderPlugin() = default;
    // A short identifier of the backend ("eds").
    virtual QString backendID() const = 0;
    // A new provider, or null when the backend is not reachable here (no service on the bus).
    virtual std::unique_ptr<CalendarProvider> createProvider() = 0;
};

#define CalendarProviderPlugin_iid "org.tarrow.CalendarProviderPlugin/1"
Q_DECLARE_INTERFACE(CalendarProviderPlugin, CalendarProviderPlugin_iid)

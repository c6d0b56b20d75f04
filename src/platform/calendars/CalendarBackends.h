#pragma once

#include "calendar/SubscriptionStore.h"
#include "platform/calendars/IcsProvider.h"

#include <QNetworkAccessManager>

#include <memory>
#include <vector>

class CalendarProviderPlugin;
class LanguageTable;
class PathProvider;
class QPluginLoader;

// The calendar backends of one data folder, as the app and the command line use them: the added
// calendars ("calendars.json") read by the iCalendar provider, and the providers of the backend
// plugins found (Evolution Data Server), unless TARROW_CALENDAR_BACKENDS names the backends to
// use ("ics" alone, "ics,eds").
class CalendarBackends
{
public:
    CalendarBackends(const PathProvider &paths, FileAccess &files, const Clock &clock,
                     const LanguageTable &texts, IcsProvider::Options options = {});
    ~CalendarBackends();
    Q_DISABLE_COPY_MOVE(CalendarBackends)

    SubscriptionStore &subscriptions() { return *m_subscriptions; }
    IcsProvider &ics() { return *m_ics; }
    QList<CalendarProvider *> providers() const;
    // The plugin backends that answered ("eds").
    QStringList pluginBackends() const;
    // The folders searched for backend plugins, in order.
    static QStringList pluginDirectories();

private:
    void loadPlugins();

    QNetworkAccessManager m_network;
    std::unique_ptr<SubscriptionStore> m_subscriptions;
    std::unique_ptr<IcsProvider> m_ics;
    std::vector<std::unique_ptr<QPluginLoader>> m_loaders;
    std::vector<std::pair<QString, std::unique_ptr<CalendarProvider>>> m_plugins;
};

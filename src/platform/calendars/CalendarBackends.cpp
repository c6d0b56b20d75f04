#include "platform/calendars/CalendarBackends.h"

#include "calendar/CalendarProviderPlugin.h"
#include "l10n/LanguageTable.h"
#include "storage/PathProvider.h"

#include <QCoreApplication>
#include <QDir>
#include <QPluginLoader>

using namespace Qt::StringLiterals;

namespace {

QStringList wantedBackends()
{
    const QString wanted = qEnvironmentVariable("TARROW_CALENDAR_BACKENDS");
    if (wanted.isEmpty())
        return {};
    return wanted.toLower().split(u',', Qt::SkipEmptyParts);
}

} // namespace

CalendarBackends::CalendarBackends(const PathProvider &paths, FileAccess &files, const Clock &clock,
                                   const LanguageTable &texts, IcsProvider::Options options)
    : m_subscriptions(std::make_unique<SubscriptionStore>(paths, files, clock))
{
    if (options.cacheDirectory.isEmpty())
        options.cacheDirectory = SubscriptionCache::directoryFor(paths.supportDirectory());
    if (options.filesAccountTitle.isEmpty())
        options.filesAccountTitle = texts.text("settings.calendars.account.files");
    if (options.webAccountTitle.isEmpty())
        options.webAccountTitle = texts.text("settings.calendars.account.subscriptions");
    m_ics = std::make_unique<IcsProvider>(*m_subscriptions, m_network, files, clock,
                                          std::move(options));
    loadPlugins();
}

CalendarBackends::~CalendarBackends()
{
    m_plugins.clear(); // providers go before the libraries that hold their code
}

QStringList CalendarBackends::pluginDirectories()
{
    QStringList directories;
    const QString override = qEnvironmentVariable("TARROW_PLUGIN_DIR");
    if (!override.isEmpty())
        directories.append(override);
    const QString app = QCoreApplication::applicationDirPath();
    if (!app.isEmpty())
        directories.append(QDir(app).filePath(QStringLiteral(TARROW_PLUGIN_DIR_FROM_BINARY)));
    // The binaries of the build tree (the app, the tests) find the plugins built beside them; an
    // installed copy looks only where it was installed.
    if (app.startsWith(QStringLiteral(TARROW_BUILD_TREE) + u'/'))
        directories.append(QStringLiteral(TARROW_BUILD_PLUGIN_DIR));
    return directories;
}

void CalendarBackends::loadPlugins()
{
    const QStringList wanted = wantedBackends();
    if (!wanted.isEmpty() && wanted == QStringList {u"ics"_s})
        return;
    QStringList loaded;
    for (const QString &directory : pluginDirectories()) {
        const QDir dir(directory);
        for (const QString &file : dir.entryList({u"tarrow-calendar-*.so"_s}, QDir::Files)) {
            auto loader = std::make_unique<QPluginLoader>(dir.filePath(file));
            auto *plugin = qobject_cast<CalendarProviderPlugin *>(loader->instance());
            if (!plugin) {
                qCInfo(lcIcsProvider).noquote()
                    << u"Skipped the calendar plugin %1: %2"_s.arg(file, loader->errorString());
                continue;
            }
            const QString id = plugin->backendID();
            if (loaded.contains(id) || (!wanted.isEmpty() && !wanted.contains(id)))
                continue;
            loaded.append(id);
            if (std::unique_ptr<CalendarBackend> backend = plugin->createBackend())
                m_plugins.emplace_back(
                    id, std::make_unique<PluginCalendarProvider>(std::move(backend)));
            m_loaders.push_back(std::move(loader));
        }
    }
}

QList<CalendarProvider *> CalendarBackends::providers() const
{
    QList<CalendarProvider *> list {m_ics.get()};
    for (const auto &[id, provider] : m_plugins)
        list.append(provider.get());
    return list;
}

QStringList CalendarBackends::pluginBackends() const
{
    QStringList ids;
    for (const auto &[id, provider] : m_plugins)
        ids.append(id);
    return ids;
}

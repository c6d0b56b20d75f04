#include "cli/StatusFollower.h"

#include "automation/StatusFeed.h"
#include "cli/FolderOverlayFileAccess.h"
#include "countdown/CountdownEngine.h"
#include "countdown/CountdownRegistry.h"
#include "l10n/LocaleManager.h"
#include "platform/tray/StatusItemController.h"
#include "storage/EventStore.h"
#include "storage/PathProvider.h"
#include "storage/SettingsStore.h"
#include "storage/StartupMigrations.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace {

// Files in the folder are replaced by renames, often several at once: read them once things
// have settled.
constexpr int reloadDelayMs = 200;

} // namespace

// The panel's engine over the data folder as it is on disk, with the status feed on top.
class StatusFollower::FolderView
{
public:
    FolderView(const QString &folder, const Clock &clock, TickScheduler &scheduler)
        : m_paths(DefaultPathProvider::inFolder(folder))
        , m_events(m_paths, m_files)
        , m_settings(m_paths, m_files)
        , m_registry(m_events)
        , m_engine(m_events, m_registry, clock, scheduler)
        , m_locale(m_settings)
        , m_feed(m_engine, m_settings, m_locale, clock, [this] {
            return StatusItemController::inputsFrom(m_engine, m_settings.settings());
        })
    {
        runStartupMigrations(m_events, m_settings);
        m_engine.runFullPass();
        m_feed.refresh();
    }

    StatusFeed &feed() { return m_feed; }

private:
    DefaultPathProvider m_paths;
    FolderOverlayFileAccess m_files;
    EventStore m_events;
    SettingsStore m_settings;
    CountdownRegistry m_registry;
    CountdownEngine m_engine;
    LocaleManager m_locale;
    StatusFeed m_feed;
};

StatusFollower::StatusFollower(QString dataDirectory, const Clock &clock, TickScheduler &scheduler,
                               AutomationClient client, bool json, QTextStream &out,
                               QObject *parent)
    : QObject(parent)
    , m_dataDirectory(std::move(dataDirectory))
    , m_clock(clock)
    , m_scheduler(scheduler)
    , m_client(std::move(client))
    , m_json(json)
    , m_out(out)
{
    m_reload.setSingleShot(true);
    m_reload.setInterval(reloadDelayMs);
    connect(&m_reload, &QTimer::timeout, this, &StatusFollower::reloadFolder);
    connect(&m_folderWatcher, &QFileSystemWatcher::directoryChanged, &m_reload,
            qOverload<>(&QTimer::start));
    m_appWatcher.setConnection(m_client.bus());
    m_appWatcher.addWatchedService(AutomationBus::serviceName());
    connect(&m_appWatcher, &QDBusServiceWatcher::serviceRegistered, this, [this] {
        if (!m_followsApp && m_client.servesDataDirectory(m_dataDirectory))
            followApp();
    });
    connect(&m_appWatcher, &QDBusServiceWatcher::serviceUnregistered, this, [this] {
        if (m_followsApp)
            followFolder();
    });
}

StatusFollower::~StatusFollower() = default;

void StatusFollower::start()
{
    if (m_client.servesDataDirectory(m_dataDirectory))
        followApp();
    else
        followFolder();
}

void StatusFollower::followApp()
{
    m_followsApp = true;
    m_reload.stop();
    if (!m_folderWatcher.directories().isEmpty())
        m_folderWatcher.removePaths(m_folderWatcher.directories());
    m_folder.reset();
    m_client.bus().connect(AutomationBus::serviceName(), AutomationBus::objectPath(),
                           AutomationBus::interfaceName(), QStringLiteral("StatusChanged"), this,
                           SLOT(takeAppStatus(QString)));
    if (const std::optional<QString> line = m_client.status())
        print(*line);
    else
        followFolder();
}

void StatusFollower::followFolder()
{
    if (m_followsApp) {
        m_client.bus().disconnect(AutomationBus::serviceName(), AutomationBus::objectPath(),
                                  AutomationBus::interfaceName(), QStringLiteral("StatusChanged"),
                                  this, SLOT(takeAppStatus(QString)));
    }
    m_followsApp = false;
    reloadFolder();
    m_folderWatcher.addPath(m_dataDirectory);
}

void StatusFollower::reloadFolder()
{
    m_folder.reset(); // the old engine gives up the tick before the new one takes it
    m_folder = std::make_unique<FolderView>(m_dataDirectory, m_clock, m_scheduler);
    connect(&m_folder->feed(), &StatusFeed::snapshotChanged, this,
            [this] { print(QString::fromUtf8(m_folder->feed().snapshot().barLine())); });
    print(QString::fromUtf8(m_folder->feed().snapshot().barLine()));
}

void StatusFollower::takeAppStatus(const QString &line)
{
    if (m_followsApp)
        print(line);
}

void StatusFollower::print(const QString &line)
{
    const QString shown = m_json
        ? line.trimmed()
        : QJsonDocument::fromJson(line.toUtf8()).object().value(u"text").toString();
    if (shown == m_lastPrinted)
        return;
    m_lastPrinted = shown;
    m_out << shown << '\n';
    m_out.flush();
}

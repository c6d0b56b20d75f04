#include "app/AppDelegate.h"

#include "app/AppURLRouter.h"
#include "countdown/CountdownEngine.h"
#include "countdown/CountdownRegistry.h"
#include "countdown/TimerTickScheduler.h"
#include "l10n/LocaleManager.h"
#include "parse/NaturalDateParser.h"
#include "platform/session/LoginLaunch.h"
#include "platform/session/XdgAutostart.h"
#include "platform/tray/AutoStatusItemHost.h"
#include "platform/tray/StatusItemController.h"
#include "platform/tray/SystemTrayIconHost.h"
#include "storage/DataFolderWatcher.h"
#include "storage/EventStore.h"
#include "storage/PathProvider.h"
#include "storage/SettingsStore.h"
#include "storage/StartupMigrations.h"
#include "ui/CountdownListModel.h"
#include "ui/CountdownRowTime.h"
#include "ui/PopoverController.h"
#include "ui/QuickEntryController.h"
#include "ui/TableTranslator.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QSettings>
#include <QTimer>

Q_LOGGING_CATEGORY(lcAppDelegate, "AppDelegate")

namespace {

const QString onboardingCompletedKey = QStringLiteral("tarrow.onboarding.completed");

} // namespace

AppDelegate::AppDelegate(TrayLaunchOptions options, QString dataDirectory, QObject *parent)
    : QObject(parent)
    , m_options(std::move(options))
    , m_dataDirectory(std::move(dataDirectory))
{
}

AppDelegate::~AppDelegate()
{
    terminate();
}

bool AppDelegate::isTestHost()
{
    return qEnvironmentVariableIsSet("XCTestConfigurationFilePath")
        || qEnvironmentVariableIsSet("TARROW_TEST_HOST");
}

void AppDelegate::willFinishLaunching()
{
    m_urlRouter = std::make_unique<AppURLRouter>([this] { openPopover(); });
}

void AppDelegate::didFinishLaunching()
{
    if (isTestHost()) {
        qCInfo(lcAppDelegate) << "Running as a test host: no services are built";
        return;
    }
    buildCore();
    m_pendingPopoverReveal = m_pendingPopoverReveal
        || LoginLaunch::revealsPopoverAtLaunch(onboardingCompleted(), isLoginLaunch(),
                                               m_options.uiTest);
    for (const QString &link : std::as_const(m_options.links))
        m_urlRouter->route(link);
    installInterface();
}

void AppDelegate::buildCore()
{
    m_paths = std::make_unique<DefaultPathProvider>(DefaultPathProvider::inFolder(m_dataDirectory));
    m_launchAtLogin = std::make_unique<XdgAutostart>(XdgAutostart::defaultDirectory(),
                                                     XdgAutostart::defaultCommand());
    m_eventStore = std::make_unique<EventStore>(*m_paths, m_files);
    m_settingsStore = std::make_unique<SettingsStore>(*m_paths, m_files, m_launchAtLogin.get());
    runStartupMigrations(*m_eventStore, *m_settingsStore);
    m_dataFolderWatcher =
        std::make_unique<DataFolderWatcher>(*m_paths, *m_eventStore, *m_settingsStore);
    // A file of an older version put in place while the app runs is migrated like one at launch.
    connect(m_eventStore.get(), &EventStore::reloaded, this,
            [this] { runStartupMigrations(*m_eventStore, *m_settingsStore); });
    m_countdownRegistry = std::make_unique<CountdownRegistry>(*m_eventStore);
    m_tickScheduler = std::make_unique<TimerTickScheduler>();
    m_countdownEngine = std::make_unique<CountdownEngine>(*m_eventStore, *m_countdownRegistry,
                                                          m_clock, *m_tickScheduler);
    // Slot: appearanceManager over the settings store.
    m_localeManager = std::make_unique<LocaleManager>(*m_settingsStore);
    // Slot: wakeObserver over the session's sleep and wake signals.
    // Slot: notificationAuthorization, calendarAuthorization.
    qCDebug(lcAppDelegate).noquote()
        << QStringLiteral("Built the core over %1").arg(m_dataDirectory);
}

void AppDelegate::installInterface()
{
    if (m_appUIInstalled)
        return;
    // Slot: calendarStore, attached to the registry as its calendar source.
    // Slot: celebrationCoordinator with its ReachNotificationScheduler.
    // Slot: recurrenceCoordinator.
    // Slot: widgetSurface, reminderSurface.
    // Slot: shortcutsService.
    m_listModel = std::make_unique<CountdownListModel>(
        *m_countdownRegistry, m_clock, [this](const CountdownItem &item, const QDateTime &now) {
            return countdownRowTime(item, now, m_settingsStore->settings().displayFormat,
                                    m_localeManager->table());
        });
    connect(m_localeManager.get(), &LocaleManager::languageChanged, m_listModel.get(),
            &CountdownListModel::refreshTimes);
    connect(m_settingsStore.get(), &SettingsStore::settingsChanged, m_listModel.get(),
            &CountdownListModel::refreshTimes);
    m_quickEntry = std::make_unique<QuickEntryController>(
        *m_eventStore, m_clock, [](const QString &text, const QDateTime &now) {
            return NaturalDateParser::parse(text, now, QTimeZone::systemTimeZone(), false);
        });
    m_popoverController = std::make_unique<PopoverController>(
        QVariantMap {{QStringLiteral("listModel"), QVariant::fromValue(m_listModel.get())},
                     {QStringLiteral("quickEntry"), QVariant::fromValue(m_quickEntry.get())}});
    // The popup's texts and date formats follow the interface language, live.
    m_translator = std::make_unique<TableTranslator>(*m_localeManager);
    QCoreApplication::installTranslator(m_translator.get());
    QLocale::setDefault(m_localeManager->interfaceLocale());
    connect(m_localeManager.get(), &LocaleManager::languageChanged, this, [this] {
        QLocale::setDefault(m_localeManager->interfaceLocale());
        m_popoverController->retranslate();
    });
    // Row times move on every second while the popup is open, and not at all while it is closed.
    m_rowTicker = std::make_unique<QTimer>();
    m_rowTicker->setInterval(1000);
    connect(m_rowTicker.get(), &QTimer::timeout, m_listModel.get(),
            &CountdownListModel::refreshTimes);
    connect(m_popoverController.get(), &PopoverController::shownChanged, this, [this] {
        if (m_popoverController->isShown()) {
            m_listModel->refreshTimes();
            m_rowTicker->start();
        } else {
            m_rowTicker->stop();
        }
    });
    installStatusItem();
    // Slot: reviewPromptCoordinator.
    m_appUIInstalled = true;
    if (m_pendingPopoverReveal) {
        m_pendingPopoverReveal = false;
        openPopover();
    }
}

void AppDelegate::installStatusItem()
{
    // A StatusNotifierItem registers whenever the panel's watcher appears, so a login launch that
    // beats the panel still shows up once the panel is there; when no panel takes it and the X11
    // session has an XEmbed tray, the classic tray icon stands in. Without a session bus, the
    // XEmbed tray is the only host left.
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (bus.isConnected()) {
        auto host = std::make_unique<AutoStatusItemHost>(bus);
        host->start();
        m_statusItemHost = std::move(host);
    } else if (SystemTrayIconHost::isAvailable()) {
        m_statusItemHost = std::make_unique<SystemTrayIconHost>();
    }
    if (!m_statusItemHost) {
        qCWarning(lcAppDelegate) << "No panel tray to show the status item in";
        return;
    }
    // Panels that open a menu on a click (GNOME's extension) need "Show countdowns…" first.
    m_statusItemHost->setMenuEntries({
        {m_localeManager->text(QStringLiteral("menubar.menu.show")),
         [this] {
             openPopover();
         }},
        {QString(), {}},
        {m_localeManager->text(QStringLiteral("menubar.menu.quit")),
         [] {
             QCoreApplication::quit();
         }},
    });
    m_statusItemController = std::make_unique<StatusItemController>(
        *m_statusItemHost, *m_countdownEngine, *m_settingsStore, *m_localeManager);
    m_statusItemController->setClickHandler([this](const StatusItemClick &click) {
        std::optional<QRect> anchor;
        if (click.geometry.isValid())
            anchor = click.geometry;
        else if (!click.position.isNull())
            anchor = QRect(click.position, QSize(1, 1));
        m_popoverController->toggle(anchor);
    });
}

bool AppDelegate::onboardingCompleted() const
{
    return QSettings().value(onboardingCompletedKey, false).toBool();
}

bool AppDelegate::isLoginLaunch()
{
    if (!m_loginLaunch) {
        const bool launchAtLogin = m_settingsStore && m_settingsStore->settings().launchAtLogin;
        m_loginLaunch = LoginLaunch::isLoginLaunch(m_options.autostart, LoginLaunch::systemUptime(),
                                                   launchAtLogin);
    }
    return *m_loginLaunch;
}

void AppDelegate::handleRequest(const TrayLaunchOptions &request)
{
    if (!m_urlRouter)
        return;
    for (const QString &link : request.links)
        m_urlRouter->route(link);
    if (request.links.isEmpty() && !request.autostart)
        reopen();
}

void AppDelegate::reopen()
{
    openPopover();
}

void AppDelegate::openPopover()
{
    if (!m_appUIInstalled) {
        m_pendingPopoverReveal = true;
        return;
    }
    m_popoverController->open();
}

void AppDelegate::terminate()
{
    if (m_popoverController)
        m_popoverController->close();
    m_appUIInstalled = false;
}

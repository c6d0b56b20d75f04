#include "app/AppDelegate.h"

#include "app/AppURLRouter.h"
#include "arrival/CelebrationCoordinator.h"
#include "arrival/CelebrationSettingsModel.h"
#include "arrival/NoticeLog.h"
#include "arrival/RecurrenceCoordinator.h"
#include "arrival/ReminderScheduler.h"
#include "automation/CountdownIntents.h"
#include "automation/StatusFeed.h"
#include "automation/WidgetSnapshotWriter.h"
#include "backup/BackupFlow.h"
#include "calendar/CalendarStore.h"
#include "countdown/CountdownEngine.h"
#include "countdown/CountdownRegistry.h"
#include "countdown/TimerTickScheduler.h"
#include "l10n/LocaleManager.h"
#include "parse/NaturalDateParser.h"
#include "platform/automation/AutomationDBusService.h"
#include "platform/calendars/CalendarBackends.h"
#include "platform/notifications/ReachNotificationScheduler.h"
#include "platform/session/LoginLaunch.h"
#include "platform/session/WakeObserver.h"
#include "platform/session/XdgAutostart.h"
#include "platform/shortcuts/HotkeyEngines.h"
#include "platform/tray/AutoStatusItemHost.h"
#include "platform/tray/ClassicTrayPresence.h"
#include "platform/tray/StatusItemController.h"
#include "platform/tray/SystemTrayIconHost.h"
#include "platform/updates/UpdateChecker.h"
#include "shortcuts/ShortcutsPageModel.h"
#include "shortcuts/ShortcutsService.h"
#include "storage/DataFolderWatcher.h"
#include "storage/EventStore.h"
#include "storage/PathProvider.h"
#include "storage/SettingsStore.h"
#include "storage/StartupMigrations.h"
#include "ui/AppearanceManager.h"
#include "ui/CalendarSettingsModel.h"
#include "ui/ChipPreviewProvider.h"
#include "ui/CountdownListModel.h"
#include "ui/EventEditorModel.h"
#include "ui/OnboardingModel.h"
#include "ui/PopoverController.h"
#include "ui/PopupNavigator.h"
#include "ui/QuickEntryController.h"
#include "ui/RowActions.h"
#include "ui/SettingsModel.h"
#include "ui/SettingsPageList.h"
#include "ui/SettingsWindowController.h"
#include "ui/TableTranslator.h"
#include "ui/TimeZoneListModel.h"
#include "ui/celebration/CelebrationOverlay.h"
#include "ui/celebration/ReducedMotion.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QNetworkAccessManager>
#include <QSettings>
#include <QStandardPaths>
#include <QTimer>

Q_LOGGING_CATEGORY(lcAppDelegate, "AppDelegate")

namespace {

// The natural date parser in the user's own time zone.
std::optional<NaturalDateMatch> parseInSystemZone(const QString &text, const QDateTime &now,
                                                  bool keepsPast)
{
    return NaturalDateParser::parse(text, now, QTimeZone::systemTimeZone(), keepsPast);
}

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
    m_urlRouter =
        std::make_unique<AppURLRouter>([this] { openPopover(); }, [this] { openSettings(); });
}

void AppDelegate::didFinishLaunching()
{
    if (isTestHost()) {
        qCInfo(lcAppDelegate) << "Running as a test host: no services are built";
        return;
    }
    buildCore();
    if (m_options.resetOnboarding)
        OnboardingModel::reset();
    // Before onboarding, a launch the user made opens the popup on the welcome page.
    const bool onboarded = OnboardingModel::isCompleted();
    m_showWelcome = !onboarded;
    m_pendingPopoverReveal = m_pendingPopoverReveal
        || LoginLaunch::revealsPopoverAtLaunch(onboarded, isLoginLaunch(), m_options.uiTest)
        || (!onboarded && !isLoginLaunch() && !m_options.uiTest);
    for (const QString &link : std::as_const(m_options.links))
        m_urlRouter->route(link);
    // A key bound to `tarrow --toggle-popup` or `--new-countdown` may be what started Tarrow.
    if (m_options.togglePopup || m_options.newCountdown)
        m_pendingPopoverReveal = true;
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
    m_appearanceManager =
        std::make_unique<AppearanceManager>(*m_settingsStore, QGuiApplication::palette());
    m_localeManager = std::make_unique<LocaleManager>(*m_settingsStore);
    m_wakeObserver = std::make_unique<WakeObserver>(QDBusConnection::systemBus());
    connect(m_wakeObserver.get(), &WakeObserver::timeChanged, this, &AppDelegate::catchUpWithTime);
    // Slot: notificationAuthorization, calendarAuthorization.
    m_intents = std::make_unique<CountdownIntents>(*m_eventStore, *m_countdownRegistry, m_clock,
                                                   *m_settingsStore, *m_localeManager);
    qCDebug(lcAppDelegate).noquote()
        << QStringLiteral("Built the core over %1").arg(m_dataDirectory);
}

void AppDelegate::installInterface()
{
    if (m_appUIInstalled)
        return;
    installCalendars();
    installArrivals();
    installWidgetSurface();
    installShortcuts();
    installPopup();
    installStatusItem();
    // Slot: reviewPromptCoordinator.
    m_backupService = std::make_unique<BackupService>(*m_eventStore, m_files, m_clock);
    m_backupFlow = std::make_unique<BackupFlow>(*m_backupService, *m_localeManager, m_clock);
    installAutomation();
    startUpdateChecks();
    installSettingsWindow();
    m_appUIInstalled = true;
    if (m_showWelcome)
        m_navigator->showWelcome();
    if (m_pendingPopoverReveal) {
        m_pendingPopoverReveal = false;
        openPopover();
    }
    if (m_pendingSettingsPage) {
        openSettings(*m_pendingSettingsPage);
        m_pendingSettingsPage.reset();
    }
}

void AppDelegate::installPopup()
{
    AppearanceManager::installControlsStyle();
    // The interface's texts and date formats follow the interface language, live.
    m_translator = std::make_unique<TableTranslator>(*m_localeManager);
    QCoreApplication::installTranslator(m_translator.get());
    QLocale::setDefault(m_localeManager->interfaceLocale());

    m_listModel = std::make_unique<CountdownListModel>(*m_countdownRegistry, *m_eventStore,
                                                       *m_settingsStore, *m_localeManager, m_clock);
    m_rowActions = std::make_unique<RowActions>(
        *m_eventStore, *m_listModel, *m_localeManager,
        [](const QUrl &url) { return QDesktopServices::openUrl(url); });
    m_editor = std::make_unique<EventEditorModel>(
        *m_eventStore, *m_settingsStore, *m_localeManager, m_clock, &parseInSystemZone,
        [this](const QString &symbol) {
            // The panel shows the symbol being picked while the editor is open.
            if (m_statusItemController)
                m_statusItemController->setPreviewSymbol(symbol);
        });
    m_timeZones = std::make_unique<TimeZoneListModel>(m_clock.now());
    m_navigator = std::make_unique<PopupNavigator>(*m_listModel, *m_rowActions, *m_editor);
    m_quickEntry = std::make_unique<QuickEntryController>(*m_eventStore, *m_settingsStore, m_clock,
                                                          &parseInSystemZone);
    m_onboarding = std::make_unique<OnboardingModel>(*m_quickEntry);
    connect(m_onboarding.get(), &OnboardingModel::finished, m_navigator.get(),
            &PopupNavigator::showList);
    m_settingsModel = std::make_unique<SettingsModel>(*m_settingsStore, *m_localeManager, [this] {
        return StatusItemController::inputsFrom(*m_countdownEngine, m_settingsStore->settings());
    });

    m_popoverController = std::make_unique<PopoverController>(
        QVariantMap {{QStringLiteral("navigator"), QVariant::fromValue(m_navigator.get())},
                     {QStringLiteral("listModel"), QVariant::fromValue(m_listModel.get())},
                     {QStringLiteral("actions"), QVariant::fromValue(m_rowActions.get())},
                     {QStringLiteral("editor"), QVariant::fromValue(m_editor.get())},
                     {QStringLiteral("quickEntry"), QVariant::fromValue(m_quickEntry.get())},
                     {QStringLiteral("zones"), QVariant::fromValue(m_timeZones.get())},
                     {QStringLiteral("onboarding"), QVariant::fromValue(m_onboarding.get())},
                     {QStringLiteral("settings"), QVariant::fromValue(m_settingsModel.get())},
                     {QStringLiteral("appearance"), QVariant::fromValue(m_appearanceManager.get())},
                     {QStringLiteral("calendars"), QVariant::fromValue(m_calendarSettings.get())}});
    m_popoverController->setImageProviders(sceneImageProviders());
    connect(m_navigator.get(), &PopupNavigator::closeRequested, m_popoverController.get(),
            &PopoverController::close);
    connect(m_navigator.get(), &PopupNavigator::settingsRequested, this,
            [this] { openSettings(); });
    connect(m_localeManager.get(), &LocaleManager::languageChanged, this, [this] {
        QLocale::setDefault(m_localeManager->interfaceLocale());
        m_popoverController->retranslate();
        if (m_settingsWindow)
            m_settingsWindow->retranslate();
    });

    // Row times move on every second while the popup is open, and not at all while it is closed.
    m_rowTicker = std::make_unique<QTimer>();
    m_rowTicker->setInterval(1000);
    connect(m_rowTicker.get(), &QTimer::timeout, m_listModel.get(),
            &CountdownListModel::refreshTimes);
    connect(m_popoverController.get(), &PopoverController::shownChanged, this, [this] {
        if (m_popoverController->isShown()) {
            m_calendarStore->refresh(); // what the user looks at is read again, fetched if due
            m_listModel->refreshTimes();
            m_rowTicker->start();
        } else {
            m_rowTicker->stop();
            // A popup closed mid-edit drops the draft, as Escape would.
            if (m_editor->isActive())
                m_editor->cancel();
        }
    });
}

QList<SceneImageProvider> AppDelegate::sceneImageProviders()
{
    return {{QStringLiteral("chip"), [this]() -> QQmlImageProviderBase * {
                 return new ChipPreviewProvider(
                     [this](const QString &name) -> std::optional<MenubarChipPresentation> {
                         if (name == u"editor")
                             return m_editor->chipPresentation();
                         if (name == u"settings")
                             return m_settingsModel->chipPresentation();
                         return std::nullopt;
                     });
             }}};
}

void AppDelegate::installSettingsWindow()
{
    // The general pages, then the pages of the features, each with the model it binds to
    // (`scene.models.<name>` in the page).
    m_settingsPages.reset(SettingsPageList::withGeneralPages());
    m_settingsPages->addPage(QStringLiteral("calendars"), QStringLiteral("settings.page.calendars"),
                             SettingsPageList::pageFile("CalendarSettingsPage"),
                             QStringLiteral("calendar"));
    m_settingsPages->addPage(QStringLiteral("shortcuts"), QStringLiteral("settings.page.shortcuts"),
                             SettingsPageList::pageFile("ShortcutsSettingsPage"),
                             QStringLiteral("ui.keyboard"));
    m_settingsPages->addPage(QStringLiteral("data"), QStringLiteral("settings.page.data"),
                             SettingsPageList::pageFile("DataSettingsPage"),
                             QStringLiteral("ui.archivebox"));
    const QVariantMap models {
        {QStringLiteral("calendars"), QVariant::fromValue(m_calendarSettings.get())},
        {QStringLiteral("shortcuts"), QVariant::fromValue(m_shortcutsPage.get())},
        {QStringLiteral("backup"), QVariant::fromValue(m_backupFlow.get())},
        {QStringLiteral("updates"), QVariant::fromValue(m_updateChecker.get())},
        {QStringLiteral("celebration"), QVariant::fromValue(m_celebrationSettings.get())}};
    m_settingsWindow = std::make_unique<SettingsWindowController>(
        QVariantMap {{QStringLiteral("pages"), QVariant::fromValue(m_settingsPages.get())},
                     {QStringLiteral("settings"), QVariant::fromValue(m_settingsModel.get())},
                     {QStringLiteral("appearance"), QVariant::fromValue(m_appearanceManager.get())},
                     {QStringLiteral("models"), models}},
        sceneImageProviders());
}

void AppDelegate::installCalendars()
{
    m_calendarBackends =
        std::make_unique<CalendarBackends>(*m_paths, m_files, m_clock, m_localeManager->table());
    m_calendarBackends->subscriptions().watchFile(); // `tarrow calendars add` while we run
    m_calendarStore = std::make_unique<CalendarStore>(
        m_calendarBackends->providers(), *m_settingsStore, *m_eventStore,
        &m_calendarBackends->subscriptions(), m_clock);
    m_countdownRegistry->attachCalendarSource(m_calendarStore.get());
    // After a suspend the calendars may have moved on: read them again (feeds fetched when due).
    connect(m_wakeObserver.get(), &WakeObserver::wokeUp, m_calendarStore.get(),
            &CalendarStore::refresh);
    // The calendars page of the settings window binds to this model.
    m_calendarSettings = std::make_unique<CalendarSettingsModel>(
        *m_calendarBackends, *m_calendarStore, *m_settingsStore, *m_localeManager);
}

void AppDelegate::installWidgetSurface()
{
    // What the panel shows, for status bars, desktop widgets and the session bus.
    m_statusFeed = std::make_unique<StatusFeed>(
        *m_countdownEngine, *m_settingsStore, *m_localeManager, m_clock, [this] {
            return StatusItemController::inputsFrom(*m_countdownEngine,
                                                    m_settingsStore->settings());
        });
    m_widgetSnapshot = std::make_unique<WidgetSnapshotWriter>(
        *m_statusFeed, *m_countdownRegistry, m_clock, m_files,
        WidgetSnapshotWriter::defaultPath(
            QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation), m_dataDirectory,
            m_options.dataDirectory.isEmpty()));
}

void AppDelegate::installStatusItem()
{
    // A StatusNotifierItem registers whenever a panel's watcher appears, and the classic tray
    // icon stands in while no panel shows it but an XEmbed tray is there: both are decided again
    // whenever a panel or tray comes or goes, so a login launch that beats the panel, a panel
    // restarted or a tray started later all end up showing the item.
    auto host = std::make_unique<AutoStatusItemHost>(
        QDBusConnection::sessionBus(), ClassicTrayPresence::forPlatform(),
        [] { return std::make_unique<SystemTrayIconHost>(); });
    host->start();
    m_statusItemHost = std::move(host);
    m_statusItemHost->setMenuEntries(menuEntries());
    connect(m_localeManager.get(), &LocaleManager::languageChanged, m_statusItemHost.get(),
            [this] { m_statusItemHost->setMenuEntries(menuEntries()); });
    // The panel's tool tip would cover the popup.
    connect(m_popoverController.get(), &PopoverController::shownChanged, m_statusItemHost.get(),
            [this] { m_statusItemHost->setPopupOpen(m_popoverController->isShown()); });
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

void AppDelegate::installAutomation()
{
    m_automationService =
        std::make_unique<AutomationDBusService>(*m_intents, m_statusFeed.get(), m_dataDirectory);
    m_automationService->registerOn(QDBusConnection::sessionBus());
}

void AppDelegate::startUpdateChecks()
{
    m_network = std::make_unique<QNetworkAccessManager>();
    m_updaterDefaults = std::make_unique<QSettings>();
    m_appcastFacade = std::make_unique<AppcastFacade>(AppcastFacade::buildFeedUrl(),
                                                      QCoreApplication::applicationVersion(),
                                                      *m_network, *m_updaterDefaults, m_clock);
    m_updateChecker = std::make_unique<UpdateChecker>(*m_appcastFacade);
    m_appcastFacade->start();
    m_appcastFacade->launchCheck();
}

void AppDelegate::installArrivals()
{
    m_reachNotifier = std::make_unique<ReachNotificationScheduler>(
        QDBusConnection::sessionBus(), *m_localeManager,
        [](const QUrl &url) { return QDesktopServices::openUrl(url); });
    connect(m_reachNotifier.get(), &ReachNotificationScheduler::activated, this,
            &AppDelegate::openPopoverAt);
    const QString configHome =
        QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    m_celebrationOverlay = std::make_unique<CelebrationOverlay>(
        *m_settingsStore, *m_localeManager,
        [configHome] {
            return ReducedMotion::isPreferred(QDBusConnection::sessionBus(), configHome);
        },
        &CelebrationOverlay::playThemeSound);
    m_celebrationCoordinator = std::make_unique<CelebrationCoordinator>(
        *m_eventStore, *m_countdownRegistry, *m_reachNotifier, *m_celebrationOverlay,
        *m_localeManager);
    m_celebrationSettings =
        std::make_unique<CelebrationSettingsModel>(*m_settingsStore, *m_localeManager);
    m_recurrenceCoordinator = std::make_unique<RecurrenceCoordinator>(*m_eventStore, m_clock);
    m_noticeLog = std::make_unique<SettingsNoticeLog>();
    m_reminderScheduler = std::make_unique<ReminderScheduler>(
        *m_countdownRegistry, m_clock, *m_reachNotifier, *m_noticeLog, *m_localeManager);
}

void AppDelegate::catchUpWithTime()
{
    // What arrived while the system slept or before the clock jumped is stamped now, and
    // reminders that fell due meanwhile are posted, instead of waiting for the next tick.
    m_countdownEngine->runFullPass();
    if (m_reminderScheduler)
        m_reminderScheduler->runPass();
}

void AppDelegate::uninstallInterface()
{
    if (m_popoverController)
        m_popoverController->close();
    m_celebrationCoordinator.reset();
    m_celebrationOverlay.reset();
    m_recurrenceCoordinator.reset();
    m_reminderScheduler.reset();
    if (m_reachNotifier)
        m_reachNotifier->withdrawAll();
    m_appUIInstalled = false;
}

void AppDelegate::installShortcuts()
{
    QMap<ShortcutAction, QString> actionNames;
    for (const ShortcutAction action : allShortcutActions())
        actionNames.insert(action, m_localeManager->text(titleKey(action)));
    m_shortcutsService = std::make_unique<ShortcutsService>(
        *m_settingsStore, createGlobalHotkeyController(QDBusConnection::sessionBus(), actionNames),
        [this](ShortcutAction action) {
            if (action == ShortcutAction::togglePopover)
                togglePopover();
            else
                startNewCountdown();
        });
    m_shortcutsService->start();
    m_shortcutsPage = std::make_unique<ShortcutsPageModel>(*m_shortcutsService, *m_localeManager);
}

QList<StatusItemMenuEntry> AppDelegate::menuEntries()
{
    // Panels that open a menu on a click (GNOME's extension) need "Show countdowns…" first.
    return {
        {m_localeManager->text(QStringLiteral("menubar.menu.show")),
         [this] {
             openPopover();
         }},
        {m_localeManager->text(QStringLiteral("menubar.menu.settings")),
         [this] {
             openSettings();
         }},
        {QString(), {}},
        {m_localeManager->text(QStringLiteral("menubar.menu.quit")),
         [] {
             QCoreApplication::quit();
         }},
    };
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
    if (request.resetOnboarding && m_appUIInstalled) {
        OnboardingModel::reset();
        m_navigator->showWelcome();
        openPopover();
    }
    for (const QString &link : request.links)
        m_urlRouter->route(link);
    if (request.togglePopup)
        togglePopover();
    if (request.newCountdown)
        startNewCountdown();
    if (request.links.isEmpty() && !request.autostart && !request.resetOnboarding
        && !request.togglePopup && !request.newCountdown)
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
    // Without a click, the item's place where the panel tells it; else the popup's own choice.
    m_popoverController->open(m_statusItemHost ? m_statusItemHost->iconGeometry() : std::nullopt);
}

void AppDelegate::openPopoverAt(const CountdownID &item)
{
    openPopover();
    if (!m_appUIInstalled)
        return;
    // The notification's item becomes the list's current row, in whatever scope shows it.
    m_navigator->showList();
    if (m_listModel->rowOf(item) < 0)
        m_listModel->setScope(CountdownListScope::all);
    m_listModel->setCurrentRow(m_listModel->rowOf(item));
}

void AppDelegate::togglePopover()
{
    if (!m_appUIInstalled) {
        m_pendingPopoverReveal = true;
        return;
    }
    m_popoverController->toggle();
}

void AppDelegate::startNewCountdown()
{
    if (m_appUIInstalled)
        m_navigator->newCountdown();
    openPopover();
}

void AppDelegate::openSettings(const QString &page)
{
    if (!m_appUIInstalled) {
        m_pendingSettingsPage = page;
        return;
    }
    m_popoverController->close();
    m_settingsWindow->open(page);
}

void AppDelegate::terminate()
{
    if (m_editor && m_editor->isActive())
        m_editor->cancel();
    if (m_settingsWindow)
        m_settingsWindow->close();
    if (m_popoverController)
        m_popoverController->close();
    // Let go of the global keys before the display connection goes.
    m_shortcutsPage.reset();
    if (m_shortcutsService)
        m_shortcutsService->stop();
    m_appUIInstalled = false;
}

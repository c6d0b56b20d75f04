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
#include "storage/EventStore.h"
#include "storage/PathProvider.h"
#include "storage/SettingsStore.h"
#include "storage/StartupMigrations.h"
#include "ui/AppearanceManager.h"
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

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDesktopServices>
#include <QGuiApplication>
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
    m_countdownRegistry = std::make_unique<CountdownRegistry>(*m_eventStore);
    m_tickScheduler = std::make_unique<TimerTickScheduler>();
    m_countdownEngine = std::make_unique<CountdownEngine>(*m_eventStore, *m_countdownRegistry,
                                                          m_clock, *m_tickScheduler);
    m_appearanceManager =
        std::make_unique<AppearanceManager>(*m_settingsStore, QGuiApplication::palette());
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
    installPopup();
    installStatusItem();
    // Slot: reviewPromptCoordinator.
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

    const QList<SceneImageProvider> imageProviders = {
        {QStringLiteral("chip"), [this]() -> QQmlImageProviderBase * {
             return new ChipPreviewProvider(
                 [this](const QString &name) -> std::optional<MenubarChipPresentation> {
                     if (name == u"editor")
                         return m_editor->chipPresentation();
                     if (name == u"settings")
                         return m_settingsModel->chipPresentation();
                     return std::nullopt;
                 });
         }}};
    installSettingsWindow();
    m_settingsWindow = std::make_unique<SettingsWindowController>(
        QVariantMap {
            {QStringLiteral("pages"), QVariant::fromValue(m_settingsPages.get())},
            {QStringLiteral("settings"), QVariant::fromValue(m_settingsModel.get())},
            {QStringLiteral("appearance"), QVariant::fromValue(m_appearanceManager.get())}},
        imageProviders);

    m_popoverController = std::make_unique<PopoverController>(QVariantMap {
        {QStringLiteral("navigator"), QVariant::fromValue(m_navigator.get())},
        {QStringLiteral("listModel"), QVariant::fromValue(m_listModel.get())},
        {QStringLiteral("actions"), QVariant::fromValue(m_rowActions.get())},
        {QStringLiteral("editor"), QVariant::fromValue(m_editor.get())},
        {QStringLiteral("quickEntry"), QVariant::fromValue(m_quickEntry.get())},
        {QStringLiteral("zones"), QVariant::fromValue(m_timeZones.get())},
        {QStringLiteral("onboarding"), QVariant::fromValue(m_onboarding.get())},
        {QStringLiteral("settings"), QVariant::fromValue(m_settingsModel.get())},
        {QStringLiteral("appearance"), QVariant::fromValue(m_appearanceManager.get())}});
    m_popoverController->setImageProviders(imageProviders);
    connect(m_navigator.get(), &PopupNavigator::closeRequested, m_popoverController.get(),
            &PopoverController::close);
    connect(m_navigator.get(), &PopupNavigator::settingsRequested, this,
            [this] { openSettings(); });
    connect(m_localeManager.get(), &LocaleManager::languageChanged, this, [this] {
        QLocale::setDefault(m_localeManager->interfaceLocale());
        m_popoverController->retranslate();
        m_settingsWindow->retranslate();
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
            // A popup closed mid-edit drops the draft, as Escape would.
            if (m_editor->isActive())
                m_editor->cancel();
        }
    });
}

void AppDelegate::installSettingsWindow()
{
    // Features add their pages here (calendars, shortcuts, data) with m_settingsPages->addPage().
    m_settingsPages.reset(SettingsPageList::withGeneralPages());
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
        {m_localeManager->text(QStringLiteral("menubar.menu.settings")),
         [this] {
             openSettings();
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
    if (request.links.isEmpty() && !request.autostart && !request.resetOnboarding)
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
    m_appUIInstalled = false;
}

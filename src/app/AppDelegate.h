#pragma once

#include "app/TrayApplication.h"
#include "platform/tray/StatusItemHost.h"
#include "storage/FileAccess.h"
#include "time/Clock.h"

#include <QLoggingCategory>
#include <QObject>

#include <memory>
#include <optional>

class AppURLRouter;
class AppcastFacade;
class AppearanceManager;
class AutomationDBusService;
class BackupFlow;
class BackupService;
class CalendarBackends;
class CalendarSettingsModel;
class CalendarStore;
class CelebrationCoordinator;
class CelebrationOverlay;
class CelebrationSettingsModel;
class CountdownEngine;
class CountdownID;
class CountdownIntents;
class CountdownListModel;
class CountdownRegistry;
class DataFolderWatcher;
class DefaultPathProvider;
class EventEditorModel;
class EventStore;
class LocaleManager;
class NoticeLog;
class OnboardingModel;
class PopoverController;
class PopupNavigator;
class QNetworkAccessManager;
class QSettings;
class QTimer;
class QuickEntryController;
class ReachNotificationScheduler;
class RecurrenceCoordinator;
class ReminderScheduler;
class RowActions;
class SettingsModel;
class SettingsPageList;
class SettingsStore;
class SettingsWindowController;
class ShortcutsPageModel;
class ShortcutsService;
struct SceneImageProvider;
class StatusFeed;
class StatusItemController;
class StatusItemHost;
class TableTranslator;
class TimeZoneListModel;
class TimerTickScheduler;
class UpdateChecker;
class WakeObserver;
class WidgetSnapshotWriter;
class XdgAutostart;

Q_DECLARE_LOGGING_CATEGORY(lcAppDelegate)

// The composition root of the tray application. It builds every long-lived service in a fixed
// order, hands each its collaborators, installs the menu-bar interface, and answers the requests
// that reach the running application (links, a second launch). Members are declared in the order
// they are built, so they are released in the reverse order when the delegate goes away.
class AppDelegate : public QObject
{
    Q_OBJECT

public:
    AppDelegate(TrayLaunchOptions options, QString dataDirectory, QObject *parent = nullptr);
    ~AppDelegate() override;

    // Before the event loop: the link router, so that links given at launch find it.
    void willFinishLaunching();
    // Builds the core, decides whether the popup opens by itself, installs the interface.
    void didFinishLaunching();
    // A request from a later `tarrow` process: its links go to the router; without links it is a
    // reopen, except for a login launch, which asks for nothing.
    void handleRequest(const TrayLaunchOptions &request);
    // The user launched Tarrow again: show the popup (an open popup stays open).
    void reopen();
    void openPopover();
    // Opens the popup and asks it to show `item` (a click on one of its notifications).
    void openPopoverAt(const CountdownID &item);
    // The global shortcut and `tarrow --toggle-popup`: show the popup, or hide it when shown.
    void togglePopover();
    // The global shortcut and `tarrow --new-countdown`: the popup on the editor of a new
    // countdown.
    void startNewCountdown();
    // The settings window, on `page` when given ("general", "panel", ...).
    void openSettings(const QString &page = QString());
    // On quit: close the popup; the services go with the delegate.
    void terminate();
    // The reverse of installing the interface, for the arrival services: drops the coordinators
    // and the reminder scheduler and withdraws the notifications still shown.
    void uninstallInterface();

    // The process hosts tests ("XCTestConfigurationFilePath" or "TARROW_TEST_HOST" set): nothing is
    // built.
    static bool isTestHost();
    // Whether the desktop session started this process at login. Computed once.
    bool isLoginLaunch();

    bool isInterfaceInstalled() const { return m_appUIInstalled; }
    bool hasPendingPopoverReveal() const { return m_pendingPopoverReveal; }
    EventStore *eventStore() const { return m_eventStore.get(); }
    PopoverController *popoverController() const { return m_popoverController.get(); }
    // The model of the celebration settings page.
    CelebrationSettingsModel *celebrationSettings() const { return m_celebrationSettings.get(); }
    ShortcutsService *shortcutsService() const { return m_shortcutsService.get(); }
    // What the settings window's shortcuts page binds to.
    ShortcutsPageModel *shortcutsPageModel() const { return m_shortcutsPage.get(); }
    PopupNavigator *popupNavigator() const { return m_navigator.get(); }
    // Where features add their settings pages.
    SettingsPageList *settingsPages() const { return m_settingsPages.get(); }
    CalendarStore *calendarStore() const { return m_calendarStore.get(); }
    // The models of the data and about pages of the settings window.
    BackupFlow *backupFlow() const { return m_backupFlow.get(); }
    UpdateChecker *updateChecker() const { return m_updateChecker.get(); }

private:
    void buildCore();
    void installInterface();
    void installArrivals();
    // A pass of everything that keeps time, at once (after a wake or a clock change).
    void catchUpWithTime();
    void installStatusItem();
    void installShortcuts();
    QList<StatusItemMenuEntry> menuEntries();
    void installPopup();
    void installSettingsWindow();
    // What the popup's and the settings window's scenes draw images with (the chip previews).
    QList<SceneImageProvider> sceneImageProviders();
    void installCalendars();
    void installWidgetSurface();
    void installAutomation();
    void startUpdateChecks();

    TrayLaunchOptions m_options;
    QString m_dataDirectory;
    std::unique_ptr<AppURLRouter> m_urlRouter;

    // Support of the core: clock, data folder, files, login item.
    SystemClock m_clock;
    std::unique_ptr<DefaultPathProvider> m_paths;
    DiskFileAccess m_files;
    std::unique_ptr<XdgAutostart> m_launchAtLogin;

    // The core, in the order it is built.
    std::unique_ptr<EventStore> m_eventStore;
    std::unique_ptr<SettingsStore> m_settingsStore;
    // Takes in what `tarrow` commands and editors change in the data folder.
    std::unique_ptr<DataFolderWatcher> m_dataFolderWatcher;
    std::unique_ptr<CountdownRegistry> m_countdownRegistry;
    std::unique_ptr<TimerTickScheduler> m_tickScheduler;
    std::unique_ptr<CountdownEngine> m_countdownEngine;
    std::unique_ptr<AppearanceManager> m_appearanceManager;
    std::unique_ptr<LocaleManager> m_localeManager;
    std::unique_ptr<WakeObserver> m_wakeObserver;
    // Slot: notificationAuthorization, calendarAuthorization.
    // What the automation intents act on, shared by the session bus service.
    std::unique_ptr<CountdownIntents> m_intents;

    // The menu-bar interface, in the order it is installed.
    // The calendar providers (added files and feeds, backend plugins) and the store that reads
    // them, attached to the registry as its calendar source.
    std::unique_ptr<CalendarBackends> m_calendarBackends;
    std::unique_ptr<CalendarStore> m_calendarStore;
    std::unique_ptr<CalendarSettingsModel> m_calendarSettings;
    std::unique_ptr<ReachNotificationScheduler> m_reachNotifier;
    std::unique_ptr<CelebrationOverlay> m_celebrationOverlay;
    std::unique_ptr<CelebrationCoordinator> m_celebrationCoordinator;
    std::unique_ptr<CelebrationSettingsModel> m_celebrationSettings;
    std::unique_ptr<RecurrenceCoordinator> m_recurrenceCoordinator;
    std::unique_ptr<NoticeLog> m_noticeLog;
    std::unique_ptr<ReminderScheduler> m_reminderScheduler;
    std::unique_ptr<ShortcutsService> m_shortcutsService; // toggle popup, new countdown
    std::unique_ptr<ShortcutsPageModel> m_shortcutsPage;
    // What the panel shows, for status bars, widgets and the session bus.
    std::unique_ptr<StatusFeed> m_statusFeed;
    std::unique_ptr<WidgetSnapshotWriter> m_widgetSnapshot;
    std::unique_ptr<TableTranslator> m_translator;
    std::unique_ptr<CountdownListModel> m_listModel;
    std::unique_ptr<RowActions> m_rowActions;
    std::unique_ptr<EventEditorModel> m_editor;
    std::unique_ptr<TimeZoneListModel> m_timeZones;
    std::unique_ptr<PopupNavigator> m_navigator;
    std::unique_ptr<QuickEntryController> m_quickEntry;
    std::unique_ptr<OnboardingModel> m_onboarding;
    std::unique_ptr<SettingsModel> m_settingsModel;
    std::unique_ptr<PopoverController> m_popoverController;
    std::unique_ptr<QTimer> m_rowTicker;
    std::unique_ptr<StatusItemHost> m_statusItemHost;
    std::unique_ptr<StatusItemController> m_statusItemController;
    // Slot: reviewPromptCoordinator.
    std::unique_ptr<BackupService> m_backupService;
    std::unique_ptr<BackupFlow> m_backupFlow;
    std::unique_ptr<AutomationDBusService> m_automationService;
    // Update checks (the support kit).
    std::unique_ptr<QNetworkAccessManager> m_network;
    std::unique_ptr<QSettings> m_updaterDefaults;
    std::unique_ptr<AppcastFacade> m_appcastFacade;
    std::unique_ptr<UpdateChecker> m_updateChecker;
    // The settings window, last: its pages bind to the services above.
    std::unique_ptr<SettingsPageList> m_settingsPages;
    std::unique_ptr<SettingsWindowController> m_settingsWindow;

    bool m_appUIInstalled = false;
    bool m_pendingPopoverReveal = false;
    bool m_showWelcome = false;
    std::optional<QString> m_pendingSettingsPage; // asked for before the interface was there
    std::optional<bool> m_loginLaunch;
};

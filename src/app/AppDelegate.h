#pragma once

#include "app/TrayApplication.h"
#include "storage/FileAccess.h"
#include "time/Clock.h"

#include <QLoggingCategory>
#include <QObject>

#include <memory>
#include <optional>

class AppURLRouter;
class CountdownEngine;
class CountdownListModel;
class CountdownRegistry;
class DataFolderWatcher;
class DefaultPathProvider;
class EventStore;
class LocaleManager;
class PopoverController;
class QTimer;
class QuickEntryController;
class TableTranslator;
class SettingsStore;
class StatusItemController;
class StatusItemHost;
class TimerTickScheduler;
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
    // On quit: close the popup; the services go with the delegate.
    void terminate();

    // The process hosts tests ("XCTestConfigurationFilePath" or "TARROW_TEST_HOST" set): nothing is
    // built.
    static bool isTestHost();
    // Whether the desktop session started this process at login. Computed once.
    bool isLoginLaunch();

    bool isInterfaceInstalled() const { return m_appUIInstalled; }
    bool hasPendingPopoverReveal() const { return m_pendingPopoverReveal; }
    EventStore *eventStore() const { return m_eventStore.get(); }
    PopoverController *popoverController() const { return m_popoverController.get(); }

private:
    void buildCore();
    void installInterface();
    void installStatusItem();
    bool onboardingCompleted() const;

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
    // Slot: appearanceManager (applies the theme setting to the palette).
    std::unique_ptr<LocaleManager> m_localeManager;
    // Slot: wakeObserver (sleep and wake of the system; a full engine pass on wake).
    // Slot: notificationAuthorization, calendarAuthorization.

    // The menu-bar interface, in the order it is installed.
    // Slot: calendarStore (then m_countdownRegistry->attachCalendarSource(calendarStore)).
    // Slot: celebrationCoordinator with its ReachNotificationScheduler.
    // Slot: recurrenceCoordinator.
    // Slot: widgetSurface, reminderSurface.
    // Slot: shortcutsService (toggle popup, new countdown).
    std::unique_ptr<CountdownListModel> m_listModel;
    std::unique_ptr<QuickEntryController> m_quickEntry;
    std::unique_ptr<PopoverController> m_popoverController;
    std::unique_ptr<TableTranslator> m_translator;
    std::unique_ptr<QTimer> m_rowTicker;
    std::unique_ptr<StatusItemHost> m_statusItemHost;
    std::unique_ptr<StatusItemController> m_statusItemController;
    // Slot: reviewPromptCoordinator.

    bool m_appUIInstalled = false;
    bool m_pendingPopoverReveal = false;
    std::optional<bool> m_loginLaunch;
};

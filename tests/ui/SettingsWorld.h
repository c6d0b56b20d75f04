#pragma once

#include "UiWorld.h"
#include "arrival/CelebrationSettingsModel.h"
#include "backup/BackupFlow.h"
#include "calendar/CalendarStore.h"
#include "platform/calendars/CalendarBackends.h"
#include "platform/updates/UpdateChecker.h"
#include "shortcuts/ShortcutsPageModel.h"
#include "shortcuts/ShortcutsService.h"
#include "support/FakeHotkeyController.h"
#include "ui/CalendarSettingsModel.h"

#include <QDir>
#include <QNetworkAccessManager>
#include <QSettings>
#include <QVariantMap>

// The models of the feature pages of the settings window, over a UiWorld's store, settings and
// clock: the calendars added to its data folder (read by the iCalendar backend alone), global
// shortcuts on a hot-key engine that records what it is asked, backups, the celebration and
// update checks of a build without a feed (or with the stub that answers them).
struct SettingsWorld
{
    // `heldByDesktop`: combinations the hot-key engine refuses, as if another application had them.
    explicit SettingsWorld(UiWorld &world, const QList<KeyCombo> &heldByDesktop = {})
        : backends(world.paths, world.files, world.clock, world.locale.table())
        , calendarStore(backends.providers(), world.settings, world.store,
                        &backends.subscriptions(), world.clock)
        , calendars(backends, calendarStore, world.settings, world.locale)
        , shortcuts(world.settings, std::unique_ptr<GlobalHotkeyController>(hotkeys),
                    [](ShortcutAction) {})
        , shortcutsPage(shortcuts, world.locale)
        , backupService(world.store, world.files, world.clock)
        , backup(backupService, world.locale, world.clock)
        , celebration(world.settings, world.locale)
        , updaterDefaults(
              QDir(world.paths.supportDirectory()).filePath(QStringLiteral("updater.ini")),
              QSettings::IniFormat)
        , appcast(QUrl(), QStringLiteral("1.0.0"), network, updaterDefaults, world.clock)
        , updates(appcast)
    {
        calendarStore.setCoalescingDelay(0);
        hotkeys->refused = heldByDesktop;
        shortcuts.start();
    }

    // What the settings window hands its pages as `scene.models`.
    QVariantMap models()
    {
        return {{QStringLiteral("calendars"), QVariant::fromValue(&calendars)},
                {QStringLiteral("shortcuts"), QVariant::fromValue(&shortcutsPage)},
                {QStringLiteral("backup"), QVariant::fromValue(&backup)},
                {QStringLiteral("celebration"), QVariant::fromValue(&celebration)},
                {QStringLiteral("updates"), QVariant::fromValue(&updates)}};
    }

    FakeHotkeyController *hotkeys = new FakeHotkeyController; // owned by `shortcuts`
    CalendarBackends backends;
    CalendarStore calendarStore;
    CalendarSettingsModel calendars;
    ShortcutsService shortcuts;
    ShortcutsPageModel shortcutsPage;
    BackupService backupService;
    BackupFlow backup;
    CelebrationSettingsModel celebration;
    QNetworkAccessManager network;
    QSettings updaterDefaults;
    AppcastFacade appcast;
    UpdateChecker updates;
};

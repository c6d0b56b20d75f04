#pragma once

#include "automation/StatusFeed.h"
#include "countdown/CountdownEngine.h"
#include "countdown/CountdownRegistry.h"
#include "l10n/LocaleManager.h"
#include "platform/tray/StatusItemController.h"
#include "storage/EventStore.h"
#include "storage/SettingsStore.h"
#include "support/FakeClock.h"
#include "support/FakeTickScheduler.h"

// The app's core in a throw-away folder, in English, with a clock and a tick the test drives,
// and the status feed of what the panel shows. Tests that use it link tarrow_automation and
// tarrow_tray.
struct PanelCore
{
    explicit PanelCore(const QDateTime &start)
        : clock(start)
    {
    }

    TempPathProvider paths;
    DiskFileAccess files;
    EventStore store {paths, files};
    SettingsStore settings {paths, files};
    CountdownRegistry registry {store};
    FakeClock clock;
    FakeTickScheduler scheduler;
    CountdownEngine engine {store, registry, clock, scheduler};
    LocaleManager locale {settings, [] {
                              return QStringList {"en"};
                          }};
    StatusFeed feed {engine, settings, locale, clock, [this] {
                         return StatusItemController::inputsFrom(engine, settings.settings());
                     }};
};

#include "storage/StartupMigrations.h"

#include "storage/EventStore.h"
#include "storage/SettingsStore.h"

void runStartupMigrations(EventStore &events, const SettingsStore &settings)
{
    const Settings &current = settings.settings();
    events.migrateReachSignals(current.legacyCelebrationOnReach.value_or(true),
                               current.legacyNotificationOnReach.value_or(true));
}

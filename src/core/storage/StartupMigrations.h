#pragma once

class EventStore;
class SettingsStore;

// What opening the data folder does once both files are loaded, in the app and in the command
// line alike: the global arrival switches of older settings files (absent counts as on) become
// per-event switches.
void runStartupMigrations(EventStore &events, const SettingsStore &settings);

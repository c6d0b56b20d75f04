#pragma once

#include "automation/StatusSnapshot.h"

#include <QObject>

#include <functional>

class Clock;
class CountdownEngine;
class LocaleManager;
class SettingsStore;

// Follows what the panel shows and publishes it as a StatusSnapshot: on every change of the
// engine's holder, state or progress, of the settings or of the interface language it builds the
// snapshot again, and announces it only when a status bar would show something else (progress
// creeping on by less than a percent is no change).
class StatusFeed : public QObject
{
    Q_OBJECT

public:
    // The chip's inputs as the status item draws them, read on every refresh.
    using ChipInputs = std::function<MenubarChipInputs()>;

    StatusFeed(const CountdownEngine &engine, const SettingsStore &settings,
               const LocaleManager &locale, const Clock &clock, ChipInputs inputs,
               QObject *parent = nullptr);

    const StatusSnapshot &snapshot() const { return m_snapshot; }

public Q_SLOTS:
    void refresh();

Q_SIGNALS:
    void snapshotChanged();

private:
    const CountdownEngine &m_engine;
    const LocaleManager &m_locale;
    const Clock &m_clock;
    ChipInputs m_inputs;
    StatusSnapshot m_snapshot;
};

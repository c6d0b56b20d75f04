#include "automation/StatusFeed.h"

#include "countdown/CountdownEngine.h"
#include "l10n/LocaleManager.h"
#include "storage/SettingsStore.h"
#include "time/Clock.h"

StatusFeed::StatusFeed(const CountdownEngine &engine, const SettingsStore &settings,
                       const LocaleManager &locale, const Clock &clock, ChipInputs inputs,
                       QObject *parent)
    : QObject(parent)
    , m_engine(engine)
    , m_locale(locale)
    , m_clock(clock)
    , m_inputs(std::move(inputs))
{
    connect(&engine, &CountdownEngine::pinnedChanged, this, &StatusFeed::refresh);
    connect(&engine, &CountdownEngine::stateChanged, this, &StatusFeed::refresh);
    connect(&engine, &CountdownEngine::progressChanged, this, &StatusFeed::refresh);
    connect(&settings, &SettingsStore::settingsChanged, this, &StatusFeed::refresh);
    connect(&locale, &LocaleManager::languageChanged, this, &StatusFeed::refresh);
    m_snapshot = StatusSnapshot::of(m_engine.pinned(), m_inputs(), m_clock.now(), m_locale.table());
}

void StatusFeed::refresh()
{
    StatusSnapshot next =
        StatusSnapshot::of(m_engine.pinned(), m_inputs(), m_clock.now(), m_locale.table());
    if (next.showsSameAs(m_snapshot))
        return;
    m_snapshot = std::move(next);
    Q_EMIT snapshotChanged();
}

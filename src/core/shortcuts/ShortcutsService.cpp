#include "shortcuts/ShortcutsService.h"

#include "storage/SettingsStore.h"

#include <QVariantMap>

ShortcutsService::ShortcutsService(SettingsStore &settings,
                                   std::unique_ptr<GlobalHotkeyController> controller,
                                   Trigger onTrigger, QObject *parent)
    : QObject(parent)
    , m_settings(settings)
    , m_controller(std::move(controller))
    , m_onTrigger(std::move(onTrigger))
    , m_hasEngine(m_controller != nullptr)
{
    if (m_controller) {
        connect(m_controller.get(), &GlobalHotkeyController::activated, this,
                [this](ShortcutAction action) {
                    if (m_onTrigger)
                        m_onTrigger(action);
                });
        connect(m_controller.get(), &GlobalHotkeyController::registrationFailed, this,
                [this](ShortcutAction action) {
                    setUnavailable(m_unavailable + QSet<ShortcutAction> {action});
                });
        connect(m_controller.get(), &GlobalHotkeyController::comboChangedOnDesktop, this,
                &ShortcutsService::setCombo);
    }
    connect(&m_settings, &SettingsStore::settingsChanged, this, &ShortcutsService::followSettings);
}

ShortcutsService::~ShortcutsService()
{
    stop();
}

std::optional<GlobalHotkeyController::Engine> ShortcutsService::engine() const
{
    if (!m_controller)
        return std::nullopt;
    return m_controller->engine();
}

void ShortcutsService::start()
{
    m_started = true;
    publishCombos(combosInSettings());
    registerAll();
}

void ShortcutsService::stop()
{
    if (!m_started)
        return;
    m_started = false;
    unregisterAll();
    m_controller.reset();
    setUnavailable({});
}

void ShortcutsService::setCombo(ShortcutAction action, const KeyCombo &combo)
{
    Settings next = m_settings.settings();
    next.shortcutOverrides.insert(rawValue(action), combo);
    m_settings.setSettings(next);
}

void ShortcutsService::restoreDefaults()
{
    Settings next = m_settings.settings();
    for (const ShortcutAction action : allShortcutActions())
        next.shortcutOverrides.remove(rawValue(action));
    m_settings.setSettings(next);
}

void ShortcutsService::followSettings()
{
    const QMap<ShortcutAction, KeyCombo> combos = combosInSettings();
    if (!m_started || combos == m_combos)
        return;
    unregisterAll();
    publishCombos(combos);
    registerAll();
}

QMap<ShortcutAction, KeyCombo> ShortcutsService::combosInSettings() const
{
    QMap<ShortcutAction, KeyCombo> combos;
    for (const ShortcutAction action : allShortcutActions())
        combos.insert(action, comboIn(m_settings.settings(), action));
    return combos;
}

void ShortcutsService::publishCombos(const QMap<ShortcutAction, KeyCombo> &combos)
{
    if (combos == m_combos)
        return;
    m_combos = combos;
    Q_EMIT combosChanged();
}

void ShortcutsService::registerAll()
{
    if (!m_controller)
        return;
    QSet<ShortcutAction> failed;
    for (auto it = m_combos.cbegin(); it != m_combos.cend(); ++it) {
        if (!m_controller->registerHotKey(it.key(), it.value()))
            failed.insert(it.key());
    }
    setUnavailable(failed);
}

void ShortcutsService::unregisterAll()
{
    if (!m_controller)
        return;
    for (const ShortcutAction action : allShortcutActions())
        m_controller->unregisterHotKey(action);
}

void ShortcutsService::setUnavailable(const QSet<ShortcutAction> &unavailable)
{
    if (unavailable == m_unavailable)
        return;
    m_unavailable = unavailable;
    Q_EMIT unavailableChanged();
}

QVariantMap ShortcutsService::combosVariant() const
{
    QVariantMap map;
    for (auto it = m_combos.cbegin(); it != m_combos.cend(); ++it)
        map.insert(
            rawValue(it.key()),
            QVariantMap {{QStringLiteral("keyCode"), int(it.value().keyCode)},
                         {QStringLiteral("modifierFlags"), qulonglong(it.value().modifierFlags)}});
    return map;
}

QStringList ShortcutsService::unavailableNames() const
{
    QStringList names;
    for (const ShortcutAction action : allShortcutActions()) {
        if (m_unavailable.contains(action))
            names << rawValue(action);
    }
    return names;
}

#pragma once

#include "records/Settings.h"
#include "shortcuts/GlobalHotkeyController.h"
#include "shortcuts/ShortcutAction.h"

#include <QMap>
#include <QObject>
#include <QSet>
#include <QStringList>

#include <functional>
#include <memory>

class SettingsStore;

// Holds the combination of each global action (the user's choice from the settings, else the
// default), keeps them registered with the desktop's hot-key controller, and publishes which
// actions the desktop refused. A change of the settings, from the recorder or from the file,
// re-registers both actions.
class ShortcutsService : public QObject
{
    Q_OBJECT
    // Raw action name -> combination (a QVariantMap of {"keyCode", "modifierFlags"}).
    Q_PROPERTY(QVariantMap combos READ combosVariant NOTIFY combosChanged)
    // Raw names of the actions whose registration failed.
    Q_PROPERTY(QStringList unavailable READ unavailableNames NOTIFY unavailableChanged)
    Q_PROPERTY(bool hasEngine READ hasEngine CONSTANT)

public:
    using Trigger = std::function<void(ShortcutAction)>;

    // `controller` is null on a desktop without a hot-key engine; `onTrigger` performs an action.
    ShortcutsService(SettingsStore &settings, std::unique_ptr<GlobalHotkeyController> controller,
                     Trigger onTrigger, QObject *parent = nullptr);
    ~ShortcutsService() override;

    // Publishes the combinations and registers them.
    void start();
    // Unregisters everything and drops the controller.
    void stop();

    QMap<ShortcutAction, KeyCombo> combos() const { return m_combos; }
    KeyCombo combo(ShortcutAction action) const { return m_combos.value(action); }
    QSet<ShortcutAction> unavailable() const { return m_unavailable; }
    bool isUnavailable(ShortcutAction action) const { return m_unavailable.contains(action); }
    bool hasEngine() const { return m_hasEngine; }
    // The engine in use, when there is one.
    std::optional<GlobalHotkeyController::Engine> engine() const;

    // Stores `combo` as the user's choice for `action` in the settings.
    void setCombo(ShortcutAction action, const KeyCombo &combo);
    // Forgets the user's choices: both actions go back to their defaults.
    Q_INVOKABLE void restoreDefaults();

Q_SIGNALS:
    void combosChanged();
    void unavailableChanged();

private:
    QVariantMap combosVariant() const;
    QStringList unavailableNames() const;
    void followSettings();
    QMap<ShortcutAction, KeyCombo> combosInSettings() const;
    void publishCombos(const QMap<ShortcutAction, KeyCombo> &combos);
    void registerAll();
    void unregisterAll();
    void setUnavailable(const QSet<ShortcutAction> &unavailable);

    SettingsStore &m_settings;
    std::unique_ptr<GlobalHotkeyController> m_controller;
    Trigger m_onTrigger;
    QMap<ShortcutAction, KeyCombo> m_combos;
    QSet<ShortcutAction> m_unavailable;
    bool m_hasEngine;
    bool m_started = false;
};

#pragma once

#include "shortcuts/GlobalHotkeyController.h"

#include <QDBusConnection>
#include <QMap>

// Global shortcuts through KDE's kglobalaccel service (Plasma on X11 and Wayland). Tarrow's
// actions appear in the desktop's own shortcut settings under "Tarrow", with their defaults; a key
// the user picks there comes back through comboChangedOnDesktop().
//
// Statuses: 1 when the service gave the combination to another application, 2 when the service
// did not answer.
class KGlobalAccelController final : public GlobalHotkeyController
{
    Q_OBJECT

public:
    static constexpr int keyTaken = 1;
    static constexpr int noAnswer = 2;

    // Whether kglobalaccel runs on `bus` (it does in every Plasma session).
    static bool isAvailable(const QDBusConnection &bus);

    // `actionNames` are shown in the desktop's settings.
    KGlobalAccelController(const QDBusConnection &bus, QMap<ShortcutAction, QString> actionNames,
                           QObject *parent = nullptr);
    ~KGlobalAccelController() override;

    Engine engine() const override { return Engine::kglobalaccel; }
    void unregisterHotKey(ShortcutAction action) override;

protected:
    int registerWithEngine(ShortcutAction action, const KeyCombo &combo) override;

private Q_SLOTS:
    void onPressed(const QString &component, const QString &actionName, qlonglong timestamp);
    void onShortcutsChanged(const QStringList &actionId, const QList<int> &keys);

private:
    QStringList actionId(ShortcutAction action) const;
    void listenToComponent();

    QDBusConnection m_bus;
    QMap<ShortcutAction, QString> m_actionNames;
    QMap<ShortcutAction, int> m_registered; // the key each action holds, as Qt combines it
    bool m_listening = false;
};

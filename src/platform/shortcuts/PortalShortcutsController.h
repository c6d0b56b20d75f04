#pragma once

#include "shortcuts/GlobalHotkeyController.h"

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QMap>
#include <QSet>

class QDBusMessage;

// Global shortcuts through the desktop portal's GlobalShortcuts interface (Wayland desktops that
// offer it). The portal binds all of an app's shortcuts at once in a session and may ask the
// user to confirm them, so registrations are gathered and bound together on the next turn of the
// event loop; a shortcut the portal leaves out of its answer is reported through
// registrationFailed() with status 3, a refused or cancelled request with its response code.
class PortalShortcutsController final : public GlobalHotkeyController
{
    Q_OBJECT

public:
    static constexpr uint otherError = 2; // the portal's own code for a request that failed
    static constexpr int notBound = 3;

    // Whether the portal on `bus` has the GlobalShortcuts interface.
    static bool isAvailable(const QDBusConnection &bus);

    // `actionNames` describe the shortcuts in the desktop's dialog.
    PortalShortcutsController(const QDBusConnection &bus, QMap<ShortcutAction, QString> actionNames,
                              QObject *parent = nullptr);
    ~PortalShortcutsController() override;

    Engine engine() const override { return Engine::portal; }
    void unregisterHotKey(ShortcutAction action) override;

protected:
    int registerWithEngine(ShortcutAction action, const KeyCombo &combo) override;

private Q_SLOTS:
    void onResponse(const QDBusMessage &message);
    void onActivated(const QDBusMessage &message);

private:
    enum class Step { idle, creatingSession, binding };

    void scheduleBind();
    void bind();
    void createSession();
    void bindShortcuts();
    void closeSession();
    // Calls a portal method whose answer comes as a Request's Response signal.
    void request(const QString &method, QVariantList arguments, Step step);
    // The request under way ended with `response` (0: success): failures are reported, and a
    // bind asked for meanwhile starts.
    void finishRequest(uint response);

    QDBusConnection m_bus;
    QMap<ShortcutAction, QString> m_actionNames;
    QMap<ShortcutAction, KeyCombo> m_wanted;
    QSet<ShortcutAction> m_bound; // what the portal bound in the current session
    QDBusObjectPath m_session;
    QString m_requestPath;
    Step m_step = Step::idle;
    bool m_bindScheduled = false;
    bool m_bindAfterAnswer = false;
    int m_tokens = 0;
};

#pragma once

#include "arrival/ReachNotifying.h"

#include <QDBusConnection>
#include <QHash>
#include <QLoggingCategory>
#include <QObject>
#include <QStringList>

#include <functional>
#include <optional>

class LocaleManager;
class QDBusPendingCallWatcher;
class QDBusServiceWatcher;

Q_DECLARE_LOGGING_CATEGORY(lcReachNotificationScheduler)

// Posts Tarrow's notices through the desktop's notification server (org.freedesktop.Notifications
// on the session bus): the title, the body, the app's name, icon and desktop entry, and the sound
// theme's name for the kind of notice. A notice with the identifier of one still shown replaces
// it in place (the server's id is kept per identifier and passed as `replaces_id`).
//
// A plain click (the "default" action) asks for the popup at the notice's item. When the notice
// has a link and the server offers actions, a "tarrow.action.join" button opens it with the
// desktop's handler, but only web links and the meeting apps' own links; a server without actions
// shows the link in the body where it supports hyperlinks. Without a server on the bus nothing is
// shown; that is logged once, and posting starts again when a server appears.
class ReachNotificationScheduler : public QObject, public ReachNotifying
{
    Q_OBJECT

public:
    using UrlOpener = std::function<bool(const QUrl &)>;

    static const QString ServiceName; // "org.freedesktop.Notifications"
    static const QString ObjectPath; // "/org/freedesktop/Notifications"
    static const QString JoinAction; // "tarrow.action.join"

    ReachNotificationScheduler(QDBusConnection bus, const LocaleManager &locale, UrlOpener openUrl,
                               QObject *parent = nullptr);

    void post(const Notice &notice) override;
    void withdrawAll() override;

    // The server's id of the notice shown under `identifier`, if one is.
    std::optional<uint> serverID(const QString &identifier) const;

Q_SIGNALS:
    // The user clicked the notice of `item`: open the popup at it.
    void activated(const CountdownID &item);
    // A notice's link was handed to the desktop (for tests and logs).
    void linkOpened(const QUrl &url);

private Q_SLOTS:
    void onActionInvoked(uint id, const QString &action);
    void onNotificationClosed(uint id, uint reason);

private:
    struct Shown
    {
        QString identifier;
        std::optional<QUrl> link;
        std::optional<CountdownID> item;
    };

    bool serverIsThere();
    // Asks the server what it can show; the notices posted meanwhile wait for the answer.
    void fetchCapabilities();
    void send(const Notice &notice);
    void onNotifyFinished(QDBusPendingCallWatcher *call, const Notice &notice);
    void forget(uint id);
    void openLink(const Shown &shown);

    QDBusConnection m_bus;
    const LocaleManager &m_locale;
    UrlOpener m_openUrl;
    QDBusServiceWatcher *m_serverWatcher;
    std::optional<QStringList> m_capabilities;
    QList<Notice> m_waiting;
    bool m_fetchingCapabilities = false;
    bool m_reportedMissingServer = false;
    QHash<QString, uint> m_idByIdentifier;
    QHash<uint, Shown> m_shown;
};

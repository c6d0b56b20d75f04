#include "platform/notifications/ReachNotificationScheduler.h"

#include "calendar/MeetingLinks.h"
#include "l10n/LocaleManager.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>

Q_LOGGING_CATEGORY(lcReachNotificationScheduler, "ReachNotificationScheduler")

const QString ReachNotificationScheduler::ServiceName =
    QStringLiteral("org.freedesktop.Notifications");
const QString ReachNotificationScheduler::ObjectPath =
    QStringLiteral("/org/freedesktop/Notifications");
const QString ReachNotificationScheduler::JoinAction = QStringLiteral("tarrow.action.join");

namespace {

const QString interfaceName = QStringLiteral("org.freedesktop.Notifications");
const QString defaultAction = QStringLiteral("default");
// How long a call to the server may take before it counts as absent.
constexpr int CallTimeoutMSecs = 3000;

// The desktop entry the server takes the app's name, icon and grouping from, and the icon; both
// are installed under the app's id.
const QString desktopEntry = QStringLiteral(TARROW_APP_ID);
const QString appName = QStringLiteral("Tarrow");
const QString appIcon = QStringLiteral(TARROW_APP_ID);

// Names from the freedesktop sound theme.
QString soundFor(Notice::Kind kind)
{
    return kind == Notice::Kind::arrival ? QStringLiteral("alarm-clock-elapsed")
                                         : QStringLiteral("message-new-instant");
}

QString escaped(const QString &text, bool markup)
{
    return markup ? text.toHtmlEscaped() : text;
}

} // namespace

ReachNotificationScheduler::ReachNotificationScheduler(QDBusConnection bus,
                                                       const LocaleManager &locale,
                                                       UrlOpener openUrl, QObject *parent)
    : QObject(parent)
    , m_bus(std::move(bus))
    , m_locale(locale)
    , m_openUrl(std::move(openUrl))
    , m_serverWatcher(new QDBusServiceWatcher(ServiceName, m_bus,
                                              QDBusServiceWatcher::WatchForOwnerChange, this))
{
    // The server sends its signals to the connection that posted (dunst sends them unicast).
    m_bus.connect(ServiceName, ObjectPath, interfaceName, QStringLiteral("ActionInvoked"), this,
                  SLOT(onActionInvoked(uint, QString)));
    m_bus.connect(ServiceName, ObjectPath, interfaceName, QStringLiteral("NotificationClosed"),
                  this, SLOT(onNotificationClosed(uint, uint)));
    // A new server knows nothing of the old one's notices or capabilities.
    connect(m_serverWatcher, &QDBusServiceWatcher::serviceOwnerChanged, this, [this] {
        m_capabilities.reset();
        m_idByIdentifier.clear();
        m_shown.clear();
        m_reportedMissingServer = false;
    });
}

bool ReachNotificationScheduler::serverIsThere()
{
    const bool there = m_bus.isConnected() && m_bus.interface()
        && m_bus.interface()->isServiceRegistered(ServiceName).value();
    if (!there && !m_reportedMissingServer) {
        m_reportedMissingServer = true;
        qCWarning(lcReachNotificationScheduler)
            << "No notification server on the session bus: notifications are not shown";
    }
    return there;
}

void ReachNotificationScheduler::fetchCapabilities()
{
    if (m_fetchingCapabilities)
        return;
    m_fetchingCapabilities = true;
    const QDBusMessage call =
        QDBusMessage::createMethodCall(ServiceName, ObjectPath, interfaceName, "GetCapabilities");
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call, CallTimeoutMSecs), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this](QDBusPendingCallWatcher *finished) {
                finished->deleteLater();
                m_fetchingCapabilities = false;
                const QDBusPendingReply<QStringList> reply = *finished;
                m_capabilities = reply.isError() ? QStringList() : reply.value();
                for (const Notice &notice : std::exchange(m_waiting, {}))
                    send(notice);
            });
}

void ReachNotificationScheduler::post(const Notice &notice)
{
    if (!serverIsThere())
        return;
    if (!m_capabilities) {
        m_waiting.append(notice);
        fetchCapabilities();
        return;
    }
    send(notice);
}

void ReachNotificationScheduler::send(const Notice &notice)
{
    const QStringList &caps = *m_capabilities;
    const bool markup = caps.contains(QStringLiteral("body-markup"));
    std::optional<QUrl> link = notice.link;
    if (link && !MeetingLinks::isSafeToOpen(*link)) {
        qCWarning(lcReachNotificationScheduler).noquote()
            << QStringLiteral("Refused to offer the link of %1: only web and meeting links open")
                   .arg(notice.identifier);
        link.reset();
    }

    QString body = escaped(notice.body, markup);
    QStringList actions {defaultAction, m_locale.text(QStringLiteral("notification.action.open"))};
    if (link && caps.contains(QStringLiteral("actions"))) {
        const QString label = MeetingLinks::isMeetingLink(*link)
            ? m_locale.text(QStringLiteral("notification.action.join"))
            : m_locale.text(QStringLiteral("list.row.open_link"));
        actions << JoinAction << label;
    } else if (link && caps.contains(QStringLiteral("body-hyperlinks"))) {
        const QString href = link->toString(QUrl::FullyEncoded).toHtmlEscaped();
        body += QStringLiteral("\n<a href=\"%1\">%1</a>").arg(href);
    }

    const QVariantMap hints {
        {QStringLiteral("desktop-entry"), desktopEntry},
        {QStringLiteral("urgency"), QVariant::fromValue(uchar(1))},
        {QStringLiteral("category"),
         notice.kind == Notice::Kind::arrival ? QStringLiteral("x-tarrow.reached")
                                              : QStringLiteral("x-tarrow.reminder")},
        {QStringLiteral("sound-name"), soundFor(notice.kind)},
    };
    QDBusMessage call =
        QDBusMessage::createMethodCall(ServiceName, ObjectPath, interfaceName, "Notify");
    call << appName << m_idByIdentifier.value(notice.identifier, 0u) << appIcon
         << escaped(notice.title, markup) << body << actions << hints << -1;
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call, CallTimeoutMSecs), this);
    connect(
        watcher, &QDBusPendingCallWatcher::finished, this,
        [this, notice](QDBusPendingCallWatcher *finished) { onNotifyFinished(finished, notice); });
}

void ReachNotificationScheduler::onNotifyFinished(QDBusPendingCallWatcher *call,
                                                  const Notice &notice)
{
    call->deleteLater();
    const QDBusPendingReply<uint> reply = *call;
    if (reply.isError()) {
        qCWarning(lcReachNotificationScheduler).noquote()
            << QStringLiteral("The notification server refused %1: %2")
                   .arg(notice.identifier, reply.error().message());
        return;
    }
    const uint id = reply.value();
    if (const auto previous = m_idByIdentifier.constFind(notice.identifier);
        previous != m_idByIdentifier.cend() && *previous != id)
        m_shown.remove(*previous);
    m_idByIdentifier.insert(notice.identifier, id);
    m_shown.insert(id, Shown {notice.identifier, notice.link, notice.item});
    qCDebug(lcReachNotificationScheduler).noquote()
        << QStringLiteral("Posted %1 as notification %2").arg(notice.identifier).arg(id);
}

std::optional<uint> ReachNotificationScheduler::serverID(const QString &identifier) const
{
    const auto found = m_idByIdentifier.constFind(identifier);
    return found == m_idByIdentifier.cend() ? std::nullopt : std::optional(*found);
}

void ReachNotificationScheduler::withdrawAll()
{
    for (auto it = m_shown.cbegin(); it != m_shown.cend(); ++it) {
        QDBusMessage call = QDBusMessage::createMethodCall(ServiceName, ObjectPath, interfaceName,
                                                           "CloseNotification");
        call << it.key();
        m_bus.call(call, QDBus::NoBlock);
    }
    m_shown.clear();
    m_idByIdentifier.clear();
}

void ReachNotificationScheduler::onActionInvoked(uint id, const QString &action)
{
    const auto found = m_shown.constFind(id);
    if (found == m_shown.cend())
        return; // not ours, or already handled
    const Shown shown = *found;
    if (action == JoinAction)
        openLink(shown);
    else if (action == defaultAction && shown.item)
        Q_EMIT activated(*shown.item);
    // Some servers leave the notice up after an action; it has done its work.
    forget(id);
    QDBusMessage close =
        QDBusMessage::createMethodCall(ServiceName, ObjectPath, interfaceName, "CloseNotification");
    close << id;
    m_bus.call(close, QDBus::NoBlock);
}

void ReachNotificationScheduler::onNotificationClosed(uint id, uint)
{
    forget(id);
}

void ReachNotificationScheduler::forget(uint id)
{
    const auto found = m_shown.constFind(id);
    if (found == m_shown.cend())
        return;
    m_idByIdentifier.remove(found->identifier);
    m_shown.erase(found);
}

void ReachNotificationScheduler::openLink(const Shown &shown)
{
    if (!shown.link || !MeetingLinks::isSafeToOpen(*shown.link)) {
        qCWarning(lcReachNotificationScheduler).noquote()
            << QStringLiteral("Refused to open the link of %1: only web and meeting links open")
                   .arg(shown.identifier);
        return;
    }
    if (!m_openUrl(*shown.link)) {
        qCWarning(lcReachNotificationScheduler).noquote()
            << QStringLiteral("The desktop could not open %1")
                   .arg(shown.link->toString(QUrl::RemoveUserInfo));
        return;
    }
    qCInfo(lcReachNotificationScheduler).noquote()
        << QStringLiteral("Opened the link of %1").arg(shown.identifier);
    Q_EMIT linkOpened(*shown.link);
}

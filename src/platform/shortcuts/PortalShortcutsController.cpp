#include "platform/shortcuts/PortalShortcutsController.h"

#include "platform/shortcuts/X11KeySymbols.h"
#include "shortcuts/KeyCodeTable.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusReply>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

const QString portalService = u"org.freedesktop.portal.Desktop"_s;
const QString portalPath = u"/org/freedesktop/portal/desktop"_s;
const QString shortcutsInterface = u"org.freedesktop.portal.GlobalShortcuts"_s;
const QString requestInterface = u"org.freedesktop.portal.Request"_s;
const QString sessionInterface = u"org.freedesktop.portal.Session"_s;

// One entry of BindShortcuts' a(sa{sv}): the shortcut's id and its description and trigger.
struct PortalShortcut
{
    QString id;
    QVariantMap properties;
};

QDBusArgument &operator<<(QDBusArgument &argument, const PortalShortcut &shortcut)
{
    argument.beginStructure();
    argument << shortcut.id << shortcut.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, PortalShortcut &shortcut)
{
    argument.beginStructure();
    argument >> shortcut.id >> shortcut.properties;
    argument.endStructure();
    return argument;
}

// The trigger as the XDG shortcuts format writes it: "CTRL+LOGO+t".
QString trigger(const KeyCombo &combo)
{
    QStringList parts;
    const std::pair<quint64, QString> modifiers[] = {{KeyModifier::control, u"CTRL"_s},
                                                     {KeyModifier::alt, u"ALT"_s},
                                                     {KeyModifier::shift, u"SHIFT"_s},
                                                     {KeyModifier::super, u"LOGO"_s}};
    for (const auto &[bit, name] : modifiers) {
        if (combo.modifierFlags & bit)
            parts << name;
    }
    const std::optional<Qt::Key> key = KeyCodeTable::qtKeyOf(combo.keyCode);
    parts << (key ? X11KeySymbols::nameOf(*key) : QString());
    return parts.join(u'+');
}

} // namespace

Q_DECLARE_METATYPE(PortalShortcut)

bool PortalShortcutsController::isAvailable(const QDBusConnection &bus)
{
    if (!bus.isConnected())
        return false;
    QDBusMessage get = QDBusMessage::createMethodCall(
        portalService, portalPath, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    get.setArguments({shortcutsInterface, u"version"_s});
    return bus.call(get, QDBus::Block, 3000).type() == QDBusMessage::ReplyMessage;
}

PortalShortcutsController::PortalShortcutsController(const QDBusConnection &bus,
                                                     QMap<ShortcutAction, QString> actionNames,
                                                     QObject *parent)
    : GlobalHotkeyController(parent)
    , m_bus(bus)
    , m_actionNames(std::move(actionNames))
{
    qDBusRegisterMetaType<PortalShortcut>();
    qDBusRegisterMetaType<QList<PortalShortcut>>();
    m_bus.connect(portalService, portalPath, shortcutsInterface, u"Activated"_s, this,
                  SLOT(onActivated(QDBusMessage)));
    // Outside a sandbox the portal asks who we are first; older portals do not know the call.
    QDBusMessage registration = QDBusMessage::createMethodCall(
        portalService, portalPath, u"org.freedesktop.host.portal.Registry"_s, u"Register"_s);
    registration.setArguments({u"tarrow"_s, QVariantMap()});
    m_bus.asyncCall(registration);
}

PortalShortcutsController::~PortalShortcutsController()
{
    closeSession();
}

int PortalShortcutsController::registerWithEngine(ShortcutAction action, const KeyCombo &combo)
{
    m_wanted.insert(action, combo);
    scheduleBind();
    return 0;
}

void PortalShortcutsController::unregisterHotKey(ShortcutAction action)
{
    if (m_wanted.remove(action))
        scheduleBind();
}

void PortalShortcutsController::scheduleBind()
{
    if (m_bindScheduled)
        return;
    m_bindScheduled = true;
    QTimer::singleShot(0, this, &PortalShortcutsController::bind);
}

void PortalShortcutsController::bind()
{
    m_bindScheduled = false;
    if (m_step != Step::idle) {
        m_bindAfterAnswer = true; // the request under way answers first
        return;
    }
    // A session binds once: a new set of shortcuts needs a new session.
    closeSession();
    if (!m_wanted.isEmpty())
        createSession();
}

void PortalShortcutsController::createSession()
{
    const QString token = u"tarrow_session_"_s + QString::number(++m_tokens);
    request(u"CreateSession"_s, {QVariantMap {{u"session_handle_token"_s, token}}},
            Step::creatingSession);
}

void PortalShortcutsController::bindShortcuts()
{
    QList<PortalShortcut> shortcuts;
    for (auto it = m_wanted.cbegin(); it != m_wanted.cend(); ++it)
        shortcuts << PortalShortcut {
            rawValue(it.key()),
            {{u"description"_s, m_actionNames.value(it.key(), rawValue(it.key()))},
             {u"preferred_trigger"_s, trigger(it.value())}}};
    request(
        u"BindShortcuts"_s,
        {QVariant::fromValue(m_session), QVariant::fromValue(shortcuts), QString(), QVariantMap()},
        Step::binding);
}

void PortalShortcutsController::request(const QString &method, QVariantList arguments, Step step)
{
    // The answer comes as a Response signal on a path made of our bus name and a token; listen
    // there before asking, so a quick answer is not missed.
    const QString token = u"tarrow_"_s + QString::number(++m_tokens);
    QString sender = m_bus.baseService().mid(1);
    sender.replace(u'.', u'_');
    m_requestPath = portalPath + u"/request/"_s + sender + u'/' + token;
    m_bus.connect(portalService, m_requestPath, requestInterface, u"Response"_s, this,
                  SLOT(onResponse(QDBusMessage)));
    QVariantMap options = arguments.takeLast().toMap();
    options.insert(u"handle_token"_s, token);
    arguments << options;
    QDBusMessage call =
        QDBusMessage::createMethodCall(portalService, portalPath, shortcutsInterface, method);
    call.setArguments(arguments);
    m_step = step;
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher *w) {
        w->deleteLater();
        if (!w->isError())
            return;
        // No Response will come for a call the portal refused outright.
        qCWarning(lcGlobalHotkeyController).noquote()
            << QStringLiteral("The portal refused the shortcuts: %1").arg(w->error().message());
        finishRequest(otherError);
    });
}

void PortalShortcutsController::finishRequest(uint response)
{
    m_bus.disconnect(portalService, m_requestPath, requestInterface, u"Response"_s, this,
                     SLOT(onResponse(QDBusMessage)));
    m_requestPath.clear();
    m_step = Step::idle;
    if (response != 0) {
        for (const ShortcutAction action : m_wanted.keys())
            reportLateFailure(action, int(response));
    }
    if (m_bindAfterAnswer) {
        m_bindAfterAnswer = false;
        scheduleBind();
    }
}

void PortalShortcutsController::onResponse(const QDBusMessage &message)
{
    if (m_requestPath.isEmpty() || message.path() != m_requestPath
        || message.arguments().size() < 2)
        return;
    const uint response = message.arguments().at(0).toUInt();
    const QVariantMap results = qdbus_cast<QVariantMap>(message.arguments().at(1));
    if (response == 0 && m_step == Step::creatingSession) {
        m_session = QDBusObjectPath(results.value(u"session_handle"_s).toString());
        m_bus.disconnect(portalService, m_requestPath, requestInterface, u"Response"_s, this,
                         SLOT(onResponse(QDBusMessage)));
        bindShortcuts();
        return;
    }
    if (response == 0) {
        m_bound.clear();
        for (const PortalShortcut &shortcut :
             qdbus_cast<QList<PortalShortcut>>(results.value(u"shortcuts"_s))) {
            if (const std::optional<ShortcutAction> action = shortcutActionFromRaw(shortcut.id))
                m_bound.insert(*action);
        }
        for (const ShortcutAction action : m_wanted.keys()) {
            if (!m_bound.contains(action))
                reportLateFailure(action, notBound);
        }
    }
    finishRequest(response);
}

void PortalShortcutsController::onActivated(const QDBusMessage &message)
{
    // (session_handle o, shortcut_id s, timestamp t, options a{sv})
    const QVariantList arguments = message.arguments();
    if (arguments.size() < 2 || qdbus_cast<QDBusObjectPath>(arguments.at(0)) != m_session)
        return;
    if (const std::optional<ShortcutAction> action =
            shortcutActionFromRaw(arguments.at(1).toString());
        action && m_bound.contains(*action))
        Q_EMIT activated(*action);
}

void PortalShortcutsController::closeSession()
{
    if (m_session.path().isEmpty())
        return;
    m_bus.asyncCall(QDBusMessage::createMethodCall(portalService, m_session.path(),
                                                   sessionInterface, u"Close"_s));
    m_session = QDBusObjectPath();
    m_bound.clear();
}

#include "platform/shortcuts/KGlobalAccelController.h"

#include "shortcuts/KeyCodeTable.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QKeyCombination>

using namespace Qt::StringLiterals;

namespace {

const QString service = u"org.kde.kglobalaccel"_s;
const QString path = u"/kglobalaccel"_s;
const QString interface = u"org.kde.KGlobalAccel"_s;
const QString componentInterface = u"org.kde.kglobalaccel.Component"_s;
const QString componentName = u"tarrow"_s;
const QString componentFriendlyName = u"Tarrow"_s;
constexpr int callTimeoutMs = 3000;

// setShortcut's flags: make the key active now, take ours over the saved one, or record it as
// the action's default.
constexpr uint setPresent = 2;
constexpr uint noAutoloading = 4;
constexpr uint isDefault = 8;

// The combination as Qt combines key and modifiers, which is how kglobalaccel keeps keys.
int combined(const KeyCombo &combo)
{
    const std::optional<Qt::Key> key = KeyCodeTable::qtKeyOf(combo.keyCode);
    if (!key)
        return 0;
    return QKeyCombination(KeyModifier::toQt(combo.modifierFlags), *key).toCombined();
}

std::optional<KeyCombo> fromCombined(int keys)
{
    const QKeyCombination combination = QKeyCombination::fromCombined(keys);
    const std::optional<quint16> code = KeyCodeTable::codeOf(combination.key());
    if (!code)
        return std::nullopt;
    return KeyCombo {*code, KeyModifier::fromQt(combination.keyboardModifiers())};
}

} // namespace

bool KGlobalAccelController::isAvailable(const QDBusConnection &bus)
{
    return bus.isConnected() && bus.interface()->isServiceRegistered(service);
}

KGlobalAccelController::KGlobalAccelController(const QDBusConnection &bus,
                                               QMap<ShortcutAction, QString> actionNames,
                                               QObject *parent)
    : GlobalHotkeyController(parent)
    , m_bus(bus)
    , m_actionNames(std::move(actionNames))
{
    qDBusRegisterMetaType<QList<int>>();
    m_bus.connect(service, path, interface, u"yourShortcutsChanged"_s, this,
                  SLOT(onShortcutsChanged(QStringList, QList<int>)));
}

KGlobalAccelController::~KGlobalAccelController()
{
    for (const ShortcutAction action : m_registered.keys())
        unregisterHotKey(action);
}

QStringList KGlobalAccelController::actionId(ShortcutAction action) const
{
    return {componentName, rawValue(action), componentFriendlyName,
            m_actionNames.value(action, rawValue(action))};
}

int KGlobalAccelController::registerWithEngine(ShortcutAction action, const KeyCombo &combo)
{
    const auto call = [this](const QString &method, const QVariantList &arguments) {
        QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
        message.setArguments(arguments);
        return m_bus.call(message, QDBus::Block, callTimeoutMs);
    };
    const QStringList id = actionId(action);
    if (call(u"doRegister"_s, {id}).type() == QDBusMessage::ErrorMessage)
        return noAnswer;
    const int keys = combined(combo);
    const int defaultKeys = combined(defaultCombo(action));
    call(u"setShortcut"_s,
         {id, QVariant::fromValue(QList<int> {defaultKeys}), QVariant::fromValue(isDefault)});
    const QDBusReply<QList<int>> assigned = call(u"setShortcut"_s,
                                                 {id, QVariant::fromValue(QList<int> {keys}),
                                                  QVariant::fromValue(setPresent | noAutoloading)});
    if (!assigned.isValid())
        return noAnswer;
    listenToComponent();
    if (!assigned.value().contains(keys))
        return keyTaken;
    m_registered.insert(action, keys);
    return 0;
}

void KGlobalAccelController::unregisterHotKey(ShortcutAction action)
{
    if (!m_registered.remove(action))
        return;
    // The action stays listed in the desktop's settings; its key is released until Tarrow
    // registers it again.
    QDBusMessage message =
        QDBusMessage::createMethodCall(service, path, interface, u"setInactive"_s);
    message.setArguments({actionId(action)});
    m_bus.call(message, QDBus::Block, callTimeoutMs);
}

void KGlobalAccelController::listenToComponent()
{
    if (m_listening)
        return;
    QDBusMessage message =
        QDBusMessage::createMethodCall(service, path, interface, u"getComponent"_s);
    message.setArguments({componentName});
    const QDBusReply<QDBusObjectPath> component = m_bus.call(message, QDBus::Block, callTimeoutMs);
    const QString componentPath =
        component.isValid() ? component.value().path() : u"/component/"_s + componentName;
    m_listening =
        m_bus.connect(service, componentPath, componentInterface, u"globalShortcutPressed"_s, this,
                      SLOT(onPressed(QString, QString, qlonglong)));
}

void KGlobalAccelController::onPressed(const QString &component, const QString &actionName,
                                       qlonglong)
{
    if (component != componentName)
        return;
    if (const std::optional<ShortcutAction> action = shortcutActionFromRaw(actionName);
        action && m_registered.contains(*action))
        Q_EMIT activated(*action);
}

void KGlobalAccelController::onShortcutsChanged(const QStringList &id, const QList<int> &keys)
{
    if (id.size() < 2 || id.at(0) != componentName || keys.isEmpty())
        return;
    const std::optional<ShortcutAction> action = shortcutActionFromRaw(id.at(1));
    const std::optional<KeyCombo> combo = fromCombined(keys.first());
    if (!action || !combo || m_registered.value(*action) == keys.first())
        return;
    m_registered.insert(*action, keys.first());
    qCInfo(lcGlobalHotkeyController).noquote()
        << QStringLiteral("The desktop's settings gave the %1 shortcut another key")
               .arg(rawValue(*action));
    Q_EMIT comboChangedOnDesktop(*action, *combo);
}

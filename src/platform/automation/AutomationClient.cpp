#include "platform/automation/AutomationClient.h"

#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusReply>
#include <QDBusVariant>

namespace {

constexpr int answerTimeoutMs = 10000;
constexpr int propertyTimeoutMs = 3000;

QDBusMessage methodCall(const QString &interface, const QString &method)
{
    QDBusMessage message = QDBusMessage::createMethodCall(
        AutomationBus::serviceName(), AutomationBus::objectPath(), interface, method);
    // A Tarrow that is not running is not started for a question.
    message.setAutoStartService(false);
    return message;
}

// Waits with a local event loop, so a client and the app may even share a process (tests).
constexpr QDBus::CallMode waitForAnswer = QDBus::BlockWithGui;

} // namespace

AutomationClient::AutomationClient(QDBusConnection bus)
    : m_bus(std::move(bus))
{
    AutomationBus::registerTypes();
}

AutomationClient AutomationClient::sessionBus()
{
    return AutomationClient(QDBusConnection::sessionBus());
}

std::optional<QVariant> AutomationClient::property(const QString &name) const
{
    if (!m_bus.isConnected())
        return std::nullopt;
    QDBusMessage message =
        methodCall(QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    message << AutomationBus::interfaceName() << name;
    const QDBusMessage reply = m_bus.call(message, waitForAnswer, propertyTimeoutMs);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return std::nullopt;
    return reply.arguments().constFirst().value<QDBusVariant>().variant();
}

bool AutomationClient::servesDataDirectory(const QString &dataDirectory) const
{
    const std::optional<QVariant> served = property(QStringLiteral("DataDirectory"));
    return served && AutomationBus::sameFolder(served->toString(), dataDirectory);
}

AutomationClient::Reply AutomationClient::call(const QString &method,
                                               const QVariantList &arguments) const
{
    if (!m_bus.isConnected())
        return {Reply::Kind::unreachable, QStringLiteral("no session bus")};
    QDBusMessage message = methodCall(AutomationBus::interfaceName(), method);
    message.setArguments(arguments);
    const QDBusMessage reply = m_bus.call(message, waitForAnswer, answerTimeoutMs);
    if (reply.type() == QDBusMessage::ErrorMessage) {
        const bool refused = AutomationBus::isIntentError(reply.errorName());
        return {refused ? Reply::Kind::refused : Reply::Kind::unreachable, reply.errorMessage()};
    }
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return {Reply::Kind::unreachable, QStringLiteral("no answer")};
    return {Reply::Kind::answered, reply.arguments().constFirst().toString()};
}

std::optional<StoredCountdownEntities> AutomationClient::listCountdowns() const
{
    if (!m_bus.isConnected())
        return std::nullopt;
    const QDBusReply<StoredCountdownEntities> reply =
        m_bus.call(methodCall(AutomationBus::interfaceName(), QStringLiteral("ListCountdowns")),
                   waitForAnswer, answerTimeoutMs);
    if (!reply.isValid())
        return std::nullopt;
    return reply.value();
}

std::optional<QString> AutomationClient::status() const
{
    const std::optional<QVariant> value = property(QStringLiteral("Status"));
    if (!value)
        return std::nullopt;
    return value->toString();
}

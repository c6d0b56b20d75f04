#include "ui/celebration/ReducedMotion.h"

#include <QDBusMessage>
#include <QDBusVariant>
#include <QDir>
#include <QFile>
#include <QSettings>

namespace {

std::optional<bool> fromPortal(QDBusConnection &bus)
{
    if (!bus.isConnected())
        return std::nullopt;
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.portal.Desktop"),
        QStringLiteral("/org/freedesktop/portal/desktop"),
        QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("Read"));
    call << QStringLiteral("org.gnome.desktop.interface") << QStringLiteral("enable-animations");
    call.setAutoStartService(false); // a portal that is not running is not started for this
    const QDBusMessage reply = bus.call(call, QDBus::Block, 500);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return std::nullopt;
    // The answer is a variant in a variant.
    QVariant value = reply.arguments().constFirst();
    while (value.canConvert<QDBusVariant>() && value.userType() == qMetaTypeId<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    if (value.typeId() != QMetaType::Bool)
        return std::nullopt;
    return !value.toBool();
}

} // namespace

namespace ReducedMotion {

std::optional<bool> fromKdeGlobals(const QString &path)
{
    if (!QFile::exists(path))
        return std::nullopt;
    const QSettings globals(path, QSettings::IniFormat);
    const QVariant factor = globals.value(QStringLiteral("KDE/AnimationDurationFactor"));
    if (!factor.isValid())
        return std::nullopt;
    return factor.toDouble() == 0.0;
}

bool isPreferred(QDBusConnection sessionBus, const QString &configHome)
{
    if (const auto kde = fromKdeGlobals(QDir(configHome).filePath(QStringLiteral("kdeglobals"))))
        return *kde;
    return fromPortal(sessionBus).value_or(false);
}

} // namespace ReducedMotion

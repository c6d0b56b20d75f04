#include "platform/tray/StatusNotifierItem.h"

#include "platform/tray/DBusMenuExporter.h"
#include "platform/tray/StatusNotifierItemInterface.h"
#include "platform/tray/TrayIconRenderer.h"

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QLoggingCategory>

Q_LOGGING_CATEGORY(lcStatusNotifierItem, "StatusNotifierItem")

const QString StatusNotifierItem::watcherService = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString StatusNotifierItem::itemObjectPath = QStringLiteral("/StatusNotifierItem");
const QString StatusNotifierItem::menuObjectPath = QStringLiteral("/MenuBar");

namespace {

QString nextServiceName()
{
    static int instance = 0;
    return QStringLiteral("org.kde.StatusNotifierItem-%1-%2")
        .arg(QCoreApplication::applicationPid())
        .arg(++instance);
}

} // namespace

StatusNotifierItem::StatusNotifierItem(const QDBusConnection &connection, QObject *parent)
    : StatusItemHost(parent)
    , m_connection(connection)
    , m_serviceName(nextServiceName())
{
    registerStatusNotifierTypes();
    m_item = new StatusNotifierItemInterface(QDBusObjectPath(menuObjectPath), this);
    m_menu = new DBusMenuExporter(this);
    connect(m_item, &StatusNotifierItemInterface::activated, this, [this](const QPoint &position) {
        Q_EMIT clicked(StatusItemClick {position, QRect()});
    });
}

StatusNotifierItem::~StatusNotifierItem()
{
    if (m_started) {
        m_connection.unregisterObject(itemObjectPath);
        m_connection.unregisterObject(menuObjectPath);
        m_connection.unregisterService(m_serviceName);
    }
}

bool StatusNotifierItem::start()
{
    if (m_started) {
        return true;
    }
    if (!m_connection.isConnected()) {
        qCWarning(lcStatusNotifierItem).noquote()
            << QStringLiteral("No session bus: %1").arg(m_connection.lastError().message());
        return false;
    }
    if (!m_connection.registerService(m_serviceName)
        || !m_connection.registerObject(itemObjectPath, m_item,
                                        QDBusConnection::ExportScriptableContents
                                            | QDBusConnection::ExportAllProperties)
        || !m_connection.registerObject(menuObjectPath, m_menu,
                                        QDBusConnection::ExportAllContents)) {
        qCWarning(lcStatusNotifierItem).noquote()
            << QStringLiteral("Failed to export the status item: %1")
                   .arg(m_connection.lastError().message());
        m_connection.unregisterObject(itemObjectPath);
        m_connection.unregisterService(m_serviceName);
        return false;
    }
    m_started = true;

    // Any new owner of the watcher name (a late panel, a restarted one, a replacement) has an
    // empty list of items, so register with each.
    // A panel that starts its host after the watcher says so; one that stops says that too.
    const QString watcherPath = QStringLiteral("/StatusNotifierWatcher");
    m_connection.connect(watcherService, watcherPath, watcherService,
                         QStringLiteral("StatusNotifierHostRegistered"), this,
                         SLOT(onHostRegistered()));
    m_connection.connect(watcherService, watcherPath, watcherService,
                         QStringLiteral("StatusNotifierHostUnregistered"), this,
                         SLOT(onHostUnregistered()));
    m_watcher = new QDBusServiceWatcher(watcherService, m_connection,
                                        QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString &, const QString &, const QString &newOwner) {
                if (newOwner.isEmpty()) {
                    setRegistered(false);
                } else {
                    registerWithWatcher();
                }
            });
    if (m_connection.interface()->isServiceRegistered(watcherService)) {
        registerWithWatcher();
    }
    return true;
}

void StatusNotifierItem::registerWithWatcher()
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        watcherService, QStringLiteral("/StatusNotifierWatcher"), watcherService,
        QStringLiteral("RegisterStatusNotifierItem"));
    call << m_serviceName;
    auto *pending = new QDBusPendingCallWatcher(m_connection.asyncCall(call), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher *w) {
        w->deleteLater();
        const QDBusPendingReply<> reply = *w;
        if (reply.isError()) {
            qCWarning(lcStatusNotifierItem).noquote()
                << QStringLiteral("Failed to register the status item: %1")
                       .arg(reply.error().message());
            setRegistered(false);
            return;
        }
        qCDebug(lcStatusNotifierItem) << "Registered" << m_serviceName;
        askForHost();
        setRegistered(true);
    });
}

void StatusNotifierItem::askForHost()
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        watcherService, QStringLiteral("/StatusNotifierWatcher"),
        QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    call << watcherService << QStringLiteral("IsStatusNotifierHostRegistered");
    auto *pending = new QDBusPendingCallWatcher(m_connection.asyncCall(call), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher *w) {
        w->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *w;
        // A watcher without the property is taken at its word that items are shown.
        setHostPresent(reply.isError() || reply.value().variant().toBool());
    });
}

void StatusNotifierItem::onHostRegistered()
{
    setHostPresent(true);
}

void StatusNotifierItem::onHostUnregistered()
{
    askForHost(); // another panel's host may still be there
}

void StatusNotifierItem::setHostPresent(bool present)
{
    const bool wasHosted = isHosted();
    m_hostPresent = present;
    if (wasHosted != isHosted())
        Q_EMIT hostedChanged(isHosted());
}

void StatusNotifierItem::setRegistered(bool registered)
{
    if (registered == m_registered)
        return;
    const bool wasHosted = isHosted();
    m_registered = registered;
    Q_EMIT registeredChanged(m_registered);
    if (wasHosted != isHosted())
        Q_EMIT hostedChanged(isHosted());
}

void StatusNotifierItem::show(const MenubarChipPresentation &presentation,
                              const QString &accessibleLabel)
{
    SniIconPixmapList pixmaps;
    for (int side : TrayIconRenderer::standardSides()) {
        pixmaps.append(SniIconPixmap::fromImage(TrayIconRenderer::render(presentation, side)));
    }
    m_item->setIconPixmap(pixmaps);
    m_item->setTitle(accessibleLabel);
    const QString label = labelText(presentation);
    m_item->setLabel(label, labelGuide(label));
}

void StatusNotifierItem::setMenuEntries(const QList<StatusItemMenuEntry> &entries)
{
    m_menu->setEntries(entries);
}

void StatusNotifierItem::setPopupOpen(bool open)
{
    m_item->setToolTipHidden(open);
}

QString StatusNotifierItem::labelText(const MenubarChipPresentation &presentation)
{
    if (presentation.title.isEmpty() || presentation.detail.isEmpty()) {
        return presentation.title + presentation.detail;
    }
    return presentation.title + QLatin1Char(' ') + presentation.detail;
}

QString StatusNotifierItem::labelGuide(const QString &label)
{
    QString guide = label;
    for (QChar &c : guide) {
        if (c.isDigit()) {
            c = QLatin1Char('0');
        }
    }
    return guide;
}

#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QObject>
#include <QStringList>

// Stands in for a panel's org.kde.StatusNotifierWatcher: records every item that registers and
// the connection it came from, and says a host is there.
class FakeStatusNotifierWatcher : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ isHostRegistered)
    Q_PROPERTY(int ProtocolVersion READ protocolVersion)
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ registeredItems)

public:
    explicit FakeStatusNotifierWatcher(QDBusConnection connection)
        : m_connection(std::move(connection))
    {
    }
    ~FakeStatusNotifierWatcher() override { stop(); }

    bool start()
    {
        return m_connection.registerObject(QStringLiteral("/StatusNotifierWatcher"), this,
                                           QDBusConnection::ExportAllSlots
                                               | QDBusConnection::ExportAllProperties)
            && m_connection.registerService(QStringLiteral("org.kde.StatusNotifierWatcher"));
    }
    void stop()
    {
        m_connection.unregisterService(QStringLiteral("org.kde.StatusNotifierWatcher"));
        m_connection.unregisterObject(QStringLiteral("/StatusNotifierWatcher"));
    }

    bool isHostRegistered() const { return true; }
    int protocolVersion() const { return 0; }
    QStringList registeredItems() const { return m_items; }
    QStringList senders() const { return m_senders; }

public Q_SLOTS:
    void RegisterStatusNotifierItem(const QString &service)
    {
        m_items.append(service);
        m_senders.append(message().service());
    }

private:
    QDBusConnection m_connection;
    QStringList m_items;
    QStringList m_senders;
};

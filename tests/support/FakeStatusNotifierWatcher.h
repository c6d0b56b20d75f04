#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QObject>
#include <QStringList>

// Stands in for a panel: its org.kde.StatusNotifierWatcher records every item that registers and
// the connection it came from, says whether a host (the panel's tray) shows the items, and logs
// the item's signals it listens to with their arguments.
class FakeStatusNotifierWatcher : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost)

public:
    static inline const QString service = QStringLiteral("org.kde.StatusNotifierWatcher");
    static inline const QString path = QStringLiteral("/StatusNotifierWatcher");

    explicit FakeStatusNotifierWatcher(QDBusConnection connection)
        : m_connection(std::move(connection))
    {
        m_connection.registerObject(path, this,
                                    QDBusConnection::ExportScriptableSlots
                                        | QDBusConnection::ExportScriptableSignals
                                        | QDBusConnection::ExportAllProperties);
    }
    ~FakeStatusNotifierWatcher() override
    {
        stop();
        m_connection.unregisterObject(path);
    }

    bool start() { return m_connection.registerService(service); }
    void stop() { m_connection.unregisterService(service); }

    bool hasHost() const { return m_hasHost; }
    // A panel's tray starting or stopping while the watcher runs.
    void setHost(bool host)
    {
        m_hasHost = host;
        if (host)
            Q_EMIT StatusNotifierHostRegistered();
        else
            Q_EMIT StatusNotifierHostUnregistered();
    }

    QStringList items; // "service from connection"
    QStringList signalLog;

public Q_SLOTS:
    Q_SCRIPTABLE void RegisterStatusNotifierItem(const QString &item)
    {
        items.append(item + QStringLiteral(" from ") + message().service());
    }
    void record(const QDBusMessage &signal)
    {
        QStringList words {signal.member()};
        for (const QVariant &argument : signal.arguments())
            words.append(argument.toString());
        signalLog.append(words.join(u'|'));
    }

Q_SIGNALS:
    Q_SCRIPTABLE void StatusNotifierHostRegistered();
    Q_SCRIPTABLE void StatusNotifierHostUnregistered();

private:
    QDBusConnection m_connection;
    bool m_hasHost = true;
};

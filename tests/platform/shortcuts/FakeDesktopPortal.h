#pragma once

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QMutex>
#include <QObject>
#include <QStringList>

// One entry of BindShortcuts' a(sa{sv}).
struct FakePortalShortcut
{
    QString id;
    QVariantMap properties;
};
Q_DECLARE_METATYPE(FakePortalShortcut)

inline QDBusArgument &operator<<(QDBusArgument &argument, const FakePortalShortcut &shortcut)
{
    argument.beginStructure();
    argument << shortcut.id << shortcut.properties;
    argument.endStructure();
    return argument;
}

inline const QDBusArgument &operator>>(const QDBusArgument &argument, FakePortalShortcut &shortcut)
{
    argument.beginStructure();
    argument >> shortcut.id >> shortcut.properties;
    argument.endStructure();
    return argument;
}

// Stand-in for the desktop portal's GlobalShortcuts on a private bus: sessions and bindings
// answered through Request::Response signals as the portal answers them, every call written
// down, and a list of shortcut ids the "user" declines (left out of the answer).
class FakeDesktopPortal : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.GlobalShortcuts")
    Q_PROPERTY(uint version READ version)

public:
    FakeDesktopPortal()
    {
        qDBusRegisterMetaType<FakePortalShortcut>();
        qDBusRegisterMetaType<QList<FakePortalShortcut>>();
    }

    uint version() const { return 1; }
    QStringList declined;
    QString lastSession;

    QStringList calls()
    {
        QMutexLocker lock(&m_mutex);
        return m_calls;
    }

    // The user pressed the shortcut `id` of the last session.
    void activate(const QString &id)
    {
        QDBusMessage signal = QDBusMessage::createSignal(
            u"/org/freedesktop/portal/desktop"_qs, u"org.freedesktop.portal.GlobalShortcuts"_qs,
            u"Activated"_qs);
        signal << QVariant::fromValue(QDBusObjectPath(lastSession)) << id << qulonglong(0)
               << QVariantMap();
        QDBusConnection(m_connection).send(signal);
    }

public Q_SLOTS:
    QDBusObjectPath CreateSession(const QVariantMap &options)
    {
        record(u"CreateSession"_qs);
        lastSession = objectPath(u"session"_qs, options.value(u"session_handle_token"_qs));
        return respond(options, {{u"session_handle"_qs, lastSession}});
    }

    QDBusObjectPath BindShortcuts(const QDBusObjectPath &session,
                                  const QList<FakePortalShortcut> &shortcuts, const QString &,
                                  const QVariantMap &options)
    {
        QStringList asked;
        QList<FakePortalShortcut> bound;
        for (const FakePortalShortcut &shortcut : shortcuts) {
            asked << shortcut.id + u'='
                    + shortcut.properties.value(u"preferred_trigger"_qs).toString();
            if (!declined.contains(shortcut.id))
                bound << shortcut;
        }
        record(u"BindShortcuts "_qs + (session.path() == lastSession ? u"(session) "_qs : QString())
               + asked.join(u' '));
        return respond(options, {{u"shortcuts"_qs, QVariant::fromValue(bound)}});
    }

private:
    QString objectPath(const QString &kind, const QVariant &token)
    {
        QString sender = message().service().mid(1);
        sender.replace(u'.', u'_');
        return u"/org/freedesktop/portal/desktop/"_qs + kind + u'/' + sender + u'/'
            + token.toString();
    }

    // Answers a request through the Response signal on its handle.
    QDBusObjectPath respond(const QVariantMap &options, const QVariantMap &results)
    {
        const QString handle = objectPath(u"request"_qs, options.value(u"handle_token"_qs));
        m_connection = connection().name();
        QDBusMessage response = QDBusMessage::createSignal(
            handle, u"org.freedesktop.portal.Request"_qs, u"Response"_qs);
        response << 0u << results;
        connection().send(response);
        return QDBusObjectPath(handle);
    }

    void record(const QString &call)
    {
        QMutexLocker lock(&m_mutex);
        m_calls << call;
    }

    QMutex m_mutex;
    QStringList m_calls;
    QString m_connection;
};

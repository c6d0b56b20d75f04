#pragma once

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QMutex>
#include <QObject>
#include <QStringList>

// Stand-in for KDE's kglobalaccel: the methods Tarrow calls, answered as the real service answers
// them (setShortcut returns the keys the action holds afterwards: none when another application
// has the key), each call written down as the service received it.
class FakeKGlobalAccelComponent : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.kglobalaccel.Component")

Q_SIGNALS:
    void globalShortcutPressed(const QString &componentUnique, const QString &actionUnique,
                               qlonglong timestamp);
};

class FakeKGlobalAccel : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.KGlobalAccel")

public:
    QStringList calls()
    {
        QMutexLocker lock(&m_mutex);
        return m_calls;
    }
    QList<int> taken; // keys another application holds
    FakeKGlobalAccelComponent component;

public Q_SLOTS:
    void doRegister(const QStringList &actionId) { record(u"doRegister " + actionId.join(u'|')); }
    QList<int> setShortcut(const QStringList &actionId, const QList<int> &keys, uint flags)
    {
        QStringList written;
        QList<int> assigned;
        for (const int key : keys) {
            written << QString::number(key, 16);
            if (!taken.contains(key) || (flags & 8)) // 8: setting the default takes any key
                assigned << key;
        }
        record(QStringLiteral("setShortcut %1 %2 %3")
                   .arg(actionId.at(1), written.join(u','))
                   .arg(flags));
        return assigned;
    }
    QDBusObjectPath getComponent(const QString &componentUnique)
    {
        record(u"getComponent " + componentUnique);
        return QDBusObjectPath(u"/component/" + componentUnique);
    }
    void setInactive(const QStringList &actionId) { record(u"setInactive " + actionId.at(1)); }

Q_SIGNALS:
    void yourShortcutsChanged(const QStringList &actionId, const QList<int> &newKeys);

private:
    void record(const QString &call)
    {
        QMutexLocker lock(&m_mutex);
        m_calls << call;
    }

    QMutex m_mutex;
    QStringList m_calls;
};

#pragma once

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QMutex>
#include <QObject>
#include <QStringList>

// Stand-in for KDE's kglobalaccel on a private bus: the methods Tarrow calls, answered as the
// real service answers them (setShortcut returns the keys the action holds afterwards: none when
// another application has the key), each call written down as the service received it. It lives
// on a thread of its own, so blocking calls from the test's thread get their answer.
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
    QList<int> taken; // keys another application holds

    QStringList calls()
    {
        QMutexLocker lock(&m_mutex);
        return m_calls;
    }
    FakeKGlobalAccelComponent component;

public Q_SLOTS:
    void doRegister(const QStringList &actionId) { record(u"doRegister " + actionId.join(u'|')); }

    QList<int> setShortcut(const QStringList &actionId, const QList<int> &keys, uint flags)
    {
        QStringList written;
        for (const int key : keys)
            written << QString::number(key, 16);
        record(QStringLiteral("setShortcut %1 %2 %3")
                   .arg(actionId.at(1), written.join(u','))
                   .arg(flags));
        constexpr uint isDefault = 8;
        if (flags & isDefault)
            return keys;
        QList<int> assigned;
        for (const int key : keys) {
            if (!taken.contains(key))
                assigned << key;
        }
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

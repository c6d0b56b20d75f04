#pragma once

#include "platform/tray/StatusItemHost.h"
#include "platform/tray/StatusNotifierTypes.h"

#include <QDBusVariant>
#include <QObject>

// A flat menu served over com.canonical.dbusmenu, for panels that open the item's menu
// themselves (GNOME's AppIndicator extension opens it on a left click). Item 0 is the root;
// entry i has the id i + 1.
class DBusMenuExporter : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version)
    Q_PROPERTY(QString TextDirection READ textDirection)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath)

public:
    using QObject::QObject;

    void setEntries(const QList<StatusItemMenuEntry> &entries);

    uint version() const { return 3; }
    QString textDirection() const;
    QString status() const;
    QStringList iconThemePath() const { return {}; }

public Q_SLOTS:
    uint GetLayout(int parentId, int recursionDepth, const QStringList &propertyNames,
                   DBusMenuLayoutItem &layout);
    DBusMenuItemPropertiesList GetGroupProperties(const QList<int> &ids,
                                                  const QStringList &propertyNames);
    QDBusVariant GetProperty(int id, const QString &name);
    void Event(int id, const QString &eventId, const QDBusVariant &data, uint timestamp);
    bool AboutToShow(int id);

Q_SIGNALS:
    void LayoutUpdated(uint revision, int parent);

private:
    QVariantMap propertiesOf(int id, const QStringList &names) const;

    QList<StatusItemMenuEntry> m_entries;
    uint m_revision = 1;
};

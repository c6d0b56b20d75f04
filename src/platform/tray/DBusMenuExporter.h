#pragma once

#include "platform/tray/StatusItemHost.h"
#include "platform/tray/StatusNotifierTypes.h"

#include <QDBusContext>
#include <QDBusVariant>
#include <QObject>

// A flat menu served over com.canonical.dbusmenu, for panels that open the item's menu
// themselves: GNOME's AppIndicator extension on a left click, XFCE's and KDE's trays on a right
// click. Item 0 is the root; entry i has the id i + 1.
//
// Hosts differ in the calls they make: libdbusmenu (XFCE, MATE) batches AboutToShowGroup and
// EventGroup, KDE's client sends AboutToShow and Event one by one; both read GetLayout and
// GetGroupProperties. An entry's action runs on the next turn of the event loop, after the reply
// went out, so a host never waits on what the action does (opening the popup, quitting).
class DBusMenuExporter : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version)
    Q_PROPERTY(QString TextDirection READ textDirection)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath)

public:
    using QObject::QObject;

    // Replaces the entries; hosts hear of it through LayoutUpdated when any label changed.
    void setEntries(const QList<StatusItemMenuEntry> &entries);
    uint revision() const { return m_revision; }

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
    // Returns the ids that do not exist.
    QList<int> EventGroup(const DBusMenuEventList &events);
    bool AboutToShow(int id);
    // Returns the ids whose layout needs fetching again (none: the menu is built up front).
    QList<int> AboutToShowGroup(const QList<int> &ids, QList<int> &idErrors);

Q_SIGNALS:
    void LayoutUpdated(uint revision, int parent);
    void ItemsPropertiesUpdated(const DBusMenuItemPropertiesList &updatedProps,
                                const DBusMenuItemPropertyNamesList &removedProps);
    void ItemActivationRequested(int id, uint timestamp);

private:
    bool exists(int id) const { return id >= 0 && id <= m_entries.size(); }
    QVariantMap propertiesOf(int id, const QStringList &names) const;
    // Runs the event; false when the id does not exist.
    bool handleEvent(int id, const QString &eventId);
    void replyUnknownId(int id);

    QList<StatusItemMenuEntry> m_entries;
    uint m_revision = 1;
};

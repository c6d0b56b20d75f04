#pragma once

#include <QDBusArgument>
#include <QDBusVariant>
#include <QImage>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QVariantMap>

// Values of the org.kde.StatusNotifierItem and com.canonical.dbusmenu interfaces, as they travel
// over D-Bus.

// One icon size: width, height and ARGB32 pixels in network byte order, "(iiay)".
struct SniIconPixmap
{
    qint32 width = 0;
    qint32 height = 0;
    QByteArray bytes;

    static SniIconPixmap fromImage(const QImage &image);
    QImage toImage() const;
    bool operator==(const SniIconPixmap &) const = default;
};
using SniIconPixmapList = QList<SniIconPixmap>;

// "(sa(iiay)ss)": icon name, icon, title and description of the item's tool tip.
struct SniToolTip
{
    QString iconName;
    SniIconPixmapList pixmaps;
    QString title;
    QString description;
};

// One menu node with its children, "(ia{sv}av)" (each child wrapped in a variant).
struct DBusMenuLayoutItem
{
    qint32 id = 0;
    QVariantMap properties;
    QList<DBusMenuLayoutItem> children;
};

// "(ia{sv})": the properties of one menu item.
struct DBusMenuItemProperties
{
    qint32 id = 0;
    QVariantMap properties;
};
using DBusMenuItemPropertiesList = QList<DBusMenuItemProperties>;

// "(isvu)": one event of an EventGroup call: item id, event ("clicked", "opened", "closed",
// "hovered"), data and the X11 timestamp of the input that caused it.
struct DBusMenuEvent
{
    qint32 id = 0;
    QString eventId;
    QDBusVariant data;
    quint32 timestamp = 0;
};
using DBusMenuEventList = QList<DBusMenuEvent>;

// "(ias)": the properties an item no longer has, for ItemsPropertiesUpdated.
struct DBusMenuItemPropertyNames
{
    qint32 id = 0;
    QStringList names;
};
using DBusMenuItemPropertyNamesList = QList<DBusMenuItemPropertyNames>;

QDBusArgument &operator<<(QDBusArgument &argument, const SniIconPixmap &pixmap);
const QDBusArgument &operator>>(const QDBusArgument &argument, SniIconPixmap &pixmap);
QDBusArgument &operator<<(QDBusArgument &argument, const SniToolTip &toolTip);
const QDBusArgument &operator>>(const QDBusArgument &argument, SniToolTip &toolTip);
QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuLayoutItem &item);
const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuLayoutItem &item);
QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuItemProperties &item);
const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuItemProperties &item);
QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuEvent &event);
const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuEvent &event);
QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuItemPropertyNames &item);
const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuItemPropertyNames &item);

// Registers the types above with QtDBus; call before exporting or reading them.
void registerStatusNotifierTypes();

Q_DECLARE_METATYPE(SniIconPixmap)
Q_DECLARE_METATYPE(SniToolTip)
Q_DECLARE_METATYPE(DBusMenuLayoutItem)
Q_DECLARE_METATYPE(DBusMenuItemProperties)
Q_DECLARE_METATYPE(DBusMenuEvent)
Q_DECLARE_METATYPE(DBusMenuItemPropertyNames)

#include "platform/tray/DBusMenuExporter.h"

#include <QDBusMessage>

void DBusMenuExporter::setEntries(const QList<StatusItemMenuEntry> &entries)
{
    const bool sameLabels =
        std::equal(entries.cbegin(), entries.cend(), m_entries.cbegin(), m_entries.cend(),
                   [](const StatusItemMenuEntry &a, const StatusItemMenuEntry &b) {
                       return a.label == b.label;
                   });
    m_entries = entries;
    if (sameLabels)
        return;
    ++m_revision;
    Q_EMIT LayoutUpdated(m_revision, 0);
}

QString DBusMenuExporter::textDirection() const
{
    return QStringLiteral("ltr");
}

QString DBusMenuExporter::status() const
{
    return QStringLiteral("normal");
}

QVariantMap DBusMenuExporter::propertiesOf(int id, const QStringList &names) const
{
    QVariantMap all;
    if (id == 0) {
        all.insert(QStringLiteral("children-display"), QStringLiteral("submenu"));
    } else if (exists(id)) {
        const StatusItemMenuEntry &entry = m_entries.at(id - 1);
        if (entry.label.isEmpty()) {
            all.insert(QStringLiteral("type"), QStringLiteral("separator"));
        } else {
            // Hosts read a single underscore as the mnemonic marker.
            QString label = entry.label;
            all.insert(QStringLiteral("label"), label.replace(u'_', QStringLiteral("__")));
        }
        all.insert(QStringLiteral("enabled"), true);
        all.insert(QStringLiteral("visible"), true);
    }
    if (names.isEmpty())
        return all;
    QVariantMap wanted;
    for (const QString &name : names) {
        if (all.contains(name))
            wanted.insert(name, all.value(name));
    }
    return wanted;
}

void DBusMenuExporter::replyUnknownId(int id)
{
    if (calledFromDBus())
        sendErrorReply(QDBusError::InvalidArgs, QStringLiteral("No menu item with id %1").arg(id));
}

uint DBusMenuExporter::GetLayout(int parentId, int recursionDepth, const QStringList &propertyNames,
                                 DBusMenuLayoutItem &layout)
{
    if (!exists(parentId)) {
        replyUnknownId(parentId);
        return m_revision;
    }
    layout = DBusMenuLayoutItem {parentId, propertiesOf(parentId, propertyNames), {}};
    if (parentId == 0 && recursionDepth != 0) {
        for (int id = 1; id <= m_entries.size(); ++id)
            layout.children.append(DBusMenuLayoutItem {id, propertiesOf(id, propertyNames), {}});
    }
    return m_revision;
}

DBusMenuItemPropertiesList DBusMenuExporter::GetGroupProperties(const QList<int> &ids,
                                                                const QStringList &propertyNames)
{
    // Ids that do not exist (any more) are left out, as hosts expect while a layout changes.
    DBusMenuItemPropertiesList result;
    for (int id : ids) {
        if (exists(id))
            result.append(DBusMenuItemProperties {id, propertiesOf(id, propertyNames)});
    }
    return result;
}

QDBusVariant DBusMenuExporter::GetProperty(int id, const QString &name)
{
    if (!exists(id))
        replyUnknownId(id);
    return QDBusVariant(propertiesOf(id, {name}).value(name));
}

bool DBusMenuExporter::handleEvent(int id, const QString &eventId)
{
    if (!exists(id))
        return false;
    // "opened", "closed" and "hovered" need nothing: the menu is built up front. Separators do
    // nothing either.
    if (id == 0 || eventId != QLatin1String("clicked") || m_entries.at(id - 1).label.isEmpty())
        return true;
    // A copy: the action may replace the entries.
    const std::function<void()> trigger = m_entries.at(id - 1).trigger;
    if (trigger)
        QMetaObject::invokeMethod(this, trigger, Qt::QueuedConnection);
    return true;
}

void DBusMenuExporter::Event(int id, const QString &eventId, const QDBusVariant &, uint)
{
    if (!handleEvent(id, eventId))
        replyUnknownId(id);
}

QList<int> DBusMenuExporter::EventGroup(const DBusMenuEventList &events)
{
    QList<int> idErrors;
    for (const DBusMenuEvent &event : events) {
        if (!handleEvent(event.id, event.eventId))
            idErrors.append(event.id);
    }
    if (!events.isEmpty() && idErrors.size() == events.size())
        replyUnknownId(idErrors.first());
    return idErrors;
}

bool DBusMenuExporter::AboutToShow(int id)
{
    if (!exists(id))
        replyUnknownId(id);
    return false;
}

QList<int> DBusMenuExporter::AboutToShowGroup(const QList<int> &ids, QList<int> &idErrors)
{
    idErrors.clear();
    for (int id : ids) {
        if (!exists(id))
            idErrors.append(id);
    }
    if (!ids.isEmpty() && idErrors.size() == ids.size())
        replyUnknownId(idErrors.first());
    return {};
}

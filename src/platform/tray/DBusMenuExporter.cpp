#include "platform/tray/DBusMenuExporter.h"

void DBusMenuExporter::setEntries(const QList<StatusItemMenuEntry> &entries)
{
    m_entries = entries;
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
    } else if (id > 0 && id <= m_entries.size()) {
        const StatusItemMenuEntry &entry = m_entries.at(id - 1);
        if (entry.label.isEmpty()) {
            all.insert(QStringLiteral("type"), QStringLiteral("separator"));
        } else {
            all.insert(QStringLiteral("label"), entry.label);
        }
        all.insert(QStringLiteral("enabled"), true);
        all.insert(QStringLiteral("visible"), true);
    }
    if (names.isEmpty()) {
        return all;
    }
    QVariantMap wanted;
    for (const QString &name : names) {
        if (all.contains(name)) {
            wanted.insert(name, all.value(name));
        }
    }
    return wanted;
}

uint DBusMenuExporter::GetLayout(int parentId, int recursionDepth, const QStringList &propertyNames,
                                 DBusMenuLayoutItem &layout)
{
    layout = DBusMenuLayoutItem {parentId, propertiesOf(parentId, propertyNames), {}};
    if (parentId == 0 && recursionDepth != 0) {
        for (int id = 1; id <= m_entries.size(); ++id) {
            layout.children.append(DBusMenuLayoutItem {id, propertiesOf(id, propertyNames), {}});
        }
    }
    return m_revision;
}

DBusMenuItemPropertiesList DBusMenuExporter::GetGroupProperties(const QList<int> &ids,
                                                                const QStringList &propertyNames)
{
    DBusMenuItemPropertiesList result;
    for (int id : ids) {
        if (id >= 0 && id <= m_entries.size()) {
            result.append(DBusMenuItemProperties {id, propertiesOf(id, propertyNames)});
        }
    }
    return result;
}

QDBusVariant DBusMenuExporter::GetProperty(int id, const QString &name)
{
    return QDBusVariant(propertiesOf(id, {name}).value(name));
}

void DBusMenuExporter::Event(int id, const QString &eventId, const QDBusVariant &, uint)
{
    if (eventId != QLatin1String("clicked") || id <= 0 || id > m_entries.size()) {
        return;
    }
    // Copy first: the entry's action may replace the entries.
    const std::function<void()> trigger = m_entries.at(id - 1).trigger;
    if (trigger) {
        trigger();
    }
}

bool DBusMenuExporter::AboutToShow(int)
{
    return false;
}

#include "ui/CountdownListModel.h"

#include "countdown/CountdownRegistry.h"
#include "time/Clock.h"

CountdownListModel::CountdownListModel(const CountdownRegistry &registry, const Clock &clock,
                                       RowTime rowTime, QObject *parent)
    : QAbstractListModel(parent)
    , m_registry(registry)
    , m_clock(clock)
    , m_rowTime(std::move(rowTime))
{
    connect(&registry, &CountdownRegistry::itemsChanged, this, &CountdownListModel::reload);
    reload();
}

int CountdownListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_items.size());
}

QVariant CountdownListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const CountdownItem &item = m_items.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case TitleRole:
        return item.title();
    case SymbolRole: {
        const std::optional<IconRef> &icon =
            item.isManual() ? item.event()->icon : item.occurrence()->icon;
        return icon ? icon->symbol : QString();
    }
    case TimeTextRole:
        return m_times.at(index.row()).text;
    case ProgressRole:
        return m_times.at(index.row()).progress;
    default:
        return {};
    }
}

QHash<int, QByteArray> CountdownListModel::roleNames() const
{
    return {{TitleRole, "title"},
            {SymbolRole, "symbol"},
            {TimeTextRole, "timeText"},
            {ProgressRole, "progress"}};
}

void CountdownListModel::reload()
{
    beginResetModel();
    m_items = m_registry.items();
    m_times.clear();
    const QDateTime now = m_clock.now();
    m_times.reserve(m_items.size());
    for (const CountdownItem &item : std::as_const(m_items))
        m_times.append(m_rowTime(item, now));
    endResetModel();
}

void CountdownListModel::refreshTimes()
{
    if (m_items.isEmpty())
        return;
    const QDateTime now = m_clock.now();
    for (qsizetype row = 0; row < m_items.size(); ++row)
        m_times[row] = m_rowTime(m_items.at(row), now);
    Q_EMIT dataChanged(index(0), index(int(m_items.size()) - 1), {TimeTextRole, ProgressRole});
}

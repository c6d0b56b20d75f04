#include "ui/TimeZoneListModel.h"

#include <QTimeZone>

namespace {

QString offsetText(int seconds)
{
    const QChar sign = seconds < 0 ? u'-' : u'+';
    seconds = std::abs(seconds);
    return QStringLiteral("UTC%1%2:%3")
        .arg(sign)
        .arg(seconds / 3600, 2, 10, QLatin1Char('0'))
        .arg(seconds % 3600 / 60, 2, 10, QLatin1Char('0'));
}

} // namespace

TimeZoneListModel::TimeZoneListModel(QDateTime now, QObject *parent)
    : QAbstractListModel(parent)
{
    const QByteArray system = QTimeZone::systemTimeZoneId();
    QList<QByteArray> ids = QTimeZone::availableTimeZoneIds();
    ids.removeAll(system);
    ids.prepend(system);
    for (const QByteArray &id : std::as_const(ids)) {
        const QTimeZone zone(id);
        if (zone.isValid())
            m_all.append({QString::fromUtf8(id), offsetText(zone.offsetFromUtc(now))});
    }
    for (qsizetype i = 0; i < m_all.size(); ++i)
        m_shown.append(i);
}

int TimeZoneListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_shown.size());
}

QVariant TimeZoneListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const Zone &zone = m_all.at(m_shown.at(index.row()));
    switch (role) {
    case Qt::DisplayRole:
    case IdRole:
        return zone.id;
    case OffsetRole:
        return zone.offset;
    default:
        return {};
    }
}

QHash<int, QByteArray> TimeZoneListModel::roleNames() const
{
    return {{IdRole, "zoneId"}, {OffsetRole, "offset"}};
}

void TimeZoneListModel::setFilter(const QString &filter)
{
    if (m_filter == filter)
        return;
    m_filter = filter;
    QString needle = filter.trimmed();
    needle.replace(u' ', u'_');
    beginResetModel();
    m_shown.clear();
    for (qsizetype i = 0; i < m_all.size(); ++i) {
        const Zone &zone = m_all.at(i);
        if (needle.isEmpty() || zone.id.contains(needle, Qt::CaseInsensitive)
            || zone.offset.contains(filter.trimmed(), Qt::CaseInsensitive))
            m_shown.append(i);
    }
    endResetModel();
    Q_EMIT filterChanged();
}

int TimeZoneListModel::rowOf(const QString &zoneId) const
{
    for (qsizetype row = 0; row < m_shown.size(); ++row) {
        if (m_all.at(m_shown.at(row)).id == zoneId)
            return int(row);
    }
    return -1;
}

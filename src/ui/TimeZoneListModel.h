#pragma once

#include <QAbstractListModel>
#include <QDateTime>
#include <QStringList>

// The time zones a countdown can be entered in, for the editor's searchable list: every IANA zone
// the system knows, the system's own first, each with its current offset from UTC
// ("Europe/Istanbul", "UTC+03:00"). The filter keeps the zones whose name or offset contains it,
// ignoring case, and treats spaces as the underscores of the names ("new york").
class TimeZoneListModel : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(QString filter READ filter WRITE setFilter NOTIFY filterChanged)

public:
    enum Role { IdRole = Qt::UserRole + 1, OffsetRole };

    explicit TimeZoneListModel(QDateTime now = QDateTime::currentDateTimeUtc(),
                               QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    QString filter() const { return m_filter; }
    void setFilter(const QString &filter);

    // The row of `zoneId`, or -1 when the filter hides it.
    Q_INVOKABLE int rowOf(const QString &zoneId) const;

Q_SIGNALS:
    void filterChanged();

private:
    struct Zone
    {
        QString id;
        QString offset;
    };

    QList<Zone> m_all;
    QList<qsizetype> m_shown;
    QString m_filter;
};

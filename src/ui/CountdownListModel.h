#pragma once

#include "countdown/CountdownItem.h"

#include <QAbstractListModel>
#include <QDateTime>

#include <functional>

class Clock;
class CountdownRegistry;

// How one row reads at a moment: the compact time text and the progress (0–1).
struct CountdownRowTime
{
    QString text;
    double progress = 0.0;
};

// The popup's list: the registry's items in the registry's order, one row each with icon (a symbol
// name, empty for the default), title, compact time and progress. Rows follow the registry; times
// follow refreshTimes().
class CountdownListModel : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role { TitleRole = Qt::UserRole + 1, SymbolRole, TimeTextRole, ProgressRole };

    using RowTime =
        std::function<CountdownRowTime(const CountdownItem &item, const QDateTime &now)>;

    CountdownListModel(const CountdownRegistry &registry, const Clock &clock, RowTime rowTime,
                       QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    // Re-reads the clock and updates the time and progress of every row.
    void refreshTimes();

private:
    void reload();

    const CountdownRegistry &m_registry;
    const Clock &m_clock;
    RowTime m_rowTime;
    QList<CountdownItem> m_items;
    QList<CountdownRowTime> m_times;
};

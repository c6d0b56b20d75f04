#pragma once

#include "countdown/CountdownListScope.h"
#include "countdown/PinResolver.h"
#include "ui/CountdownRowView.h"

#include <QAbstractListModel>
#include <QDateTime>
#include <QVariantMap>

#include <optional>

class Clock;
class CountdownRegistry;
class EventStore;
class LocaleManager;
class SettingsStore;

// The popup's list: the registry's items of the chosen scope that match the search, grouped in
// sections (upcoming, counting up, past), each section under a header row with its count. The
// past section folds away (the choice is kept in the settings); while searching it is always
// open. Each item row carries its texts, accent, progress, link and pin state; the "current" row
// is the one the keyboard acts on and survives changes of the list.
//
// Rows change with the registry, the pin, the settings and the language at once, and with the
// clock when refreshTimes() runs. Rows that appear or go away are inserted and removed (so the
// view can animate them); a change of order resets the model.
class CountdownListModel : public QAbstractListModel
{
    Q_OBJECT
    Q_PROPERTY(int scope READ scopeIndex WRITE setScopeIndex NOTIFY scopeChanged)
    Q_PROPERTY(QString searchText READ searchText WRITE setSearchText NOTIFY searchTextChanged)
    Q_PROPERTY(
        bool pastExpanded READ isPastExpanded WRITE setPastExpanded NOTIFY pastExpandedChanged)
    Q_PROPERTY(int currentRow READ currentRow WRITE setCurrentRow NOTIFY currentRowChanged)
    Q_PROPERTY(int itemCount READ itemCount NOTIFY layoutUpdated)
    Q_PROPERTY(QString emptyTitle READ emptyTitle NOTIFY layoutUpdated)
    Q_PROPERTY(QString emptyHint READ emptyHint NOTIFY layoutUpdated)
    // The item that holds the panel (pinned or chosen automatically), as a row's roles; empty
    // when nothing does.
    Q_PROPERTY(QVariantMap nextUp READ nextUp NOTIFY nextUpChanged)

public:
    enum Role {
        KindRole = Qt::UserRole + 1, // "header" or "item"
        KeyRole, // stable identity of the row
        SectionRole, // "upcoming", "since", "past"
        TitleRole,
        SecondaryRole,
        TimeTextRole,
        ProgressRole,
        SymbolRole,
        AccentRole, // "#rrggbb", empty for the default accent
        ReachedRole,
        CountUpRole,
        CalendarRole,
        PinStateRole, // "explicit", "auto", "none"
        LinkRole,
        LinkLabelRole,
        LinkProminentRole,
        CountRole, // header rows: items in the section
        CollapsibleRole, // header rows: the past section's header outside the past scope
        AccessibleNameRole,
    };
    Q_ENUM(Role)

    CountdownListModel(const CountdownRegistry &registry, const EventStore &store,
                       SettingsStore &settings, const LocaleManager &locale, const Clock &clock,
                       QObject *parent = nullptr);
    ~CountdownListModel() override;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    CountdownListScope scope() const { return m_scope; }
    void setScope(CountdownListScope scope);
    int scopeIndex() const { return int(m_scope); }
    void setScopeIndex(int scope);
    QString searchText() const { return m_searchText; }
    void setSearchText(const QString &text);
    bool isPastExpanded() const;
    // Writes the choice to the settings.
    void setPastExpanded(bool expanded);
    int currentRow() const;
    void setCurrentRow(int row);
    int itemCount() const { return m_itemCount; }
    QString emptyTitle() const;
    QString emptyHint() const;
    QVariantMap nextUp() const { return m_nextUp; }

    // Moves the current row by `delta` item rows (headers are skipped), stopping at the ends; with
    // no current row, down starts at the first item and up at the last. True when it moved.
    Q_INVOKABLE bool moveCurrent(int delta);
    // The item of an item row; nothing for a header or a row out of range.
    std::optional<CountdownItem> itemAt(int row) const;
    std::optional<CountdownItem> currentItem() const { return itemAt(currentRow()); }
    // The row showing the item with `id`, or -1.
    int rowOf(const CountdownID &id) const;
    // The item of the list (shown or not) whose row key is `key`.
    std::optional<CountdownItem> itemForKey(const QString &key) const;
    // The items of the past section (in every scope), for "clear past".
    QList<CountdownItem> pastItems() const;

    // Re-reads the clock: times, progress and, where time moved an item to another section (a
    // calendar event that started), the rows.
    Q_INVOKABLE void refreshTimes();

Q_SIGNALS:
    void scopeChanged();
    void searchTextChanged();
    void pastExpandedChanged();
    void currentRowChanged();
    void layoutUpdated();
    void nextUpChanged();

private:
    struct Row;

    void rebuild();
    QList<Row> buildRows(const QDateTime &now) const;
    void applyRows(QList<Row> rows);
    QVariant itemData(const Row &row, int role) const;
    void setNextUp(QVariantMap nextUp);
    QVariantMap rowMap(const Row &row) const;

    const CountdownRegistry &m_registry;
    const EventStore &m_store;
    SettingsStore &m_settings;
    const LocaleManager &m_locale;
    const Clock &m_clock;
    CountdownListScope m_scope = CountdownListScope::all;
    QString m_searchText;
    QList<Row> m_rows;
    QString m_currentKey;
    int m_itemCount = 0;
    QVariantMap m_nextUp;
};

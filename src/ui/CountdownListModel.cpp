#include "ui/CountdownListModel.h"

#include "countdown/CountdownRegistry.h"
#include "l10n/LocaleManager.h"
#include "storage/EventStore.h"
#include "storage/SettingsStore.h"
#include "time/Clock.h"

#include <QSet>

struct CountdownListModel::Row
{
    bool header = false;
    CountdownListSection section = CountdownListSection::upcoming;
    QString key;
    std::optional<CountdownItem> item;
    CountdownRowView view;
    RowPinState pin = RowPinState::none;
    int count = 0;
    bool collapsible = false;

    bool operator==(const Row &other) const
    {
        return header == other.header && section == other.section && key == other.key
            && item == other.item && view == other.view && pin == other.pin && count == other.count
            && collapsible == other.collapsible;
    }
};

namespace {

constexpr CountdownListSection sectionOrder[] = {
    CountdownListSection::upcoming, CountdownListSection::since, CountdownListSection::past};

QString sectionName(CountdownListSection section)
{
    switch (section) {
    case CountdownListSection::upcoming:
        return QStringLiteral("upcoming");
    case CountdownListSection::since:
        return QStringLiteral("since");
    case CountdownListSection::past:
        return QStringLiteral("past");
    }
    return {};
}

QString pinStateName(RowPinState state)
{
    switch (state) {
    case RowPinState::explicit_:
        return QStringLiteral("explicit");
    case RowPinState::auto_:
        return QStringLiteral("auto");
    case RowPinState::none:
        return QStringLiteral("none");
    }
    return {};
}

QString keyOf(const CountdownID &id)
{
    if (const QUuid *event = id.eventID())
        return event->toString(QUuid::WithoutBraces);
    const CalendarEventRef *ref = id.calendarRef();
    return QStringLiteral("calendar\n%1\n%2\n%3")
        .arg(ref->series.calendarID, ref->series.seriesID)
        .arg(ref->occurrenceDate.toMSecsSinceEpoch());
}

} // namespace

CountdownListModel::CountdownListModel(const CountdownRegistry &registry, const EventStore &store,
                                       SettingsStore &settings, const LocaleManager &locale,
                                       const Clock &clock, QObject *parent)
    : QAbstractListModel(parent)
    , m_registry(registry)
    , m_store(store)
    , m_settings(settings)
    , m_locale(locale)
    , m_clock(clock)
{
    connect(&registry, &CountdownRegistry::itemsChanged, this, &CountdownListModel::rebuild);
    connect(&store, &EventStore::pinChanged, this, &CountdownListModel::rebuild);
    connect(&locale, &LocaleManager::languageChanged, this, &CountdownListModel::rebuild);
    connect(&settings, &SettingsStore::settingsChanged, this, [this] {
        rebuild();
        Q_EMIT pastExpandedChanged();
    });
    rebuild();
}

CountdownListModel::~CountdownListModel() = default;

int CountdownListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

QHash<int, QByteArray> CountdownListModel::roleNames() const
{
    return {{KindRole, "kind"},
            {KeyRole, "key"},
            {SectionRole, "section"},
            {TitleRole, "title"},
            {SecondaryRole, "secondary"},
            {TimeTextRole, "timeText"},
            {ProgressRole, "progress"},
            {SymbolRole, "symbol"},
            {AccentRole, "accent"},
            {ReachedRole, "reached"},
            {CountUpRole, "countUp"},
            {CalendarRole, "calendar"},
            {PinStateRole, "pinState"},
            {LinkRole, "link"},
            {LinkLabelRole, "linkLabel"},
            {LinkProminentRole, "linkProminent"},
            {CountRole, "count"},
            {CollapsibleRole, "collapsible"},
            {AccessibleNameRole, "accessibleName"}};
}

QVariant CountdownListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const Row &row = m_rows.at(index.row());
    const LanguageTable &table = m_locale.table();
    switch (role) {
    case KindRole:
        return row.header ? QStringLiteral("header") : QStringLiteral("item");
    case KeyRole:
        return row.key;
    case SectionRole:
        return sectionName(row.section);
    case CountRole:
        return row.count;
    case CollapsibleRole:
        return row.collapsible;
    default:
        break;
    }
    if (!row.header)
        return itemData(row, role);
    switch (role) {
    case Qt::DisplayRole:
    case TitleRole:
        switch (row.section) {
        case CountdownListSection::upcoming:
            return table.text("list.section.upcoming");
        case CountdownListSection::since:
            return table.text("list.section.since");
        case CountdownListSection::past:
            return table.text(m_scope == CountdownListScope::past ? "list.section.past.title"
                                                                  : "list.section.past");
        }
        break;
    case AccessibleNameRole:
        switch (row.section) {
        case CountdownListSection::upcoming:
            return table.format("list.summary.upcoming %lld", {QString::number(row.count)});
        case CountdownListSection::since:
            return table.format("list.summary.since %lld", {QString::number(row.count)});
        case CountdownListSection::past:
            return table.format("list.summary.past %lld", {QString::number(row.count)});
        }
        break;
    default:
        break;
    }
    return {};
}

QVariant CountdownListModel::itemData(const Row &row, int role) const
{
    const CountdownItem &item = *row.item;
    const CountdownRowView &view = row.view;
    switch (role) {
    case Qt::DisplayRole:
    case TitleRole:
        return item.title();
    case SecondaryRole:
        return view.secondaryText;
    case TimeTextRole:
        return view.timeText;
    case ProgressRole:
        return view.progress;
    case SymbolRole:
        return view.symbol;
    case AccentRole:
        return view.accent.isValid() ? view.accent.name() : QString();
    case ReachedRole:
        return view.reached;
    case CountUpRole:
        return item.isCountUp();
    case CalendarRole:
        return item.isCalendar();
    case PinStateRole:
        return pinStateName(row.pin);
    case LinkRole:
        return view.link.toString();
    case LinkLabelRole:
        return view.linkLabelKey.isEmpty() ? QString() : m_locale.table().text(view.linkLabelKey);
    case LinkProminentRole:
        return view.linkProminent;
    case AccessibleNameRole: {
        QStringList parts = {item.title(), view.timeText, view.secondaryText};
        if (row.pin == RowPinState::explicit_)
            parts.append(m_locale.table().text("list.row.pinned"));
        return parts.join(QStringLiteral(", "));
    }
    default:
        return {};
    }
}

void CountdownListModel::setScope(CountdownListScope scope)
{
    if (m_scope == scope)
        return;
    m_scope = scope;
    Q_EMIT scopeChanged();
    rebuild();
}

void CountdownListModel::setScopeIndex(int scope)
{
    if (scope >= int(CountdownListScope::all) && scope <= int(CountdownListScope::past))
        setScope(CountdownListScope(scope));
}

void CountdownListModel::setSearchText(const QString &text)
{
    if (m_searchText == text)
        return;
    m_searchText = text;
    Q_EMIT searchTextChanged();
    rebuild();
}

bool CountdownListModel::isPastExpanded() const
{
    return m_settings.settings().pastSectionExpanded;
}

void CountdownListModel::setPastExpanded(bool expanded)
{
    Settings next = m_settings.settings();
    next.pastSectionExpanded = expanded;
    m_settings.setSettings(next); // rebuilds through settingsChanged
}

int CountdownListModel::currentRow() const
{
    if (m_currentKey.isEmpty())
        return -1;
    for (qsizetype row = 0; row < m_rows.size(); ++row) {
        if (m_rows.at(row).key == m_currentKey)
            return int(row);
    }
    return -1;
}

void CountdownListModel::setCurrentRow(int row)
{
    const QString key =
        row >= 0 && row < m_rows.size() && !m_rows.at(row).header ? m_rows.at(row).key : QString();
    if (key == m_currentKey)
        return;
    m_currentKey = key;
    Q_EMIT currentRowChanged();
}

bool CountdownListModel::moveCurrent(int delta)
{
    if (delta == 0 || m_rows.isEmpty())
        return false;
    const int step = delta > 0 ? 1 : -1;
    const int from = currentRow();
    int row = from < 0 ? (step > 0 ? -1 : int(m_rows.size())) : from;
    int target = from;
    for (int remaining = std::abs(delta); remaining > 0;) {
        row += step;
        if (row < 0 || row >= m_rows.size())
            break;
        if (!m_rows.at(row).header) {
            target = row;
            --remaining;
        }
    }
    if (target == from)
        return false;
    setCurrentRow(target);
    return true;
}

std::optional<CountdownItem> CountdownListModel::itemAt(int row) const
{
    if (row < 0 || row >= m_rows.size())
        return std::nullopt;
    return m_rows.at(row).item;
}

int CountdownListModel::rowOf(const CountdownID &id) const
{
    const QString key = keyOf(id);
    for (qsizetype row = 0; row < m_rows.size(); ++row) {
        if (m_rows.at(row).key == key)
            return int(row);
    }
    return -1;
}

std::optional<CountdownItem> CountdownListModel::itemForKey(const QString &key) const
{
    for (const CountdownItem &item : m_registry.items()) {
        if (keyOf(item.id()) == key)
            return item;
    }
    return std::nullopt;
}

QList<CountdownItem> CountdownListModel::pastItems() const
{
    const QDateTime now = m_clock.now();
    QList<CountdownItem> past;
    for (const CountdownItem &item : m_registry.items()) {
        if (CountdownListRules::sectionOf(item, now) == CountdownListSection::past)
            past.append(item);
    }
    return past;
}

QString CountdownListModel::emptyTitle() const
{
    const LanguageTable &table = m_locale.table();
    if (!m_searchText.trimmed().isEmpty())
        return table.text("list.empty.search");
    switch (m_scope) {
    case CountdownListScope::all:
        return table.text("list.empty");
    case CountdownListScope::mine:
        return table.text("list.empty.mine");
    case CountdownListScope::calendar:
        return table.text("list.empty.calendar");
    case CountdownListScope::past:
        return table.text("list.empty.past");
    }
    return {};
}

QString CountdownListModel::emptyHint() const
{
    const LanguageTable &table = m_locale.table();
    if (!m_searchText.trimmed().isEmpty())
        return table.format("list.empty.search.hint %@", {m_searchText.trimmed()});
    switch (m_scope) {
    case CountdownListScope::all:
    case CountdownListScope::mine:
        return table.text("list.empty.hint");
    case CountdownListScope::calendar:
        return table.text("list.empty.calendar.hint");
    case CountdownListScope::past:
        return table.text("list.empty.past.hint");
    }
    return {};
}

void CountdownListModel::refreshTimes()
{
    rebuild();
}

void CountdownListModel::rebuild()
{
    const QDateTime now = m_clock.now();
    applyRows(buildRows(now));

    const PinResolver::Resolution resolution =
        PinResolver::resolve(m_store.pin(), m_registry.items(), now);
    QVariantMap nextUp;
    if (resolution.item) {
        Row row;
        row.item = resolution.item;
        row.key = keyOf(resolution.item->id());
        row.view = presentRow(*resolution.item, now, m_settings.settings().displayFormat,
                              m_locale.table(), m_locale.interfaceLocale());
        row.pin = PinResolver::rowPinState(m_store.pin(), resolution, *resolution.item);
        nextUp = rowMap(row);
    }
    setNextUp(nextUp);
}

QList<CountdownListModel::Row> CountdownListModel::buildRows(const QDateTime &now) const
{
    const QList<CountdownItem> &all = m_registry.items();
    const QList<CountdownItem> shown = CountdownListRules::filter(all, m_scope, m_searchText, now);
    const PinResolver::Resolution resolution = PinResolver::resolve(m_store.pin(), all, now);
    const CountdownDisplayFormat format = m_settings.settings().displayFormat;
    const QLocale locale = m_locale.interfaceLocale();
    const bool searching = !m_searchText.trimmed().isEmpty();

    QList<Row> bySection[3];
    for (const CountdownItem &item : shown) {
        const std::optional<CountdownListSection> section =
            CountdownListRules::sectionOf(item, now);
        Row row;
        row.section = *section; // filter() keeps only items that have a section
        row.key = keyOf(item.id());
        row.item = item;
        row.view = presentRow(item, now, format, m_locale.table(), locale);
        row.pin = PinResolver::rowPinState(m_store.pin(), resolution, item);
        bySection[int(*section)].append(std::move(row));
    }

    QList<Row> rows;
    for (CountdownListSection section : sectionOrder) {
        QList<Row> &items = bySection[int(section)];
        if (items.isEmpty())
            continue;
        Row header;
        header.header = true;
        header.section = section;
        header.key = QStringLiteral("header\n") + sectionName(section);
        header.count = int(items.size());
        header.collapsible =
            section == CountdownListSection::past && m_scope != CountdownListScope::past;
        const bool folded = header.collapsible && !searching && !isPastExpanded();
        rows.append(std::move(header));
        if (!folded)
            rows.append(std::move(items));
    }
    return rows;
}

void CountdownListModel::applyRows(QList<Row> rows)
{
    const int previousCurrent = currentRow();
    QStringList oldKeys, newKeys;
    for (const Row &row : std::as_const(m_rows))
        oldKeys.append(row.key);
    for (const Row &row : std::as_const(rows))
        newKeys.append(row.key);
    const QSet<QString> oldSet(oldKeys.cbegin(), oldKeys.cend());
    const QSet<QString> newSet(newKeys.cbegin(), newKeys.cend());

    // Rows that went away, then rows that came: only when what stays keeps its order.
    QStringList kept, stayingNew;
    for (const QString &key : std::as_const(oldKeys)) {
        if (newSet.contains(key))
            kept.append(key);
    }
    for (const QString &key : std::as_const(newKeys)) {
        if (oldSet.contains(key))
            stayingNew.append(key);
    }
    if (kept != stayingNew) {
        beginResetModel();
        m_rows = std::move(rows);
        endResetModel();
    } else {
        for (int row = int(m_rows.size()) - 1; row >= 0; --row) {
            if (newSet.contains(m_rows.at(row).key))
                continue;
            int first = row;
            while (first > 0 && !newSet.contains(m_rows.at(first - 1).key))
                --first;
            beginRemoveRows({}, first, row);
            m_rows.remove(first, row - first + 1);
            endRemoveRows();
            row = first;
        }
        for (int row = 0; row < rows.size(); ++row) {
            if (oldSet.contains(rows.at(row).key))
                continue;
            int last = row;
            while (last + 1 < rows.size() && !oldSet.contains(rows.at(last + 1).key))
                ++last;
            beginInsertRows({}, row, last);
            for (int i = row; i <= last; ++i)
                m_rows.insert(i, rows.at(i));
            endInsertRows();
            row = last;
        }
        for (int row = 0; row < rows.size(); ++row) {
            if (m_rows.at(row) == rows.at(row))
                continue;
            m_rows[row] = rows.at(row);
            Q_EMIT dataChanged(index(row), index(row));
        }
    }

    // A current row that went away hands over to the next item, or else the one above.
    if (!m_currentKey.isEmpty() && !newSet.contains(m_currentKey)) {
        m_currentKey.clear();
        const int size = int(m_rows.size());
        for (int step : {1, -1}) {
            for (int row = std::min(std::max(previousCurrent, 0), size - 1); row >= 0 && row < size;
                 row += step) {
                if (!m_rows.at(row).header) {
                    m_currentKey = m_rows.at(row).key;
                    break;
                }
            }
            if (!m_currentKey.isEmpty())
                break;
        }
    }
    int items = 0;
    for (const Row &row : std::as_const(m_rows))
        items += row.header ? row.count : 0;
    m_itemCount = items;
    if (currentRow() != previousCurrent)
        Q_EMIT currentRowChanged();
    Q_EMIT layoutUpdated();
}

QVariantMap CountdownListModel::rowMap(const Row &row) const
{
    QVariantMap map;
    const QHash<int, QByteArray> roles = roleNames();
    for (auto it = roles.cbegin(); it != roles.cend(); ++it) {
        if (it.key() != CountRole && it.key() != CollapsibleRole)
            map.insert(QString::fromLatin1(it.value()), itemData(row, it.key()));
    }
    map.insert(QStringLiteral("kind"), QStringLiteral("item"));
    map.insert(QStringLiteral("key"), row.key);
    map.insert(QStringLiteral("section"), sectionName(row.section));
    return map;
}

void CountdownListModel::setNextUp(QVariantMap nextUp)
{
    if (m_nextUp == nextUp)
        return;
    m_nextUp = std::move(nextUp);
    Q_EMIT nextUpChanged();
}

#include "ui/RowActions.h"

#include "countdown/CountdownItem.h"
#include "countdown/CountdownRegistry.h"
#include "l10n/LocaleManager.h"
#include "storage/EventStore.h"
#include "ui/CountdownListModel.h"

Q_LOGGING_CATEGORY(lcRowActions, "RowActions")

RowActions::RowActions(EventStore &store, CountdownListModel &list, const LocaleManager &locale,
                       LinkOpener openLink, QObject *parent)
    : QObject(parent)
    , m_store(store)
    , m_list(list)
    , m_locale(locale)
    , m_openLink(std::move(openLink))
{
    m_undoTimer.setSingleShot(true);
    m_undoTimer.setInterval(undoMilliseconds);
    connect(&m_undoTimer, &QTimer::timeout, this, &RowActions::dismissUndo);
    connect(&store, &EventStore::eventsChanged, this, &RowActions::canClearPastChanged);
}

bool RowActions::canClearPast() const
{
    const QList<CountdownItem> past = m_list.pastItems();
    return std::any_of(past.cbegin(), past.cend(),
                       [](const CountdownItem &item) { return item.isManual(); });
}

bool RowActions::isPinned(const CountdownItem &item) const
{
    return CountdownRegistry::pinMatches(m_store.pin(), item);
}

QVariantList RowActions::menuFor(int row) const
{
    const std::optional<CountdownItem> item = m_list.itemAt(row);
    if (!item)
        return {};
    const LanguageTable &table = m_locale.table();
    QVariantList menu;
    const auto add = [&menu](const char *action, const QString &text) {
        menu.append(QVariantMap {{QStringLiteral("action"), QString::fromLatin1(action)},
                                 {QStringLiteral("text"), text}});
    };
    add("edit", table.text("row.menu.edit"));
    if (isPinned(*item)) {
        add("unpin", table.text("row.menu.unpin"));
    } else if (item->isManual()) {
        add("pin", table.text("row.menu.pin"));
    } else {
        add("pinOccurrence", table.text("row.menu.pin_occurrence"));
        add("pinSeries", table.text("row.menu.pin_series"));
    }
    const QModelIndex index = m_list.index(row);
    const QString linkLabel = index.data(CountdownListModel::LinkLabelRole).toString();
    if (!linkLabel.isEmpty())
        add("openLink", linkLabel);
    add("", QString());
    if (item->isManual())
        add("delete", table.text("row.menu.delete"));
    else
        add("hideSeries", table.text("row.menu.hide_series"));
    return menu;
}

bool RowActions::trigger(int row, const QString &action)
{
    const std::optional<CountdownItem> item = m_list.itemAt(row);
    if (!item)
        return false;
    if (action == u"edit") {
        Q_EMIT editRequested(row);
        return true;
    }
    if (action == u"pin" && item->isManual())
        return setPin(PinTarget::manual(item->event()->id));
    if (action == u"pinOccurrence" && item->isCalendar())
        return setPin(PinTarget::calendarOccurrence(item->occurrence()->ref));
    if (action == u"pinSeries" && item->isCalendar())
        return setPin(PinTarget::calendarSeries(item->occurrence()->ref.series));
    if (action == u"unpin")
        return isPinned(*item) && setPin(std::nullopt);
    if (action == u"openLink")
        return openLink(row);
    if (action == u"delete")
        return remove(row);
    if (action == u"hideSeries" && item->isCalendar()) {
        EventStoreError error;
        if (m_store.setSeriesHidden(item->occurrence()->ref.series, true, &error))
            return true;
        setErrorText(m_locale.table().format("row.error.save_failed %@", {error.description}));
        return false;
    }
    return false;
}

bool RowActions::togglePin(int row)
{
    const std::optional<CountdownItem> item = m_list.itemAt(row);
    if (!item)
        return false;
    if (isPinned(*item))
        return trigger(row, QStringLiteral("unpin"));
    return trigger(row, item->isManual() ? QStringLiteral("pin") : QStringLiteral("pinOccurrence"));
}

bool RowActions::setPin(const std::optional<PinTarget> &pin)
{
    EventStoreError error;
    if (m_store.setPin(pin, &error))
        return true;
    qCWarning(lcRowActions).noquote() << QStringLiteral("Failed to pin: %1").arg(error.description);
    setErrorText(m_locale.table().format("row.error.save_failed %@", {error.description}));
    return false;
}

bool RowActions::remove(int row)
{
    const std::optional<CountdownItem> item = m_list.itemAt(row);
    if (!item || !item->isManual())
        return false;
    const Event event = *item->event();
    const std::optional<PinTarget> pin = isPinned(*item) ? m_store.pin() : std::nullopt;
    if (!deleteEvents({event}))
        return false;
    offerUndo({event}, pin, m_locale.table().format("row.deleted %@", {event.title}));
    return true;
}

bool RowActions::clearPast()
{
    QList<Event> events;
    for (const CountdownItem &item : m_list.pastItems()) {
        if (const Event *event = item.event())
            events.append(*event);
    }
    if (events.isEmpty())
        return false;
    std::optional<PinTarget> pin;
    for (const Event &event : std::as_const(events)) {
        if (m_store.pin() && *m_store.pin() == PinTarget::manual(event.id))
            pin = m_store.pin();
    }
    if (!deleteEvents(events)) {
        // Those deleted before the failure come back, so the list is as it was.
        QList<Event> gone;
        for (const Event &event : std::as_const(events)) {
            if (!m_store.event(event.id))
                gone.append(event);
        }
        if (!gone.isEmpty())
            m_store.importBackup(gone, BackupImportMode::merge);
        return false;
    }
    offerUndo(events, pin,
              m_locale.table().format("row.cleared %lld", {QString::number(events.size())}));
    return true;
}

bool RowActions::deleteEvents(const QList<Event> &events)
{
    for (const Event &event : events) {
        EventStoreError error;
        if (m_store.deleteEvent(event.id, &error))
            continue;
        qCWarning(lcRowActions).noquote()
            << QStringLiteral("Failed to delete %1: %2")
                   .arg(event.id.toString(QUuid::WithoutBraces), error.description);
        setErrorText(m_locale.table().format("row.error.save_failed %@", {error.description}));
        return false;
    }
    return true;
}

void RowActions::offerUndo(QList<Event> events, std::optional<PinTarget> pin, QString text)
{
    m_undoEvents = std::move(events);
    m_undoPin = std::move(pin);
    m_undoText = std::move(text);
    m_undoTimer.start();
    Q_EMIT undoChanged();
}

void RowActions::undo()
{
    if (m_undoEvents.isEmpty())
        return;
    EventStoreError error;
    if (!m_store.importBackup(m_undoEvents, BackupImportMode::merge, nullptr, &error)
        || (m_undoPin && !m_store.setPin(m_undoPin, &error))) {
        setErrorText(m_locale.table().format("row.error.save_failed %@", {error.description}));
        return;
    }
    dismissUndo();
}

void RowActions::dismissUndo()
{
    m_undoTimer.stop();
    if (m_undoEvents.isEmpty() && m_undoText.isEmpty())
        return;
    m_undoEvents.clear();
    m_undoPin.reset();
    m_undoText.clear();
    Q_EMIT undoChanged();
}

bool RowActions::openLink(int row)
{
    const QUrl url(m_list.index(row).data(CountdownListModel::LinkRole).toString());
    if (url.isEmpty())
        return false;
    if (m_openLink(url))
        return true;
    setErrorText(m_locale.table().text("row.error.open_link"));
    return false;
}

void RowActions::setErrorText(const QString &text)
{
    if (m_errorText == text)
        return;
    m_errorText = text;
    Q_EMIT errorTextChanged();
}

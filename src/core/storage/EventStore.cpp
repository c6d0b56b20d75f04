#include "storage/EventStore.h"

#include "storage/StoreEnvelope.h"
#include "json/JsonDocument.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

Q_LOGGING_CATEGORY(lcEventStore, "EventStore")

EventStoreError EventStoreError::noEvent(const QUuid &id)
{
    return EventStoreError {
        Kind::noEvent,
        QStringLiteral("No event with id %1").arg(id.toString(QUuid::WithoutBraces).toUpper())};
}

namespace {

bool report(EventStoreError *out, EventStoreError error)
{
    if (out)
        *out = std::move(error);
    return false;
}

// Puts `value` under `key`, or takes the key out when there is no value.
template<typename Container, typename Value>
void assign(Container &container, const CalendarSeriesRef &key, const std::optional<Value> &value)
{
    if (value)
        container.insert(key, *value);
    else
        container.remove(key);
}

void assign(QSet<CalendarSeriesRef> &set, const CalendarSeriesRef &key, bool member)
{
    if (member)
        set.insert(key);
    else
        set.remove(key);
}

qsizetype indexOf(const QList<Event> &events, const QUuid &id)
{
    for (qsizetype i = 0; i < events.size(); ++i) {
        if (events.at(i).id == id)
            return i;
    }
    return -1;
}

} // namespace

EventStore::EventStore(const PathProvider &paths, FileAccess &files, QObject *parent)
    : QObject(parent)
    , m_paths(paths)
    , m_files(files)
{
    LoadResult loaded = load();
    m_state = std::move(loaded.state);
    m_needsReachSignalMigration = loaded.needsReachSignalMigration;
}

LoadResult EventStore::load()
{
    const QString path = m_paths.eventFile();
    if (!m_files.exists(path))
        return {};
    QString readError;
    const std::optional<QByteArray> bytes = m_files.read(path, &readError);
    if (!bytes) {
        qCCritical(lcEventStore).noquote()
            << QStringLiteral("Failed to read event.json: %1").arg(readError);
        m_unreadableFileOnDisk = true;
        return {};
    }

    const std::optional<JsonDocument> document = JsonDocument::parse(*bytes);
    if (document) {
        if (std::optional<StoreEnvelope::Decoded> envelope =
                StoreEnvelope::decode(document->root(), nullptr)) {
            LoadResult result;
            result.state = std::move(envelope->state);
            sortEvents(result.state.events);
            if (result.state.pin && result.state.pin->isCalendar())
                result.state.keptCalendarSeries.insert(result.state.pin->series);
            result.needsReachSignalMigration =
                envelope->schemaVersion < 3 && !result.state.events.isEmpty();
            return result;
        }
        if (std::optional<Event> legacy = Event::fromJson(document->root(), nullptr)) {
            qCInfo(lcEventStore) << "Migrating legacy v1 event.json to the current envelope";
            LoadResult result;
            result.state.pin = PinTarget::manual(legacy->id);
            result.state.events.append(std::move(*legacy));
            result.needsReachSignalMigration = true;
            return result;
        }
    }
    qCCritical(lcEventStore)
        << "event.json present but neither a versioned envelope nor a legacy v1 event";
    m_unreadableFileOnDisk = true;
    return {};
}

const Event *EventStore::event(const QUuid &id) const
{
    const qsizetype index = indexOf(m_state.events, id);
    return index < 0 ? nullptr : &m_state.events.at(index);
}

bool EventStore::keepUnreadableFileAside(QString *error)
{
    const QFileInfo original(m_paths.eventFile());
    const QString stamp =
        QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd HH.mm.ss"));
    const QString aside =
        original.dir().filePath(QStringLiteral("event (unreadable %1).json").arg(stamp));
    if (!m_files.copy(original.filePath(), aside, error))
        return false;
    qCWarning(lcEventStore).noquote()
        << QStringLiteral("Kept the unreadable event.json as %1 before replacing it").arg(aside);
    return true;
}

bool EventStore::commit(StoreState next, EventStoreError *error)
{
    QString reason;
    // A file this version could not read is still the user's: keep a copy before the first save.
    if (m_unreadableFileOnDisk && m_files.exists(m_paths.eventFile())) {
        if (!keepUnreadableFileAside(&reason)) {
            return report(error,
                          {EventStoreError::Kind::writeFailed,
                           QStringLiteral("Could not keep a copy of the unreadable event.json: %1")
                               .arg(reason)});
        }
    }
    m_unreadableFileOnDisk = false;
    if (!m_files.writeAtomically(m_paths.eventFile(), StoreEnvelope::encode(next, &m_encodedEvents),
                                 &reason))
        return report(error, {EventStoreError::Kind::writeFailed, reason});
    publish(std::move(next));
    return true;
}

bool EventStore::commitIfChanged(StoreState next, EventStoreError *error)
{
    return next == m_state || commit(std::move(next), error);
}

void EventStore::publish(StoreState next)
{
    const StoreState previous = std::exchange(m_state, std::move(next));
    if (previous.events != m_state.events)
        Q_EMIT eventsChanged();
    if (previous.pin != m_state.pin)
        Q_EMIT pinChanged();
    if (previous.calendarIcons != m_state.calendarIcons)
        Q_EMIT calendarIconsChanged();
    if (previous.hiddenCalendarSeries != m_state.hiddenCalendarSeries)
        Q_EMIT hiddenCalendarSeriesChanged();
    if (previous.keptCalendarSeries != m_state.keptCalendarSeries)
        Q_EMIT keptCalendarSeriesChanged();
    if (previous.calendarReach != m_state.calendarReach)
        Q_EMIT calendarReachChanged();
    if (previous.calendarAnnotations != m_state.calendarAnnotations)
        Q_EMIT calendarAnnotationsChanged();
}

bool EventStore::addEvent(const Event &event, EventStoreError *error)
{
    StoreState next = m_state;
    next.events.append(event);
    sortEvents(next.events);
    return commit(std::move(next), error);
}

bool EventStore::updateEvent(const QUuid &id, const EventPatch &patch, EventStoreError *error)
{
    const qsizetype index = indexOf(m_state.events, id);
    if (index < 0)
        return report(error, EventStoreError::noEvent(id));
    StoreState next = m_state;
    patch.applyTo(next.events[index]);
    sortEvents(next.events);
    return commit(std::move(next), error);
}

bool EventStore::deleteEvent(const QUuid &id, EventStoreError *error)
{
    const qsizetype index = indexOf(m_state.events, id);
    if (index < 0)
        return report(error, EventStoreError::noEvent(id));
    StoreState next = m_state;
    next.events.removeAt(index);
    if (next.pin && next.pin->kind == PinTarget::Kind::manual && next.pin->eventID == id)
        next.pin.reset();
    return commit(std::move(next), error);
}

bool EventStore::importBackup(const QList<Event> &events, BackupImportMode mode,
                              BackupImportCounts *counts, EventStoreError *error)
{
    StoreState next = m_state;
    if (mode == BackupImportMode::replace)
        next.events.clear();
    QSet<QUuid> known;
    for (const Event &event : std::as_const(next.events))
        known.insert(event.id);
    BackupImportCounts result;
    for (const Event &event : events) {
        if (known.contains(event.id)) {
            ++result.skipped;
            continue;
        }
        known.insert(event.id);
        next.events.append(event);
        ++result.added;
    }
    sortEvents(next.events);
    if (next.pin && next.pin->kind == PinTarget::Kind::manual && !known.contains(next.pin->eventID))
        next.pin.reset();
    if (!commit(std::move(next), error))
        return false;
    if (counts)
        *counts = result;
    return true;
}

bool EventStore::setPin(const std::optional<PinTarget> &pin, EventStoreError *error)
{
    if (pin == m_state.pin)
        return true;
    if (pin && pin->kind == PinTarget::Kind::manual && indexOf(m_state.events, pin->eventID) < 0)
        return report(error, EventStoreError::noEvent(pin->eventID));
    StoreState next = m_state;
    next.pin = pin;
    if (pin && pin->isCalendar())
        next.keptCalendarSeries.insert(pin->series);
    return commit(std::move(next), error);
}

bool EventStore::setCalendarIcon(const CalendarSeriesRef &series,
                                 const std::optional<IconRef> &icon, EventStoreError *error)
{
    StoreState next = m_state;
    assign(next.calendarIcons, series, icon);
    return commitIfChanged(std::move(next), error);
}

bool EventStore::setSeriesHidden(const CalendarSeriesRef &series, bool hidden,
                                 EventStoreError *error)
{
    StoreState next = m_state;
    assign(next.hiddenCalendarSeries, series, hidden);
    return commitIfChanged(std::move(next), error);
}

bool EventStore::setSeriesKept(const CalendarSeriesRef &series, bool kept, EventStoreError *error)
{
    StoreState next = m_state;
    assign(next.keptCalendarSeries, series, kept);
    return commitIfChanged(std::move(next), error);
}

bool EventStore::setCalendarReach(const CalendarSeriesRef &series,
                                  const CalendarReachSignals &reach, EventStoreError *error)
{
    StoreState next = m_state;
    // An entry with nothing chosen and nothing pending says no more than a missing one.
    assign(next.calendarReach, series, reach.isEmpty() ? std::nullopt : std::optional(reach));
    return commitIfChanged(std::move(next), error);
}

bool EventStore::setCalendarAnnotation(const CalendarSeriesRef &series,
                                       const std::optional<CalendarAnnotation> &annotation,
                                       EventStoreError *error)
{
    StoreState next = m_state;
    assign(next.calendarAnnotations, series,
           annotation && !annotation->isEmpty() ? annotation : std::optional<CalendarAnnotation>());
    return commitIfChanged(std::move(next), error);
}

void EventStore::migrateReachSignals(bool celebration, bool notification)
{
    if (!m_needsReachSignalMigration)
        return;
    StoreState next = m_state;
    for (Event &event : next.events) {
        event.celebrationEnabled = celebration;
        event.notifyOnReach = notification;
    }
    const qsizetype count = next.events.size();
    EventStoreError error;
    if (!commit(std::move(next), &error)) {
        qCCritical(lcEventStore).noquote()
            << QStringLiteral("Failed to migrate reach signals: %1").arg(error.description);
        return;
    }
    m_needsReachSignalMigration = false;
    qCInfo(lcEventStore).noquote()
        << QStringLiteral("Migrated %1 event(s) to per-event reach signals").arg(count);
}

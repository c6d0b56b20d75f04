#include "storage/EventStore.h"

#include "storage/EventFile.h"
#include "storage/StoreEnvelope.h"

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

bool refuseLongTitle(EventStoreError *error)
{
    return report(
        error,
        {EventStoreError::Kind::refused,
         QStringLiteral("the title is longer than %1 characters").arg(Event::MaxTitleLength)});
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
    , m_file(paths.eventFile(), files, lcEventStore)
{
    if (std::optional<LoadResult> loaded = outsideChange()) {
        m_state = std::move(loaded->state);
        m_needsReachSignalMigration = loaded->needsReachSignalMigration;
    }
}

std::optional<LoadResult> EventStore::outsideChange()
{
    const DataFile::Read read = m_file.readIfChanged();
    switch (read.kind) {
    case DataFile::Read::Kind::unchanged:
        return std::nullopt;
    case DataFile::Read::Kind::missing:
        return LoadResult {};
    case DataFile::Read::Kind::failed:
        qCCritical(lcEventStore).noquote()
            << QStringLiteral("Failed to read event.json: %1").arg(read.error);
        return std::nullopt;
    case DataFile::Read::Kind::changed:
        break;
    }
    QString why;
    std::optional<EventFile::Contents> contents = EventFile::decode(read.bytes, &why);
    if (!contents) {
        qCCritical(lcEventStore)
            << "event.json present but neither a versioned envelope nor a legacy v1 event";
        qCWarning(lcEventStore).noquote() << QStringLiteral("event.json: %1").arg(why);
        m_file.reject(read.bytes);
        return std::nullopt;
    }
    if (contents->legacy)
        qCInfo(lcEventStore) << "Migrating legacy v1 event.json to the current envelope";
    for (const QString &date : std::as_const(contents->skippedDates))
        qCWarning(lcEventStore).noquote()
            << QStringLiteral("Skipped a record of event.json whose date %1 is outside the years "
                              "0001 to 9999; the file is kept aside before the next save")
                   .arg(date);
    // A file read only in part is kept aside like an unreadable one: the next save would lose
    // the records left out.
    if (contents->skippedDates.isEmpty())
        m_file.accept(read.bytes);
    else
        m_file.reject(read.bytes);
    return std::move(contents->result);
}

bool EventStore::reloadIfChanged()
{
    std::optional<LoadResult> loaded = outsideChange();
    if (!loaded)
        return false;
    m_needsReachSignalMigration = loaded->needsReachSignalMigration;
    qCInfo(lcEventStore).noquote()
        << QStringLiteral("Reloaded event.json after an outside change: %1 event(s)")
               .arg(loaded->state.events.size());
    publish(std::move(loaded->state));
    Q_EMIT reloaded();
    return true;
}

bool EventStore::mutate(Write write, const Operation &operation, EventStoreError *error)
{
    QString reason;
    if (!m_file.lock(&reason))
        return report(error, {EventStoreError::Kind::writeFailed, reason});
    // Another process may have written since this store last looked: start from that.
    std::optional<LoadResult> outside = outsideChange();
    if (outside)
        m_needsReachSignalMigration = outside->needsReachSignalMigration;
    const StoreState base = outside ? std::move(outside->state) : m_state;
    StoreState next = base;
    bool ok = operation(next, error);
    if (ok && (write == Write::always || !(next == base))) {
        QString problem;
        const QByteArray bytes = StoreEnvelope::encode(next, &m_encodedEvents, &problem);
        if (!problem.isEmpty())
            ok = report(error, {EventStoreError::Kind::refused, problem});
        else if (!m_file.write(bytes, &reason))
            ok = report(error, {EventStoreError::Kind::writeFailed, reason});
    }
    m_file.unlock();
    // Observers hear of the outside change even when this operation failed.
    publish(ok ? std::move(next) : base);
    if (outside)
        Q_EMIT reloaded();
    return ok;
}

bool EventStore::edit(const std::function<void(StoreState &)> &change, EventStoreError *error)
{
    return mutate(
        Write::ifChanged,
        [&](StoreState &state, EventStoreError *) {
            change(state);
            return true;
        },
        error);
}

const Event *EventStore::event(const QUuid &id) const
{
    const qsizetype index = indexOf(m_state.events, id);
    return index < 0 ? nullptr : &m_state.events.at(index);
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
    if (Event::isTitleTooLong(event.title))
        return refuseLongTitle(error);
    return mutate(
        Write::always,
        [&](StoreState &state, EventStoreError *failure) {
            // Ids name events everywhere (pins, the command line, backups): never two alike.
            if (indexOf(state.events, event.id) >= 0)
                return report(failure,
                              {EventStoreError::Kind::refused,
                               QStringLiteral("An event with id %1 is already in the list")
                                   .arg(event.id.toString(QUuid::WithoutBraces).toUpper())});
            state.events.append(event);
            sortEvents(state.events);
            return true;
        },
        error);
}

bool EventStore::updateEvent(const QUuid &id, const EventPatch &patch, EventStoreError *error)
{
    if (patch.title && Event::isTitleTooLong(*patch.title))
        return refuseLongTitle(error);
    return mutate(
        Write::always,
        [&](StoreState &state, EventStoreError *failure) {
            const qsizetype index = indexOf(state.events, id);
            if (index < 0)
                return report(failure, EventStoreError::noEvent(id));
            patch.applyTo(state.events[index]);
            sortEvents(state.events);
            return true;
        },
        error);
}

bool EventStore::updateEvents(const QList<std::pair<QUuid, EventPatch>> &patches,
                              EventStoreError *error)
{
    for (const auto &[id, patch] : patches) {
        if (patch.title && Event::isTitleTooLong(*patch.title))
            return refuseLongTitle(error);
    }
    return edit(
        [&](StoreState &state) {
            for (const auto &[id, patch] : patches) {
                const qsizetype index = indexOf(state.events, id);
                if (index >= 0)
                    patch.applyTo(state.events[index]);
            }
            sortEvents(state.events);
        },
        error);
}

bool EventStore::deleteEvent(const QUuid &id, EventStoreError *error)
{
    return mutate(
        Write::always,
        [&](StoreState &state, EventStoreError *failure) {
            const qsizetype index = indexOf(state.events, id);
            if (index < 0)
                return report(failure, EventStoreError::noEvent(id));
            state.events.removeAt(index);
            if (state.pin && state.pin->kind == PinTarget::Kind::manual && state.pin->eventID == id)
                state.pin.reset();
            return true;
        },
        error);
}

bool EventStore::importBackup(const QList<Event> &events, BackupImportMode mode,
                              BackupImportCounts *counts, EventStoreError *error)
{
    BackupImportCounts result;
    const bool ok = mutate(
        Write::always,
        [&](StoreState &state, EventStoreError *) {
            result = {};
            if (mode == BackupImportMode::replace)
                state.events.clear();
            QSet<QUuid> known;
            for (const Event &event : std::as_const(state.events))
                known.insert(event.id);
            for (const Event &event : events) {
                if (known.contains(event.id)) {
                    ++result.skipped;
                    continue;
                }
                known.insert(event.id);
                state.events.append(event);
                ++result.added;
            }
            sortEvents(state.events);
            if (state.pin && state.pin->kind == PinTarget::Kind::manual
                && !known.contains(state.pin->eventID))
                state.pin.reset();
            return true;
        },
        error);
    if (ok && counts)
        *counts = result;
    return ok;
}

bool EventStore::setPin(const std::optional<PinTarget> &pin, EventStoreError *error)
{
    return mutate(
        Write::ifChanged,
        [&](StoreState &state, EventStoreError *failure) {
            if (pin == state.pin)
                return true;
            if (pin && pin->kind == PinTarget::Kind::manual
                && indexOf(state.events, pin->eventID) < 0)
                return report(failure, EventStoreError::noEvent(pin->eventID));
            state.pin = pin;
            if (pin && pin->isCalendar())
                state.keptCalendarSeries.insert(pin->series);
            return true;
        },
        error);
}

bool EventStore::setCalendarIcon(const CalendarSeriesRef &series,
                                 const std::optional<IconRef> &icon, EventStoreError *error)
{
    return edit([&](StoreState &state) { assign(state.calendarIcons, series, icon); }, error);
}

bool EventStore::setSeriesHidden(const CalendarSeriesRef &series, bool hidden,
                                 EventStoreError *error)
{
    return edit([&](StoreState &state) { assign(state.hiddenCalendarSeries, series, hidden); },
                error);
}

bool EventStore::setSeriesKept(const CalendarSeriesRef &series, bool kept, EventStoreError *error)
{
    return edit([&](StoreState &state) { assign(state.keptCalendarSeries, series, kept); }, error);
}

bool EventStore::setCalendarReach(const CalendarSeriesRef &series,
                                  const CalendarReachSignals &reach, EventStoreError *error)
{
    return edit(
        [&](StoreState &state) {
            // An entry with nothing chosen and nothing pending says no more than a missing one.
            assign(state.calendarReach, series,
                   reach.isEmpty() ? std::nullopt : std::optional(reach));
        },
        error);
}

bool EventStore::setCalendarAnnotation(const CalendarSeriesRef &series,
                                       const std::optional<CalendarAnnotation> &annotation,
                                       EventStoreError *error)
{
    return edit(
        [&](StoreState &state) {
            assign(state.calendarAnnotations, series,
                   annotation && !annotation->isEmpty() ? annotation
                                                        : std::optional<CalendarAnnotation>());
        },
        error);
}

void EventStore::migrateReachSignals(bool celebration, bool notification)
{
    if (!m_needsReachSignalMigration)
        return;
    qsizetype count = 0;
    EventStoreError error;
    // Written even when no switch changes: the file then takes the current form. Another
    // process may have migrated the file meanwhile; then this changes nothing more.
    const bool ok = mutate(
        Write::always,
        [&](StoreState &state, EventStoreError *) {
            if (!m_needsReachSignalMigration)
                return true;
            for (Event &event : state.events) {
                event.celebrationEnabled = celebration;
                event.notifyOnReach = notification;
            }
            count = state.events.size();
            return true;
        },
        &error);
    if (!ok) {
        qCCritical(lcEventStore).noquote()
            << QStringLiteral("Failed to migrate reach signals: %1").arg(error.description);
        return;
    }
    if (!m_needsReachSignalMigration)
        return;
    m_needsReachSignalMigration = false;
    qCInfo(lcEventStore).noquote()
        << QStringLiteral("Migrated %1 event(s) to per-event reach signals").arg(count);
}

#pragma once

#include "records/EventPatch.h"
#include "storage/DataFile.h"
#include "storage/EncodedEventCache.h"
#include "storage/FileAccess.h"
#include "storage/PathProvider.h"
#include "storage/StoreState.h"

#include <QLoggingCategory>
#include <QObject>

#include <functional>

Q_DECLARE_LOGGING_CATEGORY(lcEventStore)

struct EventStoreError
{
    // refused: the change holds something the file cannot keep (a date outside the years 0001
    // to 9999, a title that is too long); nothing was written.
    enum class Kind { noEvent, writeFailed, refused };
    Kind kind = Kind::writeFailed;
    QString description;

    static EventStoreError noEvent(const QUuid &id);
};

// How imported events join the list.
enum class BackupImportMode { merge, replace };

struct BackupImportCounts
{
    qint64 added = 0; // events that are now in the list
    qint64 skipped = 0; // events left out because their id was already there
};

// The single owner of the user's countdowns, the pin and the per-series calendar choices. Every
// change is written to "event.json" first and published only once the write succeeded; a failed
// operation leaves both the file and the published state as they were.
//
// The app and any number of `tarrow` commands may write the folder at once. Every change is a
// read-modify-write under the lock beside the file ("event.json.lock"): when the file changed
// since this store last read or wrote it, the store takes the new contents in first, then
// applies its change to them, so no process undoes another's. An outside change is published
// like any other (the same change signals), by the next operation or by reloadIfChanged(),
// which the app calls when the folder changes. A file that cannot be read never replaces the
// store's state; it is kept aside byte for byte before the next save replaces it.
class EventStore : public QObject
{
    Q_OBJECT
public:
    EventStore(const PathProvider &paths, FileAccess &files, QObject *parent = nullptr);

    const QList<Event> &events() const { return m_state.events; }
    const std::optional<PinTarget> &pin() const { return m_state.pin; }
    const QMap<CalendarSeriesRef, IconRef> &calendarIcons() const { return m_state.calendarIcons; }
    const QSet<CalendarSeriesRef> &hiddenCalendarSeries() const
    {
        return m_state.hiddenCalendarSeries;
    }
    const QSet<CalendarSeriesRef> &keptCalendarSeries() const { return m_state.keptCalendarSeries; }
    const QMap<CalendarSeriesRef, CalendarReachSignals> &calendarReach() const
    {
        return m_state.calendarReach;
    }
    const QMap<CalendarSeriesRef, CalendarAnnotation> &calendarAnnotations() const
    {
        return m_state.calendarAnnotations;
    }
    const StoreState &state() const { return m_state; }
    const Event *event(const QUuid &id) const;
    bool needsReachSignalMigration() const { return m_needsReachSignalMigration; }
    const PathProvider &paths() const { return m_paths; }

    bool addEvent(const Event &event, EventStoreError *error = nullptr);
    bool updateEvent(const QUuid &id, const EventPatch &patch, EventStoreError *error = nullptr);
    // Several patches in one write (the engine stamps all arrivals of a pass at once). Patches of
    // events that are no longer there (another process deleted them) are left out.
    bool updateEvents(const QList<std::pair<QUuid, EventPatch>> &patches,
                      EventStoreError *error = nullptr);
    // Deleting the pinned event also clears the pin.
    bool deleteEvent(const QUuid &id, EventStoreError *error = nullptr);
    bool importBackup(const QList<Event> &events, BackupImportMode mode,
                      BackupImportCounts *counts = nullptr, EventStoreError *error = nullptr);

    // Pinning a calendar series or occurrence also keeps its series.
    bool setPin(const std::optional<PinTarget> &pin, EventStoreError *error = nullptr);
    bool setCalendarIcon(const CalendarSeriesRef &series, const std::optional<IconRef> &icon,
                         EventStoreError *error = nullptr);
    bool setSeriesHidden(const CalendarSeriesRef &series, bool hidden,
                         EventStoreError *error = nullptr);
    bool setSeriesKept(const CalendarSeriesRef &series, bool kept,
                       EventStoreError *error = nullptr);
    bool setCalendarReach(const CalendarSeriesRef &series, const CalendarReachSignals &reach,
                          EventStoreError *error = nullptr);
    bool setCalendarAnnotation(const CalendarSeriesRef &series,
                               const std::optional<CalendarAnnotation> &annotation,
                               EventStoreError *error = nullptr);

    // Once, at start-up: the global arrival switches of older versions become per-event ones.
    void migrateReachSignals(bool celebration, bool notification);

    // Takes in a change another process made to "event.json" and publishes it; true when there
    // was one. An unreadable file is logged and leaves the state as it is.
    bool reloadIfChanged();

Q_SIGNALS:
    void eventsChanged();
    void pinChanged();
    void calendarIconsChanged();
    void hiddenCalendarSeriesChanged();
    void keptCalendarSeriesChanged();
    void calendarReachChanged();
    void calendarAnnotationsChanged();
    // After an outside change was taken in (and published through the signals above).
    void reloaded();

private:
    // Changes the state in place; false (with the error) to change nothing.
    using Operation = std::function<bool(StoreState &state, EventStoreError *error)>;
    enum class Write { always, ifChanged };
    // One read-modify-write under the lock: takes in an outside change, applies `operation`,
    // writes, publishes.
    bool mutate(Write write, const Operation &operation, EventStoreError *error);
    // A change that cannot fail, written only when it changes something.
    bool edit(const std::function<void(StoreState &)> &change, EventStoreError *error);
    // The file's contents when they differ from what this store last read or wrote.
    std::optional<LoadResult> outsideChange();
    void publish(StoreState next);

    const PathProvider &m_paths;
    DataFile m_file;
    StoreState m_state;
    EncodedEventCache m_encodedEvents;
    bool m_needsReachSignalMigration = false;
};

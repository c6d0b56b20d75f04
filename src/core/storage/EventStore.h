#pragma once

#include "records/EventPatch.h"
#include "storage/EncodedEventCache.h"
#include "storage/FileAccess.h"
#include "storage/PathProvider.h"
#include "storage/StoreState.h"

#include <QLoggingCategory>
#include <QObject>

Q_DECLARE_LOGGING_CATEGORY(lcEventStore)

struct EventStoreError
{
    enum class Kind { noEvent, writeFailed };
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

Q_SIGNALS:
    void eventsChanged();
    void pinChanged();
    void calendarIconsChanged();
    void hiddenCalendarSeriesChanged();
    void keptCalendarSeriesChanged();
    void calendarReachChanged();
    void calendarAnnotationsChanged();

private:
    LoadResult load();
    // Writes `next` and, when that worked, makes it the published state.
    bool commit(StoreState next, EventStoreError *error);
    bool commitIfChanged(StoreState next, EventStoreError *error);
    bool keepUnreadableFileAside(QString *error);
    void publish(StoreState next);

    const PathProvider &m_paths;
    FileAccess &m_files;
    StoreState m_state;
    EncodedEventCache m_encodedEvents;
    bool m_needsReachSignalMigration = false;
    bool m_unreadableFileOnDisk = false;
};

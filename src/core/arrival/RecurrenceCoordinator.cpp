#include "arrival/RecurrenceCoordinator.h"

#include "arrival/RecurrenceSeries.h"
#include "storage/EventStore.h"
#include "time/Clock.h"

Q_LOGGING_CATEGORY(lcRecurrenceCoordinator, "RecurrenceCoordinator")

namespace {

// Enough for a daily series to catch up on centuries; a guard against a broken rule, not a limit
// anyone meets.
constexpr int MaxSteps = 200000;

bool isDueForRoll(const Event &event)
{
    return event.recurrence && event.reachedAt && event.celebrationAcknowledged
        && event.direction == CountdownDirection::until;
}

} // namespace

RecurrenceCoordinator::RecurrenceCoordinator(EventStore &store, const Clock &clock, QObject *parent)
    : QObject(parent)
    , m_store(store)
    , m_clock(clock)
{
    // Rolled on the next turn: everyone else hears of the acknowledgement first.
    connect(&store, &EventStore::eventsChanged, this, [this] {
        if (m_queued)
            return;
        m_queued = true;
        QMetaObject::invokeMethod(this, &RecurrenceCoordinator::rollDueEvents,
                                  Qt::QueuedConnection);
    });
    QMetaObject::invokeMethod(this, &RecurrenceCoordinator::rollDueEvents, Qt::QueuedConnection);
}

std::optional<EventPatch> RecurrenceCoordinator::roll(const Event &event, const QDateTime &now)
{
    if (!isDueForRoll(event))
        return std::nullopt;
    const RecurrenceRule &rule = *event.recurrence;
    const QTimeZone zone = event.zone();
    const bool allDay = !event.includeTime;
    const QDate targetDay = event.targetDate.toTimeZone(zone).date();

    // The kept first occurrence holds while the target lies on its series at its time of day;
    // a target the user moved starts a new series.
    QDateTime first = event.targetDate;
    if (rule.seriesStart && *rule.seriesStart <= event.targetDate) {
        RecurrenceSeries kept(rule, *rule.seriesStart, zone, allDay);
        const bool sameTime = allDay
            || rule.seriesStart->toTimeZone(zone).time()
                == event.targetDate.toTimeZone(zone).time();
        if (sameTime && kept.seek(targetDay))
            first = *rule.seriesStart;
    }
    RecurrenceSeries series(rule, first, zone, allDay);
    if (!series.seek(targetDay))
        return std::nullopt; // the end rule already excludes the target: nothing comes after it

    QDateTime passed = series.moment();
    for (int step = 0;; ++step) {
        if (step == MaxSteps || !series.advance())
            return std::nullopt;
        if (series.moment() > now)
            break;
        passed = series.moment();
    }

    EventPatch patch;
    patch.targetDate = series.target();
    patch.cycleAnchor = std::optional<QDateTime>(passed);
    patch.reachedAt = std::optional<QDateTime>();
    patch.celebrationAcknowledged = false;
    if (rule.seriesStart != first) {
        RecurrenceRule kept = rule;
        kept.seriesStart = first;
        patch.recurrence = std::optional<RecurrenceRule>(kept);
    }
    return patch;
}

void RecurrenceCoordinator::rollDueEvents()
{
    m_queued = false;
    const QDateTime now = m_clock.now();
    QList<std::pair<QUuid, EventPatch>> rolls;
    for (const Event &event : m_store.events()) {
        if (std::optional<EventPatch> patch = roll(event, now))
            rolls.append({event.id, *patch});
    }
    for (const auto &[id, patch] : std::as_const(rolls)) {
        EventStoreError error;
        if (m_store.updateEvent(id, patch, &error)) {
            qCInfo(lcRecurrenceCoordinator).noquote()
                << QStringLiteral("Rolled %1 to %2")
                       .arg(id.toString(QUuid::WithoutBraces),
                            patch.targetDate->toString(Qt::ISODate));
        } else {
            qCWarning(lcRecurrenceCoordinator).noquote()
                << QStringLiteral("Failed to roll %1 to its next occurrence: %2")
                       .arg(id.toString(QUuid::WithoutBraces), error.description);
        }
    }
}

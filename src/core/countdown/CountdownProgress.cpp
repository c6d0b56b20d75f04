#include "countdown/CountdownProgress.h"

#include "time/CountdownFormatter.h"

#include <algorithm>

namespace {

constexpr qint64 oneWeekSeconds = 604800;

} // namespace

QDateTime CountdownProgress::start(const CountdownItem &item)
{
    if (const Event *event = item.event())
        return event->cycleAnchor.value_or(event->createdAt);

    const CalendarOccurrence &occurrence = *item.occurrence();
    if (occurrence.previousOccurrenceStart
        && *occurrence.previousOccurrenceStart < occurrence.start)
        return *occurrence.previousOccurrenceStart;
    const QDateTime fallback = occurrence.start.addSecs(-oneWeekSeconds);
    if (occurrence.createdAt && *occurrence.createdAt > fallback
        && *occurrence.createdAt < occurrence.start)
        return *occurrence.createdAt;
    return fallback;
}

double CountdownProgress::at(const CountdownItem &item, const QDateTime &now)
{
    if (item.isCountUp())
        return CountdownFormatter::anniversaryProgress(item.date(), now, item.zone());
    const qint64 startMSecs = start(item).toMSecsSinceEpoch();
    const qint64 span = item.dateMSecs() - startMSecs;
    if (span <= 0)
        return 1.0;
    const double passed = double(now.toMSecsSinceEpoch() - startMSecs) / double(span);
    return std::clamp(passed, 0.0, 1.0);
}

#include "calendar/OccurrenceFilter.h"

#include <QHash>

#include <algorithm>

namespace {

constexpr qint64 lookBackDays = 7;
constexpr qint64 oneDayMSecs = 86'400'000;

qint64 endMSecs(const ProviderOccurrence &occurrence)
{
    const qint64 start = occurrence.start.toMSecsSinceEpoch();
    if (occurrence.end && *occurrence.end > occurrence.start)
        return occurrence.end->toMSecsSinceEpoch();
    return occurrence.isAllDay ? start + oneDayMSecs : start;
}

struct Timed
{
    qint64 start;
    qint64 scheduled;
    const ProviderOccurrence *occurrence;
    qsizetype index = 0;

    bool operator<(const Timed &other) const
    {
        return start != other.start ? start < other.start : scheduled < other.scheduled;
    }
};

} // namespace

namespace OccurrenceFilter {

qint64 horizonDays(const CalendarSettings &settings)
{
    return std::clamp<qint64>(settings.horizonDays, 1, 366);
}

Window readWindow(const CalendarSettings &settings, const QDateTime &now)
{
    return {now.addDays(-lookBackDays), now.addDays(horizonDays(settings))};
}

CalendarOccurrence copied(const ProviderOccurrence &occurrence)
{
    CalendarOccurrence copy;
    copy.ref = occurrence.ref;
    copy.title = occurrence.title;
    copy.start = occurrence.start;
    copy.end = occurrence.end;
    copy.isAllDay = occurrence.isAllDay;
    copy.timeZoneID = occurrence.timeZoneID;
    copy.calendarTitle = occurrence.calendarTitle;
    copy.accountTitle = occurrence.accountTitle;
    copy.tint = occurrence.tint;
    copy.location = occurrence.location;
    copy.isRecurring = occurrence.isRecurring;
    copy.externalURL = occurrence.externalURL;
    copy.meetingURL = occurrence.meetingURL;
    copy.createdAt = occurrence.createdAt;
    return copy;
}

QList<CalendarOccurrence> apply(const QList<ProviderOccurrence> &read,
                                const CalendarSettings &settings,
                                const QSet<CalendarSeriesRef> &keptSeries, const QDateTime &now)
{
    const qint64 nowMSecs = now.toMSecsSinceEpoch();
    const qint64 horizonMSecs = now.addDays(horizonDays(settings)).toMSecsSinceEpoch();

    // Every series' occurrences in start order, to find each one's previous occurrence. The
    // instants are read once: comparing QDateTimes costs more than the rest of the filter.
    QHash<CalendarSeriesRef, std::vector<Timed>> series;
    for (const ProviderOccurrence &occurrence : read) {
        if (!occurrence.isCancelled && occurrence.start.isValid())
            series[occurrence.ref.series].push_back(
                {occurrence.start.toMSecsSinceEpoch(),
                 occurrence.ref.occurrenceDate.toMSecsSinceEpoch(), &occurrence});
    }

    std::vector<Timed> shownOrder;
    QList<CalendarOccurrence> shown;
    for (auto entry = series.begin(); entry != series.end(); ++entry) {
        std::vector<Timed> &list = entry.value();
        std::sort(list.begin(), list.end());
        const bool kept = keptSeries.contains(entry.key());
        for (size_t i = 0; i < list.size(); ++i) {
            const ProviderOccurrence &occurrence = *list[i].occurrence;
            if (endMSecs(occurrence) <= nowMSecs || list[i].start >= horizonMSecs)
                continue;
            const bool declined = occurrence.participation == CalendarParticipation::declined;
            if (declined && settings.skipDeclined)
                continue;
            if (!kept
                && (settings.disabledCalendarIDs.contains(occurrence.ref.series.calendarID)
                    || (occurrence.isAllDay && !settings.includeAllDay)))
                continue;
            CalendarOccurrence copy = copied(occurrence);
            copy.excludedFromAutomatic = declined || occurrence.isAllDay;
            if (i > 0)
                copy.previousOccurrenceStart = list[i - 1].occurrence->start;
            shownOrder.push_back({list[i].start, list[i].scheduled, &occurrence, shown.size()});
            shown.append(std::move(copy));
        }
    }
    // A stable order, so an unchanged calendar gives an equal list.
    std::sort(shownOrder.begin(), shownOrder.end(), [](const Timed &a, const Timed &b) {
        if (a.start != b.start)
            return a.start < b.start;
        if (a.occurrence->ref.series != b.occurrence->ref.series)
            return a.occurrence->ref.series < b.occurrence->ref.series;
        return a.scheduled < b.scheduled;
    });
    QList<CalendarOccurrence> ordered;
    ordered.reserve(shown.size());
    for (const Timed &timed : shownOrder)
        ordered.append(std::move(shown[timed.index]));
    return ordered;
}

} // namespace OccurrenceFilter

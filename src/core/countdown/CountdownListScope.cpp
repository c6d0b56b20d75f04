#include "countdown/CountdownListScope.h"

#include "countdown/CountdownSearch.h"

std::optional<CountdownListSection> CountdownListRules::sectionOf(const CountdownItem &item,
                                                                  const QDateTime &now)
{
    if (const CalendarOccurrence *occurrence = item.occurrence()) {
        if (occurrence->isHidden)
            return std::nullopt;
        return item.isUpcoming(now) ? CountdownListSection::upcoming : CountdownListSection::past;
    }
    if (item.isCountUp())
        return CountdownListSection::since;
    return item.isReached() ? CountdownListSection::past : CountdownListSection::upcoming;
}

bool CountdownListRules::inScope(const CountdownItem &item, CountdownListScope scope,
                                 const QDateTime &now)
{
    const std::optional<CountdownListSection> section = sectionOf(item, now);
    if (!section)
        return false;
    switch (scope) {
    case CountdownListScope::all:
        return true;
    case CountdownListScope::mine:
        return item.isManual();
    case CountdownListScope::calendar:
        return item.isCalendar();
    case CountdownListScope::past:
        return *section == CountdownListSection::past;
    }
    return false;
}

QList<CountdownItem> CountdownListRules::filter(const QList<CountdownItem> &items,
                                                CountdownListScope scope, const QString &query,
                                                const QDateTime &now)
{
    const CountdownSearch search(query);
    QList<CountdownItem> result;
    for (const CountdownItem &item : items) {
        if (inScope(item, scope, now) && search.matches(item))
            result.append(item);
    }
    return result;
}

CountdownSectionCounts CountdownListRules::countSections(const QList<CountdownItem> &items,
                                                         const QDateTime &now)
{
    CountdownSectionCounts counts;
    for (const CountdownItem &item : items) {
        const std::optional<CountdownListSection> section = sectionOf(item, now);
        if (!section)
            continue;
        switch (*section) {
        case CountdownListSection::upcoming:
            ++counts.upcoming;
            break;
        case CountdownListSection::since:
            ++counts.since;
            break;
        case CountdownListSection::past:
            ++counts.past;
            break;
        }
    }
    return counts;
}

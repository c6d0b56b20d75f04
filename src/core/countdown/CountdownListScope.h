#pragma once

#include "countdown/CountdownItem.h"

#include <QList>

#include <optional>

// The popover's filter of the list, and the section each visible item is shown in.
//
// Sections (every visible item is in exactly one):
// - upcoming: manual countdowns that have not arrived, and calendar occurrences that start
//   strictly after now;
// - since: manual count-ups (they never arrive, so they never move to past);
// - past: manual countdowns whose arrival is stamped, and calendar occurrences that have started.
// Items of a hidden calendar series are in no section and no scope.
//
// Scopes:
// - all: every visible item, in all three sections;
// - mine: the manual items (all three sections);
// - calendar: the visible calendar occurrences;
// - past: the past section alone.
enum class CountdownListScope { all, mine, calendar, past };

enum class CountdownListSection { upcoming, since, past };

struct CountdownSectionCounts
{
    qsizetype upcoming = 0;
    qsizetype since = 0;
    qsizetype past = 0;
};

namespace CountdownListRules {

// The section of `item` at `now`; absent for an item of a hidden calendar series.
std::optional<CountdownListSection> sectionOf(const CountdownItem &item, const QDateTime &now);
bool inScope(const CountdownItem &item, CountdownListScope scope, const QDateTime &now);
// The items of `scope` that match the search `query`, in list order.
QList<CountdownItem> filter(const QList<CountdownItem> &items, CountdownListScope scope,
                            const QString &query, const QDateTime &now);
// How many visible items each section holds (for the list's summary line).
CountdownSectionCounts countSections(const QList<CountdownItem> &items, const QDateTime &now);

} // namespace CountdownListRules

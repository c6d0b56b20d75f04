#pragma once

#include <QDateTime>
#include <QTimeZone>

#include <optional>

class LanguageTable;

// The round figures of a count-up worth a notice: 100, 500, 1,000, 5,000 and 10,000 days, every
// whole year, and every whole month of the first year, counted in the calendar of the item's zone
// from its start.
struct Milestone
{
    enum class Unit { days, months, years };

    Unit unit = Unit::days;
    qint64 count = 0;
    QDateTime moment;

    // "It has been 100 days." in the table's language, with the number grouped as it writes
    // numbers.
    QString text(const LanguageTable &table) const;

    bool operator==(const Milestone &) const = default;
};

namespace Milestones {

// The latest milestone at or before `now`, if one has passed.
std::optional<Milestone> latest(const QDateTime &start, const QTimeZone &zone,
                                const QDateTime &now);
// The first milestone after `now`.
std::optional<Milestone> next(const QDateTime &start, const QTimeZone &zone, const QDateTime &now);

} // namespace Milestones

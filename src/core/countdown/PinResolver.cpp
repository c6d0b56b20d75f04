#include "countdown/PinResolver.h"

#include "countdown/CountdownRegistry.h"

#include <functional>

namespace {

constexpr qint64 imminentMSecs = 86400 * 1000LL;

bool waitsForCelebration(const CountdownItem &item)
{
    return item.waitsForCelebration();
}

bool countsForAutomaticChoice(const CountdownItem &item, qint64 nowMSecs)
{
    return item.isUpcoming(nowMSecs) && !item.isHidden() && !item.isExcludedFromAutomatic();
}

// The first item of `items` whose ordering date is the latest (or earliest) among those that
// pass `accept`.
template<typename Accept>
const CountdownItem *extreme(const QList<CountdownItem> &items, bool latest, Accept accept)
{
    const CountdownItem *best = nullptr;
    for (const CountdownItem &item : items) {
        if (!std::invoke(accept, item))
            continue;
        if (!best
            || (latest ? item.orderingMSecs() > best->orderingMSecs()
                       : item.orderingMSecs() < best->orderingMSecs()))
            best = &item;
    }
    return best;
}

std::optional<CountdownItem> copyOf(const CountdownItem *item)
{
    return item ? std::optional<CountdownItem>(*item) : std::nullopt;
}

} // namespace

std::optional<CountdownItem> PinResolver::findPinned(const std::optional<PinTarget> &pin,
                                                     const QList<CountdownItem> &items,
                                                     const QDateTime &now)
{
    if (!pin)
        return std::nullopt;
    const qint64 nowMSecs = now.toMSecsSinceEpoch();
    switch (pin->kind) {
    case PinTarget::Kind::manual:
    case PinTarget::Kind::calendarOccurrence:
        for (const CountdownItem &item : items) {
            if (!CountdownRegistry::pinMatches(pin, item))
                continue;
            const bool holds = item.isManual() ? !item.isSettled() : item.isUpcoming(nowMSecs);
            return holds ? std::optional<CountdownItem>(item) : std::nullopt;
        }
        return std::nullopt;
    case PinTarget::Kind::calendarSeries:
        return copyOf(extreme(items, false, [&](const CountdownItem &item) {
            return CountdownRegistry::pinMatches(pin, item) && item.isUpcoming(nowMSecs);
        }));
    }
    return std::nullopt;
}

std::optional<CountdownItem> PinResolver::automaticChoice(const QList<CountdownItem> &items,
                                                          const QDateTime &now)
{
    if (const CountdownItem *waiting = extreme(items, true, waitsForCelebration))
        return *waiting;

    const qint64 nowMSecs = now.toMSecsSinceEpoch();
    const CountdownItem *next = extreme(items, false, [nowMSecs](const CountdownItem &item) {
        return countsForAutomaticChoice(item, nowMSecs);
    });
    if (next && next->orderingMSecs() - nowMSecs < imminentMSecs)
        return *next;

    if (const CountdownItem *countUp = extreme(items, true, &CountdownItem::isCountUp))
        return *countUp;
    return copyOf(next);
}

bool PinResolver::targetExists(const PinTarget &pin, const QList<CountdownItem> &items)
{
    return std::any_of(items.cbegin(), items.cend(), [&pin](const CountdownItem &item) {
        return CountdownRegistry::pinMatches(pin, item);
    });
}

PinResolver::Resolution PinResolver::resolve(const std::optional<PinTarget> &pin,
                                             const QList<CountdownItem> &items,
                                             const QDateTime &now)
{
    if (!pin)
        return {automaticChoice(items, now), StoredTargetState::automatic};
    if (std::optional<CountdownItem> pinned = findPinned(pin, items, now))
        return {std::move(pinned), StoredTargetState::resolved};
    return {automaticChoice(items, now),
            targetExists(*pin, items) ? StoredTargetState::released : StoredTargetState::missing};
}

RowPinState PinResolver::rowPinState(const std::optional<PinTarget> &pin,
                                     const Resolution &resolution, const CountdownItem &item)
{
    if (!resolution.item || !(resolution.item->id() == item.id()))
        return RowPinState::none;
    if (pin && resolution.storedTarget == StoredTargetState::resolved)
        return RowPinState::explicit_;
    return pin ? RowPinState::none : RowPinState::auto_;
}

#pragma once

#include "countdown/CountdownItem.h"
#include "records/PinTarget.h"

#include <QList>

#include <optional>

// How a list row shows its relation to the menu bar: held because the user pinned it (explicit_),
// held by the automatic choice (auto_), or neither.
enum class RowPinState { explicit_, auto_, none };

// Decides which item, if any, holds the menu bar, given the stored pin, the registry's list (in
// its order) and the current instant. Pure: it reads nothing else and changes nothing; the
// engine keeps the one memory the procedure needs across calls (its miss counter).
//
// Two dates rule the choice: an item is upcoming when a manual countdown has not arrived, or a
// calendar occurrence starts strictly after now; the ordering date of an all-day item is the start
// of its day in its own zone (CountdownItem::orderingDate).
class PinResolver
{
public:
    enum class StoredTargetState {
        automatic, // no stored pin: the item is the automatic choice
        resolved, // the pin's item holds the menu bar
        released, // the pin's target exists but can no longer hold it: clear the pin ("spent")
        missing, // the pin's target is not in the list at all
    };

    struct Resolution
    {
        std::optional<CountdownItem> item;
        StoredTargetState storedTarget = StoredTargetState::automatic;
    };

    // The item the pin holds, when it may still hold the menu bar: a manual item until it is
    // settled, a pinned occurrence until it starts, and for a pinned series its upcoming
    // occurrence with the earliest ordering date.
    static std::optional<CountdownItem> findPinned(const std::optional<PinTarget> &pin,
                                                   const QList<CountdownItem> &items,
                                                   const QDateTime &now);

    // With no usable pin: a reached countdown whose celebration waits (the latest); else an
    // upcoming countdown less than a day away (the earliest, hidden and excluded calendar items
    // never count); else the most recently started count-up; else the next countdown however far.
    static std::optional<CountdownItem> automaticChoice(const QList<CountdownItem> &items,
                                                        const QDateTime &now);

    // Whether any item still carries the pin's identity.
    static bool targetExists(const PinTarget &pin, const QList<CountdownItem> &items);

    static Resolution resolve(const std::optional<PinTarget> &pin,
                              const QList<CountdownItem> &items, const QDateTime &now);

    // How the row of `item` relates to the menu bar under `resolution` of `pin`.
    static RowPinState rowPinState(const std::optional<PinTarget> &pin,
                                   const Resolution &resolution, const CountdownItem &item);
};

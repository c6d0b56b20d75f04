#pragma once

#include "countdown/CountdownItem.h"

#include <QDateTime>

// How far an item has come, from 0 to 1: the share of the span from its progress start to its
// target that has passed. A count-up fills the year since its last anniversary instead.
namespace CountdownProgress {

// Where the span begins. A manual item: its cycle anchor, else its creation. A calendar
// occurrence: the previous occurrence's start when that is earlier than its own start; else its
// creation when that lies within the week before its start; else one week before its start.
QDateTime start(const CountdownItem &item);

// The progress of `item` at `now`; 1 when the span is empty or negative.
double at(const CountdownItem &item, const QDateTime &now);

} // namespace CountdownProgress

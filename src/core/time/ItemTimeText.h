#pragma once

#include "records/SettingsTypes.h"

#include <QDateTime>
#include <QString>

struct Event;
class LanguageTable;

// The compact time text of an event at `now`: what is left for a countdown ("3d 4h"), or "+"
// and the time passed for a count-up and for a countdown whose moment has passed ("+2d 1h").
// All-day events count from the start of their day in the event's zone.
QString eventTimeText(const Event &event, const QDateTime &now, CountdownDisplayFormat format,
                      const LanguageTable &table);

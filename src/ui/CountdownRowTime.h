#pragma once

#include "records/SettingsTypes.h"
#include "ui/CountdownListModel.h"

class LanguageTable;

// How a list row reads at `now`: time left for a countdown still running, time passed (as
// "… ago") for one whose moment has come, the count-up form for a count-up; "✓" for a repeating
// countdown that arrived. Progress as the engine measures it.
CountdownRowTime countdownRowTime(const CountdownItem &item, const QDateTime &now,
                                  CountdownDisplayFormat format, const LanguageTable &table);

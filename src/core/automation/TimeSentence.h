#pragma once

#include "records/SettingsTypes.h"

#include <QDateTime>
#include <QString>

class CountdownItem;
class LanguageTable;

// The one sentence the automation answers tell about an item at `now`: how long a count-up has
// been running ("It has been 3d 4h since “Quit smoking”."), how long is left until a countdown
// ("2d 4h until “Dentist”."), or that it has arrived.
QString timeSentence(const CountdownItem &item, const QDateTime &now, CountdownDisplayFormat format,
                     const LanguageTable &table);

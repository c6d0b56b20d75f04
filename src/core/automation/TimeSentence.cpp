#include "automation/TimeSentence.h"

#include "countdown/CountdownItem.h"
#include "l10n/LanguageTable.h"
#include "time/CountdownFormatter.h"

QString timeSentence(const CountdownItem &item, const QDateTime &now, CountdownDisplayFormat format,
                     const LanguageTable &table)
{
    const QDateTime date = item.date();
    if (item.isCountUp()) {
        const QString elapsed =
            CountdownFormatter::compactElapsed(date, now, item.zone(), format, table);
        return table.format("intents.time.since %@ %@", {item.title(), elapsed});
    }
    if (secondsBetween(now, date) > 0) {
        const QString left =
            CountdownFormatter::compact(Remaining::until(date, now), format, table);
        return table.format("intents.time.until %@ %@", {item.title(), left});
    }
    return table.format("intents.time.arrived %@", {item.title()});
}

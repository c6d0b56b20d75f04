#include "time/ItemTimeText.h"

#include "records/Event.h"
#include "time/CountdownFormatter.h"

QString eventTimeText(const Event &event, const QDateTime &now, CountdownDisplayFormat format,
                      const LanguageTable &table)
{
    const QDateTime target = event.effectiveTarget();
    if (event.direction == CountdownDirection::since || target <= now)
        return u'+' + CountdownFormatter::compactElapsed(target, now, event.zone(), format, table);
    return CountdownFormatter::compact(Remaining::until(target, now), format, table);
}

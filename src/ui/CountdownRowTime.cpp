#include "ui/CountdownRowTime.h"

#include "countdown/CountdownProgress.h"
#include "l10n/LanguageTable.h"
#include "time/CountdownFormatter.h"
#include "time/Remaining.h"

CountdownRowTime countdownRowTime(const CountdownItem &item, const QDateTime &now,
                                  CountdownDisplayFormat format, const LanguageTable &table)
{
    CountdownRowTime row;
    row.progress = CountdownProgress::at(item, now);
    if (item.isCountUp()) {
        row.text = CountdownFormatter::compactElapsed(item.date(), now, item.zone(), format, table);
    } else if (item.date() > now && !item.isReached()) {
        row.text = CountdownFormatter::compact(Remaining::until(item.date(), now), format, table);
    } else if (item.isManual() && item.event()->recurrence) {
        row.text = QStringLiteral("✓");
    } else {
        row.text = table.format(
            "list.row.elapsed %@",
            {CountdownFormatter::compactElapsed(item.date(), now, item.zone(), format, table)});
    }
    return row;
}

#include "ui/CountdownRowView.h"

#include "calendar/MeetingLinks.h"
#include "countdown/CountdownProgress.h"
#include "l10n/LanguageTable.h"
#include "time/CountdownFormatter.h"
#include "time/Remaining.h"
#include "ui/AccentColors.h"

namespace {

constexpr qint64 meetingLeadSeconds = 15 * 60;

QString timeText(const CountdownItem &item, const QDateTime &now, CountdownDisplayFormat format,
                 const LanguageTable &table)
{
    if (item.isCountUp())
        return u'+'
            + CountdownFormatter::compactElapsed(item.date(), now, item.zone(), format, table);
    if (item.date() > now && !item.isReached())
        return CountdownFormatter::compact(Remaining::until(item.date(), now), format, table);
    if (item.isManual() && item.event()->recurrence)
        return QStringLiteral("✓");
    return table.format(
        "list.row.elapsed %@",
        {CountdownFormatter::compactElapsed(item.date(), now, item.zone(), format, table)});
}

// The link a row offers: the event's own, or for a calendar event its meeting, the user's link
// for the series, then the event's page. Only links the desktop may be handed are offered.
QUrl rowLink(const CountdownItem &item)
{
    QList<QUrl> candidates;
    if (const Event *event = item.event()) {
        if (event->link)
            candidates.append(QUrl::fromUserInput(*event->link));
    } else if (const CalendarOccurrence *occurrence = item.occurrence()) {
        if (occurrence->meetingURL)
            candidates.append(*occurrence->meetingURL);
        if (occurrence->link)
            candidates.append(QUrl::fromUserInput(*occurrence->link));
        if (occurrence->externalURL)
            candidates.append(*occurrence->externalURL);
    }
    for (const QUrl &url : std::as_const(candidates)) {
        if (MeetingLinks::isSafeToOpen(url))
            return url;
    }
    return {};
}

} // namespace

QString rowDateText(const QDateTime &date, bool withTime, const QTimeZone &zone,
                    const QDateTime &now, const QLocale &locale)
{
    const QDateTime local = date.toTimeZone(zone);
    const bool thisYear = local.date().year() == now.toTimeZone(zone).date().year();
    QString text = locale.toString(local.date(), thisYear ? u"ddd d MMM" : u"d MMM yyyy");
    if (withTime)
        text += u", " + locale.toString(local.time(), QLocale::ShortFormat);
    return text;
}

CountdownRowView presentRow(const CountdownItem &item, const QDateTime &now,
                            CountdownDisplayFormat format, const LanguageTable &table,
                            const QLocale &locale)
{
    CountdownRowView row;
    row.timeText = timeText(item, now, format, table);
    row.progress = CountdownProgress::at(item, now);
    row.link = rowLink(item);
    if (!row.link.isEmpty())
        row.linkLabelKey = MeetingLinks::labelKey(row.link);

    if (const Event *event = item.event()) {
        row.symbol = event->icon ? event->icon->symbol : QStringLiteral("hourglass");
        row.accent = AccentColors::of(event->color);
        row.reached = item.isReached();
        if (item.isCountUp()) {
            const QString day =
                locale.toString(item.date().toTimeZone(item.zone()).date(), u"d MMM yyyy");
            row.secondaryText = table.format("list.row.since %@", {day});
        } else {
            row.secondaryText =
                rowDateText(item.date(), event->includeTime, item.zone(), now, locale);
        }
    } else if (const CalendarOccurrence *occurrence = item.occurrence()) {
        row.symbol = occurrence->icon ? occurrence->icon->symbol : QStringLiteral("calendar");
        row.accent = AccentColors::of(occurrence->tint);
        row.reached = !item.isUpcoming(now);
        row.secondaryText =
            rowDateText(item.date(), !occurrence->isAllDay, item.zone(), now, locale);
        if (!occurrence->calendarTitle.isEmpty())
            row.secondaryText += u" · " + occurrence->calendarTitle;
        const QDateTime end = occurrence->end.value_or(occurrence->start);
        row.linkProminent = occurrence->meetingURL && row.link == *occurrence->meetingURL
            && now.secsTo(occurrence->start) <= meetingLeadSeconds && now < end.addSecs(1);
    }
    return row;
}

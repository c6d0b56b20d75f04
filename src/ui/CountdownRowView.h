#pragma once

#include "countdown/CountdownItem.h"
#include "records/SettingsTypes.h"

#include <QColor>
#include <QDateTime>
#include <QLocale>
#include <QString>
#include <QUrl>

class LanguageTable;

// How one item reads in the list and the next-up card at a moment.
struct CountdownRowView
{
    QString timeText; // "3d 4h", "+1y 3d", "2d ago", "✓"
    QString secondaryText; // "Sat 14 Mar, 15:00", "Since 3 Mar 2024", "15:00 · Work"
    double progress = 0.0; // 0–1
    QString symbol; // the bundled symbol to draw
    QColor accent; // invalid: the palette's highlight
    bool reached = false; // arrived, or a calendar event that has started: shown muted
    QUrl link; // empty when there is none that may be opened
    QString linkLabelKey; // "list.row.join_meeting" or "list.row.open_link"
    bool linkProminent = false; // a meeting that starts within 15 minutes or is under way

    bool operator==(const CountdownRowView &) const = default;
};

// The row's texts at `now`, in `format` with the words of `table` and the date formats of
// `locale`. A countdown shows the time left and its date; a count-up "+" and the time passed,
// with the day it started; a countdown whose moment has passed the time since ("2d ago"), or "✓"
// when it repeats; a calendar event its time and calendar.
CountdownRowView presentRow(const CountdownItem &item, const QDateTime &now,
                            CountdownDisplayFormat format, const LanguageTable &table,
                            const QLocale &locale);

// The date of an item as rows write it, in the item's own zone: weekday, day and month, the year
// only when it is not the year of `now`, and the time when the item has one.
QString rowDateText(const QDateTime &date, bool withTime, const QTimeZone &zone,
                    const QDateTime &now, const QLocale &locale);

#pragma once

#include "records/CalendarInfo.h"

#include <QByteArray>
#include <QList>
#include <QStringList>
#include <QTimeZone>

#include <memory>
#include <optional>
#include <vector>

struct icalcomponent_impl;

// Who reads an iCalendar document: the calendar its occurrences belong to and the user's
// addresses (to find the user among the attendees).
struct IcsReadContext
{
    QString calendarID;
    QString calendarTitle;
    QString accountTitle;
    std::optional<CalendarTint> tint;
    QStringList userAddresses; // normalised: lower case, without "mailto:"
    QTimeZone localZone = QTimeZone::systemTimeZone(); // for floating times and all-day dates
};

// One parsed iCalendar document (a file or a feed), with its events indexed by series.
//
// Expansion covers RRULE (COUNT, UNTIL), RDATE, EXDATE and RECURRENCE-ID overrides (moved and
// cancelled instances, including one moved into the window from outside it); DTSTART with TZID
// from the document's VTIMEZONE, the system's zone database, or a Windows zone name; UTC and
// floating times (floating ones in the calendar's X-WR-TIMEZONE, else the local zone); all-day
// dates as days of the local zone.
//
// libical is not safe to use on one document from two threads at once: a document is read by
// one thread at a time (the provider's worker).
class IcsCalendar
{
public:
    ~IcsCalendar();
    Q_DISABLE_COPY_MOVE(IcsCalendar)

    // The document, or nothing with the reason when the bytes are not an iCalendar document.
    static std::shared_ptr<IcsCalendar> parse(const QByteArray &bytes, QString *error);

    QString name() const { return m_name; } // X-WR-CALNAME or NAME
    std::optional<CalendarTint> color() const { return m_color; } // X-APPLE-CALENDAR-COLOR, COLOR
    qsizetype seriesCount() const;

    // The occurrences that overlap [from, to), in series order.
    QList<ProviderOccurrence> occurrences(const IcsReadContext &context, const QDateTime &from,
                                          const QDateTime &to) const;

private:
    IcsCalendar() = default;
    struct Series;
    class Expansion;

    icalcomponent_impl *m_root = nullptr;
    QString m_name;
    std::optional<CalendarTint> m_color;
    QString m_floatingZoneID; // X-WR-TIMEZONE
    std::vector<Series> m_series;
};

// "#rrggbb", "#rrggbbaa" or a CSS colour name as a tint.
std::optional<CalendarTint> tintFromColorText(const QString &text);

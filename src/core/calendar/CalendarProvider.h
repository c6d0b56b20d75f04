#pragma once

#include "records/CalendarInfo.h"

#include <QObject>
#include <QSet>

// Reads the user's calendars from a calendar backend (iCalendar files and subscriptions,
// Evolution Data Server, ...). The calendar store owns one and filters what it reads.
class CalendarProvider : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    virtual QList<CalendarInfo> calendars() const = 0;
    virtual QList<CalendarAccountGroup> accountGroups() const = 0;
    // Occurrences of the given calendars that start in [from, to).
    virtual QList<ProviderOccurrence> occurrences(const QSet<QString> &calendarIDs,
                                                  const QDateTime &from,
                                                  const QDateTime &to) const = 0;

Q_SIGNALS:
    // The backend's data changed; read again.
    void changed();
};

#pragma once

#include "records/CalendarInfo.h"

#include <QFuture>
#include <QObject>
#include <QSet>
#include <QStringList>

// What the calendar store asks a provider for: the occurrences of some calendars that start in
// [from, to), with the user's participation judged against the user's own addresses.
struct OccurrenceQuery
{
    QSet<QString> calendarIDs;
    QDateTime from;
    QDateTime to;
    QStringList userAddresses; // e-mail addresses, compared without case

    bool operator==(const OccurrenceQuery &) const = default;
};

// Reads the user's calendars from one calendar backend (iCalendar files and subscriptions,
// Evolution Data Server, ...). Providers live on the main thread; reading occurrences may take
// time (parsing, expanding recurrences), so it answers with a future that a provider fulfils
// from a worker thread. The calendar store owns the providers' results and filters them.
class CalendarProvider : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    // The calendars the backend offers now (cheap: answered from what the provider holds).
    virtual QList<CalendarInfo> calendars() const = 0;
    // The calendars grouped by account, in the order of first appearance.
    virtual QList<CalendarAccountGroup> accountGroups() const;
    // The occurrences of the query's calendars in its window, in no particular order. A
    // provider that cannot read answers with a failed or empty future; the store then keeps
    // what it had.
    virtual QFuture<QList<ProviderOccurrence>> occurrences(const OccurrenceQuery &query) = 0;
    // Brings the backend's copy up to date where that is due (subscriptions past their refresh
    // interval are fetched again). `changed` follows when anything new arrived.
    virtual void refresh() { }
    // Still loading or fetching (a front end that runs once waits for it).
    virtual bool isBusy() const { return false; }

Q_SIGNALS:
    // The backend's calendars or events changed: read again.
    void changed();
};

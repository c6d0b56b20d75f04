#pragma once

#include "calendar/CalendarStore.h"
#include "platform/calendars/CalendarBackends.h"
#include "time/Clock.h"

#include <functional>

class DataFolder;

// The calendar occurrences of a data folder as the app shows them at `now`: the added calendars
// (feeds fetched first when they are due) and the backend plugins' calendars, under the folder's
// calendar settings. Built once by a command; the constructor returns when everything has been
// read, or after `timeoutMs`.
class CalendarSnapshot
{
public:
    CalendarSnapshot(DataFolder &data, const QDateTime &now, const LanguageTable &texts,
                     int timeoutMs = 60'000);
    ~CalendarSnapshot();

    CalendarStore &store() { return *m_store; }
    CalendarBackends &backends() { return m_backends; }
    // Whether everything was read before the time ran out.
    bool isComplete() const { return m_complete; }

    // Runs the event loop until `done` answers true or `timeoutMs` passed; false on a timeout.
    static bool waitUntil(const std::function<bool()> &done, int timeoutMs);

private:
    FixedClock m_clock;
    CalendarBackends m_backends;
    std::unique_ptr<CalendarStore> m_store;
    bool m_complete = false;
};

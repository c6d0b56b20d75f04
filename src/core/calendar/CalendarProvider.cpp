#include "calendar/CalendarProvider.h"

#include "calendar/CalendarRules.h"

QList<CalendarAccountGroup> CalendarProvider::accountGroups() const
{
    return groupByAccount(calendars());
}

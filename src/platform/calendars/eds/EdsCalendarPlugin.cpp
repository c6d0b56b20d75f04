#include "platform/calendars/eds/EdsCalendarPlugin.h"

#include "platform/calendars/eds/EdsProvider.h"

std::unique_ptr<CalendarBackend> EdsCalendarPlugin::createBackend()
{
    return std::make_unique<EdsProvider>();
}

#pragma once

#include "calendar/CalendarSource.h"

// A calendar store that publishes whatever the test hands it.
class ListCalendarSource final : public CalendarSource
{
    Q_OBJECT
public:
    QList<CalendarOccurrence> occurrences() const override { return m_occurrences; }
    void publish(const QList<CalendarOccurrence> &occurrences)
    {
        m_occurrences = occurrences;
        Q_EMIT occurrencesChanged();
    }

private:
    QList<CalendarOccurrence> m_occurrences;
};

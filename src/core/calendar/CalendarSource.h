#pragma once

#include "records/CalendarOccurrence.h"

#include <QObject>

// What the countdown list reads calendar occurrences from (the calendar store).
class CalendarSource : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    virtual QList<CalendarOccurrence> occurrences() const = 0;

Q_SIGNALS:
    void occurrencesChanged();
};

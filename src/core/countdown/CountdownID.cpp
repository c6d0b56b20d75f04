#include "countdown/CountdownID.h"

#include <QHashFunctions>

size_t qHash(const CountdownID &id, size_t seed)
{
    if (const QUuid *uuid = id.eventID())
        return qHashMulti(seed, 0, *uuid);
    return qHashMulti(seed, 1, *id.calendarRef());
}

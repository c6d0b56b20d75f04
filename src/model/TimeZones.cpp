#include "model/TimeZones.h"

#include <QHash>
#include <QMutex>

QTimeZone zoneOrSystem(const QString &ianaId)
{
    // Looking a zone up by name reads the tz database; the handful of zones an app meets are
    // worth keeping.
    static QMutex mutex;
    static QHash<QString, QTimeZone> cache;
    {
        QMutexLocker lock(&mutex);
        const auto found = cache.constFind(ianaId);
        if (found != cache.constEnd())
            return found->isValid() ? *found : QTimeZone::systemTimeZone();
    }
    const QTimeZone zone = ianaId.isEmpty() ? QTimeZone() : QTimeZone(ianaId.toUtf8());
    QMutexLocker lock(&mutex);
    cache.insert(ianaId, zone);
    return zone.isValid() ? zone : QTimeZone::systemTimeZone();
}

QDateTime startOfDay(const QDateTime &instant, const QTimeZone &zone)
{
    const QDate day = instant.toTimeZone(zone).date();
    const QDateTime start = day.startOfDay(zone);
    return start.isValid() ? start.toUTC() : instant;
}

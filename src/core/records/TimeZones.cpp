#include "records/TimeZones.h"

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

namespace {

struct DayKey
{
    QString zoneID;
    qint64 instantMSecs;
    bool operator==(const DayKey &) const = default;
};

size_t qHash(const DayKey &key, size_t seed = 0)
{
    return qHashMulti(seed, key.zoneID, key.instantMSecs);
}

// Bounds the memory of a long session whose items keep changing.
constexpr qsizetype CacheLimit = 100000;

struct DayStartCache
{
    QHash<QString, QTimeZone> zones;
    QHash<DayKey, QDateTime> dayStarts;
};

} // namespace

QDateTime startOfDay(const QDateTime &instant, const QString &ianaId)
{
    thread_local DayStartCache cache;
    auto zone = cache.zones.constFind(ianaId);
    if (zone == cache.zones.constEnd()) {
        const QTimeZone named = ianaId.isEmpty() ? QTimeZone() : QTimeZone(ianaId.toUtf8());
        if (!named.isValid())
            return startOfDay(instant, QTimeZone::systemTimeZone());
        if (cache.zones.size() >= CacheLimit)
            cache.zones.clear();
        zone = cache.zones.insert(ianaId, named);
    }
    const QTimeZone &dayZone = *zone;
    const DayKey key {ianaId, instant.toMSecsSinceEpoch()};
    const auto known = cache.dayStarts.constFind(key);
    if (known != cache.dayStarts.constEnd())
        return *known;
    if (cache.dayStarts.size() >= CacheLimit)
        cache.dayStarts.clear();
    const QDateTime start = startOfDay(instant, dayZone);
    cache.dayStarts.insert(key, start);
    return start;
}

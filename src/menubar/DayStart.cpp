#include "menubar/DayStart.h"

#include "model/TimeZones.h"

#include <QHash>
#include <QTimeZone>

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
constexpr qsizetype cacheLimit = 100000;

struct Cache
{
    QHash<QString, QTimeZone> zones;
    QHash<DayKey, QDateTime> dayStarts;
};

Cache &cache()
{
    thread_local Cache perThread;
    return perThread;
}

} // namespace

QDateTime DayStart::of(const QDateTime &instant, const QString &zoneID)
{
    Cache &c = cache();
    auto zone = c.zones.constFind(zoneID);
    if (zone == c.zones.constEnd()) {
        QTimeZone named(zoneID.toUtf8());
        if (!named.isValid())
            return startOfDay(instant, zoneOrSystem(zoneID));
        if (c.zones.size() >= cacheLimit)
            c.zones.clear();
        zone = c.zones.insert(zoneID, named);
    }
    const DayKey key {zoneID, instant.toMSecsSinceEpoch()};
    auto known = c.dayStarts.constFind(key);
    if (known != c.dayStarts.constEnd())
        return *known;
    if (c.dayStarts.size() >= cacheLimit)
        c.dayStarts.clear();
    return *c.dayStarts.insert(key, startOfDay(instant, *zone));
}

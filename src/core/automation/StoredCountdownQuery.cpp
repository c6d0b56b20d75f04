#include "automation/StoredCountdownQuery.h"

#include "storage/EventStore.h"

namespace StoredCountdownQuery {

QList<StoredCountdownEntity> entities(const EventStore &store, const QList<QUuid> &ids)
{
    QList<StoredCountdownEntity> found;
    for (const QUuid &id : ids) {
        if (const Event *event = store.event(id))
            found.append({event->id, event->title});
    }
    return found;
}

QList<StoredCountdownEntity> all(const EventStore &store)
{
    QList<StoredCountdownEntity> listed;
    for (const Event &event : store.events())
        listed.append({event.id, event.title});
    return listed;
}

QList<StoredCountdownEntity> titled(const QList<StoredCountdownEntity> &entities,
                                    const QString &title)
{
    const QString wanted = title.trimmed();
    for (const Qt::CaseSensitivity sensitivity : {Qt::CaseSensitive, Qt::CaseInsensitive}) {
        QList<StoredCountdownEntity> matches;
        for (const StoredCountdownEntity &entity : entities) {
            if (entity.title.trimmed().compare(wanted, sensitivity) == 0)
                matches.append(entity);
        }
        if (!matches.isEmpty())
            return matches;
    }
    return {};
}

} // namespace StoredCountdownQuery

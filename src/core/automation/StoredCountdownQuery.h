#pragma once

#include <QList>
#include <QString>
#include <QUuid>

class EventStore;

// What automation sees of one countdown the user made: its id and its title.
struct StoredCountdownEntity
{
    QUuid id;
    QString title;

    bool operator==(const StoredCountdownEntity &) const = default;
};

// Finds countdowns for automation: by id among the store's events, or by title among entities
// already listed (for callers that were given a title instead of an id).
namespace StoredCountdownQuery {

// The entities of the store's events with these ids, in the order asked; unknown ids are skipped.
QList<StoredCountdownEntity> entities(const EventStore &store, const QList<QUuid> &ids);
// Every event of the store, in the store's order.
QList<StoredCountdownEntity> all(const EventStore &store);
// The entities titled exactly `title`; when none is, those whose title matches it ignoring case.
// Surrounding white space of `title` does not count.
QList<StoredCountdownEntity> titled(const QList<StoredCountdownEntity> &entities,
                                    const QString &title);

} // namespace StoredCountdownQuery

// What the panel shows, as status bars and widgets read it: which changes count, and the snapshot
// file in the runtime folder (the lines across an arrival: tst_automationcli).
#include "automation/WidgetSnapshotWriter.h"
#include "support/Fixtures.h"
#include "support/ItemFixtures.h"
#include "support/PanelCore.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Fixture;
using namespace Qt::StringLiterals;

static const QDateTime start = at("2026-03-01T12:00:00Z");

struct World : PanelCore
{
    explicit World(const QList<Event> &events)
        : PanelCore(start)
    {
        for (const Event &event : events)
            store.addEvent(event);
        engine.runFullPass();
        feed.refresh();
    }
    QJsonObject line() const { return QJsonDocument::fromJson(feed.snapshot().barLine()).object(); }
};

class tst_StatusFeed : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void progressOfLessThanAPercentIsNoChange();
    void snapshotFileFollowsTheListAndGoesWithTheApp();
};

void tst_StatusFeed::progressOfLessThanAPercentIsNoChange()
{
    // Halfway through ten days, with "5d 0h" left for an hour: that hour of ticks moves the
    // progress by less than a percent.
    World world({countdown(u"Trip"_s, start.addSecs(5 * 86400 + 3599))});
    QCOMPARE(world.line().value(u"percentage").toInt(), 50);
    QSignalSpy changes(&world.feed, &StatusFeed::snapshotChanged);
    for (int tick = 0; tick < 59; ++tick) {
        world.clock.advance(60);
        world.scheduler.fire();
    }
    QCOMPARE(changes.count(), 0);
    world.clock.advance(60);
    world.scheduler.fire();
    QCOMPARE(changes.count(), 1); // "4d 23h"
    QCOMPARE(world.line().value(u"detail").toString(), u"4d 23h"_s);
    QCOMPARE(world.line().value(u"tooltip").toString(), u"4d 23h until “Trip”."_s);
}

void tst_StatusFeed::snapshotFileFollowsTheListAndGoesWithTheApp()
{
    QTemporaryDir runtime;
    const QString path = WidgetSnapshotWriter::defaultPath(runtime.path(), u"/data"_s, true);
    QCOMPARE(path, runtime.filePath(u"tarrow/widget-snapshot.json"_s));
    QVERIFY(WidgetSnapshotWriter::defaultPath(runtime.path(), u"/tmp/demo"_s, false)
                .contains(QRegularExpression(u"tarrow/widget-snapshot-[0-9a-f]{16}\\.json$"_s)));

    World world({countdown(u"Tea"_s, start.addSecs(90))});
    {
        WidgetSnapshotWriter writer(world.feed, world.registry, world.clock, world.files, path);
        const QFile::Permissions others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup
            | QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
        QCOMPARE(QFile::permissions(runtime.filePath(u"tarrow"_s)) & others, QFile::Permissions());
        QVERIFY(world.store.addEvent(countUp(u"Quit"_s, start.addDays(-400))));
        const QJsonObject file = QJsonDocument::fromJson(readFile(path)).object();
        QCOMPARE(file.value(u"updatedAt").toString(), u"2026-03-01T12:00:00.000Z"_s);
        QCOMPARE(file.value(u"status").toObject().value(u"text").toString(), u"Tea 1m"_s);
        const QJsonArray items = file.value(u"items").toArray();
        QCOMPARE(items.size(), 2);
        QCOMPARE(items.at(1).toObject(),
                 QJsonObject({{"date", "2025-01-25T12:00:00.000Z"},
                              {"kind", "countUp"},
                              {"reached", false},
                              {"symbol", "hourglass"},
                              {"title", "Quit"}}));
    }
    QVERIFY(!QFile::exists(path));
}

QTEST_GUILESS_MAIN(tst_StatusFeed)
#include "tst_statusfeed.moc"

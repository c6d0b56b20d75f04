// What the panel shows, as widgets read it: the snapshot file in the runtime folder, private to the
// user, following the list and gone with the app (the status lines: tst_automationcli).
#include "automation/WidgetSnapshotWriter.h"
#include "support/Fixtures.h"
#include "support/ItemFixtures.h"
#include "support/PanelCore.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace Fixture;
using namespace Qt::StringLiterals;

static const QDateTime start = at("2026-03-01T12:00:00Z");

class tst_StatusFeed : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void snapshotFileFollowsTheListAndGoesWithTheApp();
};

void tst_StatusFeed::snapshotFileFollowsTheListAndGoesWithTheApp()
{
    QTemporaryDir runtime;
    const QString path = WidgetSnapshotWriter::defaultPath(runtime.path(), u"/data"_s, true);
    QCOMPARE(path, runtime.filePath(u"tarrow/widget-snapshot.json"_s));
    QVERIFY(WidgetSnapshotWriter::defaultPath(runtime.path(), u"/tmp/demo"_s, false)
                .contains(QRegularExpression(u"tarrow/widget-snapshot-[0-9a-f]{16}\\.json$"_s)));

    PanelCore world(start);
    QVERIFY(world.store.addEvent(countdown(u"Tea"_s, start.addSecs(90))));
    world.engine.runFullPass();
    world.feed.refresh();
    {
        WidgetSnapshotWriter writer(world.feed, world.registry, world.clock, world.files, path);
        const QFile::Permissions others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup
            | QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
        QCOMPARE(QFile::permissions(runtime.filePath(u"tarrow"_s)) & others, QFile::Permissions());
        QVERIFY(world.store.addEvent(countUp(u"Quit"_s, start.addDays(-400))));
        const QJsonObject file = QJsonDocument::fromJson(readFile(path)).object();
        QCOMPARE(file.value(u"updatedAt").toString(), u"2026-03-01T12:00:00.000Z"_s);
        QCOMPARE(file[u"status"][u"text"].toString(), u"Tea 1m"_s);
        QCOMPARE(file[u"status"][u"tooltip"].toString(), u"1m until “Tea”."_s);
        QCOMPARE(file[u"items"].toArray().size(), 2);
        QCOMPARE(file[u"items"][1].toObject(),
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

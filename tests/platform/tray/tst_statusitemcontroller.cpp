#include "support/ItemFixtures.h"
#include "support/PanelCore.h"

#include "platform/tray/StatusItemHost.h"

#include <QTest>

using namespace Qt::StringLiterals;
using Change = std::function<void(Settings &)>;
Q_DECLARE_METATYPE(Change)

namespace {

const QDateTime kStart = Fixture::at("2026-03-01T12:00:00Z");

// Keeps every frame it is asked to show, with its accessible label.
class RecordingHost final : public StatusItemHost
{
    Q_OBJECT
public:
    QList<MenubarChipPresentation> frames;
    QStringList labels;

    void show(const MenubarChipPresentation &presentation, const QString &accessibleLabel) override
    {
        frames.append(presentation);
        labels.append(accessibleLabel);
    }
    void setMenuEntries(const QList<StatusItemMenuEntry> &) override { }
};

// The real store, engine and language behind the controller, in English.
struct World : PanelCore
{
    World()
        : PanelCore(kStart)
    {
    }
    RecordingHost host;
    StatusItemController controller {host, engine, settings, locale};

    void change(const Change &edit)
    {
        Settings changed = settings.settings();
        edit(changed);
        settings.setSettings(changed);
    }
    // A countdown 5 days 18 hours 36 minutes ahead, 50.1 % of the way from its creation: the
    // fill sits in the middle of one of its thousandth steps.
    bool addDentist()
    {
        Event dentist = Fixture::countdown(u"Dentist"_s, kStart.addSecs(499000));
        dentist.createdAt = kStart.addSecs(-501000);
        dentist.icon = IconRef::named(u"star.fill"_s);
        return store.addEvent(dentist);
    }
    void tick(int times)
    {
        for (int i = 0; i < times; ++i) {
            clock.advance(scheduler.interval().count());
            scheduler.fire();
        }
    }
};

} // namespace

class tst_StatusItemController : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void drawsOnlyWhatChangesVisibly()
    {
        World world;
        QCOMPARE(world.host.frames,
                 (QList<MenubarChipPresentation> {{u"hourglass"_s, u"New countdown"_s, {}, 1.0}}));
        QCOMPARE(world.host.labels, QStringList {u"New countdown"_s});
        QVERIFY(world.addDentist());
        QCOMPARE(world.host.labels.last(), u"Dentist, 5d 18h"_s);
        const qsizetype afterAdding = world.host.frames.size();
        world.tick(5);
        QCOMPARE(world.host.frames.size(), afterAdding);

        // Forty minutes on, the hour turns: the chip redraws, a few times at most, and never
        // hands the host the frame it already shows.
        world.tick(35);
        QCOMPARE(world.host.frames.last().detail, u"5d 17h"_s);
        QVERIFY(world.host.frames.size() - afterAdding <= 4);
        for (qsizetype i = 1; i < world.host.frames.size(); ++i)
            QVERIFY(world.host.frames.at(i) != world.host.frames.at(i - 1));
    }

    void settingsRedrawOnlyWhenTheChipChanges_data()
    {
        QTest::addColumn<Change>("change");
        QTest::addColumn<int>("draws");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("detail");

        QTest::newRow("The compact style drops the title")
            << Change([](Settings &s) { s.menubarStyle = MenubarStyle::compact; }) << 1 << QString()
            << u"5d 18h"_s;
        QTest::newRow("Switching to Turkish redraws in Turkish")
            << Change([](Settings &s) { s.language = LanguagePref::tr; }) << 1 << u"Dentist"_s
            << u"5g 18sa"_s;
        QTest::newRow("A setting the chip does not show draws nothing")
            << Change([](Settings &s) { s.theme = ThemePref::dark; }) << 0 << u"Dentist"_s
            << u"5d 18h"_s;
    }

    void settingsRedrawOnlyWhenTheChipChanges()
    {
        QFETCH(Change, change);
        QFETCH(int, draws);
        QFETCH(QString, title);
        QFETCH(QString, detail);
        World world;
        QVERIFY(world.addDentist());
        const MenubarChipPresentation before = world.host.frames.last();
        const qsizetype drawn = world.host.frames.size();
        world.change(change);
        QCOMPARE(world.host.frames.size() - drawn, draws);
        QCOMPARE(world.host.frames.last(),
                 (MenubarChipPresentation {u"star.fill"_s, title, detail, before.remaining}));
    }
};

QTEST_MAIN(tst_StatusItemController)
#include "tst_statusitemcontroller.moc"

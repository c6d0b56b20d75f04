#include "countdown/CountdownRegistry.h"
#include "storage/EventStore.h"
#include "storage/FileAccess.h"
#include "storage/PathProvider.h"
#include "support/FakeClock.h"
#include "support/ItemFixtures.h"
#include "ui/CountdownListModel.h"
#include "ui/PopoverController.h"
#include "ui/PopupPlacement.h"
#include "ui/QuickEntryController.h"

#include <QAbstractItemModelTester>
#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickWindow>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

// The popup over a real store; row times are the seconds left, so the test can read them.
struct World
{
    TempPathProvider paths;
    DiskFileAccess files;
    FakeClock clock;
    EventStore store {paths, files};
    CountdownRegistry registry {store};
    CountdownListModel list {
        registry, clock, [](const CountdownItem &item, const QDateTime &now) {
            return CountdownRowTime {QString::number(now.secsTo(item.date())), 0.5};
        }};
    QuickEntryController entry {store, clock, [](const QString &, const QDateTime &) {
                                    return std::optional<NaturalDateMatch>();
                                }};
    PopoverController popover {QVariantMap {{u"listModel"_s, QVariant::fromValue(&list)},
                                            {u"quickEntry"_s, QVariant::fromValue(&entry)}}};

    // Opens the popup beside an item at the top left; true once its window has the focus.
    bool openActive()
    {
        popover.open(QRect(10, 0, 24, 24));
        return QTest::qWaitForWindowActive(popover.window());
    }
    QQuickItem *find(const QString &name) const
    {
        return popover.window()->findChild<QQuickItem *>(name);
    }
};

} // namespace

// The popup as the user meets it (offscreen): placed beside the item, closed by Escape or by a
// click elsewhere, listing the store's countdowns and adding typed ones.
class tst_PopoverController : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void opensBesideTheAnchor()
    {
        World world;
        QSignalSpy shown(&world.popover, &PopoverController::shownChanged);
        const QRect anchor(700, 0, 24, 24);
        world.popover.open(anchor);
        QQuickWindow *window = world.popover.window();
        QVERIFY(window && world.popover.isShown());
        const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
        QCOMPARE(window->position(), PopupPlacement::topLeft(available, anchor, window->size()));
        QVERIFY(window->flags().testFlag(Qt::FramelessWindowHint));

        world.popover.open(); // a second request while open keeps it open
        QVERIFY(world.popover.isShown());
        QCOMPARE(shown.count(), 1);
    }

    void escapeCloses()
    {
        World world;
        QVERIFY(world.openActive());
        QTest::keyClick(world.popover.window(), Qt::Key_Escape);
        QTRY_VERIFY(!world.popover.isShown());
    }

    void clickElsewhereCloses()
    {
        World world;
        QVERIFY(world.openActive());
        QTest::qWait(500); // past the moments in which focus that wanders off is taken back
        QWindow elsewhere;
        elsewhere.setGeometry(600, 400, 50, 50);
        elsewhere.show();
        elsewhere.requestActivate();
        QTRY_VERIFY(!world.popover.isShown());
    }

    void listsTheCountdownsInRegistryOrder()
    {
        World world;
        QAbstractItemModelTester tester(&world.list,
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        const QDateTime now = world.clock.now();
        for (const auto &[title, days] : {std::pair {u"Holiday"_s, 30}, {u"Dentist"_s, 2}}) {
            Event event = Fixture::countdown(title, now.addDays(days));
            event.createdAt = now;
            QVERIFY(world.store.addEvent(event));
        }
        world.popover.open(QRect(10, 0, 24, 24));
        QVERIFY(world.find(u"countdownList"_s));
        QTRY_COMPARE(world.find(u"countdownList"_s)->property("count").toInt(), 2);
        const auto cell = [&world](int row, int role) {
            return world.list.index(row).data(role).toString();
        };
        QCOMPARE(cell(0, CountdownListModel::TitleRole), u"Dentist"_s);
        QCOMPARE(cell(0, CountdownListModel::TimeTextRole), QString::number(2 * 86400));
        QCOMPARE(cell(1, CountdownListModel::TitleRole), u"Holiday"_s);

        world.clock.advance(60);
        world.list.refreshTimes();
        QCOMPARE(cell(0, CountdownListModel::TimeTextRole), QString::number(2 * 86400 - 60));
    }

    void typingATitleAndEnterAddsACountdown()
    {
        World world;
        QVERIFY(world.openActive());
        QQuickItem *input = world.find(u"quickEntryInput"_s);
        QVERIFY(input);
        input->forceActiveFocus();
        for (const char key : QByteArrayLiteral("Call mum"))
            QTest::keyClick(world.popover.window(), key);
        QTest::keyClick(world.popover.window(), Qt::Key_Return);
        QTRY_COMPARE(world.store.events().size(), 1);
        QCOMPARE(world.store.events().first().title, u"Call mum"_s);
        QTRY_VERIFY(input->property("text").toString().isEmpty());
    }
};

QTEST_MAIN(tst_PopoverController)
#include "tst_popovercontroller.moc"

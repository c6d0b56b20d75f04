#include "countdown/CountdownRegistry.h"
#include "storage/EventStore.h"
#include "storage/FileAccess.h"
#include "storage/PathProvider.h"
#include "support/FakeClock.h"
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

// The popup as the user meets it (offscreen): placed beside the item, closed by Escape or by a
// click elsewhere, listing the store's countdowns and adding typed ones.
class tst_PopoverController : public QObject
{
    Q_OBJECT

private:
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
        PopoverController popover {
            QVariantMap {{QStringLiteral("listModel"), QVariant::fromValue(&list)},
                         {QStringLiteral("quickEntry"), QVariant::fromValue(&entry)}}};
    };

    static Event event(const QString &title, qint64 daysAhead, const QDateTime &now)
    {
        Event e;
        e.id = QUuid::createUuid();
        e.title = title;
        e.targetDate = now.addDays(daysAhead);
        e.includeTime = true;
        e.timeZone = QStringLiteral("Europe/Istanbul");
        e.createdAt = now;
        return e;
    }

private Q_SLOTS:
    void opensBesideTheAnchor()
    {
        World world;
        QSignalSpy shown(&world.popover, &PopoverController::shownChanged);
        const QRect anchor(700, 0, 24, 24);
        world.popover.open(anchor);
        QQuickWindow *window = world.popover.window();
        QVERIFY(window);
        QVERIFY(world.popover.isShown());
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
        world.popover.open(QRect(10, 0, 24, 24));
        QVERIFY(QTest::qWaitForWindowActive(world.popover.window()));
        QTest::keyClick(world.popover.window(), Qt::Key_Escape);
        QTRY_VERIFY(!world.popover.isShown());
    }

    void clickElsewhereCloses()
    {
        World world;
        world.popover.open(QRect(10, 0, 24, 24));
        QVERIFY(QTest::qWaitForWindowActive(world.popover.window()));
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
        QVERIFY(world.store.addEvent(event(QStringLiteral("Holiday"), 30, now)));
        QVERIFY(world.store.addEvent(event(QStringLiteral("Dentist"), 2, now)));
        world.popover.open(QRect(10, 0, 24, 24));
        auto *list =
            world.popover.window()->findChild<QQuickItem *>(QStringLiteral("countdownList"));
        QVERIFY(list);
        QTRY_COMPARE(list->property("count").toInt(), 2);
        QCOMPARE(world.list.index(0).data(CountdownListModel::TitleRole).toString(),
                 QStringLiteral("Dentist"));
        QCOMPARE(world.list.index(0).data(CountdownListModel::TimeTextRole).toString(),
                 QString::number(2 * 86400));
        QCOMPARE(world.list.index(1).data(CountdownListModel::TitleRole).toString(),
                 QStringLiteral("Holiday"));

        world.clock.advance(60);
        world.list.refreshTimes();
        QCOMPARE(world.list.index(0).data(CountdownListModel::TimeTextRole).toString(),
                 QString::number(2 * 86400 - 60));
    }

    void typingATitleAndEnterAddsACountdown()
    {
        World world;
        world.popover.open(QRect(10, 0, 24, 24));
        QVERIFY(QTest::qWaitForWindowActive(world.popover.window()));
        auto *input =
            world.popover.window()->findChild<QQuickItem *>(QStringLiteral("quickEntryInput"));
        QVERIFY(input);
        input->forceActiveFocus();
        for (const char key : QByteArrayLiteral("Call mum"))
            QTest::keyClick(world.popover.window(), key);
        QTest::keyClick(world.popover.window(), Qt::Key_Return);
        QTRY_COMPARE(world.store.events().size(), 1);
        QCOMPARE(world.store.events().first().title, QStringLiteral("Call mum"));
        QTRY_VERIFY(input->property("text").toString().isEmpty());
    }
};

QTEST_MAIN(tst_PopoverController)
#include "tst_popovercontroller.moc"

#include "arrival/CelebrationCoordinator.h"
#include "countdown/CountdownEngine.h"
#include "support/ArrivalWorld.h"
#include "support/FakeTickScheduler.h"

#include <QTest>

using namespace Fixture;

static const QDateTime start = at("2026-03-01T12:00:00Z");
static const CalendarSeriesRef standupSeries {"work", "standup"};

// A store, the list and the engine that stamps arrivals, with the coordinator over them.
struct World : ArrivalWorld
{
    void startCoordinator()
    {
        coordinator =
            std::make_unique<CelebrationCoordinator>(store, registry, notifier, presenter, locale);
        QCoreApplication::processEvents(); // the first look at arrivals waits for the loop
    }
    // The engine's pass at `when`, then the event loop's turns that follow it.
    void passAt(const QDateTime &when)
    {
        clock.set(when);
        engine.runFullPass();
        settle();
    }
    static void settle()
    {
        for (int turn = 0; turn < 5; ++turn)
            QCoreApplication::processEvents();
    }
    QStringList acknowledged() const
    {
        QStringList titles;
        for (const Event &event : store.events()) {
            if (event.celebrationAcknowledged)
                titles.append(event.title);
        }
        return titles;
    }

    FakeTickScheduler scheduler;
    CountdownEngine engine {store, registry, clock, scheduler};
    FakePresenter presenter;
    std::unique_ptr<CelebrationCoordinator> coordinator;
};

class tst_CelebrationCoordinator : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void arrivalsAreHandledOneAtATime_data();
    void arrivalsAreHandledOneAtATime();
    void calendarArrivalIsAcknowledgedForItsSeries();
    void anArrivalThatCannotBeAcknowledgedIsNotAnnouncedAgain();
};

void tst_CelebrationCoordinator::arrivalsAreHandledOneAtATime_data()
{
    QTest::addColumn<bool>("notify");
    QTest::addColumn<bool>("celebrate");
    QTest::addColumn<QStringList>("notices");
    QTest::addColumn<QStringList>("celebrated");

    // Lunch (12:05) and Tea (12:10) both arrive in the pass at 12:30.
    QTest::newRow("with both switches off they are acknowledged silently")
        << false << false << QStringList() << QStringList();
    QTest::newRow("with notifications on each is announced once, in order")
        << true << false
        << QStringList {"Lunch: The moment has arrived!", "Tea: The moment has arrived!"}
        << QStringList();
    QTest::newRow("with celebrations on the second waits until the first is dismissed")
        << false << true << QStringList() << QStringList {"Lunch", "Tea"};
    QTest::newRow("with both on, each is announced as its celebration starts")
        << true << true
        << QStringList {"Lunch: The moment has arrived!", "Tea: The moment has arrived!"}
        << QStringList {"Lunch", "Tea"};
}

void tst_CelebrationCoordinator::arrivalsAreHandledOneAtATime()
{
    QFETCH(bool, notify);
    QFETCH(bool, celebrate);
    QFETCH(QStringList, notices);
    QFETCH(QStringList, celebrated);
    World w;
    for (auto [title, minutes] : {std::pair {"Tea", 10}, std::pair {"Lunch", 5}}) {
        Event event = countdown(title, start.addSecs(minutes * 60));
        event.notifyOnReach = notify;
        event.celebrationEnabled = celebrate;
        QVERIFY(w.store.addEvent(event));
    }
    w.startCoordinator();
    w.passAt(start.addSecs(30 * 60));

    if (celebrate) {
        // The first celebration holds everything else back.
        QCOMPARE(w.presenter.shown, QStringList {"Lunch"});
        QCOMPARE(w.notifier.bodies(), notices.mid(0, notify ? 1 : 0));
        QVERIFY(w.acknowledged().isEmpty());
        w.presenter.dismiss();
        w.settle();
        QCOMPARE(w.acknowledged(), QStringList {"Lunch"});
        w.presenter.dismiss();
        w.settle();
    }
    QCOMPARE(w.presenter.shown, celebrated);
    QCOMPARE(w.notifier.bodies(), notices);
    QCOMPARE(w.acknowledged().size(), 2);
    QVERIFY(!w.coordinator->currentReach());

    // Another pass later announces nothing again.
    w.passAt(start.addSecs(60 * 60));
    QCOMPARE(w.notifier.bodies(), notices);
}

void tst_CelebrationCoordinator::calendarArrivalIsAcknowledgedForItsSeries()
{
    World w;
    CalendarOccurrence standup = occurrence("standup", "Standup", start.addSecs(600));
    standup.meetingURL = QUrl("https://acme.zoom.us/j/42");
    w.calendar.publish({standup, occurrence("standup", "Standup", start.addDays(1))});
    CalendarReachSignals reach;
    reach.notifyOnReach = true;
    QVERIFY(w.store.setCalendarReach(standupSeries, reach));
    w.startCoordinator();
    w.passAt(start); // arms the first standup
    w.passAt(start.addSecs(601)); // records its arrival

    QCOMPARE(w.notifier.bodies(), QStringList {"Standup: The moment has arrived!"});
    const Notice &notice = w.notifier.posted.constFirst();
    QCOMPARE(notice.identifier,
             "tarrow.reached."
                 + noticeIDForSeries(standupSeries).toString(QUuid::WithoutBraces).toUpper());
    QCOMPARE(notice.link, std::optional(QUrl("https://acme.zoom.us/j/42")));
    QVERIFY(!w.store.calendarReach().value(standupSeries).reached);
    QCOMPARE(w.store.calendarReach().value(standupSeries).armed->start, start.addDays(1));
}

// An arrival while the disk is full: its acknowledgement fails and is logged, and the next change
// of the list takes it up again without a second notice.
void tst_CelebrationCoordinator::anArrivalThatCannotBeAcknowledgedIsNotAnnouncedAgain()
{
    World w;
    Event essay = countdown("Essay", start.addSecs(120));
    essay.notifyOnReach = true;
    QVERIFY(w.store.addEvent(essay));
    w.startCoordinator();
    w.clock.set(start.addSecs(121));
    w.engine.runFullPass(); // stamps the arrival
    w.files.failWrites = true;
    QTest::ignoreMessage(QtWarningMsg,
                         qPrintable("Failed to persist celebrationAcknowledged for "
                                    + essay.id.toString(QUuid::WithoutBraces)
                                    + ": No space left on device"));
    w.settle();
    w.files.failWrites = false;
    QVERIFY(w.acknowledged().isEmpty());
    QVERIFY(w.store.addEvent(countdown("Later", start.addDays(3))));
    w.settle();
    QCOMPARE(w.notifier.posted.size(), 1);
    QCOMPARE(w.acknowledged(), QStringList {"Essay"});
}

QTEST_GUILESS_MAIN(tst_CelebrationCoordinator)
#include "tst_celebrationcoordinator.moc"

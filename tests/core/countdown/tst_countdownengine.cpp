#include "countdown/CountdownEngine.h"
#include "countdown/CountdownRegistry.h"
#include "storage/EventStore.h"
#include "support/FakeClock.h"
#include "support/FakeTickScheduler.h"
#include "support/ItemFixtures.h"
#include "support/ListCalendarSource.h"

#include <QSignalSpy>
#include <QTest>

using namespace Fixture;
using Snapshot = CalendarReachSignals::Occurrence;

static const QDateTime start = at("2026-03-01T12:00:00Z");
static const CalendarSeriesRef dinnerSeries {"work", "dinner"};
static const qint64 hour = 3600;

// A store in a throw-away folder, a calendar the test fills, and a clock and tick it drives.
struct World
{
    World() { registry.attachCalendarSource(&calendar); }
    CountdownEngine &startEngine()
    {
        engine = std::make_unique<CountdownEngine>(store, registry, clock, scheduler);
        return *engine;
    }
    // Moves the clock one tick at a time, as the timer would, until `until`.
    void tickUntil(const QDateTime &until)
    {
        while (clock.now() < until) {
            QVERIFY2(scheduler.isRunning(), "the tick stopped");
            clock.advance(scheduler.interval().count());
            scheduler.fire();
        }
    }

    TempPathProvider paths;
    DiskFileAccess files;
    EventStore store {paths, files};
    ListCalendarSource calendar;
    CountdownRegistry registry {store};
    FakeClock clock {start};
    FakeTickScheduler scheduler;
    std::unique_ptr<CountdownEngine> engine;
};

class tst_CountdownEngine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aDayOfTicks_data();
    void aDayOfTicks();
    void allDayCountdownArrivesAtMidnightInItsZone_data();
    void allDayCountdownArrivesAtMidnightInItsZone();
    void pinIsGivenUp_data();
    void pinIsGivenUp();
    void calendarArrivals_data();
    void calendarArrivals();
};

void tst_CountdownEngine::aDayOfTicks_data()
{
    QTest::addColumn<qint64>("secondsIn");
    QTest::addColumn<QString>("holder");
    QTest::addColumn<ReachState>("state");
    QTest::addColumn<double>("progress"); // of a countdown; a count-up's is left to the formatter
    QTest::addColumn<int>("handovers"); // how often the holder changed
    QTest::addColumn<int>("tick"); // seconds between ticks, set by the nearest deadline

    const auto left = [](qint64 s) {
        return ReachState::counting(Remaining::fromInterval(s));
    };
    QTest::newRow("at the start the flight six hours away counts down, half way, every 30 s")
        << qint64(0) << "Flight" << left(6 * hour) << 0.5 << 0 << 30;
    QTest::newRow("a second before it lands it still counts down, every second")
        << 6 * hour - 1 << "Flight" << left(1) << (12 * hour - 1) / (12.0 * hour) << 0 << 1;
    // Dinner has no history in the calendar: its progress fills the week before it.
    QTest::newRow("once it landed without a celebration, dinner three hours away holds")
        << 6 * hour + 30 << "Dinner" << left(3 * hour - 30) << (165 * hour + 30) / (168.0 * hour)
        << 1 << 30;
    QTest::newRow("once dinner started, the count-up holds and the trip days away sets the tick")
        << 9 * hour + 60 << "Sober"
        << ReachState::elapsed(start.addYears(-1), start.addSecs(9 * hour + 60)) << -1.0 << 2 << 60;
}

void tst_CountdownEngine::aDayOfTicks()
{
    World w;
    QFETCH(qint64, secondsIn);
    QFETCH(double, progress);
    QFETCH(int, handovers);
    QFETCH(int, tick);

    Event flight = countdown("Flight", start.addSecs(6 * hour));
    flight.createdAt = start.addSecs(-6 * hour);
    QVERIFY(w.store.addEvent(flight));
    QVERIFY(w.store.addEvent(countUp("Sober", start.addYears(-1))));
    QVERIFY(w.store.addEvent(countdown("Trip", start.addDays(3))));
    w.calendar.publish({occurrence("dinner", "Dinner", start.addSecs(9 * hour))});
    CountdownEngine &engine = w.startEngine();
    QSignalSpy pinned(&engine, &CountdownEngine::pinnedChanged);

    w.tickUntil(start.addSecs(secondsIn));
    QTEST(engine.pinned() ? engine.pinned()->title() : QString(), "holder");
    QTEST(engine.state(), "state");
    if (progress >= 0)
        QCOMPARE(engine.progress(), progress);
    QCOMPARE(w.store.event(flight.id)->reachedAt.has_value(), secondsIn > 6 * hour);
    QCOMPARE(pinned.count(), handovers);
    QCOMPARE(w.scheduler.interval().count(), tick);

    // A pass at the same instant changes nothing, so nobody hears of it.
    QSignalSpy stateChanges(&engine, &CountdownEngine::stateChanged);
    QSignalSpy progressChanges(&engine, &CountdownEngine::progressChanged);
    engine.runFullPass();
    QCOMPARE(pinned.count() + stateChanges.count() + progressChanges.count(), handovers);
}

void tst_CountdownEngine::allDayCountdownArrivesAtMidnightInItsZone_data()
{
    QTest::addColumn<QString>("zone");
    QTest::addColumn<QDateTime>("midnight");

    // 10 March 2026; New York moved its clocks forward on 8 March.
    QTest::newRow("in New York, two days after the clocks went forward")
        << "America/New_York" << at("2026-03-10T04:00:00Z");
    QTest::newRow("in Tokyo, the evening before in UTC")
        << "Asia/Tokyo" << at("2026-03-09T15:00:00Z");
    QTest::newRow("with a zone that does not exist, in the system zone (Istanbul)")
        << "Nowhere/Atlantis" << at("2026-03-09T21:00:00Z");
    // Santiago's clocks go from 00:00 to 01:00 on 6 September 2026.
    QTest::newRow("in Santiago, on a day without a midnight, at its first moment")
        << "America/Santiago" << at("2026-09-06T04:00:00Z");
}

void tst_CountdownEngine::allDayCountdownArrivesAtMidnightInItsZone()
{
    World w;
    QFETCH(QString, zone);
    QFETCH(QDateTime, midnight);

    // With a celebration waiting, the arrival keeps the menu bar and shows as reached.
    Event holiday = countdown("Holiday", midnight.addSecs(12 * hour), qPrintable(zone));
    holiday.celebrationEnabled = true;
    QVERIFY(w.store.addEvent(holiday));
    CountdownEngine &engine = w.startEngine();

    w.clock.set(midnight.addSecs(-1));
    engine.runFullPass();
    QVERIFY(!w.store.event(holiday.id)->reachedAt);
    QCOMPARE(engine.state(), ReachState::counting(Remaining::fromInterval(1.0)));

    w.clock.set(midnight);
    engine.runFullPass();
    QCOMPARE(w.store.event(holiday.id)->reachedAt, std::optional(midnight));
    QCOMPARE(engine.state(), ReachState::reached(midnight));
}

void tst_CountdownEngine::pinIsGivenUp_data()
{
    QTest::addColumn<QStringList>("passes");
    QTest::addColumn<QString>("clearedAs");

    // On each pass the pinned dinner is "gone" from the calendar, "there" or "started".
    QTest::newRow("gone for a third pass: cleared as unresolvable")
        << QStringList {"gone", "gone", "gone"} << "unresolvable";
    QTest::newRow("gone twice and back on the third: kept, the count starts again")
        << QStringList {"gone", "gone", "there"} << "";
    QTest::newRow("once it started: cleared at once as spent")
        << QStringList {"started"} << "spent";
}

void tst_CountdownEngine::pinIsGivenUp()
{
    World w;
    QFETCH(QStringList, passes);
    QFETCH(QString, clearedAs);

    const CalendarOccurrence pinned = occurrence("dinner", "Dinner", start.addDays(2));
    w.calendar.publish({pinned});
    QVERIFY(w.store.setPin(PinTarget::calendarOccurrence(pinned.ref)));
    CountdownEngine &engine = w.startEngine();
    QCOMPARE(engine.pinned()->title(), QStringLiteral("Dinner"));

    if (!clearedAs.isEmpty()) {
        const QString message = "Returned the menubar to automatic: pin was " + clearedAs;
        QTest::ignoreMessage(QtInfoMsg, qPrintable(message));
    }
    for (const QString &pass : passes) {
        if (pass == "started")
            w.clock.set(pinned.start);
        w.calendar.publish(pass == "gone" ? QList<CalendarOccurrence>() : QList {pinned});
        engine.runFullPass();
    }
    QCOMPARE(w.store.pin().has_value(), clearedAs.isEmpty());
    QCOMPARE(engine.consecutiveMissingResolutions(), qint64(0)); // the count starts again
    QCOMPARE(engine.pinned().has_value(), passes.last() == "there");
}

void tst_CountdownEngine::calendarArrivals_data()
{
    QTest::addColumn<QList<CalendarOccurrence>>("occurrences");
    QTest::addColumn<bool>("hidden");
    QTest::addColumn<CalendarReachSignals>("stored");
    QTest::addColumn<CalendarReachSignals>("expected");

    CalendarOccurrence soon = occurrence("dinner", "Dinner", start.addSecs(600));
    soon.meetingURL = QUrl("https://meet.example.org/dinner");
    const CalendarOccurrence later = occurrence("dinner", "Dinner again", start.addDays(1));
    const CalendarOccurrence begun = occurrence("dinner", "Dinner now", start);
    const Snapshot soonShot {soon.start, soon.title, "https://meet.example.org/dinner"},
        laterShot {later.start, later.title, std::nullopt},
        begunShot {begun.start, begun.title, std::nullopt};
    // The series announces its arrivals unless `notify` is off.
    const auto reach = [](std::optional<Snapshot> armed, std::optional<Snapshot> reached = {},
                          bool notify = true) {
        CalendarReachSignals result;
        result.notifyOnReach = notify;
        result.armed = armed;
        result.reached = reached;
        return result;
    };

    QTest::newRow("a series that announces arrivals arms its next occurrence")
        << QList {later, soon, begun} << false << reach({}) << reach(soonShot);
    QTest::newRow("an armed occurrence that started is recorded and the next one armed")
        << QList {begun, later} << false << reach(begunShot) << reach(laterShot, begunShot);
    QTest::newRow("an occurrence the calendar moved is armed at its new start")
        << QList {later} << false << reach(soonShot) << reach(laterShot);
    QTest::newRow("a hidden series is disarmed")
        << QList {soon} << true << reach(soonShot) << reach({});
    QTest::newRow("a series switched off is disarmed and keeps its arrival for acknowledgement")
        << QList {later} << false << reach(soonShot, begunShot, false)
        << reach({}, begunShot, false);
    QTest::newRow("a series missing from the calendar still records a due arrival")
        << QList<CalendarOccurrence>() << false << reach(begunShot) << reach({}, begunShot);
}

void tst_CountdownEngine::calendarArrivals()
{
    World w;
    QFETCH(QList<CalendarOccurrence>, occurrences);
    QFETCH(bool, hidden);
    QFETCH(CalendarReachSignals, stored);
    QFETCH(CalendarReachSignals, expected);

    w.calendar.publish(occurrences);
    QVERIFY(w.store.setCalendarReach(dinnerSeries, stored));
    QVERIFY(w.store.setSeriesHidden(dinnerSeries, hidden));
    CountdownEngine &engine = w.startEngine();
    QSignalSpy writes(&w.store, &EventStore::calendarReachChanged);

    engine.runFullPass();
    QCOMPARE(w.store.calendarReach().value(dinnerSeries), expected);
    QCOMPARE(writes.count(), expected == stored ? 0 : 1);
    engine.runFullPass(); // once written, a pass has nothing left to change
    QCOMPARE(writes.count(), expected == stored ? 0 : 1);
}

QTEST_GUILESS_MAIN(tst_CountdownEngine)
#include "tst_countdownengine.moc"

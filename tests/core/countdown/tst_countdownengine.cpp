#include "countdown/CountdownEngine.h"
#include "countdown/CountdownProgress.h"
#include "countdown/CountdownRegistry.h"
#include "countdown/TimerTickScheduler.h"
#include "storage/EventStore.h"
#include "support/FakeClock.h"
#include "support/FakeTickScheduler.h"
#include "support/ItemFixtures.h"
#include "support/ListCalendarSource.h"

#include <QSignalSpy>
#include <QTest>

using namespace Fixture;
using Kind = ReachState::Kind;
using Snapshot = CalendarReachSignals::Occurrence;

Q_DECLARE_METATYPE(std::optional<Snapshot>)

static const QDateTime start = at("2026-03-01T12:00:00Z");
static const CalendarSeriesRef dinnerSeries {"work", "dinner"};
static const qint64 hour = 3600, day = 86400;

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
    void cadenceFollowsTheNearestDeadline_data();
    void cadenceFollowsTheNearestDeadline();
    void allDayCountdownArrivesAtMidnightInItsZone_data();
    void allDayCountdownArrivesAtMidnightInItsZone();
    void progress_data();
    void progress();
    void pinIsGivenUp_data();
    void pinIsGivenUp();
    void aDayOfTicks_data();
    void aDayOfTicks();
    void calendarArrivals_data();
    void calendarArrivals();
    void calendarSignalChangesCoalesceIntoOnePass();
    void aLateTickAfterTheEngineIsGoneDoesNothing();
    void aRealTickReplacesTheRunningOne();
};

static CalendarOccurrence dinner(const char *title, const QDateTime &at)
{
    return occurrence("dinner", title, at);
}

void tst_CountdownEngine::cadenceFollowsTheNearestDeadline_data()
{
    QTest::addColumn<QList<Event>>("events");
    QTest::addColumn<qint64>("duration");
    QTest::addColumn<QStringList>("walk");

    // Each step: seconds after the start, the cadence taken then and its tick.
    QTest::newRow("with nothing to show no tick runs")
        << QList<Event>() << qint64(0) << QStringList();
    QTest::newRow("a countdown ticks faster as it nears, then falls back to the next one")
        << QList {countdown("Soon", start.addDays(2)), countdown("Later", start.addDays(5))}
        << 2 * day + 120
        << QStringList {"0: days every 60 s", "86400: hours every 30 s",
                        "169200: minutes every 1 s", "172740: seconds every 1 s",
                        "172800: days every 60 s"};
    QTest::newRow("a count-up ticks every second in its first hour, then slows down")
        << QList {countUp("Since", start)} << day + 60
        << QStringList {"0: minutes every 1 s", "3600: hours every 30 s", "86400: days every 60 s"};
}

void tst_CountdownEngine::cadenceFollowsTheNearestDeadline()
{
    World w;
    QFETCH(QList<Event>, events);
    QFETCH(qint64, duration);
    QFETCH(QStringList, walk);

    for (const Event &event : events)
        QVERIFY(w.store.addEvent(event));
    const CountdownEngine &engine = w.startEngine();
    QCOMPARE(engine.state().kind == Kind::idle, events.isEmpty());

    static const QStringList names {"days", "hours", "minutes", "seconds"};
    const FakeTickScheduler &scheduler = w.scheduler;
    QStringList steps;
    std::optional<RefreshBucket> last;
    const auto record = [&] {
        QCOMPARE(scheduler.isRunning(), engine.currentBucket().has_value());
        if (engine.currentBucket() && engine.currentBucket() != last) {
            steps.append(QStringLiteral("%1: %2 every %3 s")
                             .arg(start.secsTo(w.clock.now()))
                             .arg(names.at(int(*engine.currentBucket())))
                             .arg(scheduler.interval().count()));
        }
        last = engine.currentBucket();
    };
    record();
    while (w.clock.now() < start.addSecs(duration)) {
        w.tickUntil(w.clock.now().addSecs(1));
        record();
    }
    QCOMPARE(steps, walk);
    // One schedule per cadence: a steady tick is never restarted.
    QCOMPARE(scheduler.scheduleCount(), walk.size());
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
}

void tst_CountdownEngine::allDayCountdownArrivesAtMidnightInItsZone()
{
    World w;
    QFETCH(QString, zone);
    QFETCH(QDateTime, midnight);

    // With a celebration waiting, the arrival keeps the menu bar and shows as reached.
    Event holiday = allDay("Holiday", at("2026-03-10T12:00:00Z"), qPrintable(zone));
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

void tst_CountdownEngine::progress_data()
{
    QTest::addColumn<CountdownItem>("item");
    QTest::addColumn<double>("expected");

    Event halfway = countdown("Trip", start.addDays(5));
    halfway.createdAt = start.addDays(-5);
    Event anchored = halfway;
    anchored.cycleAnchor = start.addDays(-15);
    Event backwards = halfway;
    backwards.createdAt = halfway.targetDate.addSecs(1);
    // A standup 42 hours ahead, with what the calendar knows of its history.
    const auto standup = [](const QDateTime &previous, const QDateTime &created) {
        CalendarOccurrence meeting = occurrence("s", "Standup", start.addSecs(42 * hour));
        if (previous.isValid())
            meeting.previousOccurrenceStart = previous;
        if (created.isValid())
            meeting.createdAt = created;
        return item(meeting);
    };
    const QDateTime none, before = start.addSecs(-42 * hour);

    QTest::newRow("a countdown created 10 days before its target is half way after 5")
        << item(halfway) << 0.5;
    QTest::newRow("a recurring countdown counts from its cycle anchor") << item(anchored) << 0.75;
    QTest::newRow("a target not later than its start is complete") << item(backwards) << 1.0;
    QTest::newRow("an occurrence without history fills the week before its start")
        << standup(none, none) << 0.75;
    QTest::newRow("an occurrence counts from the previous one in its series")
        << standup(before, none) << 0.5;
    QTest::newRow("an occurrence created within the week counts from its creation")
        << standup(none, before) << 0.5;
    QTest::newRow("a creation more than a week before is ignored")
        << standup(none, start.addDays(-30)) << 0.75;
}

void tst_CountdownEngine::progress()
{
    QFETCH(CountdownItem, item);
    QFETCH(double, expected);
    QCOMPARE(CountdownProgress::at(item, start), expected);
}

void tst_CountdownEngine::pinIsGivenUp_data()
{
    QTest::addColumn<QStringList>("passes");
    QTest::addColumn<qint64>("misses");
    QTest::addColumn<QString>("clearedAs");

    // On each pass the pinned dinner is "gone" from the calendar, "there" or "started".
    QTest::newRow("gone for two passes: kept") << QStringList {"gone", "gone"} << qint64(2) << "";
    QTest::newRow("gone for a third pass: cleared as unresolvable")
        << QStringList {"gone", "gone", "gone"} << qint64(0) << "unresolvable";
    QTest::newRow("gone twice and back on the third: kept, the count starts again")
        << QStringList {"gone", "gone", "there"} << qint64(0) << "";
    QTest::newRow("once it started: cleared at once as spent")
        << QStringList {"started"} << qint64(0) << "spent";
}

void tst_CountdownEngine::pinIsGivenUp()
{
    World w;
    QFETCH(QStringList, passes);
    QFETCH(qint64, misses);
    QFETCH(QString, clearedAs);

    const CalendarOccurrence pinned = dinner("Dinner", start.addDays(2));
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
    QCOMPARE(engine.consecutiveMissingResolutions(), misses);
    QCOMPARE(engine.pinned().has_value(), passes.last() == "there");
}

void tst_CountdownEngine::aDayOfTicks_data()
{
    QTest::addColumn<qint64>("secondsIn");
    QTest::addColumn<QString>("holder");
    QTest::addColumn<ReachState>("state");
    QTest::addColumn<double>("progress"); // of a countdown; a count-up's is left to the formatter
    QTest::addColumn<int>("handovers"); // how often the holder changed

    const auto left = [](qint64 s) {
        return ReachState::counting(Remaining::fromInterval(s));
    };
    QTest::newRow("at the start the flight six hours away counts down, half way")
        << qint64(0) << "Flight" << left(6 * hour) << 0.5 << 0;
    QTest::newRow("a second before it lands it still counts down")
        << 6 * hour - 1 << "Flight" << left(1) << (12 * hour - 1) / (12.0 * hour) << 0;
    // Dinner has no history in the calendar: its progress fills the week before it.
    QTest::newRow("once it landed without a celebration, dinner three hours away holds") << 6 * hour
            + 30 << "Dinner" << left(3 * hour - 30) << (165 * hour + 30) / (168.0 * hour) << 1;
    QTest::newRow("once dinner started, the trip days away yields to the count-up")
        << 9 * hour + 60 << "Sober"
        << ReachState::elapsed(start.addYears(-1), start.addSecs(9 * hour + 60)) << -1.0 << 2;
}

void tst_CountdownEngine::aDayOfTicks()
{
    World w;
    QFETCH(qint64, secondsIn);
    QFETCH(QString, holder);
    QFETCH(ReachState, state);
    QFETCH(double, progress);
    QFETCH(int, handovers);

    Event flight = countdown("Flight", start.addSecs(6 * hour));
    flight.createdAt = start.addSecs(-6 * hour);
    QVERIFY(w.store.addEvent(flight));
    QVERIFY(w.store.addEvent(countUp("Sober", start.addYears(-1))));
    QVERIFY(w.store.addEvent(countdown("Trip", start.addDays(3))));
    w.calendar.publish({dinner("Dinner", start.addSecs(9 * hour))});
    CountdownEngine &engine = w.startEngine();
    QSignalSpy pinned(&engine, &CountdownEngine::pinnedChanged);

    w.tickUntil(start.addSecs(secondsIn));
    QCOMPARE(w.clock.now(), start.addSecs(secondsIn));
    QCOMPARE(engine.pinned() ? engine.pinned()->title() : QString(), holder);
    QCOMPARE(engine.state(), state);
    if (progress >= 0)
        QCOMPARE(engine.progress(), progress);
    QCOMPARE(w.store.event(flight.id)->reachedAt.has_value(), secondsIn > 6 * hour);
    QCOMPARE(pinned.count(), handovers);

    // A pass at the same instant changes nothing, so nobody hears of it.
    QSignalSpy stateChanges(&engine, &CountdownEngine::stateChanged);
    QSignalSpy progressChanges(&engine, &CountdownEngine::progressChanged);
    engine.runFullPass();
    QCOMPARE(pinned.count() + stateChanges.count() + progressChanges.count(), handovers);
}

void tst_CountdownEngine::calendarArrivals_data()
{
    QTest::addColumn<QList<CalendarOccurrence>>("occurrences");
    QTest::addColumn<bool>("hidden");
    QTest::addColumn<CalendarReachSignals>("stored");
    QTest::addColumn<std::optional<Snapshot>>("armed");
    QTest::addColumn<std::optional<Snapshot>>("reached");

    CalendarOccurrence soon = dinner("Dinner", start.addSecs(600));
    soon.meetingURL = QUrl("https://meet.example.org/dinner");
    const CalendarOccurrence later = dinner("Dinner again", start.addDays(1));
    const CalendarOccurrence begun = dinner("Dinner now", start);
    const std::optional<Snapshot> nothing,
        soonShot = Snapshot {soon.start, soon.title, "https://meet.example.org/dinner"},
        laterShot = Snapshot {later.start, later.title, std::nullopt},
        begunShot = Snapshot {begun.start, begun.title, std::nullopt};
    const auto announcing = [](std::optional<Snapshot> armed, bool wanted = true,
                               std::optional<Snapshot> reached = std::nullopt) {
        CalendarReachSignals reach;
        reach.notifyOnReach = wanted;
        reach.armed = armed;
        reach.reached = reached;
        return reach;
    };

    QTest::newRow("a series that announces arrivals arms its next occurrence")
        << QList {later, soon, begun} << false << announcing(nothing) << soonShot << nothing;
    QTest::newRow("an armed series whose next occurrence is still armed writes nothing")
        << QList {soon, later} << false << announcing(soonShot) << soonShot << nothing;
    QTest::newRow("an armed occurrence that started is recorded and the next one armed")
        << QList {begun, later} << false << announcing(begunShot) << laterShot << begunShot;
    QTest::newRow("an occurrence the calendar moved is armed at its new start")
        << QList {later} << false << announcing(soonShot) << laterShot << nothing;
    QTest::newRow("a hidden series is disarmed")
        << QList {soon} << true << announcing(soonShot) << nothing << nothing;
    QTest::newRow("a series switched off is disarmed and keeps its arrival for acknowledgement")
        << QList {later} << false << announcing(soonShot, false, begunShot) << nothing << begunShot;
    QTest::newRow("a series missing from the calendar keeps its armed occurrence")
        << QList<CalendarOccurrence>() << false << announcing(soonShot) << soonShot << nothing;
    QTest::newRow("a series missing from the calendar still records a due arrival")
        << QList<CalendarOccurrence>() << false << announcing(begunShot) << nothing << begunShot;
}

void tst_CountdownEngine::calendarArrivals()
{
    World w;
    QFETCH(QList<CalendarOccurrence>, occurrences);
    QFETCH(bool, hidden);
    QFETCH(CalendarReachSignals, stored);
    QFETCH(std::optional<Snapshot>, armed);
    QFETCH(std::optional<Snapshot>, reached);

    EventStore &store = w.store;
    w.calendar.publish(occurrences);
    QVERIFY(store.setCalendarReach(dinnerSeries, stored));
    QVERIFY(store.setSeriesHidden(dinnerSeries, hidden));
    CountdownEngine &engine = w.startEngine();
    QSignalSpy writes(&store, &EventStore::calendarReachChanged);

    engine.runFullPass();
    QCOMPARE(store.calendarReach().value(dinnerSeries).armed, armed);
    QCOMPARE(store.calendarReach().value(dinnerSeries).reached, reached);
    QCOMPARE(writes.count(), armed == stored.armed && reached == stored.reached ? 0 : 1);
    engine.runFullPass(); // once written, a pass has nothing left to change
    QCOMPARE(writes.count(), armed == stored.armed && reached == stored.reached ? 0 : 1);
}

void tst_CountdownEngine::calendarSignalChangesCoalesceIntoOnePass()
{
    World w;
    const CountdownEngine &engine = w.startEngine();
    QSignalSpy passes(&engine, &CountdownEngine::passCompleted);
    QCoreApplication::processEvents(); // the pass queued at start
    QCOMPARE(passes.count(), 1);

    for (int i = 0; i < 5; ++i)
        Q_EMIT w.store.calendarReachChanged();
    QCOMPARE(passes.count(), 1);
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    QCOMPARE(passes.count(), 2);
}

void tst_CountdownEngine::aLateTickAfterTheEngineIsGoneDoesNothing()
{
    World w;
    QVERIFY(w.store.addEvent(countdown("Trip", start.addDays(30))));
    w.startEngine();
    const std::function<void()> lateTick = w.scheduler.action();
    QVERIFY(lateTick);
    w.engine.reset();
    QVERIFY(!w.scheduler.isRunning());
    w.clock.advance(60 * day);
    lateTick();
    QVERIFY(!w.store.events().first().reachedAt);
}

void tst_CountdownEngine::aRealTickReplacesTheRunningOne()
{
    TimerTickScheduler scheduler;
    int first = 0, second = 0;
    scheduler.schedule(std::chrono::seconds(1), [&first] { ++first; });
    scheduler.schedule(std::chrono::seconds(1), [&second] { ++second; });
    QVERIFY(scheduler.isRunning());
    QTRY_VERIFY_WITH_TIMEOUT(second >= 1, 5000);
    QCOMPARE(first, 0);
    scheduler.cancel();
    QVERIFY(!scheduler.isRunning());
}

QTEST_GUILESS_MAIN(tst_CountdownEngine)
#include "tst_countdownengine.moc"

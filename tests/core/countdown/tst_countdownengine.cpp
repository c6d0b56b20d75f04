#include "countdown/CalendarReachPass.h"
#include "countdown/CountdownEngine.h"
#include "countdown/CountdownProgress.h"
#include "countdown/CountdownRegistry.h"
#include "countdown/TimerTickScheduler.h"
#include "storage/EventStore.h"
#include "support/FakeClock.h"
#include "support/FakeTickScheduler.h"
#include "support/ItemFixtures.h"
#include "support/ListCalendarSource.h"
#include "time/CountdownFormatter.h"

#include <QSignalSpy>
#include <QTest>

using namespace Fixture;
using Kind = ReachState::Kind;

class tst_CountdownEngine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void nothingToShowIsIdleWithoutATimer();
    void cadenceFollowsTheNearestDeadline_data();
    void cadenceFollowsTheNearestDeadline();
    void bucketWalksDownAndBackWithoutRestarts();
    void allDayCountdownArrivesAtMidnightInItsZone_data();
    void allDayCountdownArrivesAtMidnightInItsZone();
    void progress_data();
    void progress();
    void missingPinIsKeptForTwoPasses_data();
    void missingPinIsKeptForTwoPasses();
    void spentPinIsClearedAtOnce();
    void aDayOfTicks_data();
    void aDayOfTicks();
    void calendarArrivalsAreArmedAndRecorded();
    void calendarReachPass_data();
    void calendarReachPass();
    void calendarSignalChangesCoalesceIntoOnePass();
    void valuesAreEmittedOnlyOnChange();
    void aLateTickAfterTheEngineIsGoneDoesNothing();
    void aRealTickReplacesTheRunningOne();

private:
    CountdownEngine &startEngine();
    // Moves the clock one tick at a time, as the timer would, until `until`.
    void tickUntil(const QDateTime &until);

    std::unique_ptr<TempPathProvider> m_paths;
    std::unique_ptr<DiskFileAccess> m_files;
    std::unique_ptr<EventStore> m_store;
    std::unique_ptr<CountdownRegistry> m_registry;
    std::unique_ptr<ListCalendarSource> m_calendar;
    std::unique_ptr<FakeClock> m_clock;
    std::unique_ptr<FakeTickScheduler> m_scheduler;
    std::unique_ptr<CountdownEngine> m_engine;
};

static const QDateTime start = at("2026-03-01T12:00:00Z");
static const CalendarSeriesRef dinnerSeries {QStringLiteral("work"), QStringLiteral("dinner")};

void tst_CountdownEngine::init()
{
    m_paths = std::make_unique<TempPathProvider>();
    m_files = std::make_unique<DiskFileAccess>();
    m_store = std::make_unique<EventStore>(*m_paths, *m_files);
    m_registry = std::make_unique<CountdownRegistry>(*m_store);
    m_calendar = std::make_unique<ListCalendarSource>();
    m_registry->attachCalendarSource(m_calendar.get());
    m_clock = std::make_unique<FakeClock>(start);
    m_scheduler = std::make_unique<FakeTickScheduler>();
}

void tst_CountdownEngine::cleanup()
{
    m_engine.reset();
    m_scheduler.reset();
    m_clock.reset();
    m_registry.reset();
    m_calendar.reset();
    m_store.reset();
    m_files.reset();
    m_paths.reset();
}

CountdownEngine &tst_CountdownEngine::startEngine()
{
    m_engine = std::make_unique<CountdownEngine>(*m_store, *m_registry, *m_clock, *m_scheduler);
    return *m_engine;
}

void tst_CountdownEngine::tickUntil(const QDateTime &until)
{
    while (m_clock->now() < until) {
        QVERIFY2(m_scheduler->isRunning(), "the tick stopped");
        m_clock->advance(m_scheduler->interval().count());
        m_scheduler->fire();
    }
}

void tst_CountdownEngine::nothingToShowIsIdleWithoutATimer()
{
    CountdownEngine &engine = startEngine();
    QCOMPARE(engine.state().kind, Kind::idle);
    QCOMPARE(engine.progress(), 0.0);
    QVERIFY(!engine.pinned());
    QVERIFY(!m_scheduler->isRunning());
    QVERIFY(!engine.currentBucket());
}

void tst_CountdownEngine::cadenceFollowsTheNearestDeadline_data()
{
    QTest::addColumn<Event>("event");
    QTest::addColumn<RefreshBucket>("bucket");
    QTest::addColumn<int>("interval");

    const auto ahead = [](qint64 s) {
        return countdown(QStringLiteral("Due"), start.addSecs(s));
    };
    const auto ago = [](qint64 s) {
        return countUp(QStringLiteral("Since"), start.addSecs(-s));
    };
    QTest::newRow("a countdown two days away ticks every minute")
        << ahead(2 * 86400) << RefreshBucket::days << 60;
    QTest::newRow("a countdown exactly a day away ticks every 30 seconds")
        << ahead(86400) << RefreshBucket::hours << 30;
    QTest::newRow("a countdown 23 hours away ticks every 30 seconds")
        << ahead(23 * 3600) << RefreshBucket::hours << 30;
    QTest::newRow("a countdown 59 minutes away ticks every second")
        << ahead(59 * 60) << RefreshBucket::minutes << 1;
    QTest::newRow("a countdown 60 seconds away ticks every second")
        << ahead(60) << RefreshBucket::seconds << 1;
    QTest::newRow("a count-up started 10 minutes ago ticks every second")
        << ago(600) << RefreshBucket::minutes << 1;
    QTest::newRow("a count-up started 5 hours ago ticks every 30 seconds")
        << ago(5 * 3600) << RefreshBucket::hours << 30;
    QTest::newRow("a count-up started 2 days ago ticks every minute")
        << ago(2 * 86400) << RefreshBucket::days << 60;
}

void tst_CountdownEngine::cadenceFollowsTheNearestDeadline()
{
    QFETCH(Event, event);
    QFETCH(RefreshBucket, bucket);
    QFETCH(int, interval);

    QVERIFY(m_store->addEvent(event));
    CountdownEngine &engine = startEngine();
    QCOMPARE(engine.currentBucket(), std::optional(bucket));
    QVERIFY(m_scheduler->isRunning());
    QCOMPARE(m_scheduler->interval().count(), interval);
}

void tst_CountdownEngine::bucketWalksDownAndBackWithoutRestarts()
{
    const Event soon = countdown(QStringLiteral("Soon"), start.addDays(2));
    QVERIFY(m_store->addEvent(soon));
    QVERIFY(m_store->addEvent(countdown(QStringLiteral("Later"), start.addDays(5))));
    CountdownEngine &engine = startEngine();

    QList<RefreshBucket> walk {*engine.currentBucket()};
    while (m_clock->now() < soon.targetDate.addSecs(120)) {
        m_clock->advance(m_scheduler->interval().count());
        m_scheduler->fire();
        if (engine.currentBucket() != walk.last())
            walk.append(*engine.currentBucket());
    }
    QCOMPARE(
        walk,
        QList<RefreshBucket>({RefreshBucket::days, RefreshBucket::hours, RefreshBucket::minutes,
                              RefreshBucket::seconds, RefreshBucket::days}));
    // One schedule per cadence: a steady tick is never restarted.
    QCOMPARE(m_scheduler->scheduleCount(), walk.size());
    QCOMPARE(m_store->event(soon.id)->reachedAt, std::optional(soon.targetDate));
    QCOMPARE(engine.pinned()->title(), QStringLiteral("Later"));
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
    QFETCH(QString, zone);
    QFETCH(QDateTime, midnight);

    // With a celebration waiting, the arrival keeps the menu bar and shows as reached.
    Event day = allDay(QStringLiteral("Day"), at("2026-03-10T12:00:00Z"), qPrintable(zone));
    day.celebrationEnabled = true;
    QVERIFY(m_store->addEvent(day));
    CountdownEngine &engine = startEngine();

    m_clock->set(midnight.addSecs(-1));
    engine.runFullPass();
    QVERIFY(!m_store->event(day.id)->reachedAt);
    QCOMPARE(engine.state().kind, Kind::counting);
    QCOMPARE(engine.state().remaining.totalSeconds, 1.0);

    m_clock->set(midnight);
    engine.runFullPass();
    QCOMPARE(m_store->event(day.id)->reachedAt, std::optional(midnight));
    QCOMPARE(engine.state(), ReachState::reached(midnight));
}

void tst_CountdownEngine::progress_data()
{
    QTest::addColumn<CountdownItem>("item");
    QTest::addColumn<double>("expected");

    Event halfway = countdown(QStringLiteral("Trip"), start.addDays(5));
    halfway.createdAt = start.addDays(-5);
    Event anchored = halfway;
    anchored.cycleAnchor = start.addDays(-15);
    Event backwards = halfway;
    backwards.createdAt = halfway.targetDate.addSecs(1);
    CalendarOccurrence bare =
        occurrence(QStringLiteral("s"), QStringLiteral("Standup"), start.addSecs(3600 * 42));
    CalendarOccurrence recurring = bare;
    recurring.previousOccurrenceStart = start.addSecs(-3600 * 42);
    CalendarOccurrence created = bare;
    created.createdAt = start.addSecs(-3600 * 42);
    CalendarOccurrence createdLongAgo = bare;
    createdLongAgo.createdAt = start.addDays(-30);

    QTest::newRow("a countdown created 10 days before its target is half way after 5")
        << item(halfway) << 0.5;
    QTest::newRow("a recurring countdown counts from its cycle anchor") << item(anchored) << 0.75;
    QTest::newRow("a target not later than its start is complete") << item(backwards) << 1.0;
    QTest::newRow("an occurrence without history fills the week before its start")
        << item(bare) << 0.75;
    QTest::newRow("an occurrence counts from the previous one in its series")
        << item(recurring) << 0.5;
    QTest::newRow("an occurrence created within the week counts from its creation")
        << item(created) << 0.5;
    QTest::newRow("a creation more than a week before is ignored") << item(createdLongAgo) << 0.75;
}

void tst_CountdownEngine::progress()
{
    QFETCH(CountdownItem, item);
    QFETCH(double, expected);
    QCOMPARE(CountdownProgress::at(item, start), expected);
}

void tst_CountdownEngine::missingPinIsKeptForTwoPasses_data()
{
    QTest::addColumn<QList<bool>>("presentOnPass");
    QTest::addColumn<bool>("pinKept");
    QTest::addColumn<qint64>("misses");

    QTest::newRow("gone for one pass: kept") << QList<bool> {false} << true << qint64(1);
    QTest::newRow("gone for two passes: kept") << QList<bool> {false, false} << true << qint64(2);
    QTest::newRow("gone for a third pass: cleared as unresolvable")
        << QList<bool> {false, false, false} << false << qint64(0);
    QTest::newRow("gone twice and back on the third: kept, the count starts again")
        << QList<bool> {false, false, true} << true << qint64(0);
    QTest::newRow("gone, back, gone twice: kept")
        << QList<bool> {false, true, false, false} << true << qint64(2);
}

void tst_CountdownEngine::missingPinIsKeptForTwoPasses()
{
    QFETCH(QList<bool>, presentOnPass);
    QFETCH(bool, pinKept);
    QFETCH(qint64, misses);

    const CalendarOccurrence dinner =
        occurrence(QStringLiteral("dinner"), QStringLiteral("Dinner"), start.addDays(2));
    m_calendar->publish({dinner});
    QVERIFY(m_store->setPin(PinTarget::calendarOccurrence(dinner.ref)));
    CountdownEngine &engine = startEngine();
    QCOMPARE(engine.pinned()->title(), QStringLiteral("Dinner"));

    if (!pinKept) {
        QTest::ignoreMessage(QtInfoMsg, "Returned the menubar to automatic: pin was unresolvable");
    }
    for (const bool present : presentOnPass) {
        m_calendar->publish(present ? QList<CalendarOccurrence> {dinner}
                                    : QList<CalendarOccurrence>());
        engine.runFullPass();
    }
    QCOMPARE(m_store->pin().has_value(), pinKept);
    QCOMPARE(engine.consecutiveMissingResolutions(), misses);
}

void tst_CountdownEngine::spentPinIsClearedAtOnce()
{
    const CalendarOccurrence standup =
        occurrence(QStringLiteral("standup"), QStringLiteral("Standup"), start.addSecs(-1));
    m_calendar->publish({standup});
    QVERIFY(m_store->setPin(PinTarget::calendarOccurrence(standup.ref)));
    CountdownEngine &engine = startEngine();

    QTest::ignoreMessage(QtInfoMsg, "Returned the menubar to automatic: pin was spent");
    engine.runFullPass();
    QVERIFY(!m_store->pin());
    QVERIFY(!engine.pinned());
    QCOMPARE(engine.state().kind, Kind::idle);
}

void tst_CountdownEngine::aDayOfTicks_data()
{
    QTest::addColumn<qint64>("secondsIn");
    QTest::addColumn<QString>("holder");
    QTest::addColumn<ReachState::Kind>("kind");
    QTest::addColumn<double>("progress");

    QTest::newRow("at the start the flight six hours away counts down, half way")
        << qint64(0) << "Flight" << Kind::counting << 0.5;
    QTest::newRow("a second before it lands it still counts down")
        << qint64(6 * 3600 - 1) << "Flight" << Kind::counting << (12 * 3600 - 1) / 43200.0;
    QTest::newRow("once it landed without a celebration, dinner three hours away holds")
        << qint64(6 * 3600 + 30) << "Dinner" << Kind::counting << -1.0;
    QTest::newRow("once dinner started, the trip days away yields to the count-up")
        << qint64(9 * 3600 + 60) << "Sober" << Kind::elapsed << -1.0;
    QTest::newRow("a day later the count-up still holds")
        << qint64(86400) << "Sober" << Kind::elapsed << -1.0;
}

void tst_CountdownEngine::aDayOfTicks()
{
    QFETCH(qint64, secondsIn);
    QFETCH(QString, holder);
    QFETCH(ReachState::Kind, kind);
    QFETCH(double, progress);

    Event flight = countdown(QStringLiteral("Flight"), start.addSecs(6 * 3600));
    flight.createdAt = start.addSecs(-6 * 3600);
    QVERIFY(m_store->addEvent(flight));
    QVERIFY(m_store->addEvent(countUp(QStringLiteral("Sober"), start.addYears(-1))));
    QVERIFY(m_store->addEvent(countdown(QStringLiteral("Trip"), start.addDays(3))));
    m_calendar->publish(
        {occurrence(QStringLiteral("dinner"), QStringLiteral("Dinner"), start.addSecs(9 * 3600))});
    CountdownEngine &engine = startEngine();

    tickUntil(start.addSecs(secondsIn));
    QCOMPARE(m_clock->now(), start.addSecs(secondsIn));
    QVERIFY(engine.pinned());
    QCOMPARE(engine.pinned()->title(), holder);
    QCOMPARE(engine.state().kind, kind);
    if (progress >= 0)
        QCOMPARE(engine.progress(), progress);
    if (kind == Kind::elapsed) {
        QCOMPARE(engine.state().since, start.addYears(-1));
        QCOMPARE(engine.progress(),
                 CountdownFormatter::anniversaryProgress(start.addYears(-1), m_clock->now(),
                                                         engine.pinned()->zone()));
    }
    if (secondsIn > 6 * 3600)
        QCOMPARE(m_store->event(flight.id)->reachedAt, std::optional(flight.targetDate));
}

void tst_CountdownEngine::calendarArrivalsAreArmedAndRecorded()
{
    CalendarOccurrence first =
        occurrence(QStringLiteral("dinner"), QStringLiteral("Dinner"), start.addSecs(600));
    first.meetingURL = QUrl(QStringLiteral("https://meet.example.org/dinner"));
    const CalendarOccurrence second =
        occurrence(QStringLiteral("dinner"), QStringLiteral("Dinner again"), start.addDays(1));
    m_calendar->publish({first, second});
    CalendarReachSignals wanted;
    wanted.notifyOnReach = true;
    QVERIFY(m_store->setCalendarReach(dinnerSeries, wanted));
    CountdownEngine &engine = startEngine();

    engine.runFullPass();
    const CalendarReachSignals::Occurrence firstSnapshot {
        first.start, first.title, QStringLiteral("https://meet.example.org/dinner")};
    QCOMPARE(m_store->calendarReach().value(dinnerSeries).armed, std::optional(firstSnapshot));
    QVERIFY(!m_store->calendarReach().value(dinnerSeries).reached);
    QCOMPARE(engine.currentBucket(), std::optional(RefreshBucket::minutes));

    QSignalSpy writes(m_store.get(), &EventStore::calendarReachChanged);
    engine.runFullPass();
    QCOMPARE(writes.count(), 0);

    m_clock->set(first.start);
    engine.runFullPass();
    const CalendarReachSignals recorded = m_store->calendarReach().value(dinnerSeries);
    QCOMPARE(recorded.reached, std::optional(firstSnapshot));
    QCOMPARE(
        recorded.armed,
        std::optional(CalendarReachSignals::Occurrence {second.start, second.title, std::nullopt}));
    QCOMPARE(writes.count(), 1);

    // Switching the series off disarms it; the recorded arrival waits for its acknowledgement.
    CalendarReachSignals off = recorded;
    off.notifyOnReach = false;
    QVERIFY(m_store->setCalendarReach(dinnerSeries, off));
    engine.runFullPass();
    QVERIFY(!m_store->calendarReach().value(dinnerSeries).armed);
    QCOMPARE(m_store->calendarReach().value(dinnerSeries).reached, std::optional(firstSnapshot));
}

using Snapshot = CalendarReachSignals::Occurrence;
Q_DECLARE_METATYPE(std::optional<Snapshot>)

void tst_CountdownEngine::calendarReachPass_data()
{
    QTest::addColumn<QList<CountdownItem>>("items");
    QTest::addColumn<CalendarReachSignals>("stored");
    QTest::addColumn<std::optional<Snapshot>>("armed");
    QTest::addColumn<std::optional<Snapshot>>("reached");
    QTest::addColumn<bool>("changes");

    const auto announced = [](CalendarOccurrence occurrence, bool hidden = false) {
        occurrence.notifyOnReach = true;
        occurrence.isHidden = hidden;
        return item(occurrence);
    };
    const CalendarOccurrence soon =
        occurrence(QStringLiteral("dinner"), QStringLiteral("Dinner"), start.addSecs(600));
    const CalendarOccurrence later =
        occurrence(QStringLiteral("dinner"), QStringLiteral("Dinner again"), start.addDays(1));
    const CalendarOccurrence begun =
        occurrence(QStringLiteral("dinner"), QStringLiteral("Dinner now"), start);
    const Snapshot soonSnapshot {soon.start, soon.title, std::nullopt};
    const Snapshot laterSnapshot {later.start, later.title, std::nullopt};
    const Snapshot begunSnapshot {begun.start, begun.title, std::nullopt};
    CalendarReachSignals wanted;
    wanted.notifyOnReach = true;
    CalendarReachSignals armedSoon = wanted;
    armedSoon.armed = soonSnapshot;
    CalendarReachSignals armedBegun = wanted;
    armedBegun.armed = begunSnapshot;

    QTest::newRow("a series that announces arrivals arms its next occurrence")
        << QList<CountdownItem> {announced(later), announced(soon), announced(begun)} << wanted
        << std::optional(soonSnapshot) << std::optional<Snapshot>() << true;
    QTest::newRow("an armed series whose next occurrence is still armed changes nothing")
        << QList<CountdownItem> {announced(soon), announced(later)} << armedSoon
        << std::optional(soonSnapshot) << std::optional<Snapshot>() << false;
    QTest::newRow("an armed occurrence that started is reached and the next one armed")
        << QList<CountdownItem> {announced(begun), announced(later)} << armedBegun
        << std::optional(laterSnapshot) << std::optional(begunSnapshot) << true;
    QTest::newRow("an occurrence the calendar moved is armed at its new start")
        << QList<CountdownItem> {announced(later)} << armedSoon << std::optional(laterSnapshot)
        << std::optional<Snapshot>() << true;
    QTest::newRow("a hidden series is disarmed")
        << QList<CountdownItem> {announced(soon, true)} << armedSoon << std::optional<Snapshot>()
        << std::optional<Snapshot>() << true;
    QTest::newRow("a series missing from the list keeps its armed occurrence")
        << QList<CountdownItem>() << armedSoon << std::optional(soonSnapshot)
        << std::optional<Snapshot>() << false;
    QTest::newRow("a series missing from the list still records a due arrival")
        << QList<CountdownItem>() << armedBegun << std::optional<Snapshot>()
        << std::optional(begunSnapshot) << true;
}

void tst_CountdownEngine::calendarReachPass()
{
    QFETCH(QList<CountdownItem>, items);
    QFETCH(CalendarReachSignals, stored);
    QFETCH(std::optional<Snapshot>, armed);
    QFETCH(std::optional<Snapshot>, reached);
    QFETCH(bool, changes);

    const QList<CalendarReachChange> proposed =
        CalendarReachPass::changes(items, {{dinnerSeries, stored}}, start);
    QCOMPARE(proposed.size(), changes ? 1 : 0);
    const CalendarReachSignals result = changes ? proposed.first().signals : stored;
    QCOMPARE(result.armed, armed);
    QCOMPARE(result.reached, reached);
    if (changes)
        QCOMPARE(proposed.first().recordsArrival, reached.has_value());
}

void tst_CountdownEngine::calendarSignalChangesCoalesceIntoOnePass()
{
    CountdownEngine &engine = startEngine();
    QSignalSpy passes(&engine, &CountdownEngine::passCompleted);
    QCoreApplication::processEvents(); // the pass queued at start
    QCOMPARE(passes.count(), 1);

    for (int i = 0; i < 5; ++i)
        Q_EMIT m_store->calendarReachChanged();
    QCOMPARE(passes.count(), 1);
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    QCOMPARE(passes.count(), 2);
}

void tst_CountdownEngine::valuesAreEmittedOnlyOnChange()
{
    QVERIFY(m_store->addEvent(countUp(QStringLiteral("Sober"), start.addDays(-3))));
    QVERIFY(m_store->addEvent(countdown(QStringLiteral("Trip"), start.addDays(30))));
    CountdownEngine &engine = startEngine();
    QSignalSpy pinned(&engine, &CountdownEngine::pinnedChanged);
    QSignalSpy state(&engine, &CountdownEngine::stateChanged);
    QSignalSpy progress(&engine, &CountdownEngine::progressChanged);

    engine.runFullPass();
    QCOMPARE(pinned.count(), 0);
    QCOMPARE(state.count(), 0);
    QCOMPARE(progress.count(), 0);

    m_clock->advance(60);
    engine.runFullPass();
    QCOMPARE(pinned.count(), 0);
    QCOMPARE(state.count(), 1);
    QCOMPARE(progress.count(), 1);
}

void tst_CountdownEngine::aLateTickAfterTheEngineIsGoneDoesNothing()
{
    QVERIFY(m_store->addEvent(countdown(QStringLiteral("Trip"), start.addDays(30))));
    startEngine();
    const std::function<void()> lateTick = m_scheduler->action();
    QVERIFY(lateTick);
    m_engine.reset();
    QVERIFY(!m_scheduler->isRunning());
    m_clock->advance(60 * 86400);
    lateTick();
    QVERIFY(!m_store->events().first().reachedAt);
}

void tst_CountdownEngine::aRealTickReplacesTheRunningOne()
{
    TimerTickScheduler scheduler;
    int first = 0;
    int second = 0;
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

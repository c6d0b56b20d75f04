#include "countdown/CountdownRegistry.h"
#include "countdown/MenubarSubject.h"
#include "countdown/PinResolver.h"
#include "support/ItemFixtures.h"

#include <QTest>

using namespace Fixture;
using State = PinResolver::StoredTargetState;

Q_DECLARE_METATYPE(std::optional<PinTarget>)

class tst_PinResolver : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void resolve_data();
    void resolve();
    void rowPinState();
    void menubarSubject();
};

static const QDateTime now = at("2026-03-01T12:00:00Z");

static CountdownItem down(const char *title, qint64 secondsAhead)
{
    return item(countdown(QString::fromUtf8(title), now.addSecs(secondsAhead)));
}

static CountdownItem up(const char *title, qint64 secondsAgo)
{
    return item(countUp(QString::fromUtf8(title), now.addSecs(-secondsAgo)));
}

static CountdownItem arrived(const char *title, qint64 secondsAgo, bool acknowledged = false)
{
    return item(
        reached(countdown(QString::fromUtf8(title), now.addSecs(-secondsAgo)), true, acknowledged));
}

// The resolver is handed the list in registry order; it relies on that order only for ties.
static void row(const char *name, QList<CountdownItem> items, const char *holder,
                const std::optional<PinTarget> &pin = std::nullopt, State state = State::automatic)
{
    CountdownRegistry::sort(items);
    QTest::newRow(name) << items << pin << QString::fromUtf8(holder) << state;
}

void tst_PinResolver::resolve_data()
{
    QTest::addColumn<QList<CountdownItem>>("items");
    QTest::addColumn<std::optional<PinTarget>>("pin");
    QTest::addColumn<QString>("holder");
    QTest::addColumn<State>("state");

    const qint64 hour = 3600, day = 86400;
    const CountdownItem sober = up("Sober", 40 * day);
    row("nothing at all holds nothing", {}, "");
    row("a countdown 23 hours away beats a count-up", {down("Flight", 23 * hour), sober}, "Flight");
    row("a countdown exactly a day away is not imminent and yields to a count-up",
        {down("Flight", day), sober}, "Sober");
    row("the nearest countdown however far holds when there is no count-up",
        {down("Exam", 40 * day), down("Trip", 3 * day)}, "Trip");
    row("only count-ups: the most recently started holds",
        {sober, up("Job", 3 * day), up("Born", 30 * 365 * day)}, "Job");
    row("a waiting celebration outranks an imminent countdown",
        {down("Soon", 60), arrived("Party", 2 * day)}, "Party");
    row("of two waiting celebrations the later one holds",
        {arrived("Old", 2 * day), arrived("New", day)}, "New");
    row("an acknowledged arrival gives way to the next countdown",
        {down("Soon", 2 * day), arrived("Party", 2 * day, true)}, "Soon");
    row("two countdowns due together: the first in list order wins",
        {down("Beta", 3 * hour), down("Alpha", 3 * hour)}, "Alpha");

    CalendarOccurrence hidden = occurrence("s1", "Hidden", now.addSecs(hour));
    hidden.isHidden = true;
    CalendarOccurrence excluded = occurrence("s2", "Excluded", now.addSecs(2 * hour));
    excluded.excludedFromAutomatic = true;
    row("hidden and excluded calendar items never win automatically",
        {item(hidden), item(excluded), down("Later", 5 * hour)}, "Later");
    row("a calendar occurrence that already started is not a countdown",
        {item(occurrence("s3", "Standup", now.addSecs(-1))), sober}, "Sober");
    // The holiday's day started at 05:00 UTC in New York, before the call at 14:00 UTC.
    CalendarOccurrence holiday = occurrence("s4", "Holiday", at("2026-03-01T17:00:00Z"));
    holiday.isAllDay = true;
    holiday.timeZoneID = QStringLiteral("America/New_York");
    row("an all-day occurrence orders by the start of its day in its own zone",
        {down("Call", 2 * hour), item(holiday)}, "Holiday");

    const Event flight = countdown("Flight", now.addSecs(hour));
    const Event pinnedSober = countUp("Sober", now.addYears(-3));
    const Event waiting = reached(countdown("Arrived", now.addSecs(-60)), true);
    const Event settled = reached(countdown("Settled", now.addSecs(-60)));
    const CalendarOccurrence past = occurrence("standup", "Standup", now.addSecs(-1));
    const CalendarOccurrence next = occurrence("standup", "Standup tomorrow", now.addSecs(day));
    const CountdownItem later = item(occurrence("standup", "Standup next week", now.addDays(7)));
    excluded = occurrence("gym", "Gym", now.addSecs(2 * day));
    excluded.excludedFromAutomatic = true;
    excluded.isHidden = true;
    // The same series id and start in another calendar is another series.
    CalendarOccurrence twin = next;
    twin.title = QStringLiteral("Elsewhere");
    twin.ref.series.calendarID = QStringLiteral("home");
    const QList<CountdownItem> items {item(flight),  item(pinnedSober), item(waiting),
                                      item(settled), item(past),        item(next),
                                      item(twin),    item(excluded),    later};
    row("a pinned count-up stays pinned", items, "Sober", PinTarget::manual(pinnedSober.id),
        State::resolved);
    row("a pinned arrival waiting for its celebration stays pinned", items, "Arrived",
        PinTarget::manual(waiting.id), State::resolved);
    row("a pinned arrival that is settled is released to the automatic choice", items, "Arrived",
        PinTarget::manual(settled.id), State::released);
    row("a pinned occurrence that started one second ago is released", items, "Arrived",
        PinTarget::calendarOccurrence(past.ref), State::released);
    row("a pinned series moves on to its next upcoming occurrence in its own calendar", items,
        "Standup tomorrow", PinTarget::calendarSeries(past.ref.series), State::resolved);
    row("a pinned occurrence holds, not its twin in another calendar", items, "Standup tomorrow",
        PinTarget::calendarOccurrence(next.ref), State::resolved);
    row("a hidden, excluded occurrence can still be pinned", items, "Gym",
        PinTarget::calendarOccurrence(excluded.ref), State::resolved);
    row("a pin to an event that is gone is missing", items, "Arrived",
        PinTarget::manual(QUuid::createUuid()), State::missing);
    row("a pin to a series without any occurrence left is missing", items, "Arrived",
        PinTarget::calendarSeries({"work", "gone"}), State::missing);
    row("a series whose occurrences all started is released", {item(past), item(flight)}, "Flight",
        PinTarget::calendarSeries(past.ref.series), State::released);
}

void tst_PinResolver::resolve()
{
    QFETCH(QList<CountdownItem>, items);
    QFETCH(std::optional<PinTarget>, pin);
    QFETCH(QString, holder);
    QFETCH(State, state);

    const PinResolver::Resolution resolution = PinResolver::resolve(pin, items, now);
    QCOMPARE(resolution.item ? resolution.item->title() : QString(), holder);
    QCOMPARE(resolution.storedTarget, state);
    QCOMPARE(PinResolver::targetExists(pin.value_or(PinTarget()), items),
             pin && state != State::missing);
}

void tst_PinResolver::rowPinState()
{
    const CountdownItem flight = down("Flight", 3600), trip = down("Trip", 30 * 86400);
    const QList<CountdownItem> items {flight, trip};
    const auto stateOf = [&](const std::optional<PinTarget> &pin, const CountdownItem &row) {
        return PinResolver::rowPinState(pin, PinResolver::resolve(pin, items, now), row);
    };
    QCOMPARE(stateOf(std::nullopt, flight), RowPinState::auto_);
    QCOMPARE(stateOf(std::nullopt, trip), RowPinState::none);
    const PinTarget pin = PinTarget::manual(trip.event()->id);
    QCOMPARE(stateOf(pin, trip), RowPinState::explicit_);
    QCOMPARE(stateOf(pin, flight), RowPinState::none);
    // A missing pin falls back to the automatic choice, but the row is not marked as held.
    QCOMPARE(stateOf(PinTarget::manual(QUuid::createUuid()), flight), RowPinState::none);
}

void tst_PinResolver::menubarSubject()
{
    Event flight = countdown("Flight", now.addSecs(3600));
    flight.timeZone = QStringLiteral("Mars/Olympus_Mons");
    const MenubarSubject manual = MenubarSubject::of(item(flight));
    QCOMPARE(manual.title, QStringLiteral("Flight"));
    QVERIFY(!manual.icon);
    QCOMPARE(manual.timeZone, QTimeZone::systemTimeZone());

    CalendarOccurrence standup = occurrence("s", "Standup", now);
    standup.timeZoneID = QStringLiteral("Asia/Tokyo");
    const MenubarSubject calendar = MenubarSubject::of(item(standup));
    QCOMPARE(calendar.icon, std::optional(IconRef {QStringLiteral("calendar")}));
    QCOMPARE(calendar.timeZone.id(), QByteArray("Asia/Tokyo"));
}

QTEST_GUILESS_MAIN(tst_PinResolver)
#include "tst_pinresolver.moc"

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
    void automaticChoice_data();
    void automaticChoice();
    void resolve_data();
    void resolve();
    void rowPinState();
    void menubarSubject();
};

static const QDateTime now = at("2026-03-01T12:00:00Z");

// Items in registry order: the resolver relies on it only for ties.
static QList<CountdownItem> sorted(QList<CountdownItem> items)
{
    CountdownRegistry::sort(items);
    return items;
}

void tst_PinResolver::automaticChoice_data()
{
    QTest::addColumn<QList<CountdownItem>>("items");
    QTest::addColumn<QString>("expected");

    const auto hoursAhead = [](qint64 hours) {
        return now.addSecs(hours * 3600);
    };
    const CountdownItem started = item(countUp(QStringLiteral("Sober"), now.addDays(-40)));

    QTest::newRow("nothing at all holds nothing") << QList<CountdownItem>() << QString();
    QTest::newRow("a countdown 23 hours away beats a count-up")
        << sorted({item(countdown(QStringLiteral("Flight"), hoursAhead(23))), started})
        << QStringLiteral("Flight");
    QTest::newRow("a countdown 25 hours away yields to a count-up")
        << sorted({item(countdown(QStringLiteral("Flight"), hoursAhead(25))), started})
        << QStringLiteral("Sober");
    QTest::newRow("a countdown exactly 86,400 seconds away is not imminent")
        << sorted({item(countdown(QStringLiteral("Flight"), now.addSecs(86400))), started})
        << QStringLiteral("Sober");
    QTest::newRow("a countdown a day away still holds when there is no count-up")
        << sorted({item(countdown(QStringLiteral("Exam"), now.addDays(40))),
                   item(countdown(QStringLiteral("Trip"), now.addDays(3)))})
        << QStringLiteral("Trip");
    QTest::newRow("only count-ups: the most recently started holds")
        << sorted({started, item(countUp(QStringLiteral("Job"), now.addDays(-3))),
                   item(countUp(QStringLiteral("Born"), now.addYears(-30)))})
        << QStringLiteral("Job");
    QTest::newRow("a waiting celebration outranks an imminent countdown")
        << sorted({item(countdown(QStringLiteral("Soon"), now.addSecs(60))),
                   item(reached(countdown(QStringLiteral("Party"), now.addDays(-2)), true))})
        << QStringLiteral("Party");
    QTest::newRow("of two waiting celebrations the later one holds")
        << sorted({item(reached(countdown(QStringLiteral("Old"), now.addDays(-2)), true)),
                   item(reached(countdown(QStringLiteral("New"), now.addDays(-1)), true))})
        << QStringLiteral("New");
    QTest::newRow("an acknowledged arrival gives way to the next countdown")
        << sorted({item(countdown(QStringLiteral("Soon"), now.addDays(2))),
                   item(reached(countdown(QStringLiteral("Party"), now.addDays(-2)), true, true))})
        << QStringLiteral("Soon");

    CalendarOccurrence hidden =
        occurrence(QStringLiteral("s1"), QStringLiteral("Hidden"), hoursAhead(1));
    hidden.isHidden = true;
    CalendarOccurrence excluded =
        occurrence(QStringLiteral("s2"), QStringLiteral("Excluded"), hoursAhead(2));
    excluded.excludedFromAutomatic = true;
    QTest::newRow("hidden and excluded calendar items never win") << sorted(
        {item(hidden), item(excluded), item(countdown(QStringLiteral("Later"), hoursAhead(5)))})
                                                                  << QStringLiteral("Later");
    QTest::newRow("a calendar occurrence that already started is not a countdown") << sorted(
        {item(occurrence(QStringLiteral("s3"), QStringLiteral("Standup"), now.addSecs(-1))),
         started}) << QStringLiteral("Sober");
    QTest::newRow("two countdowns due together: the first in list order wins")
        << sorted({item(countdown(QStringLiteral("Beta"), hoursAhead(3))),
                   item(countdown(QStringLiteral("Alpha"), hoursAhead(3)))})
        << QStringLiteral("Alpha");

    // Midnight of 2 March is 15:00 UTC on 1 March in Tokyo but 21:00 UTC in Istanbul.
    QTest::newRow("an all-day countdown orders by midnight in its own zone")
        << QList<CountdownItem> {item(
                                     countdown(QStringLiteral("Call"), at("2026-03-01T18:00:00Z"))),
                                 item(allDay(QStringLiteral("Tokyo day"),
                                             at("2026-03-02T03:00:00Z"), "Asia/Tokyo"))}
        << QStringLiteral("Tokyo day");
    CalendarOccurrence holiday =
        occurrence(QStringLiteral("s4"), QStringLiteral("Holiday"), at("2026-03-01T17:00:00Z"));
    holiday.isAllDay = true;
    holiday.timeZoneID = QStringLiteral("America/New_York");
    QTest::newRow("an all-day occurrence orders by the start of its day in its own zone")
        << QList<CountdownItem> {item(countdown(QStringLiteral("Call"), hoursAhead(2))),
                                 item(holiday)}
        << QStringLiteral("Holiday");
}

void tst_PinResolver::automaticChoice()
{
    QFETCH(QList<CountdownItem>, items);
    QFETCH(QString, expected);

    const PinResolver::Resolution resolution = PinResolver::resolve(std::nullopt, items, now);
    QCOMPARE(resolution.storedTarget, State::automatic);
    QCOMPARE(resolution.item ? resolution.item->title() : QString(), expected);
}

void tst_PinResolver::resolve_data()
{
    QTest::addColumn<QList<CountdownItem>>("items");
    QTest::addColumn<std::optional<PinTarget>>("pin");
    QTest::addColumn<QString>("expectedTitle");
    QTest::addColumn<State>("expectedState");

    const Event flight = countdown(QStringLiteral("Flight"), now.addSecs(3600));
    const Event sober = countUp(QStringLiteral("Sober"), now.addYears(-3));
    const Event arrived = reached(countdown(QStringLiteral("Arrived"), now.addSecs(-60)), true);
    const Event settled = reached(countdown(QStringLiteral("Settled"), now.addSecs(-60)));
    const CalendarOccurrence past =
        occurrence(QStringLiteral("standup"), QStringLiteral("Standup"), now.addSecs(-1));
    const CalendarOccurrence next =
        occurrence(QStringLiteral("standup"), QStringLiteral("Standup tomorrow"), now.addDays(1));
    const CalendarOccurrence later =
        occurrence(QStringLiteral("standup"), QStringLiteral("Standup next week"), now.addDays(7));
    CalendarOccurrence excluded =
        occurrence(QStringLiteral("gym"), QStringLiteral("Gym"), now.addDays(2));
    excluded.excludedFromAutomatic = true;
    excluded.isHidden = true;
    const QList<CountdownItem> items =
        sorted({item(flight), item(sober), item(arrived), item(settled), item(past), item(next),
                item(later), item(excluded)});

    QTest::newRow("no pin: the automatic choice")
        << items << std::optional<PinTarget>() << QStringLiteral("Arrived") << State::automatic;
    QTest::newRow("a pinned count-up stays pinned")
        << items << std::optional(PinTarget::manual(sober.id)) << QStringLiteral("Sober")
        << State::resolved;
    QTest::newRow("a pinned arrival waiting for its celebration stays pinned")
        << items << std::optional(PinTarget::manual(arrived.id)) << QStringLiteral("Arrived")
        << State::resolved;
    QTest::newRow("a pinned arrival that is settled is released")
        << items << std::optional(PinTarget::manual(settled.id)) << QStringLiteral("Arrived")
        << State::released;
    QTest::newRow("a pinned occurrence that started one second ago is released")
        << items << std::optional(PinTarget::calendarOccurrence(past.ref))
        << QStringLiteral("Arrived") << State::released;
    QTest::newRow("a pinned series moves on to its next upcoming occurrence")
        << items << std::optional(PinTarget::calendarSeries(past.ref.series))
        << QStringLiteral("Standup tomorrow") << State::resolved;
    QTest::newRow("a hidden, excluded occurrence can still be pinned")
        << items << std::optional(PinTarget::calendarOccurrence(excluded.ref))
        << QStringLiteral("Gym") << State::resolved;
    QTest::newRow("a pin to an event that is gone is missing")
        << items << std::optional(PinTarget::manual(QUuid::createUuid()))
        << QStringLiteral("Arrived") << State::missing;
    QTest::newRow("a pin to a series without any occurrence left is missing")
        << items
        << std::optional(
               PinTarget::calendarSeries({QStringLiteral("work"), QStringLiteral("gone")}))
        << QStringLiteral("Arrived") << State::missing;
    QTest::newRow("a series whose occurrences all started is released")
        << sorted({item(past), item(flight)})
        << std::optional(PinTarget::calendarSeries(past.ref.series)) << QStringLiteral("Flight")
        << State::released;
}

void tst_PinResolver::resolve()
{
    QFETCH(QList<CountdownItem>, items);
    QFETCH(std::optional<PinTarget>, pin);
    QFETCH(QString, expectedTitle);
    QFETCH(State, expectedState);

    const PinResolver::Resolution resolution = PinResolver::resolve(pin, items, now);
    QCOMPARE(resolution.item ? resolution.item->title() : QString(), expectedTitle);
    QCOMPARE(resolution.storedTarget, expectedState);
    QCOMPARE(PinResolver::targetExists(pin.value_or(PinTarget()), items),
             expectedState != State::missing && pin.has_value());
}

void tst_PinResolver::rowPinState()
{
    const Event flight = countdown(QStringLiteral("Flight"), now.addSecs(3600));
    const Event trip = countdown(QStringLiteral("Trip"), now.addDays(30));
    const QList<CountdownItem> items = sorted({item(flight), item(trip)});

    const auto automatic = PinResolver::resolve(std::nullopt, items, now);
    QCOMPARE(PinResolver::rowPinState(std::nullopt, automatic, item(flight)), RowPinState::auto_);
    QCOMPARE(PinResolver::rowPinState(std::nullopt, automatic, item(trip)), RowPinState::none);

    const std::optional<PinTarget> pin = PinTarget::manual(trip.id);
    const auto pinned = PinResolver::resolve(pin, items, now);
    QCOMPARE(PinResolver::rowPinState(pin, pinned, item(trip)), RowPinState::explicit_);
    QCOMPARE(PinResolver::rowPinState(pin, pinned, item(flight)), RowPinState::none);

    const std::optional<PinTarget> gone = PinTarget::manual(QUuid::createUuid());
    const auto missing = PinResolver::resolve(gone, items, now);
    QCOMPARE(PinResolver::rowPinState(gone, missing, item(flight)), RowPinState::none);
}

void tst_PinResolver::menubarSubject()
{
    Event flight = countdown(QStringLiteral("Flight"), now.addSecs(3600));
    flight.timeZone = QStringLiteral("Mars/Olympus_Mons");
    const MenubarSubject manual = MenubarSubject::of(item(flight));
    QCOMPARE(manual.title, QStringLiteral("Flight"));
    QVERIFY(!manual.icon);
    QCOMPARE(manual.timeZone, QTimeZone::systemTimeZone());

    CalendarOccurrence standup = occurrence(QStringLiteral("s"), QStringLiteral("Standup"), now);
    standup.timeZoneID = QStringLiteral("Asia/Tokyo");
    const MenubarSubject calendar = MenubarSubject::of(item(standup));
    QCOMPARE(calendar.icon, std::optional(IconRef {QStringLiteral("calendar")}));
    QCOMPARE(calendar.timeZone.id(), QByteArray("Asia/Tokyo"));
}

QTEST_GUILESS_MAIN(tst_PinResolver)
#include "tst_pinresolver.moc"

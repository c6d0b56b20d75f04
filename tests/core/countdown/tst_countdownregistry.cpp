// The merged list and what the panel shows of it: ordering, the scopes and search, which item
// holds the panel (pinned or chosen), and the chip's frame for each state and style.
#include "countdown/CountdownListScope.h"
#include "countdown/CountdownRegistry.h"
#include "countdown/MenubarChipPresentation.h"
#include "countdown/PinResolver.h"
#include "l10n/LanguageTable.h"
#include "storage/EventStore.h"
#include "support/ItemFixtures.h"
#include "support/ListCalendarSource.h"

#include <QSignalSpy>
#include <QTest>

using namespace Fixture;
using State = PinResolver::StoredTargetState;

struct World
{
    TempPathProvider paths;
    DiskFileAccess files;
    EventStore store {paths, files};
    ListCalendarSource calendar;
    CountdownRegistry registry {store};
};

class tst_CountdownRegistry : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void ordering_data();
    void ordering();
    void occurrencesFollowTheCalendarAndTheirSeriesSettings();
    void filter_data();
    void filter();
    void pinResolution_data();
    void pinResolution();
    void chipFrames_data();
    void chipFrames();
};

static const QDateTime now = at("2026-03-01T12:00:00Z");
static const CalendarSeriesRef standupSeries {"work", "standup"};

void tst_CountdownRegistry::ordering_data()
{
    QTest::addColumn<QList<Event>>("events");
    QTest::addColumn<QList<CalendarOccurrence>>("occurrences");
    QTest::addColumn<QStringList>("expected");

    const QDateTime tomorrow = now.addDays(1);
    QTest::newRow("countdowns due together are ordered by title as plain strings, capitals first")
        << QList<Event> {countdown("Zoo", tomorrow), countdown("apple", tomorrow),
                         countdown("Banana", tomorrow)}
        << QList<CalendarOccurrence>() << QStringList {"Banana", "Zoo", "apple"};
    QTest::newRow("count-ups come after pending countdowns, newest first, and before arrivals")
        << QList<Event> {countUp("Last year", now.addYears(-1)),
                         reached(countdown("Arrived", now.addDays(-3))),
                         countUp("Yesterday", now.addDays(-1)), countdown("Far", now.addYears(2)),
                         countdown("Near", now.addDays(2))}
        << QList<CalendarOccurrence>()
        << QStringList {"Near", "Far", "Yesterday", "Last year", "Arrived"};
    QTest::newRow("calendar occurrences fall in among the countdowns by their start")
        << QList<Event> {countdown("Trip", now.addDays(3)), countdown("Call", now.addSecs(3600))}
        << QList<CalendarOccurrence> {occurrence("standup", "Standup", tomorrow)}
        << QStringList {"Call", "Standup", "Trip"};
    // Midnight of 5 March in Tokyo is 15:00 UTC on 4 March, before the 18:00 UTC call.
    QTest::newRow("an all-day countdown sorts by midnight in its own zone")
        << QList<Event> {countdown("Call", at("2026-03-04T18:00:00Z")),
                         countdown("Tokyo", at("2026-03-05T09:00:00Z"), "Asia/Tokyo")}
        << QList<CalendarOccurrence>() << QStringList {"Tokyo", "Call"};
}

void tst_CountdownRegistry::ordering()
{
    QFETCH(QList<Event>, events);
    QFETCH(QList<CalendarOccurrence>, occurrences);

    World w;
    for (const Event &event : events)
        QVERIFY(w.store.addEvent(event));
    w.calendar.publish(occurrences);
    w.registry.attachCalendarSource(&w.calendar); // takes what is already there
    QTEST(titles(w.registry.items()), "expected");
}

void tst_CountdownRegistry::occurrencesFollowTheCalendarAndTheirSeriesSettings()
{
    World w;
    const QList<CalendarOccurrence> list {occurrence("standup", "Standup", now.addDays(1)),
                                          occurrence("other", "Other", now.addDays(2))};
    w.calendar.publish(list);
    w.registry.attachCalendarSource(&w.calendar);
    QSignalSpy changes(&w.registry, &CountdownRegistry::itemsChanged);

    QVERIFY(w.store.setCalendarIcon(standupSeries, IconRef {"star"}));
    QVERIFY(w.store.setCalendarAnnotation(standupSeries, CalendarAnnotation {"bring notes", {}}));
    QVERIFY(w.store.setSeriesHidden(standupSeries, true));
    QCOMPARE(changes.count(), 3); // each setting shows at once
    CalendarOccurrence decorated = list.at(0);
    decorated.isHidden = true;
    decorated.icon = IconRef {"star"};
    decorated.note = "bring notes";
    QCOMPARE(w.registry.items(), (QList {item(decorated), item(list.at(1))}));

    w.calendar.publish({});
    QCOMPARE(changes.count(), 4);
    QVERIFY(w.registry.items().isEmpty());
}

// One of each kind of row the popover lists, in list order.
static QList<CountdownItem> listed()
{
    CalendarOccurrence hidden = occurrence("h", "Hidden café", now.addDays(1));
    hidden.isHidden = true;
    return {item(countdown("Trip", now.addDays(1))),
            item(countdown("Late cafe visit", now.addSecs(-5))), // passed, not yet stamped
            item(countUp("Sober", now.addYears(-1))),
            item(reached(countdown("Done", now.addDays(-1)))),
            item(occurrence("standup", "Café opening", now.addSecs(1))),
            item(occurrence("standup", "İstanbul standup", now)),
            item(hidden)};
}

void tst_CountdownRegistry::filter_data()
{
    QTest::addColumn<CountdownListScope>("scope");
    QTest::addColumn<QString>("query");
    QTest::addColumn<QStringList>("expected");

    const auto find = [](const char *name, CountdownListScope scope, const char *query,
                         const QStringList &expected) {
        QTest::newRow(name) << scope << QString::fromUtf8(query) << expected;
    };
    using Scope = CountdownListScope;
    find("mine holds the countdowns, one whose target passed unstamped and the count-up",
         Scope::mine, "", {"Trip", "Late cafe visit", "Sober", "Done"});
    find("past holds arrivals and occurrences that started, never a count-up", Scope::past, "",
         {"Done", "İstanbul standup"});
    find("cafe finds Café, and cafe itself, but not in a hidden series", Scope::all, "cafe",
         {"Late cafe visit", "Café opening"});
    find("istanbul finds İstanbul", Scope::all, "istanbul", {"İstanbul standup"});
}

void tst_CountdownRegistry::filter()
{
    QFETCH(CountdownListScope, scope);
    QFETCH(QString, query);

    QTEST(titles(CountdownListRules::filter(listed(), scope, query, now)), "expected");
}

static CountdownItem down(const char *title, qint64 secondsAhead)
{
    return item(countdown(title, now.addSecs(secondsAhead)));
}

static CountdownItem up(const char *title, qint64 secondsAgo)
{
    return item(countUp(title, now.addSecs(-secondsAgo)));
}

static CountdownItem arrived(const char *title, qint64 secondsAgo, bool acknowledged = false)
{
    return item(reached(countdown(title, now.addSecs(-secondsAgo)), true, acknowledged));
}

// The resolver is handed the list in registry order; it relies on that order only for ties.
static void row(const char *name, QList<CountdownItem> items, const char *holder,
                const std::optional<PinTarget> &pin = std::nullopt, State state = State::automatic)
{
    CountdownRegistry::sort(items);
    QTest::newRow(name) << items << pin << QString::fromUtf8(holder) << state;
}

void tst_CountdownRegistry::pinResolution_data()
{
    QTest::addColumn<QList<CountdownItem>>("items");
    QTest::addColumn<std::optional<PinTarget>>("pin");
    QTest::addColumn<QString>("holder");
    QTest::addColumn<State>("state");

    const qint64 hour = 3600, day = 86400;
    const CountdownItem sober = up("Sober", 40 * day);
    row("a countdown 23 hours away beats a count-up", {down("Flight", 23 * hour), sober}, "Flight");
    row("a countdown exactly a day away is not imminent and yields to a count-up",
        {down("Flight", day), sober}, "Sober");
    row("only count-ups: the most recently started holds",
        {sober, up("Job", 3 * day), up("Born", 30 * 365 * day)}, "Job");
    row("a waiting celebration outranks an imminent countdown",
        {down("Soon", 60), arrived("Party", 2 * day)}, "Party");
    row("an acknowledged arrival gives way to the next countdown",
        {down("Soon", 2 * day), arrived("Party", 2 * day, true)}, "Soon");

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
    // The same series id and start in another calendar is another series.
    CalendarOccurrence twin = next;
    twin.title = QStringLiteral("Elsewhere");
    twin.ref.series.calendarID = QStringLiteral("home");
    const QList<CountdownItem> items {item(flight), item(pinnedSober), item(waiting), item(settled),
                                      item(past),   item(next),        item(twin),    later};
    row("a pinned count-up stays pinned", items, "Sober", PinTarget::manual(pinnedSober.id),
        State::resolved);
    row("a pinned arrival that is settled is released to the automatic choice", items, "Arrived",
        PinTarget::manual(settled.id), State::released);
    row("a pinned occurrence that started one second ago is released", items, "Arrived",
        PinTarget::calendarOccurrence(past.ref), State::released);
    row("a pinned series moves on to its next upcoming occurrence in its own calendar", items,
        "Standup tomorrow", PinTarget::calendarSeries(past.ref.series), State::resolved);
    row("a pinned occurrence holds, not its twin in another calendar", items, "Standup tomorrow",
        PinTarget::calendarOccurrence(next.ref), State::resolved);
    row("a pin to an event that is gone is missing", items, "Arrived",
        PinTarget::manual(QUuid::createUuid()), State::missing);
    row("a series whose occurrences all started is released", {item(past), item(flight)}, "Flight",
        PinTarget::calendarSeries(past.ref.series), State::released);
}

void tst_CountdownRegistry::pinResolution()
{
    QFETCH(QList<CountdownItem>, items);
    QFETCH(std::optional<PinTarget>, pin);
    QFETCH(State, state);

    const PinResolver::Resolution resolution = PinResolver::resolve(pin, items, now);
    QTEST(resolution.item ? resolution.item->title() : QString(), "holder");
    QCOMPARE(resolution.storedTarget, state);
    QCOMPARE(PinResolver::targetExists(pin.value_or(PinTarget()), items),
             pin && state != State::missing);
}

// The dentist, 1 day 1 hour 1 minute 1 second ahead, with a star.
static MenubarChipInputs
dentist(MenubarStyle style = MenubarStyle::full,
        const ReachState &state = ReachState::counting(Remaining::fromInterval(90061)))
{
    MenubarChipInputs inputs;
    inputs.subject =
        MenubarSubject {QStringLiteral("Dentist"), IconRef::named(QStringLiteral("star.fill")),
                        QTimeZone("Europe/Istanbul")};
    inputs.style = style;
    inputs.state = state;
    return inputs;
}

// Nothing holds the menu bar; the engine's progress is `progress`.
static MenubarChipInputs idle(double progress = 0.0)
{
    MenubarChipInputs inputs;
    inputs.progress = progress;
    return inputs;
}

// The dentist renamed `title`, in title-only style with titles cut at `limit`.
static MenubarChipInputs titled(const QString &title, qint64 limit)
{
    MenubarChipInputs inputs = dentist(MenubarStyle::titleOnly);
    inputs.subject->title = title;
    inputs.titleLength = limit;
    return inputs;
}

// `shown` is "symbol|title|detail", then the fill when it does not cover the whole chip.
static void frameRow(const char *name, const MenubarChipInputs &inputs, const QString &shown)
{
    const QStringList parts = shown.split(QLatin1Char('|'));
    QTest::newRow(name) << inputs
                        << MenubarChipPresentation {parts.at(0), parts.at(1), parts.at(2),
                                                    parts.value(3, "1").toDouble()};
}

void tst_CountdownRegistry::chipFrames_data()
{
    QTest::addColumn<MenubarChipInputs>("inputs");
    QTest::addColumn<MenubarChipPresentation>("expected");

    // The full and compact styles and the idle chip are drawn by the status item's own test.
    using Style = MenubarStyle;
    frameRow("title-only style leaves the time out", dentist(Style::titleOnly),
             "star.fill|Dentist|");
    frameRow("a reached holder shows a check mark in compact style",
             dentist(Style::compact, ReachState::reached(now)), "star.fill||✓");

    // Titles are cut to the chosen length in user-perceived characters.
    const QString party = QStringLiteral("🎉");
    frameRow("a title of exactly the limit is left as it is", titled("Twelve chars", 12),
             "star.fill|Twelve chars|");
    frameRow("one character over keeps limit minus one characters and an ellipsis",
             titled("Thirteen char", 12), "star.fill|Thirteen ch…|");
    frameRow("thirteen emoji are cut after eleven, never inside a surrogate pair",
             titled(party.repeated(13), 12), "star.fill|" + party.repeated(11) + "…|");
    frameRow("a family emoji joined by zero-width joiners counts as one character",
             titled("👨‍👩‍👧 Family picnic", 16),
             "star.fill|👨‍👩‍👧 Family picnic|");

    MenubarChipInputs inputs = dentist();
    inputs.subject->icon = std::nullopt;
    frameRow("a holder without an icon shows the hourglass", inputs, "hourglass|Dentist|1d 1h");
    inputs = idle();
    inputs.style = Style::iconOnly;
    inputs.previewIcon = IconRef::named(QStringLiteral("gift.fill"));
    frameRow("the invitation keeps its label and hourglass in every style", inputs,
             "hourglass|New countdown|");

    frameRow("a negative progress, as a count-up has, fills the whole chip", idle(-0.5),
             "hourglass|New countdown||1");
    frameRow("a quarter of the way, and a creep too small to see, leaves three quarters filled",
             idle(0.25004), "hourglass|New countdown||0.75");
    frameRow("progress past the end leaves the chip empty", idle(1.5),
             "hourglass|New countdown||0");
}

void tst_CountdownRegistry::chipFrames()
{
    QFETCH(MenubarChipInputs, inputs);
    QTEST(MenubarChipPresentation::build(inputs, LanguageTable::load(QStringLiteral("en"))),
          "expected");
}

QTEST_GUILESS_MAIN(tst_CountdownRegistry)
#include "tst_countdownregistry.moc"

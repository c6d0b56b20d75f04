#include "countdown/CountdownListScope.h"
#include "countdown/CountdownRegistry.h"
#include "storage/EventStore.h"
#include "support/ItemFixtures.h"
#include "support/ListCalendarSource.h"

#include <QSignalSpy>
#include <QTest>

using namespace Fixture;

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
    void sectionsCountEveryShownItemOnce();
};

static const QDateTime now = at("2026-03-01T12:00:00Z");
static const CalendarSeriesRef standupSeries {"work", "standup"};

static CalendarOccurrence standup(const char *title, const QDateTime &start)
{
    return occurrence("standup", title, start);
}

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
        << QList<CalendarOccurrence> {standup("Standup", tomorrow)}
        << QStringList {"Call", "Standup", "Trip"};
    // Midnight of 5 March in Tokyo is 15:00 UTC on 4 March, before the 18:00 UTC call.
    QTest::newRow("an all-day countdown sorts by midnight in its own zone")
        << QList<Event> {countdown("Call", at("2026-03-04T18:00:00Z")),
                         allDay("Tokyo", at("2026-03-05T09:00:00Z"), "Asia/Tokyo")}
        << QList<CalendarOccurrence>() << QStringList {"Tokyo", "Call"};
}

void tst_CountdownRegistry::ordering()
{
    QFETCH(QList<Event>, events);
    QFETCH(QList<CalendarOccurrence>, occurrences);
    QFETCH(QStringList, expected);

    World w;
    for (const Event &event : events)
        QVERIFY(w.store.addEvent(event));
    w.calendar.publish(occurrences);
    w.registry.attachCalendarSource(&w.calendar); // takes what is already there
    QCOMPARE(titles(w.registry.items()), expected);
}

void tst_CountdownRegistry::occurrencesFollowTheCalendarAndTheirSeriesSettings()
{
    World w;
    EventStore &store = w.store;
    const CountdownRegistry &registry = w.registry;
    const QList<CalendarOccurrence> list {standup("Standup", now.addDays(1)),
                                          occurrence("other", "Other", now.addDays(2))};
    w.calendar.publish(list);
    w.registry.attachCalendarSource(&w.calendar);
    QSignalSpy changes(&registry, &CountdownRegistry::itemsChanged);

    // An equal list, or arming an arrival (nothing an occurrence shows), rebuilds nothing.
    w.calendar.publish(list);
    CalendarReachSignals reach;
    reach.armed = CalendarReachSignals::Occurrence {now.addDays(1), "Standup", std::nullopt};
    QVERIFY(store.setCalendarReach(standupSeries, reach));
    QCOMPARE(changes.count(), 0);

    reach.celebrationEnabled = true;
    reach.reminderLeadMinutes = {10, 60};
    QVERIFY(store.setCalendarReach(standupSeries, reach));
    QVERIFY(store.setCalendarIcon(standupSeries, IconRef {"star"}));
    QVERIFY(store.setCalendarAnnotation(standupSeries,
                                        CalendarAnnotation {"bring notes", std::nullopt}));
    QVERIFY(store.setSeriesHidden(standupSeries, true));
    QCOMPARE(changes.count(), 4); // each setting shows at once

    const CalendarOccurrence *decorated = registry.items().at(0).occurrence();
    QVERIFY(decorated->celebrationEnabled);
    QVERIFY(!decorated->notifyOnReach);
    QCOMPARE(decorated->reminderLeadMinutes, QList<qint64>({10, 60}));
    QCOMPARE(decorated->icon, std::optional(IconRef {"star"}));
    QCOMPARE(decorated->note, std::optional<QString>("bring notes"));
    QVERIFY(decorated->isHidden);
    const CalendarOccurrence *other = registry.items().at(1).occurrence();
    QVERIFY(!other->celebrationEnabled && !other->icon && !other->note && !other->isHidden);

    w.calendar.publish({});
    QCOMPARE(changes.count(), 5);
    QVERIFY(registry.items().isEmpty());
}

// One of each kind of row the popover lists, in list order.
static QList<CountdownItem> listed()
{
    Event trip = countdown("Trip", now.addDays(1));
    trip.note = "Renew the Passport";
    CalendarOccurrence begun = standup("İstanbul standup", now);
    begun.note = "bring the passport";
    CalendarOccurrence hidden = occurrence("h", "Hidden café", now.addDays(1));
    hidden.isHidden = true;
    return {item(trip),
            item(countdown("Late cafe visit", now.addSecs(-5))), // passed, not yet stamped
            item(countUp("Sober", now.addYears(-1))),
            item(reached(countdown("Done", now.addDays(-1)))),
            item(countdown("Unal's day", now.addDays(2))),
            item(standup("Café opening", now.addSecs(1))),
            item(begun),
            item(hidden)};
}

void tst_CountdownRegistry::filter_data()
{
    QTest::addColumn<CountdownListScope>("scope");
    QTest::addColumn<QString>("query");
    QTest::addColumn<QStringList>("expected");

    const auto row = [](const char *name, CountdownListScope scope, const char *query,
                        const QStringList &expected) {
        QTest::newRow(name) << scope << QString::fromUtf8(query) << expected;
    };
    using Scope = CountdownListScope;
    const QStringList visible {"Trip",       "Late cafe visit", "Sober",           "Done",
                               "Unal's day", "Café opening",    "İstanbul standup"};
    row("all holds every item but those of a hidden series", Scope::all, "", visible);
    row("mine holds the countdowns, one whose target passed unstamped and the count-up",
        Scope::mine, "", {"Trip", "Late cafe visit", "Sober", "Done", "Unal's day"});
    row("calendar holds the occurrences of shown series", Scope::calendar, "",
        {"Café opening", "İstanbul standup"});
    row("past holds arrivals and occurrences that started, never a count-up", Scope::past, "",
        {"Done", "İstanbul standup"});
    row("cafe finds Café, and cafe itself", Scope::all, "cafe",
        {"Late cafe visit", "Café opening"});
    row("an upper-case accented query finds plain text", Scope::all, "CAFÉ",
        {"Late cafe visit", "Café opening"});
    row("istanbul finds İstanbul", Scope::all, "istanbul", {"İstanbul standup"});
    row("ünal finds Unal", Scope::all, "ünal", {"Unal's day"});
    row("a query of spaces and a line break keeps everything", Scope::all, "  \n ", visible);
    row("surrounding white space is ignored", Scope::all, "  SOBER\n", {"Sober"});
    row("the notes of countdowns and of series are searched too", Scope::all, "passport",
        {"Trip", "İstanbul standup"});
    row("letters in another order do not match", Scope::all, "efac", {});
    row("the search keeps within the scope", Scope::mine, "cafe", {"Late cafe visit"});
}

void tst_CountdownRegistry::filter()
{
    QFETCH(CountdownListScope, scope);
    QFETCH(QString, query);
    QFETCH(QStringList, expected);

    QCOMPARE(titles(CountdownListRules::filter(listed(), scope, query, now)), expected);
}

void tst_CountdownRegistry::sectionsCountEveryShownItemOnce()
{
    const CountdownSectionCounts counts = CountdownListRules::countSections(listed(), now);
    QCOMPARE(counts.upcoming, 4);
    QCOMPARE(counts.since, 1);
    QCOMPARE(counts.past, 2);
}

QTEST_GUILESS_MAIN(tst_CountdownRegistry)
#include "tst_countdownregistry.moc"

#include "countdown/CountdownListScope.h"
#include "countdown/CountdownRegistry.h"
#include "countdown/CountdownSearch.h"
#include "storage/EventStore.h"
#include "support/ItemFixtures.h"
#include "support/ListCalendarSource.h"

#include <QSignalSpy>
#include <QTest>

using namespace Fixture;

class tst_CountdownRegistry : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void emptyStoreGivesEmptyList();
    void ordering_data();
    void ordering();
    void decoratesOccurrencesFromTheirSeries();
    void hidingASeriesRepublishesAtOnce();
    void anEqualCalendarListDoesNotRebuild();
    void search_data();
    void search();
    void scopes_data();
    void scopes();
    void pinMatching_data();
    void pinMatching();

private:
    std::unique_ptr<TempPathProvider> m_paths;
    std::unique_ptr<DiskFileAccess> m_files;
    std::unique_ptr<EventStore> m_store;
};

static const QDateTime now = at("2026-03-01T12:00:00Z");
static const CalendarSeriesRef standupSeries {QStringLiteral("work"), QStringLiteral("standup")};

void tst_CountdownRegistry::init()
{
    m_paths = std::make_unique<TempPathProvider>();
    m_files = std::make_unique<DiskFileAccess>();
    m_store = std::make_unique<EventStore>(*m_paths, *m_files);
}

void tst_CountdownRegistry::cleanup()
{
    m_store.reset();
    m_files.reset();
    m_paths.reset();
}

void tst_CountdownRegistry::emptyStoreGivesEmptyList()
{
    CountdownRegistry registry(*m_store);
    QVERIFY(registry.items().isEmpty());
}

void tst_CountdownRegistry::ordering_data()
{
    QTest::addColumn<QList<Event>>("events");
    QTest::addColumn<QList<CalendarOccurrence>>("occurrences");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("countdowns due at the same instant are ordered by title")
        << QList<Event> {countdown(QStringLiteral("Zoo"), now.addDays(1)),
                         countdown(QStringLiteral("Apple"), now.addDays(1))}
        << QList<CalendarOccurrence>() << QStringList {"Apple", "Zoo"};
    QTest::newRow("count-ups come after pending countdowns, newest first, and before arrivals")
        << QList<Event> {countUp(QStringLiteral("Last year"), now.addYears(-1)),
                         reached(countdown(QStringLiteral("Arrived"), now.addDays(-3))),
                         countUp(QStringLiteral("Yesterday"), now.addDays(-1)),
                         countdown(QStringLiteral("Far"), now.addYears(2)),
                         countdown(QStringLiteral("Near"), now.addDays(2))}
        << QList<CalendarOccurrence>()
        << QStringList {"Near", "Far", "Yesterday", "Last year", "Arrived"};
    QTest::newRow("calendar occurrences fall in among the countdowns by their start")
        << QList<Event> {countdown(QStringLiteral("Trip"), now.addDays(3)),
                         countdown(QStringLiteral("Call"), now.addSecs(3600))}
        << QList<CalendarOccurrence> {occurrence(QStringLiteral("standup"),
                                                 QStringLiteral("Standup"), now.addDays(1))}
        << QStringList {"Call", "Standup", "Trip"};
    // Midnight of 5 March in Tokyo is 15:00 UTC on 4 March, before the 18:00 UTC call.
    QTest::newRow("an all-day countdown sorts by midnight in its own zone")
        << QList<Event> {countdown(QStringLiteral("Call"), at("2026-03-04T18:00:00Z")),
                         allDay(QStringLiteral("Tokyo"), at("2026-03-05T09:00:00Z"), "Asia/Tokyo")}
        << QList<CalendarOccurrence>() << QStringList {"Tokyo", "Call"};
    QTest::newRow("titles compare as plain strings, capitals first")
        << QList<Event> {countdown(QStringLiteral("apple"), now.addDays(1)),
                         countdown(QStringLiteral("Banana"), now.addDays(1))}
        << QList<CalendarOccurrence>() << QStringList {"Banana", "apple"};
}

void tst_CountdownRegistry::ordering()
{
    QFETCH(QList<Event>, events);
    QFETCH(QList<CalendarOccurrence>, occurrences);
    QFETCH(QStringList, expected);

    for (const Event &event : events)
        QVERIFY(m_store->addEvent(event));
    CountdownRegistry registry(*m_store);
    ListCalendarSource source;
    source.publish(occurrences);
    registry.attachCalendarSource(&source);
    QCOMPARE(titles(registry.items()), expected);
}

void tst_CountdownRegistry::decoratesOccurrencesFromTheirSeries()
{
    CountdownRegistry registry(*m_store);
    ListCalendarSource source;
    registry.attachCalendarSource(&source);
    source.publish(
        {occurrence(QStringLiteral("standup"), QStringLiteral("Standup"), now.addDays(1)),
         occurrence(QStringLiteral("other"), QStringLiteral("Other"), now.addDays(2))});

    CalendarReachSignals reach;
    reach.celebrationEnabled = true;
    reach.reminderLeadMinutes = {10, 60};
    QVERIFY(m_store->setCalendarReach(standupSeries, reach));
    QVERIFY(m_store->setCalendarIcon(standupSeries, IconRef {QStringLiteral("star")}));
    QVERIFY(m_store->setCalendarAnnotation(
        standupSeries, CalendarAnnotation {QStringLiteral("bring notes"), std::nullopt}));

    const CalendarOccurrence *standup = registry.items().at(0).occurrence();
    QVERIFY(standup);
    QVERIFY(standup->celebrationEnabled);
    QVERIFY(!standup->notifyOnReach);
    QCOMPARE(standup->reminderLeadMinutes, QList<qint64>({10, 60}));
    QCOMPARE(standup->icon, std::optional(IconRef {QStringLiteral("star")}));
    QCOMPARE(standup->note, std::optional(QStringLiteral("bring notes")));

    const CalendarOccurrence *other = registry.items().at(1).occurrence();
    QVERIFY(!other->celebrationEnabled);
    QVERIFY(!other->icon);
    QVERIFY(!other->note);
}

void tst_CountdownRegistry::hidingASeriesRepublishesAtOnce()
{
    CountdownRegistry registry(*m_store);
    ListCalendarSource source;
    source.publish(
        {occurrence(QStringLiteral("standup"), QStringLiteral("Standup"), now.addDays(1))});
    registry.attachCalendarSource(&source);
    QSignalSpy changes(&registry, &CountdownRegistry::itemsChanged);

    QVERIFY(m_store->setSeriesHidden(standupSeries, true));
    QCOMPARE(changes.count(), 1);
    QVERIFY(registry.items().at(0).occurrence()->isHidden);
}

void tst_CountdownRegistry::anEqualCalendarListDoesNotRebuild()
{
    CountdownRegistry registry(*m_store);
    ListCalendarSource source;
    const QList<CalendarOccurrence> list {
        occurrence(QStringLiteral("standup"), QStringLiteral("Standup"), now.addDays(1))};
    source.publish(list);
    registry.attachCalendarSource(&source);
    QSignalSpy changes(&registry, &CountdownRegistry::itemsChanged);

    source.publish(list);
    // Arming an arrival changes the series' signals but nothing an occurrence shows.
    CalendarReachSignals armedOnly;
    armedOnly.armed =
        CalendarReachSignals::Occurrence {now.addDays(1), QStringLiteral("Standup"), std::nullopt};
    QVERIFY(m_store->setCalendarReach(standupSeries, armedOnly));
    QCOMPARE(changes.count(), 0);

    source.publish({});
    QCOMPARE(changes.count(), 1);
    QVERIFY(registry.items().isEmpty());
}

void tst_CountdownRegistry::search_data()
{
    QTest::addColumn<QString>("query");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("note");
    QTest::addColumn<bool>("matches");

    QTest::newRow("cafe finds a title written Café") << "cafe"
                                                     << "Café opening"
                                                     << "" << true;
    QTest::newRow("an upper-case accented query finds plain text") << "CAFÉ"
                                                                   << "the cafe"
                                                                   << "" << true;
    QTest::newRow("istanbul finds İstanbul") << "istanbul"
                                             << "İstanbul trip"
                                             << "" << true;
    QTest::newRow("ünal finds Unal and the other way round") << "ünal"
                                                             << "Unal's day"
                                                             << "" << true;
    QTest::newRow("a query of spaces and a line break keeps everything") << "  \n "
                                                                         << "Anything"
                                                                         << "" << true;
    QTest::newRow("surrounding white space is ignored") << "  dentist\n"
                                                        << "Dentist"
                                                        << "" << true;
    QTest::newRow("the note is searched too") << "passport"
                                              << "Trip"
                                              << "Renew the Passport" << true;
    QTest::newRow("a word that is in neither does not match") << "gym"
                                                              << "Trip"
                                                              << "Renew the passport" << false;
    QTest::newRow("letters in another order do not match") << "efac"
                                                           << "Café"
                                                           << "" << false;
}

void tst_CountdownRegistry::search()
{
    QFETCH(QString, query);
    QFETCH(QString, title);
    QFETCH(QString, note);
    QFETCH(bool, matches);

    Event event = countdown(title, now.addDays(1));
    if (!note.isEmpty())
        event.note = note;
    QCOMPARE(CountdownSearch(query).matches(item(event)), matches);

    CalendarOccurrence annotated = occurrence(QStringLiteral("s"), title, now.addDays(1));
    if (!note.isEmpty())
        annotated.note = note;
    QCOMPARE(CountdownSearch(query).matches(item(annotated)), matches);
}

void tst_CountdownRegistry::scopes_data()
{
    QTest::addColumn<CountdownItem>("item");
    QTest::addColumn<QString>("section");
    QTest::addColumn<QString>("scopes");

    CalendarOccurrence hidden =
        occurrence(QStringLiteral("h"), QStringLiteral("Hidden"), now.addDays(1));
    hidden.isHidden = true;

    QTest::newRow("a countdown to come is upcoming and mine")
        << item(countdown(QStringLiteral("Trip"), now.addDays(1))) << "upcoming"
        << "all mine";
    QTest::newRow("a countdown whose target passed but is not stamped is still upcoming")
        << item(countdown(QStringLiteral("Late"), now.addSecs(-5))) << "upcoming"
        << "all mine";
    QTest::newRow("a count-up is in since, never in past")
        << item(countUp(QStringLiteral("Sober"), now.addYears(-1))) << "since"
        << "all mine";
    QTest::newRow("an arrived countdown is past")
        << item(reached(countdown(QStringLiteral("Done"), now.addDays(-1)))) << "past"
        << "all mine past";
    QTest::newRow("a calendar occurrence to come is upcoming and calendar")
        << item(occurrence(QStringLiteral("s"), QStringLiteral("Standup"), now.addSecs(1)))
        << "upcoming"
        << "all calendar";
    QTest::newRow("a calendar occurrence that started is past")
        << item(occurrence(QStringLiteral("s"), QStringLiteral("Standup"), now)) << "past"
        << "all calendar past";
    QTest::newRow("a hidden series is in no section and no scope") << item(hidden) << ""
                                                                   << "";
}

void tst_CountdownRegistry::scopes()
{
    QFETCH(CountdownItem, item);
    QFETCH(QString, section);
    QFETCH(QString, scopes);

    static const QStringList sectionNames {"upcoming", "since", "past"};
    const auto actualSection = CountdownListRules::sectionOf(item, now);
    QCOMPARE(actualSection ? sectionNames.at(int(*actualSection)) : QString(), section);

    static const QStringList scopeNames {"all", "mine", "calendar", "past"};
    QStringList inScopes;
    for (int scope = 0; scope < scopeNames.size(); ++scope) {
        if (CountdownListRules::inScope(item, CountdownListScope(scope), now))
            inScopes.append(scopeNames.at(scope));
    }
    QCOMPARE(inScopes.join(QLatin1Char(' ')), scopes);
}

Q_DECLARE_METATYPE(std::optional<PinTarget>)

static const Event pinnedTrip = countdown(QStringLiteral("Trip"), now.addDays(1));
static const CalendarOccurrence pinnedMonday =
    occurrence(QStringLiteral("standup"), QStringLiteral("Monday"), now.addDays(1));

void tst_CountdownRegistry::pinMatching_data()
{
    QTest::addColumn<std::optional<PinTarget>>("pin");
    QTest::addColumn<QStringList>("matched");

    QTest::newRow("no pin matches nothing") << std::optional<PinTarget>() << QStringList();
    QTest::newRow("a manual pin matches its event only")
        << std::optional(PinTarget::manual(pinnedTrip.id)) << QStringList {"Trip"};
    QTest::newRow("a series pin matches every occurrence of that calendar's series")
        << std::optional(PinTarget::calendarSeries(standupSeries))
        << QStringList {"Monday", "Tuesday"};
    QTest::newRow("an occurrence pin matches its occurrence, not the same series elsewhere")
        << std::optional(PinTarget::calendarOccurrence(pinnedMonday.ref)) << QStringList {"Monday"};
}

void tst_CountdownRegistry::pinMatching()
{
    QFETCH(std::optional<PinTarget>, pin);
    QFETCH(QStringList, matched);

    // The same series id and occurrence date in another calendar is another series.
    CalendarOccurrence otherCalendar = pinnedMonday;
    otherCalendar.title = QStringLiteral("Elsewhere");
    otherCalendar.ref.series.calendarID = QStringLiteral("home");
    const QList<CountdownItem> items {
        item(pinnedTrip), item(countdown(QStringLiteral("Other"), now.addDays(1))),
        item(pinnedMonday),
        item(occurrence(QStringLiteral("standup"), QStringLiteral("Tuesday"), now.addDays(2))),
        item(otherCalendar)};
    QStringList actual;
    for (const CountdownItem &candidate : items) {
        if (CountdownRegistry::pinMatches(pin, candidate))
            actual.append(candidate.title());
    }
    QCOMPARE(actual, matched);
}

QTEST_GUILESS_MAIN(tst_CountdownRegistry)
#include "tst_countdownregistry.moc"

// The automation intents' rules: which item is next and the sentences they answer with (the rules
// of creating a countdown are tested where clients meet them, on the session bus).
#include "automation/CountdownIntents.h"
#include "countdown/CountdownRegistry.h"
#include "l10n/LocaleManager.h"
#include "storage/EventStore.h"
#include "storage/SettingsStore.h"
#include "support/FakeClock.h"
#include "support/ItemFixtures.h"
#include "support/ListCalendarSource.h"

#include <QTest>

using namespace Fixture;
using namespace Qt::StringLiterals;

static const QDateTime start = at("2026-03-01T12:00:00Z"); // 15:00 in Istanbul

struct World
{
    World() { registry.attachCalendarSource(&calendar); }

    TempPathProvider paths;
    DiskFileAccess files;
    EventStore store {paths, files};
    SettingsStore settings {paths, files};
    ListCalendarSource calendar;
    CountdownRegistry registry {store};
    FakeClock clock {start};
    LocaleManager locale {settings, [] {
                              return QStringList {"en"};
                          }};
    CountdownIntents intents {store, registry, clock, settings, locale};
};

class tst_CountdownIntents : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void datesFromText_data();
    void datesFromText();
    void next_data();
    void next();
    void timeUntil_data();
    void timeUntil();
};

void tst_CountdownIntents::datesFromText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QDateTime>("expected");

    QTest::newRow("A day is its start in the local zone")
        << u"2026-03-05"_s << at("2026-03-04T21:00:00Z");
    QTest::newRow("A phrase that is only a date is understood")
        << u"tomorrow at 3pm"_s << at("2026-03-02T12:00:00Z");
    QTest::newRow("A phrase with other words is not a date")
        << u"dentist tomorrow"_s << QDateTime();
}

void tst_CountdownIntents::datesFromText()
{
    QFETCH(QString, text);
    QFETCH(QDateTime, expected);
    const std::optional<QDateTime> date =
        CountdownIntents::dateFromText(text, start, QTimeZone::systemTimeZone());
    QCOMPARE(date.value_or(QDateTime()), expected);
}

void tst_CountdownIntents::next_data()
{
    QTest::addColumn<QList<Event>>("events");
    QTest::addColumn<QList<CalendarOccurrence>>("occurrences");
    QTest::addColumn<bool>("hideStandups");
    QTest::addColumn<QString>("expected");

    const Event soon = countdown(u"Dentist"_s, start.addSecs(26 * 3600));
    const Event later = countdown(u"Trip"_s, start.addDays(3));
    const CalendarOccurrence standup = occurrence(u"standup"_s, u"Standup"_s, start.addSecs(7200));
    const QString none = u"There are no upcoming countdowns."_s;
    QTest::newRow("Only count-ups and past items answer none")
        << QList {countUp(u"Quit"_s, start.addDays(-3)), reached(countdown(u"Gone"_s, start))}
        << QList<CalendarOccurrence>() << false << none;
    QTest::newRow("The earliest countdown wins")
        << QList {later, soon} << QList<CalendarOccurrence>() << false
        << u"1d 2h until “Dentist”."_s;
    QTest::newRow("A calendar event that starts sooner wins")
        << QList {soon} << QList {standup} << false << u"2h 0m until “Standup”."_s;
    QTest::newRow("A hidden calendar series does not count")
        << QList {soon} << QList {standup} << true << u"1d 2h until “Dentist”."_s;
    QTest::newRow("A calendar event that has started does not count")
        << QList<Event>() << QList {occurrence(u"x"_s, u"Running"_s, start.addSecs(-60))} << false
        << none;
    QTest::newRow("A countdown not yet stamped as arrived has arrived")
        << QList {countdown(u"Bell"_s, start.addSecs(-60))} << QList<CalendarOccurrence>() << false
        << u"“Bell” has arrived."_s;
}

void tst_CountdownIntents::next()
{
    QFETCH(QList<Event>, events);
    QFETCH(QList<CalendarOccurrence>, occurrences);
    QFETCH(bool, hideStandups);
    World world;
    for (const Event &event : events)
        QVERIFY(world.store.addEvent(event));
    if (hideStandups)
        QVERIFY(world.store.setSeriesHidden({u"work"_s, u"standup"_s}, true));
    world.calendar.publish(occurrences);
    QTEST(world.intents.nextCountdown(), "expected");
}

void tst_CountdownIntents::timeUntil_data()
{
    QTest::addColumn<Event>("event");
    QTest::addColumn<bool>("deleted");
    QTest::addColumn<QString>("expected");

    QTest::newRow("A countdown tells the time left")
        << countdown(u"Dentist"_s, start.addSecs(26 * 3600)) << false
        << u"1d 2h until “Dentist”."_s;
    QTest::newRow("An all-day countdown counts from the start of its day")
        << countdown(u"Trip"_s, at("2026-03-03T09:00:00Z"), "Europe/Istanbul") << false
        << u"1d 9h until “Trip”."_s;
    QTest::newRow("A count-up tells the time since")
        << countUp(u"Quit"_s, start.addDays(-3)) << false << u"It has been 3d 0h since “Quit”."_s;
    QTest::newRow("A deleted countdown is not found")
        << countdown(u"Gone"_s, start.addDays(1)) << true << u"That countdown no longer exists."_s;
}

void tst_CountdownIntents::timeUntil()
{
    QFETCH(Event, event);
    QFETCH(bool, deleted);
    World world;
    QVERIFY(world.store.addEvent(event));
    if (deleted)
        QVERIFY(world.store.deleteEvent(event.id));
    const IntentAnswer answer = world.intents.timeUntil(event.id);
    QTEST(answer.ok() ? answer.sentence : world.intents.message(*answer.error), "expected");
    QCOMPARE(world.intents.countdowns().size(), deleted ? 0 : 1);
}

QTEST_GUILESS_MAIN(tst_CountdownIntents)
#include "tst_countdownintents.moc"

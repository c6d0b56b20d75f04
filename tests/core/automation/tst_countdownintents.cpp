// The automation intents' rules: which titles and dates make a countdown, which item is next,
// and the sentences they answer with.
#include "automation/CountdownIntents.h"
#include "countdown/CountdownRegistry.h"
#include "l10n/LocaleManager.h"
#include "storage/EventStore.h"
#include "storage/SettingsStore.h"
#include "support/FakeClock.h"
#include "support/FaultyFileAccess.h"
#include "support/ItemFixtures.h"
#include "support/ListCalendarSource.h"

#include <QTest>

using namespace Fixture;
using namespace Qt::StringLiterals;

static const QDateTime start = at("2026-03-01T12:00:00Z"); // 15:00 in Istanbul
static const int noError = -1;

struct World
{
    World() { registry.attachCalendarSource(&calendar); }

    TempPathProvider paths;
    FaultyFileAccess files;
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
    void create_data();
    void create();
    void createAnswersWithTheTimeLeft();
    void aFailedSaveIsTheIntentsFailure();
    void datesFromText_data();
    void datesFromText();
    void next_data();
    void next();
    void timeUntil_data();
    void timeUntil();
    void answersInTheInterfaceLanguage();
};

void tst_CountdownIntents::create_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QDateTime>("date");
    QTest::addColumn<int>("error");
    QTest::addColumn<bool>("includeTime");

    const QDateTime tomorrow = start.addDays(1);
    const int invalidTitle = int(IntentError::Kind::invalidTitle);
    const int pastDate = int(IntentError::Kind::pastDate);
    QTest::newRow("A 40-character title is accepted")
        << QString(40, u'a') << tomorrow << noError << true;
    QTest::newRow("A 41-character title is refused")
        << QString(41, u'a') << tomorrow << invalidTitle << false;
    QTest::newRow("An empty title is refused") << QString() << tomorrow << invalidTitle << false;
    QTest::newRow("A title of white space is refused")
        << u"   "_s << tomorrow << invalidTitle << false;
    QTest::newRow("Forty emoji with skin tones are forty characters")
        << u"👍🏽"_s.repeated(40) << tomorrow << noError << true;
    QTest::newRow("A date one second in the past is refused")
        << u"Late"_s << start.addSecs(-1) << pastDate << false;
    QTest::newRow("A date exactly now is refused") << u"Now"_s << start << pastDate << false;
    QTest::newRow("Midnight makes a countdown to the whole day")
        << u"Trip"_s << at("2026-03-05T00:00:00+03:00") << noError << false;
    QTest::newRow("One minute past midnight keeps its time")
        << u"Trip"_s << at("2026-03-05T00:01:00+03:00") << noError << true;
}

void tst_CountdownIntents::create()
{
    QFETCH(QString, title);
    QFETCH(QDateTime, date);
    QFETCH(int, error);
    World world;
    const IntentAnswer answer = world.intents.createCountdown(title, date);
    if (error != noError) {
        QVERIFY(!answer.ok());
        QCOMPARE(int(answer.error->kind), error);
        QVERIFY(world.store.events().isEmpty());
        return;
    }
    QVERIFY2(answer.ok(), qPrintable(answer.sentence));
    QCOMPARE(world.store.events().size(), 1);
    const Event &event = world.store.events().constFirst();
    QCOMPARE(event.title, title);
    QCOMPARE(event.targetDate, date);
    QTEST(event.includeTime, "includeTime");
    QCOMPARE(event.timeZone, u"Europe/Istanbul"_s);
    QCOMPARE(event.direction, CountdownDirection::until);
    QCOMPARE(event.createdAt, start);
    QVERIFY(!event.reachedAt && !event.recurrence);
}

void tst_CountdownIntents::createAnswersWithTheTimeLeft()
{
    World world;
    QCOMPARE(world.intents.createCountdown(u"  Dentist "_s, start.addSecs(26 * 3600)).sentence,
             u"Created “Dentist”: 1d 2h to go."_s);
    QCOMPARE(world.store.events().constFirst().title, u"Dentist"_s);
}

void tst_CountdownIntents::aFailedSaveIsTheIntentsFailure()
{
    World world;
    world.files.failWrites = true;
    const IntentAnswer answer = world.intents.createCountdown(u"Dentist"_s, start.addDays(1));
    QCOMPARE(answer.error,
             (IntentError {IntentError::Kind::saveFailed, "No space left on device"}));
    QCOMPARE(world.intents.message(*answer.error),
             u"The countdown could not be saved: No space left on device"_s);
}

void tst_CountdownIntents::datesFromText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QDateTime>("expected");

    QTest::newRow("A day is its start in the local zone")
        << u"2026-03-05"_s << at("2026-03-04T21:00:00Z");
    QTest::newRow("A wall time is read in the local zone")
        << u"2026-03-05T18:30"_s << at("2026-03-05T15:30:00Z");
    QTest::newRow("An instant keeps its offset")
        << u"2026-03-05T18:30:00Z"_s << at("2026-03-05T18:30:00Z");
    QTest::newRow("A phrase that is only a date is understood")
        << u"tomorrow at 3pm"_s << at("2026-03-02T12:00:00Z");
    QTest::newRow("A phrase with other words is not a date")
        << u"dentist tomorrow"_s << QDateTime();
    QTest::newRow("Words without a date are not a date") << u"some day"_s << QDateTime();
}

void tst_CountdownIntents::datesFromText()
{
    QFETCH(QString, text);
    QFETCH(QDateTime, expected);
    const std::optional<QDateTime> date =
        CountdownIntents::dateFromText(text, start, QTimeZone::systemTimeZone());
    QCOMPARE(date.value_or(QDateTime()), expected);
    if (!expected.isValid()) {
        World world;
        QCOMPARE(world.intents.createCountdown(u"x"_s, text).error->kind,
                 IntentError::Kind::invalidDate);
    }
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
    QTest::newRow("Nothing at all answers none")
        << QList<Event>() << QList<CalendarOccurrence>() << false << none;
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

void tst_CountdownIntents::answersInTheInterfaceLanguage()
{
    World world;
    Settings german = world.settings.settings();
    german.language = LanguagePref::de;
    world.settings.setSettings(german);
    QCOMPARE(world.intents.createCountdown(u"Zahnarzt"_s, start.addSecs(26 * 3600)).sentence,
             u"„Zahnarzt“ erstellt: noch 1T 2Std."_s);
    QCOMPARE(world.intents.message({IntentError::Kind::pastDate, {}}),
             u"Das Datum muss in der Zukunft liegen."_s);
}

QTEST_GUILESS_MAIN(tst_CountdownIntents)
#include "tst_countdownintents.moc"

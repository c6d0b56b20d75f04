#include "arrival/RecurrenceCoordinator.h"
#include "storage/EventStore.h"
#include "support/FakeClock.h"
#include "support/ItemFixtures.h"

#include <QSignalSpy>
#include <QTest>

using namespace Fixture;
using Frequency = RecurrenceRule::Frequency;
using End = RecurrenceRule::End;

Q_DECLARE_METATYPE(RecurrenceRule)

namespace {

RecurrenceRule rule(Frequency frequency, qint64 interval = 1, QList<Weekday> weekdays = {},
                    std::optional<End> end = std::nullopt)
{
    return RecurrenceRule {frequency, weekdays, interval, end, std::nullopt};
}

// The wall date and time in `zone` ("2026-03-30 09:00").
QString wall(const QDateTime &instant, const char *zone)
{
    return instant.toTimeZone(QTimeZone(zone)).toString(u"yyyy-MM-dd HH:mm");
}

// An arrived and acknowledged countdown at the wall time `local` in `zone`.
Event arrived(const char *local, const char *zone, const RecurrenceRule &repeat,
              bool allDay = false)
{
    const QString text = QString::fromLatin1(local);
    const QDateTime target(QDate::fromString(text.left(10), Qt::ISODate),
                           QTime::fromString(text.mid(11), u"HH:mm"), QTimeZone(zone));
    Event event = countdown("Repeat", target.toUTC(), allDay ? zone : nullptr);
    event.timeZone = QString::fromLatin1(zone);
    event.recurrence = repeat;
    event.reachedAt = event.targetDate;
    event.celebrationAcknowledged = true;
    return event;
}

} // namespace

class tst_Recurrence : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rollsToTheNextOccurrence_data();
    void rollsToTheNextOccurrence();
    void rollsKeepTheDayTheSeriesWasSetFor_data();
    void rollsKeepTheDayTheSeriesWasSetFor();
    void theRollIsOneChangeAndClearsTheArrival();
};

void tst_Recurrence::rollsToTheNextOccurrence_data()
{
    QTest::addColumn<Event>("event");
    QTest::addColumn<QString>("now"); // wall time in the event's zone
    QTest::addColumn<QString>("next"); // empty: not rolled
    QTest::addColumn<QString>("anchor");

    const char *berlin = "Europe/Berlin";
    // Berlin moves its clocks forward on 29 March 2026 and back on 25 October 2026.
    QTest::newRow("a daily 09:00 stays at 09:00 across the spring change")
        << arrived("2026-03-28 09:00", berlin, rule(Frequency::daily)) << "2026-03-28 09:01"
        << "2026-03-29 09:00"
        << "2026-03-28 09:00";
    QTest::newRow("a daily all-day countdown stays all-day across the autumn change")
        << arrived("2026-10-24 12:00", berlin, rule(Frequency::daily), true) << "2026-10-24 00:01"
        << "2026-10-25 12:00"
        << "2026-10-24 00:00";
    QTest::newRow("weekly on Monday and Thursday goes from Monday to Thursday")
        << arrived("2026-03-02 18:00", berlin,
                   rule(Frequency::weekly, 1, {Weekday::monday, Weekday::thursday}))
        << "2026-03-02 18:30"
        << "2026-03-05 18:00"
        << "2026-03-02 18:00";
    QTest::newRow("weekly without weekdays keeps the target's weekday")
        << arrived("2026-03-05 18:00", berlin, rule(Frequency::weekly)) << "2026-03-05 18:30"
        << "2026-03-12 18:00"
        << "2026-03-05 18:00";
    QTest::newRow("every second week skips a week")
        << arrived("2026-03-05 18:00", berlin, rule(Frequency::weekly, 2, {Weekday::thursday}))
        << "2026-03-05 18:30"
        << "2026-03-19 18:00"
        << "2026-03-05 18:00";
    Event moved = arrived("2026-03-04 18:00", berlin, rule(Frequency::weekly));
    moved.recurrence->seriesStart = moved.targetDate.addDays(-2); // the series began on a Monday
    QTest::newRow("a target the user moved off the series starts a new one")
        << moved << "2026-03-04 18:30"
        << "2026-03-11 18:00"
        << "2026-03-04 18:00";
    QTest::newRow("missed cycles while off roll straight to the next future date")
        << arrived("2026-03-01 09:00", berlin, rule(Frequency::daily)) << "2026-03-10 12:00"
        << "2026-03-11 09:00"
        << "2026-03-10 09:00";
    QTest::newRow("a series ending after one occurrence is not rolled") << arrived(
        "2026-03-01 09:00", berlin, rule(Frequency::daily, 1, {}, End::afterOccurrences(1)))
                                                                        << "2026-03-01 09:01"
                                                                        << ""
                                                                        << "";
    QTest::newRow("a series ending on a date rolls up to that day")
        << arrived("2026-03-01 09:00", berlin,
                   rule(Frequency::daily, 1, {}, End::onDate(at("2026-03-02T12:00:00Z"))))
        << "2026-03-01 09:01"
        << "2026-03-02 09:00"
        << "2026-03-01 09:00";
    QTest::newRow("an end date passed while off leaves the last arrival settled")
        << arrived("2026-03-01 09:00", berlin,
                   rule(Frequency::daily, 1, {}, End::onDate(at("2026-03-03T12:00:00Z"))))
        << "2026-03-09 09:00"
        << ""
        << "";
}

void tst_Recurrence::rollsToTheNextOccurrence()
{
    QFETCH(Event, event);
    QFETCH(QString, now);
    QFETCH(QString, next);
    QFETCH(QString, anchor);
    const QTimeZone zone(event.timeZone.toLatin1());
    const QDateTime instant(QDate::fromString(now.left(10), Qt::ISODate),
                            QTime::fromString(now.mid(11), u"HH:mm"), zone);

    const std::optional<EventPatch> patch = RecurrenceCoordinator::roll(event, instant);
    QCOMPARE(patch.has_value(), !next.isEmpty());
    if (!patch)
        return;
    QCOMPARE(wall(*patch->targetDate, "Europe/Berlin"), next);
    QCOMPARE(wall(**patch->cycleAnchor, "Europe/Berlin"), anchor);
    Event rolled = event;
    patch->applyTo(rolled);
    QCOMPARE(rolled.includeTime, event.includeTime);
}

void tst_Recurrence::rollsKeepTheDayTheSeriesWasSetFor_data()
{
    QTest::addColumn<Event>("event");
    QTest::addColumn<QStringList>("targets"); // after each roll, each rolled just after arriving

    QTest::newRow("monthly on the 31st: end of February, then the 31st again")
        << arrived("2026-01-31 08:00", "Europe/Istanbul", rule(Frequency::monthly))
        << QStringList {"2026-02-28 08:00", "2026-03-31 08:00", "2026-04-30 08:00",
                        "2026-05-31 08:00"};
    QTest::newRow("monthly on the 30th: 28 February, then the 30th")
        << arrived("2027-01-30 08:00", "Europe/Istanbul", rule(Frequency::monthly))
        << QStringList {"2027-02-28 08:00", "2027-03-30 08:00"};
    QTest::newRow("yearly on 29 February: the 28th in common years, the 29th in leap years")
        << arrived("2028-02-29 08:00", "Europe/Istanbul", rule(Frequency::yearly))
        << QStringList {"2029-02-28 08:00", "2030-02-28 08:00", "2031-02-28 08:00",
                        "2032-02-29 08:00"};
    QTest::newRow("yearly on 28 February stays on the 28th in leap years")
        << arrived("2027-02-28 08:00", "Europe/Istanbul", rule(Frequency::yearly))
        << QStringList {"2028-02-28 08:00", "2029-02-28 08:00"};
    QTest::newRow("after three occurrences the series ends")
        << arrived("2026-03-01 08:00", "Europe/Istanbul",
                   rule(Frequency::daily, 1, {}, End::afterOccurrences(3)))
        << QStringList {"2026-03-02 08:00", "2026-03-03 08:00", "ended"};
}

void tst_Recurrence::rollsKeepTheDayTheSeriesWasSetFor()
{
    QFETCH(Event, event);
    QFETCH(QStringList, targets);
    QStringList seen;
    for (qsizetype roll = 0; roll < targets.size(); ++roll) {
        const std::optional<EventPatch> patch =
            RecurrenceCoordinator::roll(event, event.targetDate.addSecs(60));
        if (!patch) {
            seen.append("ended");
            break;
        }
        patch->applyTo(event);
        seen.append(wall(event.targetDate, "Europe/Istanbul"));
        event.reachedAt = event.targetDate; // it arrives and is acknowledged again
        event.celebrationAcknowledged = true;
    }
    QCOMPARE(seen, targets);
}

void tst_Recurrence::theRollIsOneChangeAndClearsTheArrival()
{
    TempPathProvider paths;
    DiskFileAccess files;
    EventStore store(paths, files);
    Event weekly = arrived("2026-03-02 18:00", "Europe/Istanbul", rule(Frequency::weekly));
    Event oneOff = weekly;
    oneOff.id = QUuid::createUuid();
    oneOff.recurrence.reset();
    Event waiting = weekly; // arrived, its celebration not yet seen
    waiting.id = QUuid::createUuid();
    waiting.celebrationAcknowledged = false;
    for (const Event &event : {weekly, oneOff, waiting})
        QVERIFY(store.addEvent(event));
    FakeClock clock(weekly.targetDate.addSecs(3600));
    RecurrenceCoordinator coordinator(store, clock);
    QSignalSpy changes(&store, &EventStore::eventsChanged);

    QTRY_COMPARE(changes.count(), 1);
    const Event &rolled = *store.event(weekly.id);
    QCOMPARE(rolled.targetDate, weekly.targetDate.addDays(7));
    QCOMPARE(rolled.cycleAnchor, std::optional(weekly.targetDate));
    QVERIFY(!rolled.reachedAt);
    QVERIFY(!rolled.celebrationAcknowledged);
    QCOMPARE(rolled.recurrence->seriesStart, std::optional(weekly.targetDate));
    QCOMPARE(*EventStore(paths, files).event(weekly.id), rolled); // and so it is on disk
    QCOMPARE(*store.event(oneOff.id), oneOff);
    QCOMPARE(*store.event(waiting.id), waiting);
}

QTEST_GUILESS_MAIN(tst_Recurrence)
#include "tst_recurrence.moc"

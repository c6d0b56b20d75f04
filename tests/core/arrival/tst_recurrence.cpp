#include "arrival/RecurrenceCoordinator.h"
#include "storage/EventStore.h"
#include "support/FakeClock.h"
#include "support/ItemFixtures.h"

#include <QSignalSpy>
#include <QTest>

using namespace Fixture;
using Frequency = RecurrenceRule::Frequency;
using End = RecurrenceRule::End;

namespace {

// Berlin moves its clocks forward on 29 March 2026 and back on 25 October 2026.
const QTimeZone berlin("Europe/Berlin");

RecurrenceRule rule(Frequency frequency, qint64 interval = 1, QList<Weekday> weekdays = {},
                    std::optional<End> end = std::nullopt)
{
    return RecurrenceRule {frequency, weekdays, interval, end, std::nullopt};
}

QDateTime inBerlin(const QString &wall)
{
    return QDateTime(QDate::fromString(wall.left(10), Qt::ISODate),
                     QTime::fromString(wall.mid(11), u"HH:mm"), berlin);
}

QString wall(const QDateTime &instant)
{
    return instant.toTimeZone(berlin).toString(u"yyyy-MM-dd HH:mm");
}

// An arrived and acknowledged countdown at the wall time `local` in Berlin.
Event arrived(const char *local, const RecurrenceRule &repeat, bool allDay = false)
{
    Event event =
        countdown("Repeat", inBerlin(QString::fromLatin1(local)).toUTC(), allDay ? "" : nullptr);
    event.timeZone = QString::fromLatin1(berlin.id());
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
    void rollsToTheNextOccurrence_data()
    {
        QTest::addColumn<Event>("event");
        QTest::addColumn<QString>("now");
        QTest::addColumn<QString>("rolled"); // "next (cycle anchor)"; empty: not rolled

        QTest::newRow("a daily 09:00 stays at 09:00 across the spring change")
            << arrived("2026-03-28 09:00", rule(Frequency::daily)) << "2026-03-28 09:01"
            << "2026-03-29 09:00 (2026-03-28 09:00)";
        QTest::newRow("a daily all-day countdown stays all-day across the autumn change")
            << arrived("2026-10-24 12:00", rule(Frequency::daily), true) << "2026-10-24 00:01"
            << "2026-10-25 12:00 (2026-10-24 00:00)";
        QTest::newRow("weekly on Monday and Thursday goes from Monday to Thursday")
            << arrived("2026-03-02 18:00",
                       rule(Frequency::weekly, 1, {Weekday::monday, Weekday::thursday}))
            << "2026-03-02 18:30"
            << "2026-03-05 18:00 (2026-03-02 18:00)";
        QTest::newRow("every second week skips a week")
            << arrived("2026-03-05 18:00", rule(Frequency::weekly, 2, {Weekday::thursday}))
            << "2026-03-05 18:30"
            << "2026-03-19 18:00 (2026-03-05 18:00)";
        Event moved = arrived("2026-03-04 18:00", rule(Frequency::weekly));
        moved.recurrence->seriesStart = moved.targetDate.addDays(-2); // the series began Monday
        QTest::newRow("a target the user moved off the series starts a new one, on its weekday")
            << moved << "2026-03-04 18:30"
            << "2026-03-11 18:00 (2026-03-04 18:00)";
        QTest::newRow("missed cycles while off roll straight to the next future date")
            << arrived("2026-03-01 09:00", rule(Frequency::daily)) << "2026-03-10 12:00"
            << "2026-03-11 09:00 (2026-03-10 09:00)";
        const End endDate = End::onDate(at("2026-03-02T12:00:00Z"));
        QTest::newRow("a series ending on a date rolls up to that day")
            << arrived("2026-03-01 09:00", rule(Frequency::daily, 1, {}, endDate))
            << "2026-03-01 09:01"
            << "2026-03-02 09:00 (2026-03-01 09:00)";
        QTest::newRow("an end date passed while off leaves the last arrival settled")
            << arrived("2026-03-01 09:00", rule(Frequency::daily, 1, {}, endDate))
            << "2026-03-03 09:00"
            << "";
    }

    void rollsToTheNextOccurrence()
    {
        QFETCH(Event, event);
        QFETCH(QString, now);
        const std::optional<EventPatch> patch = RecurrenceCoordinator::roll(event, inBerlin(now));
        QTEST(patch ? QStringLiteral("%1 (%2)").arg(wall(*patch->targetDate),
                                                    wall(**patch->cycleAnchor))
                    : QString(),
              "rolled");
        Event rolled = event;
        if (patch)
            patch->applyTo(rolled);
        QCOMPARE(rolled.includeTime, event.includeTime);
    }

    void rollsKeepTheDayTheSeriesWasSetFor_data()
    {
        QTest::addColumn<Event>("event");
        QTest::addColumn<QStringList>("targets"); // after each roll, each just after arriving

        QTest::newRow("monthly on the 31st: end of February, then the 31st again")
            << arrived("2026-01-31 08:00", rule(Frequency::monthly))
            << QStringList {"2026-02-28 08:00", "2026-03-31 08:00", "2026-04-30 08:00",
                            "2026-05-31 08:00"};
        QTest::newRow("yearly on 29 February: the 28th in common years, the 29th in leap years")
            << arrived("2028-02-29 08:00", rule(Frequency::yearly))
            << QStringList {"2029-02-28 08:00", "2030-02-28 08:00", "2031-02-28 08:00",
                            "2032-02-29 08:00"};
        QTest::newRow("yearly on 28 February stays on the 28th in leap years")
            << arrived("2027-02-28 08:00", rule(Frequency::yearly))
            << QStringList {"2028-02-28 08:00", "2029-02-28 08:00"};
        QTest::newRow("after three occurrences the series ends")
            << arrived("2026-03-01 08:00", rule(Frequency::daily, 1, {}, End::afterOccurrences(3)))
            << QStringList {"2026-03-02 08:00", "2026-03-03 08:00", "ended"};
    }

    void rollsKeepTheDayTheSeriesWasSetFor()
    {
        QFETCH(Event, event);
        QFETCH(QStringList, targets);
        QStringList seen;
        while (seen.size() < targets.size()) {
            const std::optional<EventPatch> patch =
                RecurrenceCoordinator::roll(event, event.targetDate.addSecs(60));
            if (!patch) {
                seen.append("ended");
                break;
            }
            patch->applyTo(event);
            seen.append(wall(event.targetDate));
            event.reachedAt = event.targetDate; // it arrives and is acknowledged again
            event.celebrationAcknowledged = true;
        }
        QCOMPARE(seen, targets);
    }

    // The coordinator rolls only arrived, acknowledged series, in one change that is on disk.
    void theRollIsOneChangeAndClearsTheArrival()
    {
        TempPathProvider paths;
        DiskFileAccess files;
        EventStore store(paths, files);
        const Event weekly = arrived("2026-03-02 18:00", rule(Frequency::weekly));
        Event oneOff = arrived("2026-03-02 18:00", rule(Frequency::weekly));
        oneOff.recurrence.reset();
        Event waiting = arrived("2026-03-02 18:00", rule(Frequency::weekly));
        waiting.celebrationAcknowledged = false; // its celebration not yet seen
        for (const Event &event : {weekly, oneOff, waiting})
            QVERIFY(store.addEvent(event));
        FakeClock clock(weekly.targetDate.addSecs(3600));
        QSignalSpy changes(&store, &EventStore::eventsChanged);
        RecurrenceCoordinator coordinator(store, clock);

        QTRY_COMPARE(changes.count(), 1);
        Event expected = weekly;
        expected.targetDate = weekly.targetDate.addDays(7);
        expected.cycleAnchor = weekly.targetDate;
        expected.reachedAt.reset();
        expected.celebrationAcknowledged = false;
        expected.recurrence->seriesStart = weekly.targetDate;
        QCOMPARE(*EventStore(paths, files).event(weekly.id), expected);
        QCOMPARE(*store.event(weekly.id), expected);
        QCOMPARE(*store.event(oneOff.id), oneOff);
        QCOMPARE(*store.event(waiting.id), waiting);
    }
};

QTEST_GUILESS_MAIN(tst_Recurrence)
#include "tst_recurrence.moc"

#include "arrival/NoticeLog.h"
#include "arrival/ReminderScheduler.h"
#include "support/ArrivalWorld.h"

#include <QTest>

using namespace Fixture;

static const QDateTime start = at("2026-03-01T12:00:00Z");

// Reminders and milestones over a store and a calendar, with a notice log that outlives a
// scheduler the way the user defaults outlive a run of the app.
struct World : ArrivalWorld
{
    using ArrivalWorld::ArrivalWorld;
    // A new scheduler at `when`, as after a restart; it looks at the list at once.
    void restart(const QDateTime &when)
    {
        clock.set(when);
        scheduler = std::make_unique<ReminderScheduler>(registry, clock, notifier, log, locale);
        scheduler->runPass();
    }
    void passAt(const QDateTime &when)
    {
        clock.set(when);
        scheduler->runPass();
    }

    MemoryNoticeLog log;
    std::unique_ptr<ReminderScheduler> scheduler;
};

class tst_ReminderScheduler : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void remindersArePostedOncePerCycle_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QStringList>("steps"); // "pass MIN" or "restart MIN" after 12:00
        QTest::addColumn<QStringList>("bodies");

        // The dentist is at 13:00 with reminders 60 and 15 minutes ahead.
        QTest::newRow("each lead is posted at its moment")
            << "en" << QStringList {"pass 0", "pass 45"}
            << QStringList {"Dentist: In 1 hour", "Dentist: In 15 minutes"};
        QTest::newRow("a restart after a reminder does not repeat it")
            << "en" << QStringList {"pass 50", "restart 52", "restart 53"}
            << QStringList {"Dentist: In 10 minutes"};
        QTest::newRow("leads that fell due during sleep give one reminder on wake")
            << "en" << QStringList {"pass -5", "pass 58"} << QStringList {"Dentist: In 2 minutes"};
        QTest::newRow("nothing is posted on a wake after the target")
            << "en" << QStringList {"pass -5", "pass 61"} << QStringList();
        QTest::newRow("in Turkish")
            << "tr" << QStringList {"pass 45"} << QStringList {"Dentist: 15 dakika sonra"};
    }

    void remindersArePostedOncePerCycle()
    {
        QFETCH(QString, language);
        QFETCH(QStringList, steps);
        World w(language);
        Event dentist = countdown("Dentist", start.addSecs(3600));
        dentist.reminderLeadMinutes = {15, 60};
        QVERIFY(w.store.addEvent(dentist));
        w.restart(start.addSecs(-3600));
        QCOMPARE(w.scheduler->nextMoment(), std::optional(start));
        for (const QString &step : steps) {
            const QDateTime when = start.addSecs(step.section(' ', 1).toLongLong() * 60);
            step.startsWith("restart") ? w.restart(when) : w.passAt(when);
        }
        QTEST(w.notifier.bodies(), "bodies");
        for (const Notice &notice : std::as_const(w.notifier.posted)) {
            QCOMPARE(notice.identifier,
                     "tarrow.reminder." + dentist.id.toString(QUuid::WithoutBraces).toUpper());
            QCOMPARE(notice.item, std::optional(CountdownID::manual(dentist.id)));
        }
    }

    // The lead times are the series' own, laid over every occurrence.
    void calendarSeriesRemindWithTheirMeetingLink()
    {
        World w;
        CalendarReachSignals reach;
        reach.reminderLeadMinutes = {10};
        QVERIFY(w.store.setCalendarReach({"work", "standup"}, reach));
        CalendarOccurrence standup = occurrence("standup", "Standup", start.addSecs(600));
        standup.meetingURL = QUrl("https://meet.google.com/abc-defg-hij");
        const CalendarOccurrence tomorrow = occurrence("standup", "Standup", start.addDays(1));
        w.calendar.publish({standup, tomorrow});
        w.restart(start);
        w.passAt(start.addSecs(30));
        w.passAt(start.addDays(1).addSecs(-300));

        QCOMPARE(w.notifier.bodies(),
                 (QStringList {"Standup: In 10 minutes", "Standup: In 5 minutes"}));
        QCOMPARE(w.notifier.posted.constFirst().link, standup.meetingURL);
        QCOMPARE(w.notifier.posted.constLast().item,
                 std::optional(CountdownID::calendar(tomorrow.ref)));
    }

    void milestonesOfCountUps_data()
    {
        QTest::addColumn<QDateTime>("began");
        QTest::addColumn<QList<qint64>>("passesInDays"); // days after `start`
        QTest::addColumn<QStringList>("bodies");

        QTest::newRow("the hundredth day, once") << start.addDays(-99) << QList<qint64> {0, 1, 1, 2}
                                                 << QStringList {"Sober: It has been 100 days."};
        QTest::newRow("each month of the first year, then the year")
            << at("2025-12-01T12:00:00Z") << QList<qint64> {0, 31, 275}
            << QStringList {"Sober: It has been 3 months.", "Sober: It has been 4 months.",
                            "Sober: It has been a year."};
        QTest::newRow("a milestone long past when they are switched on is not announced")
            << start.addDays(-510) << QList<qint64> {0} << QStringList();
    }

    void milestonesOfCountUps()
    {
        QFETCH(QDateTime, began);
        QFETCH(QList<qint64>, passesInDays);
        World w;
        Event sober = countUp("Sober", began);
        sober.milestonesEnabled = true;
        QVERIFY(w.store.addEvent(sober));
        QVERIFY(w.store.addEvent(countUp("Quiet", began))); // milestones off
        w.restart(start);
        for (qint64 days : passesInDays)
            w.passAt(start.addDays(days));
        w.restart(w.clock.now()); // nothing is announced twice after a restart either
        QTEST(w.notifier.bodies(), "bodies");
        QVERIFY(w.scheduler->nextMoment() > w.clock.now());
    }
};

QTEST_GUILESS_MAIN(tst_ReminderScheduler)
#include "tst_reminderscheduler.moc"

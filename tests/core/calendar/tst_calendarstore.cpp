// The calendar store: which provider occurrences the list shows under the calendar settings and
// the kept series, what it marks (excluded from the automatic choice, previous occurrence), and
// how it reads: bursts coalesced into one read, a request during a read answered by one more,
// a provider that fails keeping its last occurrences, settings and kept series applied at once.
#include "calendar/CalendarProvider.h"
#include "calendar/CalendarStore.h"
#include "calendar/OccurrenceFilter.h"
#include "storage/EventStore.h"
#include "storage/SettingsStore.h"

#include "support/FakeClock.h"

#include <QPromise>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QDateTime now = QDateTime(QDate(2026, 3, 2), QTime(12, 0), Qt::UTC);

ProviderOccurrence occurrence(const QString &series, qint64 minutesFromNow, qint64 length = 30,
                              const QString &calendar = u"work"_s)
{
    ProviderOccurrence o;
    o.start = now.addSecs(minutesFromNow * 60);
    o.end = o.start.addSecs(length * 60);
    o.ref = {{calendar, series}, o.start};
    o.calendarID = calendar;
    o.title = series;
    o.timeZoneID = u"Europe/Istanbul"_s;
    return o;
}

// A provider that answers with what the test gives it, at once or when the test says so.
class ListProvider final : public CalendarProvider
{
    Q_OBJECT
public:
    std::optional<QList<ProviderOccurrence>> answer {QList<ProviderOccurrence>()}; // none: fails
    bool holdAnswers = false;
    int reads = 0;

    QList<CalendarInfo> calendars() const override
    {
        CalendarInfo work;
        work.id = u"work"_s;
        return {work};
    }
    QFuture<QList<ProviderOccurrence>> occurrences(const OccurrenceQuery &) override
    {
        ++reads;
        m_held.emplace_back().start();
        QFuture<QList<ProviderOccurrence>> future = m_held.back().future();
        if (!holdAnswers)
            releaseHeld();
        return future;
    }
    void releaseHeld()
    {
        for (QPromise<QList<ProviderOccurrence>> &promise : m_held) {
            if (answer)
                promise.addResult(*answer);
            else
                promise.future().cancel();
            promise.finish();
        }
        m_held.clear();
    }
    void announceChange() { Q_EMIT changed(); }

private:
    std::vector<QPromise<QList<ProviderOccurrence>>> m_held;
};

// Titles as the list shows them, marked when left out of the automatic choice, with the start of
// the series' previous occurrence in minutes from now.
QStringList titles(const QList<CalendarOccurrence> &list)
{
    QStringList out;
    for (const CalendarOccurrence &o : list) {
        out.append(o.title + (o.excludedFromAutomatic ? u" (not automatic)"_s : QString())
                   + (o.previousOccurrenceStart
                          ? u" after %1m"_s.arg(now.secsTo(*o.previousOccurrenceStart) / 60)
                          : QString()));
    }
    return out;
}

} // namespace

class TestCalendarStore : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void filterRules_data();
    void filterRules();
    void coalescesBurstsAndRereadsAfterARead();
    void aFailingProviderKeepsWhatItHad();
    void settingsAndKeptSeriesApplyAtOnce();
};

void TestCalendarStore::filterRules_data()
{
    QTest::addColumn<QList<ProviderOccurrence>>("read");
    QTest::addColumn<CalendarSettings>("settings");
    QTest::addColumn<bool>("kept");
    QTest::addColumn<QStringList>("shown");

    const CalendarSettings defaults;
    ProviderOccurrence declined = occurrence(u"declined"_s, 60);
    declined.participation = CalendarParticipation::declined;
    ProviderOccurrence cancelled = occurrence(u"cancelled"_s, 60);
    cancelled.isCancelled = true;
    ProviderOccurrence allDay = occurrence(u"all-day"_s, 600, 24 * 60);
    allDay.isAllDay = true;
    const ProviderOccurrence other = occurrence(u"other calendar"_s, 60, 30, u"home"_s);
    CalendarSettings showDeclined, showAllDay, homeOff, twoDays;
    showDeclined.skipDeclined = false;
    showAllDay.includeAllDay = true;
    homeOff.disabledCalendarIDs = {u"home"_s};
    twoDays.horizonDays = 2;
    ProviderOccurrence cancelledYesterday = occurrence(u"weekly"_s, -24 * 60);
    cancelledYesterday.isCancelled = true;

    QTest::newRow("ended, under way, upcoming: all but the ended one")
        << QList {occurrence(u"ended"_s, -60, 30), occurrence(u"under way"_s, -10, 30),
                  occurrence(u"upcoming"_s, 10)}
        << defaults << false << QStringList {u"under way"_s, u"upcoming"_s};
    QTest::newRow("past the horizon")
        << QList {occurrence(u"tomorrow"_s, 24 * 60), occurrence(u"in three days"_s, 3 * 24 * 60)}
        << twoDays << false << QStringList {u"tomorrow"_s};
    QTest::newRow("declined, skipped by default")
        << QList {declined} << defaults << false << QStringList {};
    QTest::newRow("declined, shown when asked, never chosen automatically")
        << QList {declined} << showDeclined << false << QStringList {u"declined (not automatic)"_s};
    QTest::newRow("declined, skipped even when kept")
        << QList {declined} << defaults << true << QStringList {};
    QTest::newRow("cancelled, never shown")
        << QList {cancelled} << showDeclined << true << QStringList {};
    QTest::newRow("all-day, left out by default")
        << QList {allDay} << defaults << false << QStringList {};
    QTest::newRow("all-day, shown when asked, never chosen automatically")
        << QList {allDay} << showAllDay << false << QStringList {u"all-day (not automatic)"_s};
    QTest::newRow("all-day, shown when kept")
        << QList {allDay} << defaults << true << QStringList {u"all-day (not automatic)"_s};
    QTest::newRow("a switched-off calendar") << QList {other} << homeOff << false << QStringList {};
    QTest::newRow("a switched-off calendar's kept series")
        << QList {other} << homeOff << true << QStringList {u"other calendar"_s};
    QTest::newRow("a series' previous occurrence is the last one not cancelled")
        << QList {occurrence(u"weekly"_s, 60), cancelledYesterday,
                  occurrence(u"weekly"_s, -7 * 24 * 60)}
        << defaults << false << QStringList {u"weekly after -10080m"_s};
}

void TestCalendarStore::filterRules()
{
    QFETCH(QList<ProviderOccurrence>, read);
    QFETCH(CalendarSettings, settings);
    QFETCH(bool, kept);
    QFETCH(QStringList, shown);
    QSet<CalendarSeriesRef> keptSeries;
    if (kept) {
        for (const ProviderOccurrence &o : read)
            keptSeries.insert(o.ref.series);
    }
    QCOMPARE(titles(OccurrenceFilter::apply(read, settings, keptSeries, now)), shown);
}

namespace {

struct World
{
    TempPathProvider paths;
    DiskFileAccess files;
    EventStore events {paths, files};
    SettingsStore settings {paths, files};
    FakeClock clock {now};
    ListProvider provider;
    CalendarStore store {{&provider}, settings, events, nullptr, clock};

    World() { store.setCoalescingDelay(0); }
    bool readOnce()
    {
        QSignalSpy finished(&store, &CalendarStore::readFinished);
        return finished.wait(2000);
    }
};

} // namespace

void TestCalendarStore::coalescesBurstsAndRereadsAfterARead()
{
    World w;
    w.provider.answer = {occurrence(u"stand-up"_s, 30)};
    QVERIFY(w.readOnce());
    QCOMPARE(titles(w.store.occurrences()), QStringList {u"stand-up"_s});
    QCOMPARE(w.provider.reads, 1);

    // Ten change signals in one turn of the event loop: one read.
    QSignalSpy changed(&w.store, &CalendarSource::occurrencesChanged);
    w.provider.answer->append(occurrence(u"review"_s, 90));
    for (int i = 0; i < 10; ++i)
        w.provider.announceChange();
    QVERIFY(w.readOnce());
    QCOMPARE(w.provider.reads, 2);
    QCOMPARE(changed.size(), 1);

    // A request while a read is under way: exactly one more read after it.
    w.provider.holdAnswers = true;
    w.store.refresh();
    QTRY_COMPARE(w.provider.reads, 3);
    QVERIFY(w.store.isReading());
    w.store.reread();
    w.store.reread();
    w.provider.holdAnswers = false;
    w.provider.releaseHeld();
    QTRY_COMPARE(w.provider.reads, 4);
    QTRY_VERIFY(w.store.isSettled());
    QCOMPARE(w.provider.reads, 4);
    // Nothing changed: nothing published.
    QCOMPARE(changed.size(), 1);
}

void TestCalendarStore::aFailingProviderKeepsWhatItHad()
{
    World w;
    w.provider.answer = {occurrence(u"stand-up"_s, 30)};
    QVERIFY(w.readOnce());
    w.provider.answer.reset();
    w.provider.announceChange();
    QVERIFY(w.readOnce());
    QCOMPARE(titles(w.store.occurrences()), QStringList {u"stand-up"_s});
}

void TestCalendarStore::settingsAndKeptSeriesApplyAtOnce()
{
    World w;
    ProviderOccurrence allDay = occurrence(u"holiday"_s, 600, 24 * 60);
    allDay.isAllDay = true;
    w.provider.answer = {occurrence(u"stand-up"_s, 30), allDay};
    QVERIFY(w.readOnce());
    QCOMPARE(titles(w.store.occurrences()), QStringList {u"stand-up"_s});

    // Showing all-day events filters again at once, without reading.
    Settings settings = w.settings.settings();
    settings.calendars.includeAllDay = true;
    w.settings.setSettings(settings);
    QCOMPARE(titles(w.store.occurrences()),
             (QStringList {u"stand-up"_s, u"holiday (not automatic)"_s}));
    QCOMPARE(w.provider.reads, 1);

    // Switching the calendar off keeps what the user kept.
    settings.calendars.includeAllDay = false;
    settings.calendars.disabledCalendarIDs = {u"work"_s};
    w.settings.setSettings(settings);
    QVERIFY(w.store.occurrences().isEmpty());
    QVERIFY(w.events.setSeriesKept(allDay.ref.series, true));
    QCOMPARE(titles(w.store.occurrences()), QStringList {u"holiday (not automatic)"_s});

    // A longer horizon needs a new read.
    settings.calendars.horizonDays = 30;
    w.settings.setSettings(settings);
    QVERIFY(w.readOnce());
    QCOMPARE(w.provider.reads, 2);
}

QTEST_GUILESS_MAIN(TestCalendarStore)
#include "tst_calendarstore.moc"

// The calendar store: which occurrences the list shows and how it marks them, reads coalesced and
// repeated when asked during a read, a failed read keeping the list, settings applied at once.
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

// Half an hour of `series`; one named "declined", "cancelled" or "all-day" is one.
ProviderOccurrence occurrence(const QString &series, qint64 minutesFromNow,
                              const QString &calendar = u"work"_s)
{
    ProviderOccurrence o;
    o.start = now.addSecs(minutesFromNow * 60);
    o.isAllDay = series == u"all-day";
    o.end = o.start.addSecs(o.isAllDay ? 86400 : 1800);
    o.ref = {{calendar, series}, o.start};
    o.calendarID = calendar;
    o.title = series;
    o.timeZoneID = u"Europe/Istanbul"_s;
    o.isCancelled = series == u"cancelled";
    if (series == u"declined")
        o.participation = CalendarParticipation::declined;
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
    void readsOnceABurstOnceMoreAfterAReadAndKeepsWhatItHad();
    void settingsAndKeptSeriesApplyAtOnce();
};

void TestCalendarStore::filterRules_data()
{
    QTest::addColumn<QList<ProviderOccurrence>>("read");
    QTest::addColumn<QString>("settings"); // "show declined", "show all-day", "home off", "2 days"
    QTest::addColumn<bool>("kept");
    QTest::addColumn<QStringList>("shown");
    const auto row = [](const char *name, const QList<ProviderOccurrence> &read,
                        const char *settings, bool kept, const QStringList &shown) {
        QTest::newRow(name) << read << QString::fromLatin1(settings) << kept << shown;
    };
    const ProviderOccurrence declined = occurrence(u"declined"_s, 60),
                             allDay = occurrence(u"all-day"_s, 600),
                             other = occurrence(u"other"_s, 60, u"home"_s);

    row("ended, under way, upcoming: all but the ended one",
        {occurrence(u"ended"_s, -60), occurrence(u"under way"_s, -10), occurrence(u"next"_s, 10)},
        "", false, {u"under way"_s, u"next"_s});
    row("past the horizon", {occurrence(u"tomorrow"_s, 24 * 60), occurrence(u"later"_s, 3 * 1440)},
        "2 days", false, {u"tomorrow"_s});
    row("declined, skipped by default", {declined}, "", false, {});
    row("declined, shown when asked, never chosen automatically", {declined}, "show declined",
        false, {u"declined (not automatic)"_s});
    row("declined, skipped even when kept", {declined}, "", true, {});
    row("cancelled, never shown", {occurrence(u"cancelled"_s, 60)}, "show declined", true, {});
    row("all-day, left out by default", {allDay}, "", false, {});
    row("all-day, shown when asked, never chosen automatically", {allDay}, "show all-day", false,
        {u"all-day (not automatic)"_s});
    row("all-day, shown when kept", {allDay}, "", true, {u"all-day (not automatic)"_s});
    row("a switched-off calendar", {other}, "home off", false, {});
    row("a switched-off calendar's kept series", {other}, "home off", true, {u"other"_s});
    ProviderOccurrence cancelledYesterday = occurrence(u"weekly"_s, -24 * 60);
    cancelledYesterday.isCancelled = true;
    row("a series' previous occurrence is the last one not cancelled",
        {occurrence(u"weekly"_s, 60), cancelledYesterday, occurrence(u"weekly"_s, -7 * 1440)}, "",
        false, {u"weekly after -10080m"_s});
}

void TestCalendarStore::filterRules()
{
    QFETCH(QList<ProviderOccurrence>, read);
    QFETCH(QString, settings);
    QFETCH(bool, kept);
    CalendarSettings calendars;
    calendars.skipDeclined = !settings.contains(u"show declined");
    calendars.includeAllDay = settings.contains(u"show all-day");
    if (settings.contains(u"home off"))
        calendars.disabledCalendarIDs = {u"home"_s};
    if (settings.contains(u"2 days"))
        calendars.horizonDays = 2;
    QSet<CalendarSeriesRef> keptSeries;
    for (const ProviderOccurrence &o : read) {
        if (kept)
            keptSeries.insert(o.ref.series);
    }
    QTEST(titles(OccurrenceFilter::apply(read, calendars, keptSeries, now)), "shown");
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

void TestCalendarStore::readsOnceABurstOnceMoreAfterAReadAndKeepsWhatItHad()
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

    // A read that fails keeps the last occurrences.
    w.provider.answer.reset();
    w.provider.announceChange();
    QVERIFY(w.readOnce());
    QCOMPARE(titles(w.store.occurrences()), (QStringList {u"stand-up"_s, u"review"_s}));
}

void TestCalendarStore::settingsAndKeptSeriesApplyAtOnce()
{
    World w;
    const ProviderOccurrence allDay = occurrence(u"all-day"_s, 600);
    w.provider.answer = {occurrence(u"stand-up"_s, 30), allDay};
    QVERIFY(w.readOnce());
    QCOMPARE(titles(w.store.occurrences()), QStringList {u"stand-up"_s});

    // Showing all-day events filters again at once, without reading.
    Settings settings = w.settings.settings();
    settings.calendars.includeAllDay = true;
    w.settings.setSettings(settings);
    QCOMPARE(titles(w.store.occurrences()),
             (QStringList {u"stand-up"_s, u"all-day (not automatic)"_s}));
    QCOMPARE(w.provider.reads, 1);

    // Switching the calendar off keeps what the user kept.
    settings.calendars.includeAllDay = false;
    settings.calendars.disabledCalendarIDs = {u"work"_s};
    w.settings.setSettings(settings);
    QVERIFY(w.store.occurrences().isEmpty());
    QVERIFY(w.events.setSeriesKept(allDay.ref.series, true));
    QCOMPARE(titles(w.store.occurrences()), QStringList {u"all-day (not automatic)"_s});
}

QTEST_GUILESS_MAIN(TestCalendarStore)
#include "tst_calendarstore.moc"

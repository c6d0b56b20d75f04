#include "parse/NaturalDateParser.h"
#include "storage/EventStore.h"
#include "storage/FileAccess.h"
#include "storage/PathProvider.h"
#include "support/FakeClock.h"
#include "ui/QuickEntryController.h"

#include <QSignalSpy>
#include <QTest>
#include <QThread>

using namespace Qt::StringLiterals;

namespace {

const QTimeZone kIstanbul("Europe/Istanbul");

std::optional<NaturalDateMatch> realParser(const QString &text, const QDateTime &now)
{
    return NaturalDateParser::parse(text, now, QTimeZone::systemTimeZone(), false);
}

// The field over a real store on disk, at 09:00 in Istanbul on 1 March 2026.
struct World
{
    TempPathProvider paths;
    DiskFileAccess files;
    EventStore store {paths, files};
    FakeClock clock {QDateTime(QDate(2026, 3, 1), QTime(9, 0), kIstanbul)};
    QuickEntryController entry;

    explicit World(QuickEntryController::Suggester suggester = realParser)
        : entry(store, clock, std::move(suggester))
    {
    }
};

} // namespace

class tst_QuickEntryController : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newestTextWinsOverSlowerEarlierAnswers()
    {
        const QDateTime early(QDate(2026, 4, 1), QTime(), Qt::UTC);
        const QDateTime late(QDate(2026, 5, 1), QTime(), Qt::UTC);
        // The answer for the first keystroke arrives well after the one for the second.
        World world([&](const QString &text, const QDateTime &) {
            if (text == u"a"_s) {
                QThread::msleep(400);
                return std::optional(NaturalDateMatch {early, false, u"a"_s});
            }
            return std::optional(NaturalDateMatch {late, false, u"ab"_s});
        });
        QSignalSpy settled(&world.entry, &QuickEntryController::suggestionSettled);
        world.entry.setText(u"a"_s);
        world.entry.setText(u"ab"_s);
        QTRY_COMPARE_WITH_TIMEOUT(settled.count(), 1, 2000);
        QCOMPARE(world.entry.suggestedDate(), late);
        QTest::qWait(600); // the slow, outdated answer comes back meanwhile
        QCOMPARE(world.entry.suggestedDate(), late);
        QCOMPARE(settled.count(), 1);
    }

    void showsTheParsersSuggestionWhileTyping()
    {
        World world;
        QSignalSpy settled(&world.entry, &QuickEntryController::suggestionSettled);
        // The answer may be applied at once or on a later turn of the event loop.
        world.entry.setText(u"Dentist tomorrow at 3pm"_s);
        QTRY_COMPARE_WITH_TIMEOUT(settled.count(), 1, 5000);
        QVERIFY(world.entry.hasSuggestion());
        QCOMPARE(world.entry.suggestedTitle(), u"Dentist"_s);
        QCOMPARE(world.entry.suggestedDate(),
                 QDateTime(QDate(2026, 3, 2), QTime(15, 0), kIstanbul));
        QVERIFY(world.entry.suggestionIncludesTime());

        world.entry.setText(u"Dentist"_s);
        QTRY_COMPARE_WITH_TIMEOUT(settled.count(), 2, 5000);
        QVERIFY(!world.entry.hasSuggestion());
    }

    void submitAddsACountdown_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("title"); // null: nothing is added
        QTest::addColumn<QDateTime>("target");
        QTest::addColumn<bool>("includeTime");

        QTest::newRow("A title with a date phrase counts down to that date, without the phrase")
            << u"Dentist tomorrow at 3pm"_s << u"Dentist"_s
            << QDateTime(QDate(2026, 3, 2), QTime(15, 0), kIstanbul) << true;
        QTest::newRow("A title without a date counts down to tomorrow, all day")
            << u"  Water the plants  "_s << u"Water the plants"_s
            << QDateTime(QDate(2026, 3, 2), QTime(0, 0), kIstanbul) << false;
        QTest::newRow("Blank text adds nothing") << u"   "_s << QString() << QDateTime() << false;
    }

    void submitAddsACountdown()
    {
        QFETCH(QString, typed);
        QFETCH(QString, title);
        QFETCH(QDateTime, target);
        QFETCH(bool, includeTime);

        World world;
        world.entry.setText(typed);
        // Before the worker answered: the field parses on the spot.
        QCOMPARE(world.entry.submit(), !title.isNull());
        if (title.isNull()) {
            QVERIFY(world.store.events().isEmpty());
            return;
        }
        QCOMPARE(world.store.events().size(), 1);
        const Event &event = world.store.events().first();
        QCOMPARE(event.title, title);
        QCOMPARE(event.targetDate, target.toUTC());
        QCOMPARE(event.includeTime, includeTime);
        QCOMPARE(event.createdAt, world.clock.now());
        QVERIFY(world.entry.text().isEmpty());
        QCOMPARE(EventStore(world.paths, world.files).events(), world.store.events());
    }
};

QTEST_GUILESS_MAIN(tst_QuickEntryController)
#include "tst_quickentrycontroller.moc"

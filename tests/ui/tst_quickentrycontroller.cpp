#include "parse/NaturalDateParser.h"
#include "storage/EventStore.h"
#include "storage/FileAccess.h"
#include "storage/PathProvider.h"
#include "support/FakeClock.h"
#include "ui/QuickEntryController.h"

#include <QSignalSpy>
#include <QTest>
#include <QThread>

class tst_QuickEntryController : public QObject
{
    Q_OBJECT

private:
    static QuickEntryController::Suggester realParser()
    {
        return [](const QString &text, const QDateTime &now) {
            return NaturalDateParser::parse(text, now, QTimeZone::systemTimeZone(), false);
        };
    }

private Q_SLOTS:
    void newestTextWinsOverSlowerEarlierAnswers()
    {
        TempPathProvider paths;
        DiskFileAccess files;
        EventStore store(paths, files);
        FakeClock clock;
        const QDateTime early = QDateTime(QDate(2026, 4, 1), QTime(), Qt::UTC);
        const QDateTime late = QDateTime(QDate(2026, 5, 1), QTime(), Qt::UTC);
        // The answer for the first keystroke arrives well after the one for the second.
        QuickEntryController entry(store, clock, [&](const QString &text, const QDateTime &) {
            if (text == QLatin1String("a")) {
                QThread::msleep(400);
                return std::optional<NaturalDateMatch>(
                    NaturalDateMatch {early, false, QStringLiteral("a")});
            }
            return std::optional<NaturalDateMatch>(
                NaturalDateMatch {late, false, QStringLiteral("ab")});
        });
        QSignalSpy settled(&entry, &QuickEntryController::suggestionSettled);
        entry.setText(QStringLiteral("a"));
        entry.setText(QStringLiteral("ab"));
        QTRY_COMPARE_WITH_TIMEOUT(settled.count(), 1, 2000);
        QCOMPARE(entry.suggestedDate(), late);
        QTest::qWait(600); // the slow, outdated answer comes back meanwhile
        QCOMPARE(entry.suggestedDate(), late);
        QCOMPARE(settled.count(), 1);
    }

    void showsTheParsersSuggestionWhileTyping()
    {
        TempPathProvider paths;
        DiskFileAccess files;
        EventStore store(paths, files);
        FakeClock clock(QDateTime(QDate(2026, 3, 1), QTime(9, 0), QTimeZone("Europe/Istanbul")));
        QuickEntryController entry(store, clock, realParser());
        QSignalSpy settled(&entry, &QuickEntryController::suggestionSettled);
        // The answer may be applied at once or on a later turn of the event loop.
        entry.setText(QStringLiteral("Dentist tomorrow at 3pm"));
        QTRY_COMPARE_WITH_TIMEOUT(settled.count(), 1, 5000);
        QVERIFY(entry.hasSuggestion());
        QCOMPARE(entry.suggestedTitle(), QStringLiteral("Dentist"));
        QCOMPARE(entry.suggestedDate(),
                 QDateTime(QDate(2026, 3, 2), QTime(15, 0), QTimeZone("Europe/Istanbul")));
        QVERIFY(entry.suggestionIncludesTime());

        entry.setText(QStringLiteral("Dentist"));
        QTRY_COMPARE_WITH_TIMEOUT(settled.count(), 2, 5000);
        QVERIFY(!entry.hasSuggestion());
    }

    void submitAddsACountdown_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QDateTime>("target");
        QTest::addColumn<bool>("includeTime");

        const QTimeZone istanbul("Europe/Istanbul");
        QTest::newRow("A title with a date phrase counts down to that date, without the phrase")
            << "Dentist tomorrow at 3pm"
            << "Dentist" << QDateTime(QDate(2026, 3, 2), QTime(15, 0), istanbul) << true;
        QTest::newRow("A title without a date counts down to tomorrow, all day")
            << "  Water the plants  "
            << "Water the plants" << QDateTime(QDate(2026, 3, 2), QTime(0, 0), istanbul) << false;
    }

    void submitAddsACountdown()
    {
        QFETCH(QString, typed);
        QFETCH(QString, title);
        QFETCH(QDateTime, target);
        QFETCH(bool, includeTime);

        TempPathProvider paths;
        DiskFileAccess files;
        EventStore store(paths, files);
        FakeClock clock(QDateTime(QDate(2026, 3, 1), QTime(9, 0), QTimeZone("Europe/Istanbul")));
        QuickEntryController entry(store, clock, realParser());
        entry.setText(typed);
        QVERIFY(entry.submit()); // before the worker answered: the field parses on the spot

        QCOMPARE(store.events().size(), 1);
        const Event &event = store.events().first();
        QCOMPARE(event.title, title);
        QCOMPARE(event.targetDate, target.toUTC());
        QCOMPARE(event.includeTime, includeTime);
        QCOMPARE(event.createdAt, clock.now());
        QVERIFY(entry.text().isEmpty());

        EventStore reopened(paths, files);
        QCOMPARE(reopened.events(), store.events());
    }

    void blankTextAddsNothing()
    {
        TempPathProvider paths;
        DiskFileAccess files;
        EventStore store(paths, files);
        FakeClock clock;
        QuickEntryController entry(store, clock, realParser());
        entry.setText(QStringLiteral("   "));
        QVERIFY(!entry.submit());
        QVERIFY(store.events().isEmpty());
    }
};

QTEST_GUILESS_MAIN(tst_QuickEntryController)
#include "tst_quickentrycontroller.moc"

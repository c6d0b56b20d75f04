#include "UiWorld.h"
#include "support/ItemFixtures.h"
#include "ui/EditorFields.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using Fixture::at;

namespace {

const QTimeZone kIstanbul("Europe/Istanbul");

// A store whose only countdown is "Dentist" on 3 March at 15:00 in Istanbul, being edited.
struct EditingDentist : UiWorld
{
    EditingDentist()
    {
        Event event = Fixture::countdown(u"Dentist"_s, at("2026-03-03T12:00:00Z"));
        event.notifyOnReach = true;
        dentist = add(event);
        navigator.editRow(rowOf(u"Dentist"_s));
    }
    Event dentist;
};

} // namespace

// The editor: new countdowns and edits saved as exactly the fields that changed, checks that
// say what is wrong, the suggestion from the title, and saves that fail without losing input.
class tst_EventEditorModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNewCountdownIsSavedWithEveryField()
    {
        UiWorld world;
        Settings defaults = world.settings.settings();
        defaults.newCountdownCelebrates = true;
        world.settings.setSettings(defaults);
        world.navigator.newCountdown();
        QCOMPARE(world.navigator.page(), u"editor"_s);
        EventEditorModel &editor = world.editor;
        editor.setTitle(u"  Exam "_s);
        editor.setDateText(u"6/14/2026"_s);
        editor.setAllDay(false);
        editor.setTimeText(u"9:30 AM"_s);
        editor.setTimeZone(u"Europe/Berlin"_s);
        editor.setRepeat(int(RecurrenceRule::Frequency::weekly));
        editor.toggleWeekday(int(Weekday::monday));
        editor.setRepeatEnd(1);
        editor.setRepeatCount(4);
        editor.addReminder(60);
        editor.addReminder(1440);
        editor.setSymbol(u"graduationcap.fill"_s);
        editor.setColor(u"teal"_s);
        editor.setNote(u"Room 4"_s);
        editor.setLink(u"https://uni.example.org/exam"_s);
        QCOMPARE(world.panelSymbol, u"graduationcap.fill"_s); // previewed in the panel
        QVERIFY(editor.save());
        QCOMPARE(world.navigator.page(), u"list"_s);
        QCOMPARE(world.panelSymbol, QString());

        const QList<Event> stored = world.eventsOnDisk();
        QCOMPARE(stored.size(), 1);
        const Event &exam = stored.first();
        RecurrenceRule weekly;
        weekly.frequency = RecurrenceRule::Frequency::weekly;
        weekly.weekdays = {Weekday::monday};
        weekly.end = RecurrenceRule::End::afterOccurrences(4);
        QCOMPARE(exam.title, u"Exam"_s);
        QCOMPARE(exam.targetDate,
                 QDateTime(QDate(2026, 6, 14), QTime(9, 30), QTimeZone("Europe/Berlin")));
        QVERIFY(exam.includeTime);
        QCOMPARE(exam.recurrence, std::optional(weekly));
        QCOMPARE(exam.reminderLeadMinutes, QList<qint64>({60, 1440}));
        QCOMPARE(exam.icon, std::optional(IconRef::named(u"graduationcap.fill"_s)));
        QCOMPARE(exam.color, std::optional(EventColor::teal));
        QCOMPARE(std::tuple(exam.note, exam.link),
                 std::tuple(std::optional(u"Room 4"_s),
                            std::optional(u"https://uni.example.org/exam"_s)));
        // The arrival switches new countdowns start with come from the settings.
        QCOMPARE(std::tuple(exam.notifyOnReach, exam.celebrationEnabled), std::tuple(true, true));
        QCOMPARE(exam.createdAt, world.clock.now());
    }

    void anEditChangesExactlyTheFieldsThatChanged_data()
    {
        QTest::addColumn<QString>("change");
        QTest::addColumn<QStringList>("changedFields");

        QTest::newRow("Nothing touched writes nothing") << QString() << QStringList();
        QTest::newRow("A new title") << u"title"_s << QStringList {u"title"_s};
        QTest::newRow("All day") << u"allDay"_s << QStringList {u"targetDate"_s, u"includeTime"_s};
        QTest::newRow("Another zone keeps the wall time")
            << u"zone"_s << QStringList {u"targetDate"_s, u"timeZone"_s};
        QTest::newRow("A note typed and cleared again") << u"note"_s << QStringList();
        QTest::newRow("A colour") << u"color"_s << QStringList {u"color"_s};
    }

    void anEditChangesExactlyTheFieldsThatChanged()
    {
        QFETCH(QString, change);
        QFETCH(QStringList, changedFields);
        EditingDentist world;
        EventEditorModel &editor = world.editor;
        if (change == u"title")
            editor.setTitle(u"Dentist (Dr. Aydın)"_s);
        else if (change == u"allDay")
            editor.setAllDay(true);
        else if (change == u"zone")
            editor.setTimeZone(u"Europe/London"_s);
        else if (change == u"note") {
            editor.setNote(u"bring the card"_s);
            editor.setNote(u""_s);
        } else if (change == u"color")
            editor.setColor(u"red"_s);
        QSignalSpy written(&world.store, &EventStore::eventsChanged);
        QVERIFY(editor.save());
        QCOMPARE(written.count(), changedFields.isEmpty() ? 0 : 1);
        const Event after = world.eventsOnDisk().first();
        const EventPatch patch = EventPatch::between(world.dentist, after);
        QStringList fields;
        if (patch.title)
            fields << u"title"_s;
        if (patch.targetDate)
            fields << u"targetDate"_s;
        if (patch.includeTime)
            fields << u"includeTime"_s;
        if (patch.timeZone)
            fields << u"timeZone"_s;
        if (patch.color)
            fields << u"color"_s;
        if (patch.note)
            fields << u"note"_s;
        QCOMPARE(fields, changedFields);
        QVERIFY(EventPatch::between(world.dentist, world.dentist).isEmpty());
        if (change == u"zone")
            QCOMPARE(after.targetDate,
                     QDateTime(QDate(2026, 3, 3), QTime(15, 0), QTimeZone("Europe/London")));
    }

    void checksSayWhatIsWrong_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QString>("message");

        QTest::newRow("An empty title")
            << u"title"_s << u"   "_s << u"Give the countdown a title."_s;
        QTest::newRow("A day that does not exist")
            << u"date"_s << u"2/30/2026"_s << u"This is not a date."_s;
        QTest::newRow("A moment that has passed")
            << u"date"_s << u"1/1/2026"_s << u"This moment has passed."_s;
        QTest::newRow("A time past midnight")
            << u"time"_s << u"25:61"_s << u"This is not a time of day"_s;
        QTest::newRow("A link with a space in it")
            << u"link"_s << u"see the website"_s << u"This is not a link."_s;
        QTest::newRow("A link to nowhere")
            << u"link"_s << u"https://"_s << u"This is not a link."_s;
    }

    void checksSayWhatIsWrong()
    {
        QFETCH(QString, field);
        QFETCH(QString, value);
        QFETCH(QString, message);
        EditingDentist world;
        EventEditorModel &editor = world.editor;
        editor.setAllDay(false);
        if (field == u"title")
            editor.setTitle(value);
        else if (field == u"date")
            editor.setDateText(value);
        else if (field == u"time")
            editor.setTimeText(value);
        else
            editor.setLink(value);
        QVERIFY(!editor.save());
        const QString shown =
            editor.titleError() + editor.dateError() + editor.timeError() + editor.linkError();
        QVERIFY2(shown.startsWith(message), qPrintable(shown));
        // Nothing was written and the editor still holds what was typed.
        QCOMPARE(world.eventsOnDisk().first(), world.dentist);
        QVERIFY(editor.isActive());
        QCOMPARE(editor.title() + editor.dateText() + editor.timeText() + editor.link(),
                 (field == u"title" ? value : u"Dentist"_s)
                     + (field == u"date" ? value : u"3/3/2026"_s)
                     + (field == u"time" ? value : u"3:00 PM"_s)
                     + (field == u"link" ? value : QString()));
    }

    void aFailedSaveKeepsTheInputAndShowsWhy()
    {
        EditingDentist world;
        world.editor.setTitle(u"Dentist, second visit"_s);
        world.files.failWrites = true;
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"Failed to save .*No space.*"_s));
        QVERIFY(!world.editor.save());
        QCOMPARE(world.editor.saveError(),
                 u"Could not save: No space left on device. Your changes are still here."_s);
        QCOMPARE(world.editor.title(), u"Dentist, second visit"_s);
        QCOMPARE(world.navigator.page(), u"editor"_s);
        world.files.failWrites = false;
        QVERIFY(world.editor.save());
        QCOMPARE(world.eventsOnDisk().first().title, u"Dentist, second visit"_s);
    }

    void theTitlesDateIsOfferedAndUsed()
    {
        UiWorld world;
        world.editor.beginNew();
        QSignalSpy settled(&world.editor.suggester(), &DateSuggester::settled);
        world.editor.setTitle(u"Flight to Izmir friday at 7:15"_s);
        QTRY_COMPARE(settled.count(), 1);
        QVERIFY(world.editor.hasSuggestion());
        QCOMPARE(world.editor.suggestionText(), u"Fri 6 Mar, 7:15 AM"_s);
        world.editor.useSuggestion();
        QCOMPARE(std::tuple(world.editor.title(), world.editor.dateText(), world.editor.allDay(),
                            world.editor.timeText()),
                 std::tuple(u"Flight to Izmir"_s, u"3/6/2026"_s, false, u"7:15 AM"_s));
        QVERIFY(!world.editor.hasSuggestion());
        QCOMPARE(world.editor.footerText(), u"4 days to go"_s);
        QTRY_COMPARE(settled.count(), 2); // the title that is left holds no date

        // Used once, the same date is not offered again; another date is, until dismissed.
        world.editor.setTitle(u"Flight to Izmir friday at 7:15"_s);
        QTRY_COMPARE(settled.count(), 3);
        QVERIFY(!world.editor.hasSuggestion());
        world.editor.setTitle(u"Flight to Izmir on 20.03"_s);
        QTRY_COMPARE(settled.count(), 4);
        QVERIFY(world.editor.hasSuggestion());
        world.editor.dismissSuggestion();
        QVERIFY(!world.editor.hasSuggestion());
        QCOMPARE(world.editor.dateText(), u"3/6/2026"_s);
    }

    void typingIsParsedOncePerPause()
    {
        UiWorld world;
        world.entry.suggester().setPause(150);
        QSignalSpy settled(&world.entry, &QuickEntryController::suggestionSettled);
        const QString title = u"Dentist tomorrow at 3pm"_s;
        for (qsizetype typed = 1; typed <= title.size(); ++typed)
            world.entry.setText(title.left(typed));
        QTRY_COMPARE(settled.count(), 1);
        QCOMPARE(world.entry.suggester().parseCount(), 1);
        QCOMPARE(world.entry.suggestedTitle(), u"Dentist"_s);
        // Submitted mid-pause, the field reads the date on the spot.
        world.entry.setText(u"Call mum at 9"_s);
        QVERIFY(world.entry.submit());
        QCOMPARE(world.eventsOnDisk().first().targetDate,
                 QDateTime(QDate(2026, 3, 2), QTime(9, 0), kIstanbul));
    }

    void aCountdownMovedAheadCountsAgain()
    {
        UiWorld world;
        const Event arrived = world.add(Fixture::reached(
            Fixture::countdown(u"Exam"_s, world.clock.now().addDays(-1)), true, true));
        world.editor.beginEdit(CountdownItem::manual(arrived));
        world.editor.setDateText(u"3/10/2026"_s);
        QVERIFY(world.editor.save());
        const Event after = world.eventsOnDisk().first();
        QCOMPARE(std::tuple(after.reachedAt.has_value(), after.celebrationAcknowledged),
                 std::tuple(false, false));
    }

    void aCalendarEventKeepsItsChoicesForTheSeries()
    {
        UiWorld world;
        CalendarOccurrence standup =
            Fixture::occurrence(u"standup"_s, u"Standup"_s, world.clock.now().addDays(1));
        world.calendar.publish({standup});
        world.navigator.editRow(world.rowOf(u"Standup"_s));
        QVERIFY(world.editor.isCalendar());
        world.editor.setSymbol(u"briefcase.fill"_s);
        world.editor.setNote(u"Agenda in the wiki"_s);
        world.editor.setNotifyOnReach(true);
        world.editor.addReminder(5);
        QVERIFY(world.editor.save());
        const EventStore stored(world.paths, world.disk);
        const CalendarSeriesRef series = standup.ref.series;
        QCOMPARE(stored.calendarIcons().value(series), IconRef::named(u"briefcase.fill"_s));
        QCOMPARE(stored.calendarAnnotations().value(series).note,
                 std::optional(u"Agenda in the wiki"_s));
        QCOMPARE(stored.calendarReach().value(series).notifyOnReach, true);
        QCOMPARE(stored.calendarReach().value(series).reminderLeadMinutes, QList<qint64>({5}));
    }

    void fieldsAreReadLikePeopleWriteThem_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("date");
        QTest::addColumn<QString>("time");
        QTest::addColumn<QDate>("expectedDate");
        QTest::addColumn<QTime>("expectedTime");

        QTest::newRow("German short forms")
            << u"de"_s << u"24.12.2026"_s << u"18:30"_s << QDate(2026, 12, 24) << QTime(18, 30);
        QTest::newRow("English short forms with the 12-hour clock")
            << u"en"_s << u"12/24/2026"_s << u"6:30 PM"_s << QDate(2026, 12, 24) << QTime(18, 30);
        QTest::newRow("ISO dates and 24-hour times anywhere")
            << u"fr"_s << u"2026-12-24"_s << u"18:30"_s << QDate(2026, 12, 24) << QTime(18, 30);
        QTest::newRow("Words the date parser understands")
            << u"es"_s << u"mañana"_s << u"3pm"_s << QDate(2026, 3, 2) << QTime(15, 0);
        QTest::newRow("Turkish words and a bare hour")
            << u"tr"_s << u"yarın"_s << u"9"_s << QDate(2026, 3, 2) << QTime(9, 0);
        QTest::newRow("Thirty-first of April is no date")
            << u"en"_s << u"04/31/2026"_s << u"24:00"_s << QDate() << QTime();
    }

    void fieldsAreReadLikePeopleWriteThem()
    {
        QFETCH(QString, language);
        QFETCH(QString, date);
        QFETCH(QString, time);
        QFETCH(QDate, expectedDate);
        QFETCH(QTime, expectedTime);
        UiWorld world(language);
        world.editor.beginNew();
        world.editor.setDateText(date);
        world.editor.setAllDay(false);
        world.editor.setTimeText(time);
        QCOMPARE(world.editor.date(), expectedDate);
        QCOMPARE(world.editor.timeError().isEmpty(), expectedTime.isValid());
        if (expectedDate.isValid())
            QCOMPARE(
                EditorFields::formatDate(expectedDate, world.locale.interfaceLocale()).isEmpty(),
                false);
    }

    void linksAreWhatCanBeOpened_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("link");

        QTest::newRow("A web address") << u"https://example.com/a?b=c"_s << true;
        QTest::newRow("A bare host and path") << u"example.com/tickets"_s << true;
        QTest::newRow("www without a scheme") << u"www.example.org"_s << true;
        QTest::newRow("A mail address as a link") << u"mailto:team@example.com"_s << true;
        QTest::newRow("Words") << u"the usual place"_s << false;
        QTest::newRow("A word without a domain") << u"localhost"_s << false;
        QTest::newRow("A scheme without a host") << u"https://"_s << false;
    }

    void linksAreWhatCanBeOpened()
    {
        QFETCH(QString, text);
        QFETCH(bool, link);
        QCOMPARE(EditorFields::isLink(text), link);
    }
};

QTEST_GUILESS_MAIN(tst_EventEditorModel)
#include "tst_eventeditormodel.moc"

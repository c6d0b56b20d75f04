#include "UiWorld.h"
#include "support/ItemFixtures.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using Fixture::at;

namespace {

// A list with one of everything, at 15:00 in Istanbul on 1 March 2026.
struct MixedList : UiWorld
{
    MixedList()
    {
        const QDateTime now = clock.now();
        add(Fixture::countdown(u"Dentist"_s, now.addDays(2)));
        add(Fixture::countdown(u"Launch"_s, now.addSecs(3 * 3600)));
        Event sober = Fixture::countUp(u"Sober"_s, at("2025-02-26T09:00:00Z"));
        sober.note = u"Café on the corner"_s;
        add(sober);
        add(Fixture::reached(Fixture::countdown(u"Concert"_s, now.addDays(-2))));
        Event gym = Fixture::reached(Fixture::countdown(u"Gym"_s, now.addDays(-1)));
        gym.recurrence = RecurrenceRule {};
        add(gym);
        CalendarOccurrence standup = Fixture::occurrence(u"s"_s, u"Standup"_s, now.addSecs(600));
        standup.meetingURL = QUrl(u"https://acme.zoom.us/j/1"_s);
        CalendarOccurrence review = Fixture::occurrence(u"r"_s, u"Review"_s, now.addSecs(-3600));
        CalendarOccurrence hidden = Fixture::occurrence(u"h"_s, u"Hidden"_s, now.addDays(1));
        calendar.publish({standup, review, hidden});
        store.setSeriesHidden(hidden.ref.series, true);
    }

    // "upcoming: A, B | since: C | past: D" as the rows stand.
    QString layout() const
    {
        QStringList sections;
        for (int row = 0; row < list.rowCount(); ++row) {
            const QModelIndex index = list.index(row);
            const QString title = index.data(CountdownListModel::TitleRole).toString();
            if (index.data(CountdownListModel::KindRole).toString() == u"header")
                sections.append(index.data(CountdownListModel::SectionRole).toString() + u": ");
            else
                sections.last() += (sections.last().endsWith(u": ") ? u""_s : u", "_s) + title;
        }
        return sections.join(u" | ");
    }
    QString text(const QString &title, int role) const
    {
        return list.index(rowOf(title)).data(role).toString();
    }
    bool flag(const QString &title, int role) const
    {
        return list.index(rowOf(title)).data(role).toBool();
    }
};

} // namespace

// The popup's list: scopes, sections, search, row texts and pin marks, and the keyboard's row.
class tst_CountdownListModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void scopesAndSections_data()
    {
        QTest::addColumn<CountdownListScope>("scope");
        QTest::addColumn<QString>("search");
        QTest::addColumn<bool>("pastExpanded");
        QTest::addColumn<QString>("layout");

        QTest::newRow("All: upcoming, counting up and past, hidden series left out")
            << CountdownListScope::all << QString() << true
            << u"upcoming: Standup, Launch, Dentist | since: Sober | past: Review, Concert, Gym"_s;
        QTest::newRow("A folded past section keeps its header")
            << CountdownListScope::all << QString() << false
            << u"upcoming: Standup, Launch, Dentist | since: Sober | past: "_s;
        QTest::newRow("Mine: only the user's own countdowns")
            << CountdownListScope::mine << QString() << true
            << u"upcoming: Launch, Dentist | since: Sober | past: Concert, Gym"_s;
        QTest::newRow("Calendar: only the calendar's events")
            << CountdownListScope::calendar << QString() << true
            << u"upcoming: Standup | past: Review"_s;
        QTest::newRow("Past: the past section alone, never folded")
            << CountdownListScope::past << QString() << false << u"past: Review, Concert, Gym"_s;
        QTest::newRow("A search finds notes without regard to accents")
            << CountdownListScope::all << u" cafe "_s << true << u"since: Sober"_s;
        QTest::newRow("A search opens a folded past section")
            << CountdownListScope::all << u"con"_s << false << u"past: Concert"_s;
        QTest::newRow("A search stays within the scope")
            << CountdownListScope::calendar << u"Launch"_s << true << QString();
    }

    void scopesAndSections()
    {
        QFETCH(CountdownListScope, scope);
        QFETCH(QString, search);
        QFETCH(bool, pastExpanded);
        QFETCH(QString, layout);

        MixedList world;
        QAbstractItemModelTester tester(&world.list,
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        world.list.setPastExpanded(pastExpanded);
        world.list.setScope(scope);
        world.list.setSearchText(search);
        QCOMPARE(world.layout(), layout);
        QCOMPARE(world.list.itemCount() == 0, layout.isEmpty());
    }

    void foldingThePastIsRemembered()
    {
        MixedList world;
        QSignalSpy removed(&world.list, &QAbstractItemModel::rowsRemoved);
        QSignalSpy reset(&world.list, &QAbstractItemModel::modelReset);
        world.list.setPastExpanded(false);
        // The rows go away one block at a time (the view animates them), without a reset.
        QCOMPARE(removed.count(), 1);
        QCOMPARE(reset.count(), 0);
        QVERIFY(!SettingsStore(world.paths, world.disk).settings().pastSectionExpanded);
        QCOMPARE(
            world.list.index(world.list.rowCount() - 1).data(CountdownListModel::CountRole).toInt(),
            3);
    }

    void rowsReadAsTheyShould_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("time");
        QTest::addColumn<QString>("secondary");
        QTest::addColumn<bool>("reached");

        // English is written the American way: 12-hour clock.
        QTest::newRow("A countdown: time left and its day and time in its own zone")
            << u"Dentist"_s << u"2d 0h"_s << u"Tue 3 Mar, 3:00 PM"_s << false;
        QTest::newRow("A count-up: a plus, years and days, and the day it started")
            << u"Sober"_s << u"+1y 3d"_s << u"Since 26 Feb 2025"_s << false;
        QTest::newRow("An arrived countdown: how long ago, shown muted")
            << u"Concert"_s << u"2d 0h ago"_s << u"Fri 27 Feb, 3:00 PM"_s << true;
        QTest::newRow("An arrived repeating countdown: just the mark")
            << u"Gym"_s << u"✓"_s << u"Sat 28 Feb, 3:00 PM"_s << true;
        QTest::newRow("A calendar event: its time and calendar")
            << u"Standup"_s << u"10m"_s << u"Sun 1 Mar, 3:10 PM · Work"_s << false;
        QTest::newRow("A calendar event under way is past")
            << u"Review"_s << u"1h 0m ago"_s << u"Sun 1 Mar, 2:00 PM · Work"_s << true;
    }

    void rowsReadAsTheyShould()
    {
        QFETCH(QString, title);
        QFETCH(QString, time);
        QFETCH(QString, secondary);
        QFETCH(bool, reached);

        MixedList world;
        QCOMPARE(std::tuple(world.text(title, CountdownListModel::TimeTextRole),
                            world.text(title, CountdownListModel::SecondaryRole),
                            world.flag(title, CountdownListModel::ReachedRole)),
                 std::tuple(time, secondary, reached));
    }

    void aMeetingAboutToStartOffersItsJoinButton()
    {
        MixedList world;
        QCOMPARE(world.text(u"Standup"_s, CountdownListModel::LinkLabelRole), u"Join Meeting"_s);
        QVERIFY(world.flag(u"Standup"_s, CountdownListModel::LinkProminentRole));
        QVERIFY(world.text(u"Dentist"_s, CountdownListModel::LinkRole).isEmpty());
        // Twenty minutes earlier it waits for hover or focus.
        world.clock.advance(-20 * 60);
        world.list.refreshTimes();
        QVERIFY(!world.flag(u"Standup"_s, CountdownListModel::LinkProminentRole));
    }

    void pinMarksAndTheNextUpCard()
    {
        MixedList world;
        // Nothing pinned: the meeting ten minutes away holds the panel by automatic choice.
        QCOMPARE(world.text(u"Standup"_s, CountdownListModel::PinStateRole), u"auto"_s);
        QCOMPARE(world.list.nextUp().value(u"title"_s).toString(), u"Standup"_s);
        QVERIFY(world.store.setPin(PinTarget::manual(world.store.events().at(1).id)));
        QCOMPARE(world.text(u"Dentist"_s, CountdownListModel::PinStateRole), u"explicit"_s);
        QCOMPARE(world.text(u"Standup"_s, CountdownListModel::PinStateRole), u"none"_s);
        QCOMPARE(world.list.nextUp().value(u"pinState"_s).toString(), u"explicit"_s);
    }

    void theCurrentRowSkipsHeadersAndOutlivesADeletion()
    {
        MixedList world;
        world.list.setScope(CountdownListScope::mine);
        QVERIFY(world.list.moveCurrent(1));
        QCOMPARE(world.list.currentItem()->title(), u"Launch"_s);
        QVERIFY(world.list.moveCurrent(2)); // over the "since" header
        QCOMPARE(world.list.currentItem()->title(), u"Sober"_s);
        world.list.moveCurrent(-9); // stops at the first item
        QCOMPARE(world.list.currentItem()->title(), u"Launch"_s);
        QVERIFY(!world.list.moveCurrent(-1));
        world.list.moveCurrent(1);
        QVERIFY(world.actions.remove(world.list.currentRow()));
        QCOMPARE(world.list.currentItem()->title(), u"Sober"_s);
    }

    void emptyStatesSayWhatIsMissing_data()
    {
        QTest::addColumn<CountdownListScope>("scope");
        QTest::addColumn<QString>("search");
        QTest::addColumn<QString>("title");

        QTest::newRow("Nothing at all")
            << CountdownListScope::all << QString() << u"No countdowns yet"_s;
        QTest::newRow("No calendar events")
            << CountdownListScope::calendar << QString() << u"No calendar events"_s;
        QTest::newRow("Nothing in the past")
            << CountdownListScope::past << QString() << u"Nothing in the past yet"_s;
        QTest::newRow("A search without matches")
            << CountdownListScope::all << u"xyz"_s << u"No matches"_s;
    }

    void emptyStatesSayWhatIsMissing()
    {
        QFETCH(CountdownListScope, scope);
        QFETCH(QString, search);
        QFETCH(QString, title);
        UiWorld world;
        world.list.setScope(scope);
        world.list.setSearchText(search);
        QCOMPARE(world.list.rowCount(), 0);
        QCOMPARE(world.list.emptyTitle(), title);
        QVERIFY(search.isEmpty() || world.list.emptyHint().contains(search));
    }

    void rowsFollowTheLanguage()
    {
        MixedList world;
        Settings turkish = world.settings.settings();
        turkish.language = LanguagePref::tr;
        world.settings.setSettings(turkish);
        QCOMPARE(world.list.index(0).data(CountdownListModel::TitleRole).toString(),
                 u"Yaklaşanlar"_s);
        QCOMPARE(world.text(u"Dentist"_s, CountdownListModel::TimeTextRole), u"2g 0sa"_s);
        QCOMPARE(world.text(u"Dentist"_s, CountdownListModel::SecondaryRole),
                 u"Sal 3 Mar, 15:00"_s);
    }
};

QTEST_GUILESS_MAIN(tst_CountdownListModel)
#include "tst_countdownlistmodel.moc"

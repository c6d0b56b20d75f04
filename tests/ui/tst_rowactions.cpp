#include "UiWorld.h"
#include "support/ItemFixtures.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QStringList actionsOf(const QVariantList &menu)
{
    QStringList actions;
    for (const QVariant &entry : menu)
        actions.append(entry.toMap().value(u"action"_s).toString());
    return actions;
}

QStringList titlesOf(const QList<Event> &events)
{
    QStringList titles;
    for (const Event &event : events)
        titles.append(event.title);
    return titles;
}

// Two countdowns of the user's, one that has arrived, and a weekly meeting from the calendar.
struct ActionWorld : UiWorld
{
    ActionWorld()
    {
        const QDateTime now = clock.now();
        Event withLink = Fixture::countdown(u"Dentist"_s, now.addDays(2));
        withLink.link = u"example.com/visit"_s;
        dentist = add(withLink);
        add(Fixture::countdown(u"Holiday"_s, now.addDays(30)));
        add(Fixture::reached(Fixture::countdown(u"Concert"_s, now.addDays(-2))));
        standup = Fixture::occurrence(u"standup"_s, u"Standup"_s, now.addDays(1));
        standup.meetingURL = QUrl(u"https://meet.google.com/abc"_s);
        calendar.publish({standup});
    }
    Event dentist;
    CalendarOccurrence standup;
};

} // namespace

// Pinning, deleting with undo, clearing the past and opening links, as the row menu and keys do.
class tst_RowActions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theMenuOffersWhatTheRowAllows_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<bool>("pinned");
        QTest::addColumn<QStringList>("actions");

        QTest::newRow("A countdown with a link")
            << u"Dentist"_s << false
            << QStringList {u"edit"_s, u"pin"_s, u"openLink"_s, u""_s, u"delete"_s};
        QTest::newRow("A pinned countdown offers to unpin it")
            << u"Holiday"_s << true << QStringList {u"edit"_s, u"unpin"_s, u""_s, u"delete"_s};
        QTest::newRow("A calendar event: pin it alone or the series, hide the series")
            << u"Standup"_s << false
            << QStringList {u"edit"_s, u"pinOccurrence"_s, u"pinSeries"_s, u"openLink"_s,
                            u""_s,     u"hideSeries"_s};
    }

    void theMenuOffersWhatTheRowAllows()
    {
        QFETCH(QString, title);
        QFETCH(bool, pinned);
        QFETCH(QStringList, actions);
        ActionWorld world;
        if (pinned)
            QVERIFY(world.actions.togglePin(world.rowOf(title)));
        QCOMPARE(actionsOf(world.actions.menuFor(world.rowOf(title))), actions);
    }

    void pinningIsWrittenAndUndone_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("action");

        QTest::newRow("A countdown is pinned by its id") << u"Dentist"_s << u"pin"_s;
        QTest::newRow("One calendar event alone") << u"Standup"_s << u"pinOccurrence"_s;
        QTest::newRow("Every event of the series") << u"Standup"_s << u"pinSeries"_s;
    }

    void pinningIsWrittenAndUndone()
    {
        QFETCH(QString, title);
        QFETCH(QString, action);
        ActionWorld world;
        const PinTarget pin = action == u"pin" ? PinTarget::manual(world.dentist.id)
            : action == u"pinOccurrence"       ? PinTarget::calendarOccurrence(world.standup.ref)
                                         : PinTarget::calendarSeries(world.standup.ref.series);
        QVERIFY(world.actions.trigger(world.rowOf(title), action));
        QCOMPARE(world.pinOnDisk(), std::optional(pin));
        QCOMPARE(
            world.list.index(world.rowOf(title)).data(CountdownListModel::PinStateRole).toString(),
            u"explicit"_s);
        QVERIFY(world.actions.trigger(world.rowOf(title), u"unpin"_s));
        QCOMPARE(world.pinOnDisk(), std::nullopt);
    }

    void aDeletionCanBeUndoneForAWhile()
    {
        ActionWorld world;
        QVERIFY(world.actions.togglePin(world.rowOf(u"Dentist"_s)));
        const QList<Event> before = world.eventsOnDisk();
        QVERIFY(world.actions.remove(world.rowOf(u"Dentist"_s)));
        QCOMPARE(titlesOf(world.eventsOnDisk()), QStringList({u"Holiday"_s, u"Concert"_s}));
        QCOMPARE(world.actions.undoText(), u"“Dentist” deleted"_s);
        world.actions.undo();
        // Back as it was, pinned again, and nothing left to undo.
        QCOMPARE(world.eventsOnDisk(), before);
        QCOMPARE(world.pinOnDisk(), std::optional(PinTarget::manual(before.at(0).id)));
        QVERIFY(!world.actions.canUndo());

        QVERIFY(world.actions.remove(world.rowOf(u"Holiday"_s)));
        QTRY_VERIFY_WITH_TIMEOUT(!world.actions.canUndo(), RowActions::undoMilliseconds + 2000);
        world.actions.undo();
        QCOMPARE(titlesOf(world.eventsOnDisk()), QStringList({u"Dentist"_s, u"Concert"_s}));
    }

    void calendarEventsAreHiddenNotDeleted()
    {
        ActionWorld world;
        QVERIFY(!world.actions.remove(world.rowOf(u"Standup"_s)));
        QVERIFY(world.actions.trigger(world.rowOf(u"Standup"_s), u"hideSeries"_s));
        QCOMPARE(world.rowOf(u"Standup"_s), -1);
        QVERIFY(EventStore(world.paths, world.disk)
                    .hiddenCalendarSeries()
                    .contains(world.standup.ref.series));
    }

    void clearingThePastIsUndoneAsOne()
    {
        ActionWorld world;
        world.add(Fixture::reached(Fixture::countdown(u"Exam"_s, world.clock.now().addDays(-9))));
        QVERIFY(world.actions.canClearPast());
        QVERIFY(world.actions.clearPast());
        QCOMPARE(titlesOf(world.eventsOnDisk()), QStringList({u"Dentist"_s, u"Holiday"_s}));
        QVERIFY(!world.actions.canClearPast());
        QCOMPARE(world.actions.undoText(), u"Removed past countdowns: 2"_s);
        world.actions.undo();
        QCOMPARE(world.eventsOnDisk().size(), 4);
    }

    void aFailedWriteChangesNothingAndSaysSo()
    {
        ActionWorld world;
        const QList<Event> before = world.eventsOnDisk();
        world.files.failWrites = true;
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"Failed to delete .*"_s));
        QVERIFY(!world.actions.remove(world.rowOf(u"Dentist"_s)));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"Failed to pin.*"_s));
        QVERIFY(!world.actions.togglePin(world.rowOf(u"Holiday"_s)));
        QCOMPARE(world.actions.errorText(), u"Could not save: No space left on device"_s);
        QCOMPARE(world.eventsOnDisk(), before);
        QVERIFY(world.rowOf(u"Dentist"_s) >= 0);
        QVERIFY(!world.actions.canUndo());
    }

    void linksGoToTheDesktop()
    {
        ActionWorld world;
        QVERIFY(world.actions.openLink(world.rowOf(u"Dentist"_s)));
        QVERIFY(world.actions.openLink(world.rowOf(u"Standup"_s)));
        QCOMPARE(world.opened,
                 QList<QUrl>({QUrl(u"http://example.com/visit"_s),
                              QUrl(u"https://meet.google.com/abc"_s)}));
        QVERIFY(!world.actions.openLink(world.rowOf(u"Holiday"_s))); // no link
        world.openerWorks = false;
        QVERIFY(!world.actions.openLink(world.rowOf(u"Dentist"_s)));
        QCOMPARE(world.actions.errorText(), u"The link could not be opened."_s);
    }

    void aLinkThatIsNotForTheWebIsNeverOffered()
    {
        ActionWorld world;
        Event script = Fixture::countdown(u"Script"_s, world.clock.now().addDays(3));
        script.link = u"file:///usr/bin/xterm"_s;
        world.add(script);
        QVERIFY(world.list.index(world.rowOf(u"Script"_s))
                    .data(CountdownListModel::LinkRole)
                    .toString()
                    .isEmpty());
        QVERIFY(!world.actions.openLink(world.rowOf(u"Script"_s)));
        QVERIFY(world.opened.isEmpty());
    }
};

QTEST_GUILESS_MAIN(tst_RowActions)
#include "tst_rowactions.moc"

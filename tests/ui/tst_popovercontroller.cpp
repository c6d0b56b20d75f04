#include "UiWorld.h"
#include "support/ItemFixtures.h"
#include "ui/AppearanceManager.h"
#include "ui/PopoverController.h"
#include "ui/PopupPlacement.h"
#include "ui/TableTranslator.h"

#include <QAbstractItemModelTester>
#include <QGuiApplication>
#include <QQuickItem>
#include <QQuickWindow>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QTimeZone kIstanbul("Europe/Istanbul");

// The popup over the real models (a store in a throw-away folder, the real parser), at 15:00 in
// Istanbul on 1 March 2026.
struct World : UiWorld
{
    AppearanceManager appearance {settings, QGuiApplication::palette()};
    OnboardingModel onboarding {entry};
    PopoverController popover {QVariantMap {{u"navigator"_s, QVariant::fromValue(&navigator)},
                                            {u"listModel"_s, QVariant::fromValue(&list)},
                                            {u"actions"_s, QVariant::fromValue(&actions)},
                                            {u"editor"_s, QVariant::fromValue(&editor)},
                                            {u"quickEntry"_s, QVariant::fromValue(&entry)},
                                            {u"zones"_s, QVariant::fromValue(&zones)},
                                            {u"onboarding"_s, QVariant::fromValue(&onboarding)},
                                            {u"settings"_s, QVariant::fromValue(&settingsModel)},
                                            {u"appearance"_s, QVariant::fromValue(&appearance)}}};

    World()
    {
        QObject::connect(&navigator, &PopupNavigator::closeRequested, &popover,
                         &PopoverController::close);
    }

    // Opens the popup beside an item; true once its window has the focus.
    bool openActive(const QRect &anchor = QRect(10, 0, 24, 24))
    {
        popover.open(anchor);
        return QTest::qWaitForWindowActive(popover.window());
    }
    QQuickItem *find(const QString &name) const
    {
        return popover.window()->findChild<QQuickItem *>(name);
    }
};

} // namespace

// The popup as the user meets it (offscreen), where it is placed and the entry field behind it.
class tst_PopoverController : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void opensBesideTheItemAndClosesWhenLeft()
    {
        World world;
        QSignalSpy shown(&world.popover, &PopoverController::shownChanged);
        const QRect anchor(700, 0, 24, 24);
        QVERIFY(world.openActive(anchor));
        QQuickWindow *window = world.popover.window();
        const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
        QCOMPARE(window->position(), PopupPlacement::topLeft(available, anchor, window->size()));
        QVERIFY(window->flags().testFlag(Qt::FramelessWindowHint));
        world.popover.open(); // a second request while open keeps it open
        QCOMPARE(shown.count(), 1);

        QTest::qWait(500); // past the moments in which focus that wanders off is taken back
        QWindow elsewhere;
        elsewhere.setGeometry(600, 400, 50, 50);
        elsewhere.show();
        elsewhere.requestActivate();
        QTRY_VERIFY(!world.popover.isShown());
        QVERIFY(world.openActive());
        QTest::keyClick(window, Qt::Key_Escape);
        QTRY_VERIFY(!world.popover.isShown());
    }

    // The popup's own texts come from the interface language's table and follow a switch.
    void textsFollowTheLanguage()
    {
        World world;
        TableTranslator translator(world.locale);
        QCoreApplication::installTranslator(&translator);
        world.popover.open();
        const auto texts = [&world] {
            QStringList found;
            for (const QQuickItem *item : world.popover.window()->findChildren<QQuickItem *>())
                found << item->property("text").toString();
            return found;
        };
        QVERIFY(texts().contains(u"New countdown (Ctrl+N)"_s)
                && texts().contains(u"No countdowns yet"_s));
        world.settingsModel.setLanguage(int(LanguagePref::de));
        world.popover.retranslate();
        QTRY_VERIFY(texts().contains(u"Neuer Countdown (Strg+N)"_s));
        QVERIFY2(texts().contains(u"Noch keine Countdowns"_s), qPrintable(texts().join(u'|')));
    }

    // Typing a title and Enter adds a countdown: it joins the store's others in the list, in the
    // registry's order, and its time moves on with the clock.
    void typedCountdownJoinsTheList()
    {
        World world;
        QAbstractItemModelTester tester(&world.list,
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        const QDateTime now = world.clock.now();
        QVERIFY(world.store.addEvent(Fixture::countdown(u"Holiday"_s, now.addDays(30))));
        QVERIFY(world.openActive());
        QQuickItem *input = world.find(u"quickEntryInput"_s);
        QVERIFY(input);
        input->forceActiveFocus();
        for (const char key : QByteArrayLiteral("Call mum"))
            QTest::keyClick(world.popover.window(), key);
        QTest::keyClick(world.popover.window(), Qt::Key_Return);
        QTRY_COMPARE(world.list.itemCount(), 2);
        QTRY_VERIFY(input->property("text").toString().isEmpty());
        const auto rows = [&world] {
            QStringList listed;
            for (int row = 0; row < world.list.rowCount(); ++row)
                for (int role : {CountdownListModel::TitleRole, CountdownListModel::TimeTextRole})
                    listed << world.list.index(row).data(role).toString();
            return listed.join(u' ').simplified();
        };
        // Without a date the countdown runs to tomorrow, 00:00 in Istanbul: 9 hours on.
        QCOMPARE(rows(), u"Upcoming Call mum 9h 0m Holiday 30d"_s);
        world.clock.advance(60);
        world.list.refreshTimes();
        QCOMPARE(rows(), u"Upcoming Call mum 8h 59m Holiday 29d"_s);
    }

    void showsTheParsersSuggestionWhileTyping()
    {
        World world;
        QSignalSpy settled(&world.entry, &QuickEntryController::suggestionSettled);
        // The answer may be applied at once or on a later turn of the event loop.
        world.entry.setText(u"Dentist tomorrow at 3pm"_s);
        QTRY_COMPARE_WITH_TIMEOUT(settled.count(), 1, 5000);
        QCOMPARE(std::tuple(world.entry.hasSuggestion(), world.entry.suggestedTitle(),
                            world.entry.suggestedDate(), world.entry.suggestionIncludesTime()),
                 std::tuple(true, u"Dentist"_s,
                            QDateTime(QDate(2026, 3, 2), QTime(15, 0), kIstanbul), true));

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
        // Before the worker answered: the field parses on the spot. What it adds is on disk as
        // `tarrow add` writes it, with the current schema version, and the field is emptied.
        QCOMPARE(world.entry.submit(), !title.isNull());
        using Stored = std::tuple<QString, QDateTime, bool, QDateTime, qint64>;
        QList<Stored> stored;
        const EventStore reread(world.paths, world.files);
        for (const Event &e : reread.events())
            stored.append({e.title, e.targetDate, e.includeTime, e.createdAt, e.schemaVersion});
        QList<Stored> expected;
        if (!title.isNull())
            expected.append({title, target.toUTC(), includeTime, world.clock.now(),
                             Event::CurrentSchemaVersion});
        QCOMPARE(stored, expected);
        QVERIFY(title.isNull() || world.entry.text().isEmpty());
    }

    // A closed popup gives its scene back after the release delay; the next open builds it
    // again, with what was being typed still there. Opened again in time, it keeps the scene.
    void releasesTheSceneOnceClosedForAWhile()
    {
        World world;
        world.popover.setReleaseDelay(std::chrono::milliseconds(300));
        QSignalSpy released(&world.popover, &PopoverController::sceneReleased);
        QVERIFY(world.openActive());
        world.entry.setText(u"Dentist tomorrow"_s);
        const QQuickWindow *first = world.popover.window();

        world.popover.close();
        QTest::qWait(100);
        QVERIFY(world.openActive());
        QCOMPARE(world.popover.window(), first);
        world.popover.close();
        QTRY_VERIFY(!world.popover.hasScene());
        QCOMPARE(released.size(), 1);
        QVERIFY(!world.popover.window());

        QVERIFY(world.openActive());
        QCOMPARE(world.find(u"quickEntryInput"_s)->property("text").toString(),
                 u"Dentist tomorrow"_s);
        QTest::qWait(500);
        QVERIFY(world.popover.hasScene()); // never while shown
    }

    // Opened by a link or a second launch before any click: at the end of the panel (here, with
    // no panel, the top right corner), never the middle; later, where the last click was.
    void opensWithoutAClickAtThePanelsEnd()
    {
        World world;
        world.popover.open();
        const QRect available = QGuiApplication::primaryScreen()->availableGeometry();
        QCOMPARE(world.popover.window()->geometry().topRight(),
                 QPoint(available.right(), available.top() + 1 + PopupPlacement::gap));
        const QRect item(300, 0, 24, 24);
        world.popover.open(item);
        world.popover.close();
        world.popover.open();
        QQuickWindow *window = world.popover.window();
        QCOMPARE(window->x(), item.center().x() - window->width() / 2);
    }

    void findsThePanelsEnd_data()
    {
        QTest::addColumn<QRect>("available");
        QTest::addColumn<QPoint>("topLeft");

        // A 1920×1080 screen; the popup is 360×480, the gap 4 px.
        QTest::newRow("Top panel: below its right end")
            << QRect(0, 32, 1920, 1048) << QPoint(1560, 36);
        QTest::newRow("Bottom panel: above its right end")
            << QRect(0, 0, 1920, 1040) << QPoint(1560, 556);
        QTest::newRow("Left panel: beside its bottom end")
            << QRect(48, 0, 1872, 1080) << QPoint(52, 600);
        QTest::newRow("Right panel: beside its bottom end")
            << QRect(0, 0, 1872, 1080) << QPoint(1508, 600);
        QTest::newRow("A bottom panel taller than a top one wins")
            << QRect(0, 24, 1920, 1016) << QPoint(1560, 556);
        QTest::newRow("No panel reserves space: the top right corner")
            << QRect(0, 0, 1920, 1080) << QPoint(1560, 5);
    }

    void findsThePanelsEnd()
    {
        QFETCH(QRect, available);
        QFETCH(QPoint, topLeft);
        const QRect screen(0, 0, 1920, 1080);
        const QSize popup(360, 480);
        QCOMPARE(PopupPlacement::topLeft(available, PopupPlacement::panelCorner(screen, available),
                                         popup),
                 topLeft);
    }

    void placesBesideTheItem_data()
    {
        QTest::addColumn<QRect>("available");
        QTest::addColumn<QRect>("anchor");
        QTest::addColumn<QPoint>("topLeft");

        // A 1920×1080 screen with a 32 px panel on one edge; the popup is 360×480, the gap 4 px.
        const QRect belowTopPanel(0, 32, 1920, 1048);

        QTest::newRow("Top panel: the popup hangs below the item, centred on it")
            << belowTopPanel << QRect(900, 4, 24, 24) << QPoint(731, 32);
        QTest::newRow("Bottom panel: the popup stands above the item, clear of the right edge")
            << QRect(0, 0, 1920, 1048) << QRect(1800, 1052, 24, 24) << QPoint(1560, 568);
        QTest::newRow("Left panel: the popup opens to the right of the item")
            << QRect(32, 0, 1888, 1080) << QRect(4, 500, 24, 24) << QPoint(32, 271);
        QTest::newRow("Right panel: the popup opens to the left of the item")
            << QRect(0, 0, 1888, 1080) << QRect(1892, 500, 24, 24) << QPoint(1528, 271);
        QTest::newRow("Item at the left end of a screen at negative coordinates: kept on it")
            << QRect(-1280, 0, 1280, 992) << QRect(-1270, 1000, 24, 24) << QPoint(-1280, 512);
        QTest::newRow("A pointer in mid-screen opens away from the nearest edge")
            << belowTopPanel << QRect(960, 600, 1, 1) << QPoint(780, 116);
    }

    void placesBesideTheItem()
    {
        QFETCH(QRect, available);
        QFETCH(QRect, anchor);
        QFETCH(QPoint, topLeft);
        QCOMPARE(PopupPlacement::topLeft(available, anchor, QSize(360, 480)), topLeft);
    }
};

QTEST_MAIN(tst_PopoverController)
#include "tst_popovercontroller.moc"

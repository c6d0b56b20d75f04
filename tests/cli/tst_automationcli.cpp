// The automation from a terminal: `tarrow create|next|time-until` and `tarrow export|import` on
// data folders without the app, `create|next|time-until` through a running app on a private
// session bus, and `tarrow status --follow` across an arrival and through the app.
#include "CliRun.h"
#include "cli/StatusFollower.h"
#include "storage/EventStore.h"
#include "support/FakeClock.h"
#include "support/FakeTickScheduler.h"
#include "support/Fixtures.h"
#include "support/ItemFixtures.h"
#include "support/PrivateSessionBus.h"
#include "support/TarrowProcess.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

// A countdown that celebrates its arrival, so it holds the panel once it has arrived.
Event celebrating(const QString &title, const QDateTime &target)
{
    Event event = Fixture::countdown(title, target);
    event.celebrationEnabled = true;
    return event;
}

} // namespace

class tst_AutomationCli : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void intentsAndBackupsActOnTheFolderWithoutTheApp();
    void followPrintsALineAtEachChange();
    void withTheAppRunningTheAppAnswers();

private:
    CliResult run(const QStringList &arguments, const QString &folder = {})
    {
        return runCli(folder.isEmpty() ? this->folder() : folder, arguments, m_clock);
    }
    QString folder() const { return m_dir->filePath(u"data"_s); }
    QByteArray eventFile() const { return readFile(folder() + u"/event.json"_s); }

    PrivateSessionBus m_bus;
    std::unique_ptr<QTemporaryDir> m_dir;
    FakeClock m_clock {Fixture::at("2026-11-22T10:00:00Z")}; // 13:00 in Istanbul
};

void tst_AutomationCli::initTestCase()
{
    // The command line asks the session bus whether an app runs: this test's own bus.
    if (!m_bus.start())
        QSKIP("dbus-daemon is not available");
    qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus.address().toUtf8());
}

void tst_AutomationCli::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
}

void tst_AutomationCli::intentsAndBackupsActOnTheFolderWithoutTheApp()
{
    QCOMPARE(run({"create", "Dentist", "2026-11-23T12:00"}).out,
             u"Created “Dentist”: 23h 0m to go.\n"_s);
    QCOMPARE(run({"create", "Trip", "2026-11-25"}).out, u"Created “Trip”: 2d 11h to go.\n"_s);
    QCOMPARE(run({"next"}).out, u"23h 0m until “Dentist”.\n"_s);
    QCOMPARE(run({"time-until", "trip"}).out, u"2d 11h until “Trip”.\n"_s);

    // Another folder takes in a backup of this one, once.
    const QString other = m_dir->filePath(u"other"_s);
    QCOMPARE(run({"export", m_dir->path()}).out, u"Exported 2 countdowns.\n"_s);
    const QString backup = m_dir->filePath(u"Tarrow Backup 2026-11-22.json"_s);
    QCOMPARE(run({"create", "Own", "2026-12-01"}, other).code, 0);
    QCOMPARE(run({"import", backup, "--merge"}, other).out, u"Added: 2 · Already there: 0\n"_s);
    QCOMPARE(run({"import", backup, "--merge"}, other).out, u"Added: 0 · Already there: 2\n"_s);
    QCOMPARE(run({"import", backup, "--replace"}, other).out, u"Added: 2 · Already there: 0\n"_s);
    QCOMPARE(run({"list"}, other).out, run({"list"}).out);

    // By id, until the countdown is gone; a title two countdowns carry names neither.
    const QString id = run({"list"}).out.section(u' ', 0, 0);
    QCOMPARE(run({"remove", id}).code, 0);
    QCOMPARE(run({"time-until", id}).err, u"tarrow: That countdown no longer exists.\n"_s);
    QCOMPARE(run({"create", "Trip", "2026-12-02"}).code, 0);
    QVERIFY(run({"time-until", "Trip"}).err.contains(u"2 countdowns are called \"Trip\""_s));

    // A refused countdown or import is said on stderr and changes nothing.
    const QByteArray before = eventFile();
    QCOMPARE(run({"create", QString(41, u'x'), "2026-12-01"}).err,
             u"tarrow: The title must be 1 to 40 characters long.\n"_s);
    QVERIFY(run({"import", backup}).err.contains(u"--merge or --replace"_s));
    QCOMPARE(eventFile(), before);
}

void tst_AutomationCli::followPrintsALineAtEachChange()
{
    const DefaultPathProvider paths = DefaultPathProvider::inFolder(folder());
    DiskFileAccess files;
    QVERIFY(EventStore(paths, files).addEvent(celebrating(u"Tea"_s, m_clock.now().addSecs(90))));
    const QByteArray written = eventFile();
    QString lines;
    QTextStream out(&lines);
    FakeTickScheduler scheduler;
    StatusFollower follower(folder(), m_clock, scheduler, AutomationClient(m_bus.connect(u"f"_s)),
                            false, out);
    follower.start();
    QVERIFY(!follower.followsApp());
    QCOMPARE(lines, u"Tea 1m\n"_s);

    while (m_clock.now() < Fixture::at("2026-11-22T10:01:31Z")) {
        m_clock.advance(scheduler.interval().count());
        scheduler.fire();
    }
    QStringList printed = lines.split(u'\n', Qt::SkipEmptyParts);
    QCOMPARE(printed.size(), 62); // 1m, each second of the last minute, the arrival
    QCOMPARE(printed.at(1), u"Tea 1:00"_s);
    QCOMPARE(printed.constLast(), u"Tea ✓"_s);
    QCOMPARE(eventFile(), written); // the arrival was stamped in memory only

    // A change of the folder on disk is read again.
    EventStore store(paths, files);
    QVERIFY(store.deleteEvent(store.events().constFirst().id));
    QVERIFY(store.addEvent(Fixture::countdown(u"Bell"_s, m_clock.now().addSecs(30))));
    QTRY_VERIFY2(lines.endsWith(u"Bell 0:30\n"_s), qPrintable(lines.right(40)));
}

void tst_AutomationCli::withTheAppRunningTheAppAnswers()
{
    TarrowProcess app(*m_dir);
    QProcessEnvironment env = app.process().processEnvironment();
    env.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, m_bus.address());
    env.insert(u"QT_LOGGING_RULES"_s, u"AutomationBus.debug=true"_s);
    app.process().setProcessEnvironment(env);
    app.start();
    QVERIFY(app.waitForLog(u"Offering automation as org.tarrow.Tarrow for "_s + folder()));

    QString lines;
    QTextStream out(&lines);
    FakeTickScheduler scheduler;
    StatusFollower follower(folder(), m_clock, scheduler, AutomationClient::sessionBus(), true,
                            out);
    follower.start();
    QVERIFY(follower.followsApp());
    QCOMPARE(QJsonDocument::fromJson(lines.toUtf8()).object().value(u"text"), u"New countdown"_s);

    QCOMPARE(run({"create", "Via app", "2040-01-01"}).out.section(u':', 0, 0),
             u"Created “Via app”"_s);
    QVERIFY(app.waitForLog(u"CreateCountdown asked by"_s));
    QVERIFY(run({"next"}).out.endsWith(u" until “Via app”.\n"_s));
    QVERIFY(run({"time-until", "via app"}).out.endsWith(u" until “Via app”.\n"_s));
    QVERIFY(app.waitForLog(u"ListCountdowns asked by"_s));
    QCOMPARE(run({"create", "", "2040-01-01"}).err,
             u"tarrow: The title must be 1 to 40 characters long.\n"_s);

    // The follower prints what the app now shows; when the app quits, it carries on alone.
    QTRY_VERIFY(lines.contains(u"\"text\":\"Via app "_s));
    app.process().terminate();
    QVERIFY(app.process().waitForFinished(5000));
    QTRY_VERIFY(!follower.followsApp());
    QVERIFY(QFile::exists(folder() + u"/event.json"_s));
}

QTEST_GUILESS_MAIN(tst_AutomationCli)
#include "tst_automationcli.moc"

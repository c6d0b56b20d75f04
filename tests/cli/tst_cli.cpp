// The tarrow command line against real data folders: what it prints, what it writes, and that a
// wrong argument, an unknown id or an unwritable folder changes nothing; `parse --jsonl`; the
// automation (`create|next|time-until`, `export|import`) without the app and through a running
// app on a private session bus; and `status --follow` across an arrival and through the app.
#include "cli/Cli.h"
#include "cli/StatusFollower.h"
#include "storage/EventStore.h"
#include "support/FakeClock.h"
#include "support/FakeTickScheduler.h"
#include "support/Fixtures.h"
#include "support/ItemFixtures.h"
#include "support/PrivateSessionBus.h"
#include "support/TarrowProcess.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

struct Result
{
    int code = 0;
    QString out, err;
};

// A countdown that celebrates its arrival, so it holds the panel once it has arrived.
Event celebrating(const QString &title, const QDateTime &target)
{
    Event event = Fixture::countdown(title, target);
    event.celebrationEnabled = true;
    return event;
}

} // namespace

class TestCli : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // The command line asks the session bus whether an app runs: this test's own bus.
        if (!m_bus.start())
            QSKIP("dbus-daemon is not available");
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus.address().toUtf8());
    }
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(QDir().mkpath(folder()));
        m_clock.set(Fixture::at("2026-11-22T10:00:00Z")); // 13:00 in Istanbul
    }
    void addListPinRemove();
    void calendarsJoinTheListAndTheStatus();
    void refusals_data();
    void refusals();
    void olderFoldersComeOutInTheCurrentForm_data();
    void olderFoldersComeOutInTheCurrentForm();
    void parseAnswersEveryInputLine();
    void titlesArePrintedWithTheirControlCharactersEscaped();
    void intentsAndBackupsActOnTheFolderWithoutTheApp();
    void followPrintsALineAtEachChange();
    void withTheAppRunningTheAppAnswers();

private:
    // `tarrow --data-dir FOLDER ARGUMENTS` (this test's folder unless given) with `input` on stdin.
    Result run(const QStringList &arguments, const QString &folder = {}, QString input = {})
    {
        Result result;
        QTextStream out(&result.out), err(&result.err), in(&input, QIODevice::ReadOnly);
        result.code = Cli::run(
            QStringList {"--data-dir", folder.isEmpty() ? this->folder() : folder} + arguments,
            m_clock, out, err, in);
        out.flush();
        err.flush();
        return result;
    }
    QString folder() const { return m_dir->filePath(u"data"_s); }
    QByteArray eventFile() const { return readFile(folder() + u"/event.json"_s); }

    PrivateSessionBus m_bus;
    std::unique_ptr<QTemporaryDir> m_dir;
    FakeClock m_clock;
};

void TestCli::addListPinRemove()
{
    const QString id =
        run({"add", "dentist tomorrow at 3pm", "--time-zone", "America/New_York"}).out.trimmed();
    QCOMPARE(run({"add", "Quit smoking", "--date", "2026-01-01T08:00", "--since"}).code, 0);
    QCOMPARE(run({"add", "Café ☕", "--date", "2026-12-01"}).code, 0);
    QCOMPARE(run({"pin", id}).code, 0);

    // Each event's date in its own zone; the ids printed first are the ones `pin` takes.
    QString listed = run({"list"}).out;
    QVERIFY(listed.startsWith(id.toUpper()));
    listed.replace(QRegularExpression(u"^[0-9A-F-]{36}"_s, QRegularExpression::MultilineOption),
                   u"ID"_s);
    QCOMPARE(listed,
             u"ID  2026-11-23 15:00  until  1d 10h  dentist  [pinned]\n"
             "ID  2026-12-01  until  8d  Café ☕\n"
             "ID  2026-01-01 08:00  since  +325d  Quit smoking\n"_s);
    // With --json, the records as stored.
    QCOMPARE(QJsonDocument::fromJson(run({"list", "--json"}).out.toUtf8()).array(),
             QJsonDocument::fromJson(eventFile())["events"].toArray());

    QCOMPARE(run({"unpin"}).code, 0);
    QCOMPARE(run({"remove", id}).code, 0);
    QVERIFY(!eventFile().contains("\"pin\"") && !eventFile().contains("dentist"));
}

void TestCli::calendarsJoinTheListAndTheStatus()
{
    // Half an hour after the clock a meeting, and an all-day event the list leaves out.
    QFile ics(m_dir->filePath("work.ics"));
    QVERIFY(ics.open(QIODevice::WriteOnly));
    ics.write("BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//t//EN\r\n"
              "BEGIN:VEVENT\r\nUID:review\r\nDTSTART;TZID=Europe/Istanbul:20261122T133000\r\n"
              "DTEND;TZID=Europe/Istanbul:20261122T140000\r\nSUMMARY:Design review\r\n"
              "LOCATION:https://acme.zoom.us/j/42\r\nEND:VEVENT\r\n"
              "BEGIN:VEVENT\r\nUID:fair\r\nDTSTART;VALUE=DATE:20261123\r\nSUMMARY:Fair\r\n"
              "END:VEVENT\r\nEND:VCALENDAR\r\n");
    ics.close();

    const QString id = run({"calendars", "add", ics.fileName(), "--title", "Work"}).out.trimmed();
    QCOMPARE(run({"calendars", "list"}).out,
             u"%1  Work  %2  on  ok, read 2026-11-22 13:00\n"_s.arg(id, ics.fileName()));
    QCOMPARE(run({"status"}).out.section(u'\n', 0, 1),
             u"holder: Design review\njoin: https://acme.zoom.us/j/42"_s);
    QCOMPARE(
        run({"list"}).out,
        u"Work  2026-11-22 13:30  until  30m  Design review  join https://acme.zoom.us/j/42\n"_s);

    QCOMPARE(run({"calendars", "remove", id.left(8)}).code, 0);
    QCOMPARE(run({"list"}).out, QString());
    QVERIFY(run({"calendars", "list"}).out.startsWith(u"No calendars."));
}

void TestCli::refusals_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("message");
    const auto row = [](const char *name, const QStringList &arguments, const char *message) {
        QTest::newRow(name) << arguments << QString::fromUtf8(message);
    };
    row("An impossible date", {"add", "x", "--date", "2026-02-30"}, "is not a date");
    row("An unknown time zone", {"add", "x", "--date", "2026-12-01", "--time-zone", "Mars/Olympus"},
        "unknown time zone");
    row("A title without a date", {"add", "just a title"}, "no date in \"just a title\"");
    row("A missing title", {"add"}, "usage: tarrow add TITLE");
    row("A malformed id", {"remove", "42"}, "is not an event id");
    row("An unknown id", {"pin", "6F1C9E0A-3B7D-4C2E-9A51-0D8E2F4B7C11"}, "No event with id");
    row("An unknown command", {"frobnicate"}, "unknown command");
    row("A chip of no size", {"render-chip", "--out", "FILE.png", "--square", "0"},
        "--square needs a side from 1 to 512 pixels");
    row("A date that is in the year 10000 in UTC",
        {"add", "far", "--date", "9999-12-31T23:30", "--time-zone", "America/New_York"},
        "\"9999-12-31T23:30\" is 10000-01-01T04:30:00.000Z in UTC, outside the years 0001 to "
        "9999");
    // A folder inside a regular file cannot be made, not even by root.
    row("A data folder that cannot be made",
        {"--data-dir", "FILE/tarrow", "add", "x", "--date", "2026-12-01"}, "could not save");
}

void TestCli::refusals()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, message);
    QVERIFY(QFile(m_dir->filePath("FILE")).open(QIODevice::WriteOnly));
    arguments.replaceInStrings(u"FILE/"_s, m_dir->filePath("FILE/"));
    QCOMPARE(run({"add", "Kept", "--date", "2026-12-01"}).code, 0);
    const QByteArray before = eventFile();
    const Result result = run(arguments);
    QCOMPARE(result.code, 1);
    QVERIFY2(result.err.startsWith(u"tarrow: ") && result.err.contains(message),
             qPrintable(result.err));
    QCOMPARE(result.err.count(u'\n'), 1); // one line
    QCOMPARE(eventFile(), before);
}

void TestCli::olderFoldersComeOutInTheCurrentForm_data()
{
    QTest::addColumn<QString>("events");
    QTest::addColumn<QString>("settings");
    QTest::addColumn<bool>("celebrate"); // every event's; notifying is on in both
    QTest::newRow("The reach switches come from the older settings")
        << "events/v1-legacy-single-event.json"
        << "settings/old-menubar-shows-remaining.json" << false;
    QTest::newRow("Without them in the settings, both switches are on")
        << "events/v2-pinned-event-id.json"
        << "settings/without-legacy-keys.json" << true;
}

void TestCli::olderFoldersComeOutInTheCurrentForm()
{
    QFETCH(QString, events);
    QFETCH(QString, settings);
    QFETCH(bool, celebrate);
    QVERIFY(installFixture(events, folder()) && installFixture(settings, folder()));
    QCOMPARE(run({"list"}).code, 0);

    const QJsonObject file = QJsonDocument::fromJson(eventFile()).object();
    QCOMPARE(file["schemaVersion"].toInt(), 10);
    QVERIFY(file.contains(u"pinnedEventID") && !file["events"].toArray().isEmpty());
    for (const QJsonValue event : file["events"].toArray()) {
        QCOMPARE(event["celebrationEnabled"].toBool(!celebrate), celebrate);
        QVERIFY(event["notifyOnReach"].toBool());
    }
    // The settings file is read, never rewritten by opening the folder.
    QCOMPARE(readFile(folder() + u"/settings.json"_s), fixtureBytes(settings));
}

void TestCli::parseAnswersEveryInputLine()
{
    // One answer per request line, in order, errors included; a blank line is no request;
    // quotes in a title are escaped.
    const Result result = run(
        {"parse", "--jsonl"}, {},
        uR"({"text":"\"Dentist\" – tomorrow, at 9","now":"2026-10-31T10:00:00Z","tz":"America/New_York"}
{"text": "broken"
{"text":"anniversaire le 1er mai","tz":"Europe/Paris","keepsPast":true}

{"text":"cita mañana","tz":"Atlantis/Nowhere"}
{"text":"buy milk"}
{"text":"Kino morgen um 20.15 Uhr","now":"yesterday"}
)"_s);
    QCOMPARE(
        result.out + result.err,
        uR"x({"date":"2026-11-01T14:00:00.000Z","includeTime":true,"cleanedTitle":"\"Dentist\""}
{"error":"not JSON: Malformed JSON at byte 17: unterminated object"}
{"date":"2026-04-30T22:00:00.000Z","includeTime":false,"cleanedTitle":"anniversaire"}
{"error":"unknown time zone \"Atlantis/Nowhere\" (use an IANA name such as Europe/Berlin)"}
{"match":null}
{"error":"\"yesterday\" is not an instant: write it as ISO 8601, for example 2026-12-24T18:30:00Z"}
)x"_s);
}

void TestCli::titlesArePrintedWithTheirControlCharactersEscaped()
{
    // A title may hold what a terminal would act on: a colour change, a new row, a reversal.
    const QString hostile = u"\x1b[31mred\x1b[0m\nID  2026-01-01  until  1d  forged\t\u202e!"_s;
    QCOMPARE(run({"add", hostile, "--date", "2026-12-01"}).code, 0);
    const QString listed = run({"list"}).out;
    QCOMPARE(listed.count(u'\n'), 1);
    QVERIFY2(
        listed.endsWith(u"  \\e[31mred\\e[0m\\nID  2026-01-01  until  1d  forged\\t\\u{202e}!\n"_s),
        qPrintable(listed));
    QVERIFY(run({"status", "--now", "2026-11-30T12:00:00Z"}).out.contains(u"holder: \\e[31mred"_s));
}

void TestCli::intentsAndBackupsActOnTheFolderWithoutTheApp()
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

void TestCli::followPrintsALineAtEachChange()
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

void TestCli::withTheAppRunningTheAppAnswers()
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

QTEST_GUILESS_MAIN(TestCli)
#include "tst_cli.moc"

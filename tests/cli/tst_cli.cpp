// The tarrow command line against real data folders: what it prints, what it writes, and that a
// wrong argument, an unknown id or an unwritable folder changes nothing. Also `parse` (one JSON
// line per text, or per request line with --jsonl) and `render-chip` (the menu bar chip as a PNG).
#include "cli/Cli.h"
#include "platform/tray/ChipRenderer.h"

#include "support/FakeClock.h"
#include "support/Fixtures.h"

#include <QImage>
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

} // namespace

class TestCli : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        m_clock.set(QDateTime(QDate(2026, 11, 22), QTime(10, 0), Qt::UTC));
    }
    void addListPinRemove();
    void calendarsJoinTheListAndTheStatus();
    void refusals_data();
    void refusals();
    void olderFoldersComeOutInTheCurrentForm_data();
    void olderFoldersComeOutInTheCurrentForm();
    void onlyCommandsGoToTheCommandLine_data();
    void onlyCommandsGoToTheCommandLine();
    void parseAnswersTheTextOrEveryInputLine();
    void titlesArePrintedWithTheirControlCharactersEscaped();
    void renderChipDrawsTheDataFolder();

private:
    // `tarrow --data-dir <a fresh folder> ARGUMENTS` with `input` on stdin.
    Result run(const QStringList &arguments, QString input = {});
    QByteArray eventFile() const { return readFile(m_dir->filePath("event.json")); }

    std::unique_ptr<QTemporaryDir> m_dir;
    FakeClock m_clock;
};

Result TestCli::run(const QStringList &arguments, QString input)
{
    Result result;
    QTextStream out(&result.out), err(&result.err), in(&input, QIODevice::ReadOnly);
    result.code =
        Cli::run(QStringList {"--data-dir", m_dir->path()} + arguments, m_clock, out, err, in);
    out.flush();
    err.flush();
    return result;
}

void TestCli::addListPinRemove()
{
    const Result added = run({"add", "dentist tomorrow at 3pm", "--time-zone", "America/New_York"});
    QCOMPARE(added.code, 0);
    const QString id = added.out.trimmed();
    QCOMPARE(run({"add", "Quit smoking", "--date", "2026-01-01T08:00", "--since"}).code, 0);
    QCOMPARE(run({"add", "Café ☕", "--date", "2026-12-01"}).code, 0);
    QCOMPARE(run({"pin", id}).code, 0);
    QVERIFY(eventFile().contains("\"pinnedEventID\""));

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
    // Half an hour after the clock a meeting; before it one the user declined; an all-day event.
    QFile ics(m_dir->filePath("work.ics"));
    QVERIFY(ics.open(QIODevice::WriteOnly));
    ics.write("BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//t//EN\r\n"
              "BEGIN:VEVENT\r\nUID:review\r\nDTSTART;TZID=Europe/Istanbul:20261122T133000\r\n"
              "DTEND;TZID=Europe/Istanbul:20261122T140000\r\nSUMMARY:Design review\r\n"
              "LOCATION:https://acme.zoom.us/j/42\r\nEND:VEVENT\r\n"
              "BEGIN:VEVENT\r\nUID:sync\r\nDTSTART:20261122T101500Z\r\nSUMMARY:Sync\r\n"
              "ATTENDEE;PARTSTAT=DECLINED:mailto:me@example.com\r\nEND:VEVENT\r\n"
              "BEGIN:VEVENT\r\nUID:fair\r\nDTSTART;VALUE=DATE:20261123\r\nSUMMARY:Fair\r\n"
              "END:VEVENT\r\nEND:VCALENDAR\r\n");
    ics.close();

    const Result added = run({"calendars", "add", ics.fileName(), "--title", "Work"});
    QCOMPARE(added.code, 0);
    QVERIFY2(added.err.isEmpty(), qPrintable(added.err));
    const QString id = added.out.trimmed();
    QCOMPARE(run({"calendars", "list"}).out,
             u"%1  Work  %2  on  ok, read 2026-11-22 13:00\n"_s.arg(id, ics.fileName()));
    const QJsonObject listed =
        QJsonDocument::fromJson(run({"calendars", "list", "--json"}).out.toUtf8()).object();
    QCOMPARE(listed["calendars"][0]["subscription"].toString(), id);
    QCOMPARE(listed["calendars"][0]["kind"].toString(), u"onThisMac"_s);
    QCOMPARE(listed["calendars"][0]["status"]["problem"].toString(), u"none"_s);

    // Until the user's address is known, the declined sync counts as anyone's meeting.
    QCOMPARE(run({"status"}).out.section(u'\n', 0, 0), u"holder: Sync"_s);
    QCOMPARE(run({"calendars", "addresses", "ME@example.com"}).out, u"me@example.com\n"_s);
    QCOMPARE(run({"status"}).out.section(u'\n', 0, 1),
             u"holder: Design review\njoin: https://acme.zoom.us/j/42"_s);
    QCOMPARE(
        run({"list"}).out,
        u"Work  2026-11-22 13:30  until  30m  Design review  join https://acme.zoom.us/j/42\n"_s);
    const QJsonArray json = QJsonDocument::fromJson(run({"list", "--json"}).out.toUtf8()).array();
    QCOMPARE(json.size(), 1);
    QCOMPARE(json[0]["kind"].toString(), u"calendarOccurrence"_s);
    QCOMPARE(json[0]["meetingURL"].toString(), u"https://acme.zoom.us/j/42"_s);

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
    row("A calendar that is neither a file nor a web link", {"calendars", "add", "ftp://h/c.ics"},
        "only iCalendar files and http, https or webcal links");
    row("An unknown calendar id", {"calendars", "remove", "abcd1234"}, "no added calendar");
    row("An address that is none", {"calendars", "addresses", "me at home"},
        "is not an e-mail address");
    row("A malformed instant to parse from", {"parse", "tomorrow", "--now", "next tuesday"},
        "\"next tuesday\" is not an instant");
    row("An unknown chip style", {"render-chip", "--out", "FILE/c.png", "--style", "huge"},
        "unknown style \"huge\"");
    row("A date that is in the year 10000 in UTC",
        {"add", "far", "--date", "9999-12-31T23:30", "--time-zone", "America/New_York"},
        "\"9999-12-31T23:30\" is 10000-01-01T04:30:00.000Z in UTC, outside the years 0001 to "
        "9999");
    row("A year before 0001", {"add", "old", "--date", "-0001-12-31T00:00:00Z"},
        "outside the years 0001 to 9999");
    row("An instant beyond 9999 to run the menu bar at",
        {"status", "--now", "9999-12-31T23:59:59-05:00"}, "outside the years 0001 to 9999");
    row("A title longer than 200 characters", {"add", QString(201, u'x'), "--date", "2026-12-01"},
        "the title is longer than 200 characters");
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
    QVERIFY(installFixture(events, m_dir->path()) && installFixture(settings, m_dir->path()));
    QCOMPARE(run({"list"}).code, 0);

    const QJsonObject file = QJsonDocument::fromJson(eventFile()).object();
    QCOMPARE(file["schemaVersion"].toInt(), 10);
    QVERIFY(file.contains(u"pinnedEventID") && !file["events"].toArray().isEmpty());
    for (const QJsonValue event : file["events"].toArray()) {
        QCOMPARE(event["celebrationEnabled"].toBool(!celebrate), celebrate);
        QVERIFY(event["notifyOnReach"].toBool());
    }
    // The settings file is read, never rewritten by opening the folder.
    QCOMPARE(readFile(m_dir->filePath("settings.json")), fixtureBytes(settings));
}

void TestCli::onlyCommandsGoToTheCommandLine_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<bool>("commandLine");
    const auto row = [](const char *name, const QStringList &arguments, bool commandLine) {
        QTest::newRow(name) << arguments << commandLine;
    };
    row("No arguments start the app", {}, false);
    row("A link starts the app", {"tarrow://open"}, false);
    row("A login launch starts the app", {"--autostart"}, false);
    row("A data folder alone starts the app", {"--data-dir", "/tmp/x"}, false);
    row("A command with a data folder", {"--data-dir", "/tmp/x", "list"}, true);
    row("A mistyped command is reported", {"lsit"}, true);
}

void TestCli::onlyCommandsGoToTheCommandLine()
{
    QFETCH(QStringList, arguments);
    QFETCH(bool, commandLine);
    QCOMPARE(Cli::wantsCommandLine(arguments), commandLine);
}

void TestCli::parseAnswersTheTextOrEveryInputLine()
{
    // A passed time stays on the day with --keeps-past; quotes in the title are escaped.
    QCOMPARE(run({"parse", "\"Dune\" at 9", "--now", "2026-06-10T10:00:00Z", "--time-zone",
                  "Europe/Berlin", "--keeps-past"})
                 .out,
             uR"({"date":"2026-06-10T07:00:00.000Z","includeTime":true,"cleanedTitle":"\"Dune\""}
)"_s);

    // One answer per request line, in order, errors included; a blank line is no request.
    m_clock.set(QDateTime(QDate(2026, 6, 3), QTime(10, 0), Qt::UTC));
    const Result result = run(
        {"parse", "--jsonl"},
        uR"({"text":"dentist – tomorrow, at 9","now":"2026-10-31T10:00:00Z","tz":"America/New_York"}
{"text": "broken"
{"text":"anniversaire le 1er mai","tz":"Europe/Paris","keepsPast":true}

{"text":"cita mañana","tz":"Atlantis/Nowhere"}
{"text":"buy milk"}
{"text":"Kino morgen um 20.15 Uhr","now":"yesterday"}
)"_s);
    QCOMPARE(result.out + result.err,
             uR"x({"date":"2026-11-01T14:00:00.000Z","includeTime":true,"cleanedTitle":"dentist"}
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
    // JSON output carries the title as it is.
    QCOMPARE(QJsonDocument::fromJson(run({"list", "--json"}).out.toUtf8())[0]["title"].toString(),
             hostile);
}

void TestCli::renderChipDrawsTheDataFolder()
{
    // In the settings' style (full), at the instant given, with twice the pixels.
    QCOMPARE(run({"add", "Dentist", "--date", "2026-03-02T13:01:01Z"}).code, 0);
    const QString png = m_dir->filePath("chip.png");
    QCOMPARE(
        run({"render-chip", "--out", png, "--now", "2026-03-01T12:00:00Z", "--scale", "2"}).out,
        u"Dentist, 1d 1h\n"_s);
    const MenubarChipPresentation shown {u"hourglass"_s, u"Dentist"_s, u"1d 1h"_s, 0.0};
    QCOMPARE(QImage(png).size(), QSize(int(ChipRenderer::layout(shown).width) * 2, 48));
}

QTEST_MAIN(TestCli)
#include "tst_cli.moc"

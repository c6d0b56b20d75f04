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
#include <QTemporaryDir>
#include <QTest>

namespace {

QDateTime at(const char *iso)
{
    return QDateTime::fromString(QString::fromLatin1(iso), Qt::ISODate);
}

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
        m_clock.set(at("2026-11-22T10:00:00Z"));
    }
    void addListPinRemove();
    void addTakesTheDateFromTheTitle();
    void refusals_data();
    void refusals();
    void olderFoldersComeOutInTheCurrentForm_data();
    void olderFoldersComeOutInTheCurrentForm();
    void onlyCommandsGoToTheCommandLine_data();
    void onlyCommandsGoToTheCommandLine();
    void parsePrintsOneLine_data();
    void parsePrintsOneLine();
    void parseAnswersEveryInputLineInOrder();
    void renderChipDrawsTheDataFolder_data();
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
    const Result added =
        run({"add", "Dentist", "--date", "2026-12-24T15:00", "--time-zone", "Europe/Berlin"});
    QCOMPARE(added.code, 0);
    const QString id = added.out.trimmed();
    QVERIFY(!QUuid::fromString(id).isNull());
    QCOMPARE(run({"add", "Quit smoking", "--date", "2026-01-01", "--since"}).code, 0);
    QCOMPARE(run({"add", "Café ☕", "--date", "2026-12-01"}).code, 0);
    QCOMPARE(run({"pin", id}).code, 0);
    QVERIFY(eventFile().contains("\"pinnedEventID\""));

    const QStringList lines = run({"list"}).out.split(u'\n', Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 3);
    QVERIFY(lines[0].endsWith(u"  Café ☕"));
    QVERIFY(lines[1].contains(u"  2026-12-24 15:00  until  ") && lines[1].endsWith(u"  [pinned]"));
    QVERIFY(lines[2].contains(u"  since  ") && lines[2].endsWith(u"  Quit smoking"));

    // With --json, the records as stored.
    const QJsonArray stored = QJsonDocument::fromJson(run({"list", "--json"}).out.toUtf8()).array();
    QCOMPARE(stored.size(), 3);
    QCOMPARE(stored[0]["title"].toString(), QStringLiteral("Café ☕"));
    QCOMPARE(stored[0]["includeTime"].toBool(true), false);
    QCOMPARE(stored[0]["createdAt"].toString(), QStringLiteral("2026-11-22T10:00:00.000Z"));

    QCOMPARE(run({"unpin"}).code, 0);
    QVERIFY(!eventFile().contains("\"pin\""));
    QCOMPARE(run({"remove", id}).code, 0);
    QVERIFY(!run({"list"}).out.contains(u"Dentist"));
}

void TestCli::addTakesTheDateFromTheTitle()
{
    QCOMPARE(run({"add", "dentist tomorrow at 3pm", "--time-zone", "America/New_York"}).code, 0);
    const QByteArray file = eventFile();
    QVERIFY(file.contains("\"title\": \"dentist\""));
    QVERIFY(file.contains("\"targetDate\": \"2026-11-23T20:00:00.000Z\"")); // 15:00 in New York
    QVERIFY(file.contains("\"includeTime\": true"));
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
    row("An unknown option", {"add", "x", "--colour", "red"}, "Unknown option");
    row("A missing title", {"add"}, "usage: tarrow add TITLE");
    row("A malformed id", {"remove", "42"}, "is not an event id");
    row("An unknown id", {"pin", "6F1C9E0A-3B7D-4C2E-9A51-0D8E2F4B7C11"}, "No event with id");
    row("An unknown command", {"frobnicate"}, "unknown command");
    row("A data folder option without a folder", {"list", "--data-dir"}, "needs a folder");
    // A folder inside a regular file cannot be made, not even by root.
    row("A data folder that cannot be made",
        {"--data-dir", "FILE/tarrow", "add", "x", "--date", "2026-12-01"}, "could not save");
}

void TestCli::refusals()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, message);
    QVERIFY(QFile(m_dir->filePath("FILE")).open(QIODevice::WriteOnly));
    arguments.replaceInStrings(QStringLiteral("FILE/"), m_dir->filePath("FILE/"));
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
    QTest::addColumn<bool>("celebrate");
    QTest::addColumn<bool>("notify");
    QTest::newRow("The reach switches come from the older settings")
        << "v1-legacy-single-event"
        << "old-menubar-shows-remaining" << false << true;
    QTest::newRow("Without them in the settings, both switches are on")
        << "v2-pinned-event-id"
        << "without-legacy-keys" << true << true;
}

void TestCli::olderFoldersComeOutInTheCurrentForm()
{
    QFETCH(QString, events);
    QFETCH(QString, settings);
    QFETCH(bool, celebrate);
    QFETCH(bool, notify);
    events = QStringLiteral("events/%1.json").arg(events);
    settings = QStringLiteral("settings/%1.json").arg(settings);
    QVERIFY(installFixture(events, m_dir->path()) && installFixture(settings, m_dir->path()));
    QCOMPARE(run({"list"}).code, 0);

    const QJsonObject file = QJsonDocument::fromJson(eventFile()).object();
    QCOMPARE(file["schemaVersion"].toInt(), 10);
    QVERIFY(file.contains(u"pinnedEventID"));
    QVERIFY(!file["events"].toArray().isEmpty());
    for (const QJsonValue event : file["events"].toArray()) {
        QCOMPARE(event["celebrationEnabled"].toBool(!celebrate), celebrate);
        QCOMPARE(event["notifyOnReach"].toBool(!notify), notify);
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
    row("Help", {"--help"}, true);
    row("A mistyped command is reported", {"lsit"}, true);
}

void TestCli::onlyCommandsGoToTheCommandLine()
{
    QFETCH(QStringList, arguments);
    QFETCH(bool, commandLine);
    QCOMPARE(Cli::wantsCommandLine(arguments), commandLine);
}

void TestCli::parsePrintsOneLine_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("line"); // on stdout, or the start of the one line on stderr
    const auto row = [](const char *name, const char *arguments, const char *line) {
        QTest::newRow(name) << QString::fromUtf8(arguments).split(u'|', Qt::SkipEmptyParts)
                            << QString::fromUtf8(line);
    };
    // The clock stands at Wednesday 3 June 2026, 10:00 UTC.
    row("a date and time in the zone, from the instant given",
        "dentist tomorrow at 3pm|--now|2026-06-10T10:00:00Z|--time-zone|Europe/Berlin",
        R"({"date":"2026-06-11T13:00:00.000Z","includeTime":true,"cleanedTitle":"dentist"})");
    row("the clock is now when --now is missing", "Abgabe übermorgen|--time-zone|Europe/Istanbul",
        R"({"date":"2026-06-04T21:00:00.000Z","includeTime":false,"cleanedTitle":"Abgabe"})");
    row("a passed time stays today with --keeps-past",
        "standup at 9|--time-zone|Europe/Berlin|--keeps-past",
        R"({"date":"2026-06-03T07:00:00.000Z","includeTime":true,"cleanedTitle":"standup"})");
    row("quotes in the title are escaped", "\"Dune\" première demain|--time-zone|UTC",
        "{\"date\":\"2026-06-04T00:00:00.000Z\",\"includeTime\":false,"
        "\"cleanedTitle\":\"\\\"Dune\\\" première\"}");
    row("no date phrase is a null match", "buy milk", R"({"match":null})");
    row("a malformed now", "tomorrow|--now|next tuesday",
        "tarrow: \"next tuesday\" is not an instant");
}

void TestCli::parsePrintsOneLine()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, line);
    m_clock.set(at("2026-06-03T10:00:00Z"));
    const Result result = run(QStringList {"parse"} + arguments);
    if (line.startsWith(u"tarrow: ")) {
        QCOMPARE(result.code, 1);
        QVERIFY2(result.err.startsWith(line) && result.err.count(u'\n') == 1,
                 qPrintable(result.err));
        QCOMPARE(result.out, QString());
    } else {
        QCOMPARE(result.code, 0);
        QCOMPARE(result.out, line + u'\n');
        QCOMPARE(result.err, QString());
    }
}

void TestCli::parseAnswersEveryInputLineInOrder()
{
    m_clock.set(at("2026-06-03T10:00:00Z"));
    const Result result = run(
        {"parse", "--jsonl"},
        uR"({"text":"dentist – tomorrow, at 9","now":"2026-10-31T10:00:00Z","tz":"America/New_York"}
{"text": "broken"
{"text":"anniversaire le 1er mai","tz":"Europe/Paris","keepsPast":true}

{"text":"cita mañana","tz":"Atlantis/Nowhere"}
{"text":"buy milk"}
{"text":"Kino morgen um 20.15 Uhr","now":"yesterday"}
)"_qs);
    QCOMPARE(result.code, 0);
    const QStringList lines = result.out.split(u'\n', Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 6);
    QCOMPARE(
        lines.at(0),
        uR"({"date":"2026-11-01T14:00:00.000Z","includeTime":true,"cleanedTitle":"dentist"})"_qs);
    QVERIFY(lines.at(1).startsWith(uR"({"error":"not JSON)"_qs));
    QCOMPARE(
        lines.at(2),
        uR"({"date":"2026-04-30T22:00:00.000Z","includeTime":false,"cleanedTitle":"anniversaire"})"_qs);
    QVERIFY(lines.at(3).startsWith(uR"({"error":"unknown time zone)"_qs));
    QCOMPARE(lines.at(4), uR"({"match":null})"_qs);
    QVERIFY(lines.at(5).contains(u"is not an instant"));
}

void TestCli::renderChipDrawsTheDataFolder_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("printed"); // empty: refused
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("detail");
    QTest::addColumn<int>("scale");
    const auto row = [](const char *name, const QStringList &options, const char *printed,
                        const char *title, const char *detail, int scale) {
        QTest::newRow(name) << options << QString::fromUtf8(printed) << QString::fromUtf8(title)
                            << QString::fromUtf8(detail) << scale;
    };
    row("The settings' full style by default", {}, "Dentist, 1d 1h", "Dentist", "1d 1h", 1);
    row("A style given on the command line wins", {"--style", "compact"}, "1d 1h", "", "1d 1h", 1);
    row("Another instant gives another time", {"--now", "2026-03-02T12:00:00Z"}, "Dentist, 1h 1m",
        "Dentist", "1h 1m", 1);
    row("A scale of two doubles the pixels", {"--scale", "2"}, "Dentist, 1d 1h", "Dentist", "1d 1h",
        2);
    row("An unknown style is refused", {"--style", "huge"}, "", "", "", 0);
}

void TestCli::renderChipDrawsTheDataFolder()
{
    QFETCH(QStringList, options);
    QFETCH(QString, printed);
    QFETCH(QString, title);
    QFETCH(QString, detail);
    QFETCH(int, scale);
    m_clock.set(at("2026-03-01T12:00:00Z"));
    QCOMPARE(run({"add", "Dentist", "--date", "2026-03-02T13:01:01Z"}).code, 0);
    const QString png = m_dir->filePath("chip.png");
    const Result result = run(QStringList {"render-chip", "--out", png} + options);
    if (printed.isEmpty()) {
        QCOMPARE(result.code, 1);
        QVERIFY(result.err.contains(options.last()));
        QVERIFY(!QFile::exists(png));
        return;
    }
    QCOMPARE(result.code, 0);
    QCOMPARE(result.out.trimmed(), printed);
    const MenubarChipPresentation expected {QStringLiteral("hourglass"), title, detail, 0.0};
    QCOMPARE(QImage(png).size(),
             QSize(int(ChipRenderer::layout(expected).width) * scale, 24 * scale));
}

QTEST_MAIN(TestCli)
#include "tst_cli.moc"

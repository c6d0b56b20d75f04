// The tarrow command line against real data folders: what it prints, what it writes, and that a
// wrong argument, an unknown id or an unwritable folder changes nothing.
#include "cli/Cli.h"

#include "support/FakeClock.h"
#include "support/Fixtures.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTest>

namespace {

struct Result
{
    int code = 0;
    QString out;
    QString err;
};

} // namespace

class TestCli : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void addListRemove();
    void pinAndUnpin();
    void addTakesTheDateFromTheTitle();
    void listJsonIsTheStoredRecords();
    void refusals_data();
    void refusals();
    void unwritableFolderReportsAndKeepsNothing();
    void olderFoldersComeOutInTheCurrentForm();
    void onlyCommandsGoToTheCommandLine_data();
    void onlyCommandsGoToTheCommandLine();

private:
    Result run(const QStringList &arguments, const QString &input = {});
    QString eventFile() const { return QDir(m_dir->path()).filePath(QStringLiteral("event.json")); }

    std::unique_ptr<QTemporaryDir> m_dir;
    FakeClock m_clock {QDateTime::fromString(QStringLiteral("2026-11-22T10:00:00Z"), Qt::ISODate)};
};

void TestCli::init()
{
    m_dir = std::make_unique<QTemporaryDir>();
}

Result TestCli::run(const QStringList &arguments, const QString &input)
{
    Result result;
    QString in = input;
    QTextStream out(&result.out), err(&result.err), inStream(&in);
    result.code = Cli::run(QStringList {QStringLiteral("--data-dir"), m_dir->path()} + arguments,
                           m_clock, out, err, inStream);
    out.flush();
    err.flush();
    return result;
}

void TestCli::addListRemove()
{
    const Result added =
        run({"add", "Dentist", "--date", "2026-12-24T15:00", "--time-zone", "Europe/Berlin"});
    QCOMPARE(added.code, 0);
    const QString id = added.out.trimmed();
    QVERIFY(!QUuid::fromString(id).isNull());
    QCOMPARE(run({"add", "Quit smoking", "--date", "2026-01-01", "--since"}).code, 0);
    QCOMPARE(run({"add", "Launch", "--date", "2026-12-01"}).code, 0);

    const Result listed = run({"list"});
    QCOMPARE(listed.code, 0);
    const QStringList lines = listed.out.split(u'\n', Qt::SkipEmptyParts);
    QCOMPARE(lines.size(), 3);
    QVERIFY(lines[0].contains(u"Launch"));
    QVERIFY(lines[1].contains(u"Dentist") && lines[1].contains(u"2026-12-24 15:00"));
    QVERIFY(lines[2].contains(u"Quit smoking"));

    QCOMPARE(run({"remove", id}).code, 0);
    QVERIFY(!run({"list"}).out.contains(u"Dentist"));
}

void TestCli::pinAndUnpin()
{
    const QString id = run({"add", "Exam", "--date", "2026-12-01T09:00:00Z"}).out.trimmed();
    QCOMPARE(run({"pin", id}).code, 0);
    QVERIFY(readFile(eventFile()).contains("\"pinnedEventID\""));
    QVERIFY(run({"list"}).out.contains(u"[pinned]"));
    QCOMPARE(run({"unpin"}).code, 0);
    QVERIFY(!readFile(eventFile()).contains("\"pin\""));
}

void TestCli::addTakesTheDateFromTheTitle()
{
    const Result added = run({"add", "dentist tomorrow at 3pm", "--time-zone", "America/New_York"});
    QCOMPARE(added.code, 0);
    const QByteArray file = readFile(eventFile());
    QVERIFY(file.contains("\"title\": \"dentist\""));
    QVERIFY(file.contains("\"targetDate\": \"2026-11-23T20:00:00.000Z\"")); // 15:00 in New York
    QVERIFY(file.contains("\"includeTime\": true"));

    const QByteArray before = readFile(eventFile());
    const Result none = run({"add", "just a title"});
    QCOMPARE(none.code, 1);
    QVERIFY(none.err.contains(u"no date"));
    QCOMPARE(readFile(eventFile()), before);
}

void TestCli::listJsonIsTheStoredRecords()
{
    run({"add", "Café ☕", "--date", "2026-12-24"});
    const Result listed = run({"list", "--json"});
    QCOMPARE(listed.code, 0);
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(listed.out.toUtf8(), &error);
    QCOMPARE(error.error, QJsonParseError::NoError);
    QCOMPARE(document.array().size(), 1);
    const QJsonObject event = document.array().first().toObject();
    QCOMPARE(event.value(u"title").toString(), QStringLiteral("Café ☕"));
    QCOMPARE(event.value(u"includeTime").toBool(), false);
    QCOMPARE(event.value(u"createdAt").toString(), QStringLiteral("2026-11-22T10:00:00.000Z"));
}

void TestCli::refusals_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("message");
    QTest::newRow("An impossible date")
        << QStringList {"add", "x", "--date", "2026-02-30"} << "is not a date";
    QTest::newRow("An unknown time zone")
        << QStringList {"add", "x", "--date", "2026-12-01", "--time-zone", "Mars/Olympus"}
        << "unknown time zone";
    QTest::newRow("An unknown option")
        << QStringList {"add", "x", "--colour", "red"} << "Unknown option";
    QTest::newRow("A missing title") << QStringList {"add"} << "usage: tarrow add TITLE";
    QTest::newRow("A malformed id") << QStringList {"remove", "42"} << "is not an event id";
    QTest::newRow("An unknown id")
        << QStringList {"pin", "6F1C9E0A-3B7D-4C2E-9A51-0D8E2F4B7C11"} << "No event with id";
    QTest::newRow("An unknown command") << QStringList {"frobnicate"} << "unknown command";
    QTest::newRow("A data folder option without a folder")
        << QStringList {"list", "--data-dir"} << "needs a folder";
}

void TestCli::refusals()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, message);
    run({"add", "Kept", "--date", "2026-12-01"});
    const QByteArray before = readFile(eventFile());
    const Result result = run(arguments);
    QCOMPARE(result.code, 1);
    QVERIFY2(result.err.contains(message), qPrintable(result.err));
    QCOMPARE(result.err.count(u'\n'), 1); // one line
    QCOMPARE(readFile(eventFile()), before);
}

void TestCli::unwritableFolderReportsAndKeepsNothing()
{
    // A folder inside a regular file cannot be made, not even by root.
    QFile blocker(QDir(m_dir->path()).filePath(QStringLiteral("file")));
    QVERIFY(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    QTextStream out(stdout), err(stderr);
    QString errors, in;
    QTextStream errStream(&errors), inStream(&in);
    const int code =
        Cli::run({"--data-dir", blocker.fileName() + "/tarrow", "add", "x", "--date", "2026-12-01"},
                 m_clock, out, errStream, inStream);
    errStream.flush();
    QCOMPARE(code, 1);
    QVERIFY2(errors.startsWith(u"tarrow: could not save"), qPrintable(errors));
}

void TestCli::olderFoldersComeOutInTheCurrentForm()
{
    QVERIFY(installFixture(QStringLiteral("events/v1-legacy-single-event.json"), m_dir->path(),
                           QStringLiteral("event.json")));
    QVERIFY(installFixture(QStringLiteral("settings/old-menubar-shows-remaining.json"),
                           m_dir->path(), QStringLiteral("settings.json")));
    QCOMPARE(run({"list"}).code, 0);
    const QByteArray file = readFile(eventFile());
    QVERIFY(file.contains("\"schemaVersion\": 10"));
    QVERIFY(file.contains("\"celebrationEnabled\": false")); // showCelebrationOnReach: false
    QVERIFY(file.contains("\"notifyOnReach\": true"));
    QVERIFY(file.contains("\"pinnedEventID\""));
    // The settings file is read, never rewritten by opening the folder.
    QCOMPARE(readFile(QDir(m_dir->path()).filePath(QStringLiteral("settings.json"))),
             fixtureBytes(QStringLiteral("settings/old-menubar-shows-remaining.json")));

    // Without legacy keys in the settings, both switches count as on.
    init();
    QVERIFY(installFixture(QStringLiteral("events/v2-pinned-event-id.json"), m_dir->path(),
                           QStringLiteral("event.json")));
    QVERIFY(installFixture(QStringLiteral("settings/without-legacy-keys.json"), m_dir->path(),
                           QStringLiteral("settings.json")));
    QCOMPARE(run({"list"}).code, 0);
    const QByteArray migrated = readFile(eventFile());
    QCOMPARE(migrated.count("\"celebrationEnabled\": true"), 2);
    QCOMPARE(migrated.count("\"notifyOnReach\": true"), 2);
}

void TestCli::onlyCommandsGoToTheCommandLine_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<bool>("commandLine");
    QTest::newRow("No arguments start the app") << QStringList {} << false;
    QTest::newRow("A link starts the app") << QStringList {"tarrow://open"} << false;
    QTest::newRow("A login launch starts the app") << QStringList {"--autostart"} << false;
    QTest::newRow("A data folder alone starts the app")
        << QStringList {"--data-dir", "/tmp/x"} << false;
    QTest::newRow("A command with a data folder")
        << QStringList {"--data-dir", "/tmp/x", "list"} << true;
    QTest::newRow("Help") << QStringList {"--help"} << true;
    QTest::newRow("A mistyped command is reported") << QStringList {"lsit"} << true;
}

void TestCli::onlyCommandsGoToTheCommandLine()
{
    QFETCH(QStringList, arguments);
    QFETCH(bool, commandLine);
    QCOMPARE(Cli::wantsCommandLine(arguments), commandLine);
}

QTEST_GUILESS_MAIN(TestCli)
#include "tst_cli.moc"

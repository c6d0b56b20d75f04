#include "cli/Cli.h"

#include "support/FakeClock.h"

#include <QTest>
#include <QTextStream>

namespace {

struct Run
{
    int exitCode;
    QString out;
    QString err;
};

// `tarrow ARGS` with the clock at Wednesday 3 June 2026, 10:00 UTC and `input` on stdin.
Run tarrow(const QStringList &arguments, QString input = QString())
{
    const FakeClock clock(QDateTime::fromString(u"2026-06-03T10:00:00Z"_qs, Qt::ISODate));
    QString out;
    QString err;
    QTextStream outStream(&out);
    QTextStream errStream(&err);
    QTextStream inStream(&input, QIODevice::ReadOnly);
    const int code = Cli::run(arguments, clock, outStream, errStream, inStream);
    outStream.flush();
    errStream.flush();
    return {code, out, err};
}

} // namespace

class TestParseCommand : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void printsOneJsonLine_data();
    void printsOneJsonLine();
    void badOptionsFailWithOneLine_data();
    void badOptionsFailWithOneLine();
    void answersEveryInputLineInOrder();
};

void TestParseCommand::printsOneJsonLine_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("line");

    QTest::newRow("a date and time in the given zone")
        << QStringList {u"parse"_qs,       u"dentist tomorrow at 3pm"_qs,
                        u"--now"_qs,       u"2026-06-03T10:00:00Z"_qs,
                        u"--time-zone"_qs, u"Europe/Berlin"_qs}
        << uR"({"date":"2026-06-04T13:00:00.000Z","includeTime":true,"cleanedTitle":"dentist"})"_qs;
    QTest::newRow("the clock is now when --now is missing")
        << QStringList {u"parse"_qs, u"Abgabe übermorgen"_qs, u"--time-zone"_qs,
                        u"Europe/Istanbul"_qs}
        << uR"({"date":"2026-06-04T21:00:00.000Z","includeTime":false,"cleanedTitle":"Abgabe"})"_qs;
    QTest::newRow("a passed time is tomorrow")
        << QStringList {u"parse"_qs, u"standup at 9"_qs, u"--time-zone"_qs, u"Europe/Berlin"_qs}
        << uR"({"date":"2026-06-04T07:00:00.000Z","includeTime":true,"cleanedTitle":"standup"})"_qs;
    QTest::newRow("a passed time stays today with --keeps-past")
        << QStringList {u"parse"_qs, u"standup at 9"_qs, u"--time-zone"_qs, u"Europe/Berlin"_qs,
                        u"--keeps-past"_qs}
        << uR"({"date":"2026-06-03T07:00:00.000Z","includeTime":true,"cleanedTitle":"standup"})"_qs;
    QTest::newRow("quotes in the title are escaped")
        << QStringList {u"parse"_qs, u"\"Dune\" première demain"_qs, u"--time-zone"_qs, u"UTC"_qs}
        << u"{\"date\":\"2026-06-04T00:00:00.000Z\",\"includeTime\":false,"
           "\"cleanedTitle\":\"\\\"Dune\\\" première\"}"_qs;
    QTest::newRow("no date phrase is a null match")
        << QStringList {u"parse"_qs, u"buy milk"_qs} << uR"({"match":null})"_qs;
}

void TestParseCommand::printsOneJsonLine()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, line);

    const Run run = tarrow(arguments);
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.out, line + u'\n');
    QCOMPARE(run.err, QString());
}

void TestParseCommand::badOptionsFailWithOneLine_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("message");

    QTest::newRow("an unknown zone")
        << QStringList {u"parse"_qs, u"tomorrow"_qs, u"--time-zone"_qs, u"Mars/Olympus"_qs}
        << u"unknown time zone"_qs;
    QTest::newRow("a malformed now")
        << QStringList {u"parse"_qs, u"tomorrow"_qs, u"--now"_qs, u"next tuesday"_qs}
        << u"is not an instant"_qs;
    QTest::newRow("no text") << QStringList {u"parse"_qs} << u"usage: tarrow parse"_qs;
}

void TestParseCommand::badOptionsFailWithOneLine()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, message);

    const Run run = tarrow(arguments);
    QVERIFY(run.exitCode != 0);
    QCOMPARE(run.out, QString());
    QVERIFY2(run.err.startsWith(u"tarrow: ") && run.err.contains(message), qPrintable(run.err));
    QCOMPARE(run.err.count(u'\n'), 1);
}

void TestParseCommand::answersEveryInputLineInOrder()
{
    const QString input =
        uR"({"text":"dentist – tomorrow, at 9","now":"2026-10-31T10:00:00Z","tz":"America/New_York"}
{"text": "broken"
{"text":"anniversaire le 1er mai","now":"2026-06-03T10:00:00Z","tz":"Europe/Paris","keepsPast":true}

{"text":"cita mañana","tz":"Atlantis/Nowhere"}
{"text":"buy milk"}
{"text":"Kino morgen um 20.15 Uhr","now":"yesterday"}
)"_qs;
    const Run run = tarrow({u"parse"_qs, u"--jsonl"_qs}, input);
    QCOMPARE(run.exitCode, 0);
    const QStringList lines = run.out.split(u'\n', Qt::SkipEmptyParts);
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

QTEST_GUILESS_MAIN(TestParseCommand)
#include "tst_parsecommand.moc"

#include "support/ItemFixtures.h"

#include "cli/CliContext.h"
#include "cli/RenderChipCommand.h"
#include "platform/tray/ChipRenderer.h"
#include "storage/EventStore.h"
#include "support/FakeClock.h"

#include <QImage>
#include <QTemporaryDir>
#include <QTest>

using namespace Fixture;

class tst_RenderChipCommand : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void drawsTheChipOfTheDataFolder_data();
    void drawsTheChipOfTheDataFolder();
    void refusesAnUnknownStyle();
};

void tst_RenderChipCommand::drawsTheChipOfTheDataFolder_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("printed");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("detail");
    QTest::addColumn<int>("scale");

    QTest::newRow("The settings' full style by default") << QStringList() << "Dentist, 1d 1h"
                                                         << "Dentist"
                                                         << "1d 1h" << 1;
    QTest::newRow("A style given on the command line wins")
        << QStringList {QStringLiteral("--style"), QStringLiteral("compact")} << "1d 1h"
        << ""
        << "1d 1h" << 1;
    QTest::newRow("Another instant gives another time")
        << QStringList {QStringLiteral("--now"), QStringLiteral("2026-03-02T12:00:00Z")}
        << "Dentist, 1h 1m"
        << "Dentist"
        << "1h 1m" << 1;
    QTest::newRow("A scale of two doubles the pixels")
        << QStringList {QStringLiteral("--scale"), QStringLiteral("2")} << "Dentist, 1d 1h"
        << "Dentist"
        << "1d 1h" << 2;
}

void tst_RenderChipCommand::drawsTheChipOfTheDataFolder()
{
    QFETCH(QStringList, options);
    QFETCH(QString, printed);
    QFETCH(QString, title);
    QFETCH(QString, detail);
    QFETCH(int, scale);

    QTemporaryDir folder;
    const FakeClock clock(at("2026-03-01T12:00:00Z"));
    {
        const DefaultPathProvider paths = DefaultPathProvider::inFolder(folder.path());
        DiskFileAccess files;
        EventStore store(paths, files);
        QVERIFY(store.addEvent(countdown(QStringLiteral("Dentist"), clock.now().addSecs(90061))));
    }
    const QString png = folder.filePath(QStringLiteral("chip.png"));
    QString out, err, in;
    QTextStream outStream(&out), errStream(&err), inStream(&in);
    CliContext context(folder.path(), clock, outStream, errStream, inStream);

    RenderChipCommand command;
    QCOMPARE(command.run(QStringList {QStringLiteral("--out"), png} + options, context), 0);
    outStream.flush();
    QCOMPARE(out.trimmed(), printed);

    const QImage image(png);
    const MenubarChipPresentation expected {QStringLiteral("hourglass"), title, detail, 0.0};
    QCOMPARE(image.size(), QSize(int(ChipRenderer::layout(expected).width) * scale, 24 * scale));
}

void tst_RenderChipCommand::refusesAnUnknownStyle()
{
    QTemporaryDir folder;
    const FakeClock clock;
    QString out, err, in;
    QTextStream outStream(&out), errStream(&err), inStream(&in);
    CliContext context(folder.path(), clock, outStream, errStream, inStream);
    RenderChipCommand command;
    const QString png = folder.filePath(QStringLiteral("chip.png"));
    QCOMPARE(command.run(
                 {QStringLiteral("--out"), png, QStringLiteral("--style"), QStringLiteral("huge")},
                 context),
             1);
    errStream.flush();
    QVERIFY(err.contains(QStringLiteral("huge")));
    QVERIFY(!QFile::exists(png));
}

QTEST_MAIN(tst_RenderChipCommand)
#include "tst_renderchipcommand.moc"

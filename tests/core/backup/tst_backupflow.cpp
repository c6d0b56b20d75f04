// The data page's model: the export and import flows with their questions and messages.
#include "backup/BackupFlow.h"
#include "l10n/LocaleManager.h"
#include "storage/SettingsStore.h"

#include "BackupFixtures.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

// A folder with the sample countdowns, its data page, and a backup of two other countdowns.
struct Page
{
    Page()
    {
        BackupFolder({Fixture::countdown(u"New"_s, Fixture::at("2026-08-01T10:00:00Z")),
                      folder.store.events().constFirst()})
            .exportTo(backup);
    }
    QStringList labels() const
    {
        QStringList labels;
        for (const QVariant &choice : flow.choices())
            labels.append(choice.toMap().value(u"label"_s).toString());
        return labels;
    }

    QTemporaryDir dir;
    QString backup = dir.filePath(u"Tarrow Backup.json"_s);
    BackupFolder folder {BackupFolder::sample()};
    SettingsStore settings {folder.paths, folder.files};
    LocaleManager locale {settings, [] {
                              return QStringList {"en"};
                          }};
    BackupFlow flow {folder.service, locale, folder.clock};
};

class tst_BackupFlow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void exportProposesANameAndReports();
    void importAsksBeforeChanging_data();
    void importAsksBeforeChanging();
};

void tst_BackupFlow::exportProposesANameAndReports()
{
    Page page;
    QCOMPARE(page.flow.proposedFileName(), u"Tarrow Backup 2026-06-03.json"_s);
    const QString target = page.dir.filePath(page.flow.proposedFileName());
    QVERIFY(page.flow.beginExport());
    page.flow.finishExport(QUrl::fromLocalFile(target));
    QVERIFY(QFile::exists(target) && !page.flow.messageIsError());
    QCOMPARE(page.flow.messageText(), u"Exported 3 countdowns."_s);
}

void tst_BackupFlow::importAsksBeforeChanging_data()
{
    QTest::addColumn<QStringList>("answers");
    QTest::addColumn<QStringList>("titles");
    QTest::addColumn<QString>("message");

    const QStringList sample {u"Exam"_s, u"Trip ✈"_s, u"Quit"_s};
    QTest::newRow("Merge adds what is missing")
        << QStringList {"merge"} << QStringList {u"Exam"_s, u"New"_s, u"Trip ✈"_s, u"Quit"_s}
        << u"Added: 1 · Already there: 1"_s;
    QTest::newRow("Replace asks once more, then keeps only the backup")
        << QStringList {"replace", "replace"} << QStringList {u"Exam"_s, u"New"_s}
        << u"Added: 2 · Already there: 0"_s;
    QTest::newRow("Cancel at the second question changes nothing")
        << QStringList {"replace", "cancel"} << sample << QString();
}

void tst_BackupFlow::importAsksBeforeChanging()
{
    QFETCH(QStringList, answers);
    Page page;
    page.flow.importFrom(QUrl::fromLocalFile(page.backup));
    QCOMPARE(page.flow.questionText(), u"Import 2 countdowns?"_s);
    QVERIFY(page.flow.questionDetail().startsWith(u"Merge adds the countdowns"_s));
    QCOMPARE(page.labels(), (QStringList {u"Merge"_s, u"Replace"_s, u"Cancel"_s}));
    for (const QString &answer : answers) {
        QVERIFY(page.flow.hasQuestion());
        if (page.flow.stage() == BackupFlow::Stage::confirmReplace) {
            QCOMPARE(page.flow.questionText(), u"Replace all your countdowns?"_s);
            QCOMPARE(page.labels(), (QStringList {u"Replace"_s, u"Cancel"_s}));
        }
        page.flow.answer(answer);
    }
    QVERIFY(!page.flow.hasQuestion());
    QStringList titles;
    for (const Event &event : page.folder.store.events())
        titles.append(event.title);
    QTEST(titles, "titles");
    QTEST(page.flow.messageText(), "message");
}

QTEST_GUILESS_MAIN(tst_BackupFlow)
#include "tst_backupflow.moc"

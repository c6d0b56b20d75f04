// Backup files: which files are read, how they are written, and export and import on real files.
#include "l10n/LanguageTable.h"
#include "support/Fixtures.h"

#include "BackupFixtures.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QByteArray eventJson =
    R"({"id":"6F1C9E0A-3B7D-4C2E-9A51-0D8E2F4B7C11","title":"Trip","targetDate":"2026-12-24T10:00:00Z",)"
    R"("includeTime":true,"timeZone":"Europe/Istanbul","createdAt":"2026-01-01T10:00:00.000Z",)"
    R"("celebrationAcknowledged":false})";

// An archive with `members` in front of the usual export date and one event.
QByteArray archive(const QByteArray &members, const QByteArray &events = '[' + eventJson + ']')
{
    return '{' + members + R"(,"exportedAt":"2026-06-03T10:00:00.000Z","events":)" + events + '}';
}

QString text(const BackupMessage &message)
{
    return message.text(LanguageTable::load(u"en"_s));
}

} // namespace

class tst_BackupArchive : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readRules_data();
    void readRules();
    void filesTooLargeOrMissingAreRefusedUnread();
    void exportWritesTheStoresEventsInItsOwnFormat();
    void aFailedWriteLeavesNoFile();
};

void tst_BackupArchive::readRules_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("expected");
    const QByteArray kind = R"("kind":"org.tarrow.Tarrow.backup")";
    const auto row = [](const char *name, const QByteArray &bytes, const char *expected) {
        QTest::newRow(name) << bytes << QString::fromLatin1(expected);
    };
    row("A backup of this version is read", archive(kind + R"(,"version":1)"), "read");
    row("A missing kind with version 1 is read", archive(R"("version":1)"), "read");
    row("Version 2 is newer even when its events decode", archive(kind + R"(,"version":2)"),
        "newer");
    row("Version 0 is unreadable", archive(kind + R"(,"version":0)"), "unreadable");
    row("Another application's kind is unreadable",
        archive(R"("kind":"org.example.Other.backup","version":1)"), "unreadable");
    row("A missing version is unreadable", archive(kind), "unreadable");
    row("A missing export date is unreadable", '{' + kind + R"(,"version":1,"events":[]})",
        "unreadable");
    row("Events that are not a list are unreadable", archive(R"("version":1)", "{}"), "unreadable");
    row("An event with a bad date is unreadable",
        archive(R"("version":1)",
                '[' + QByteArray(eventJson).replace("2026-12-24T10", "tomorrow") + ']'),
        "unreadable");
}

void tst_BackupArchive::readRules()
{
    QFETCH(QByteArray, bytes);
    const auto read = BackupArchive::read(bytes);
    const auto *error = std::get_if<BackupArchive::ReadError>(&read);
    QTEST(QString::fromLatin1(!error                                          ? "read"
                                  : *error == BackupArchive::ReadError::newer ? "newer"
                                                                              : "unreadable"),
          "expected");
}

void tst_BackupArchive::filesTooLargeOrMissingAreRefusedUnread()
{
    QTemporaryDir dir;
    QFile huge(dir.filePath(u"huge.json"_s));
    QVERIFY(huge.open(QIODevice::WriteOnly) && huge.resize(200LL * 1024 * 1024)); // sparse
    huge.close();
    BackupFolder folder;
    for (const QString &path : {huge.fileName(), dir.filePath(u"missing.json"_s), dir.path()}) {
        const BackupService::Reading reading = folder.service.read(path);
        QVERIFY2(!reading.archive, qPrintable(path));
        QCOMPARE(text(reading.refusal), u"This file is not a Tarrow backup or it is damaged."_s);
    }
}

void tst_BackupArchive::exportWritesTheStoresEventsInItsOwnFormat()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(u"backup.json"_s);
    BackupFolder folder(BackupFolder::sample());
    QCOMPARE(text(folder.exportTo(path)), u"Exported 3 countdowns."_s);
    const QByteArray bytes = readFile(path);
    QVERIFY(bytes.startsWith("{\n    \"events\": [\n        {\n"));
    QVERIFY(bytes.endsWith("    \"exportedAt\": \"2026-06-02T22:30:00.000Z\",\n"
                           "    \"kind\": \"org.tarrow.Tarrow.backup\",\n"
                           "    \"version\": 1\n}\n"));
    const BackupService::Reading reading = folder.service.read(path);
    QVERIFY(reading.archive);
    QCOMPARE(reading.archive->events, folder.store.events());

    QCOMPARE(text(BackupFolder({BackupFolder::sample().constFirst()}).exportTo(path)),
             u"Exported 1 countdown."_s);
    QCOMPARE(text(BackupFolder().exportTo(path)), u"Exported 0 countdowns."_s);
    QCOMPARE(text(folder.service.read(path).refusal), u"This backup holds no countdowns."_s);
}

void tst_BackupArchive::aFailedWriteLeavesNoFile()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(u"backup.json"_s);
    BackupFolder folder(BackupFolder::sample());
    folder.files.failWrites = true;
    QCOMPARE(text(folder.exportTo(path)), u"The backup could not be saved."_s);
    QVERIFY(!QFile::exists(path));
}

QTEST_GUILESS_MAIN(tst_BackupArchive)
#include "tst_backuparchive.moc"

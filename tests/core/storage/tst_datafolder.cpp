// The data folder with many writers and hostile files: stores of one folder (as the app and
// `tarrow` commands are) keep every change and publish each other's, the folder watcher brings
// an outside change in, and files that are not what they should be are refused with a message
// and kept aside before anything replaces them.
#include "countdown/SinglePassEngine.h"
#include "storage/DataFolderWatcher.h"
#include "storage/EventStore.h"
#include "storage/FileLock.h"
#include "storage/SettingsStore.h"
#include "json/IsoDate.h"

#include "support/FaultyFileAccess.h"
#include "support/Fixtures.h"
#include "support/ItemFixtures.h"

#include <QProcess>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

using Fixture::at;

Event makeEvent(const QString &title, const char *target = "2026-05-01T10:00:00Z")
{
    return Fixture::countdown(title, at(target));
}

QStringList titles(const EventStore &store)
{
    QStringList list;
    for (const Event &event : store.events())
        list.append(event.title);
    list.sort();
    return list;
}

const QByteArray Concert = R"({"id": "6F1C9E0A-3B7D-4C2E-9A51-0D8E2F4B7C11", "title": "Concert",
    "targetDate": "2026-03-01T08:00:00Z", "includeTime": true, "timeZone": "Europe/Berlin",
    "createdAt": "2026-02-01T08:00:00Z", "celebrationAcknowledged": false})";

QByteArray envelope(const QByteArray &events, const QByteArray &version = "10")
{
    return R"({"schemaVersion": )" + version + R"(, "events": [)" + events + "]}";
}

} // namespace

class TestDataFolder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_paths = std::make_unique<TempPathProvider>(); }
    void hostileFiles_data();
    void hostileFiles();
    void storesOfOneFolderKeepEveryChangeAndStayConsistent();
    void theWatcherPublishesAnOutsideChangeWithinASecond();
    void settingsChangedByTwoWritersBothSurvive();
    void whatTheFileCannotHoldIsRefusedAndNothingWritten();
    void theLockExcludesOtherHoldersAndDiesWithItsHolder();
    void arrivalsOfOnePassAreStampedInOneWrite();

private:
    QString file() const { return m_paths->eventFile(); }
    std::unique_ptr<TempPathProvider> m_paths;
    DiskFileAccess m_disk;
};

void TestDataFolder::hostileFiles_data()
{
    QTest::addColumn<QByteArray>("bytes"); // "fifo": a FIFO, "huge": a file beyond 64 MB
    QTest::addColumn<QStringList>("loaded");
    QTest::addColumn<QString>("message"); // a pattern of the log line, empty: none, nothing kept
    QTest::newRow("A byte-order mark in front of a valid file is read past")
        << "\xEF\xBB\xBF" + envelope(Concert) << QStringList {u"Concert"_s} << QString();
    QTest::newRow("A schema version beyond any number is an error, not version 0")
        << envelope(Concert, "1e999") << QStringList() << u"^event.json present but neither"_s;
    QTest::newRow("A record dated in the year 10000 is left out, the rest loads")
        << envelope(Concert + ", "
                    + QByteArray(Concert)
                          .replace("6F1C9E0A", "7F1C9E0A")
                          .replace("2026-03-01T08:00:00Z", "10000-01-01T04:30:00.000Z"))
        << QStringList {u"Concert"_s} << u"^Skipped a record of event.json whose date 10000-"_s;
    QTest::newRow("A FIFO is refused without waiting for a writer")
        << QByteArray("fifo") << QStringList()
        << u"^Failed to read event.json: not a regular file"_s;
    QTest::newRow("A file beyond 64 MB is refused unread")
        << QByteArray("huge") << QStringList()
        << u"^Failed to read event.json: larger than 64 MB"_s;
}

void TestDataFolder::hostileFiles()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QStringList, loaded);
    QFETCH(QString, message);
    QFile huge(file());
    if (bytes == "fifo")
        QCOMPARE(::mkfifo(QFile::encodeName(file()).constData(), 0600), 0);
    else if (bytes == "huge")
        QVERIFY(huge.open(QIODevice::WriteOnly) && huge.resize(FileAccess::MaxFileBytes + 1));
    else
        QVERIFY(m_disk.writeAtomically(file(), bytes, nullptr));
    if (!message.isEmpty())
        QTest::ignoreMessage(message.startsWith(u"^Skipped") ? QtWarningMsg : QtCriticalMsg,
                             QRegularExpression(message));

    EventStore store(*m_paths, m_disk);
    QCOMPARE(titles(store), loaded);
    QVERIFY(!store.needsReachSignalMigration()); // no switches are rewritten from a bad version

    // The first save keeps what was there aside (a copy, or the thing itself moved), then
    // writes what loaded and the new event.
    if (!message.isEmpty())
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression(u"^Kept the unreadable event.json"_s));
    QVERIFY(store.addEvent(makeEvent(u"New"_s)));
    QCOMPARE(titles(EventStore(*m_paths, m_disk)), loaded + QStringList {u"New"_s});
    const QDir folder(m_paths->supportDirectory());
    const QStringList kept =
        folder.entryList({u"event (unreadable *"_s}, QDir::AllEntries | QDir::System);
    QCOMPARE(kept.size(), message.isEmpty() ? 0 : 1);
    if (!kept.isEmpty() && bytes.startsWith('{'))
        QCOMPARE(readFile(folder.filePath(kept.first())), bytes);
}

void TestDataFolder::storesOfOneFolderKeepEveryChangeAndStayConsistent()
{
    // Two stores over one folder, as the app and a command are: each one's change is made to
    // what the other wrote, and published by the next operation.
    EventStore app(*m_paths, m_disk);
    EventStore command(*m_paths, m_disk);
    const Event theirs = makeEvent(u"Theirs"_s, "2026-04-01T10:00:00Z");
    QVERIFY(app.addEvent(makeEvent(u"Mine"_s)));
    QSignalSpy commandEvents(&command, &EventStore::eventsChanged);
    QVERIFY(command.addEvent(theirs));
    QCOMPARE(titles(command), (QStringList {u"Mine"_s, u"Theirs"_s}));
    QCOMPARE(commandEvents.count(), 1); // the outside change and its own in one publication

    // The app pins the other's event (which it has not seen yet): the pin finds it.
    QSignalSpy appReloads(&app, &EventStore::reloaded);
    QVERIFY(app.setPin(PinTarget::manual(theirs.id)));
    QCOMPARE(appReloads.count(), 1);

    // The command deletes the pinned event; the app takes that in, pin and all.
    QVERIFY(command.deleteEvent(theirs.id));
    QSignalSpy appPin(&app, &EventStore::pinChanged);
    QVERIFY(app.reloadIfChanged());
    QVERIFY(!app.pin() && appPin.count() == 1);
    QCOMPARE(titles(app), QStringList {u"Mine"_s});
    QVERIFY(!app.reloadIfChanged()); // nothing new since

    // An outside change that cannot be read never replaces what the app holds.
    QVERIFY(m_disk.writeAtomically(file(), envelope("{\"ti"), nullptr));
    QTest::ignoreMessage(QtCriticalMsg, QRegularExpression(u"^event.json present but neither"_s));
    QSignalSpy events(&app, &EventStore::eventsChanged);
    QVERIFY(!app.reloadIfChanged());
    QCOMPARE(events.count(), 0);

    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^Kept the unreadable event.json"_s));
    QVERIFY(app.addEvent(makeEvent(u"Next"_s)));
    QCOMPARE(titles(EventStore(*m_paths, m_disk)), (QStringList {u"Mine"_s, u"Next"_s}));
}

void TestDataFolder::theWatcherPublishesAnOutsideChangeWithinASecond()
{
    EventStore events(*m_paths, m_disk);
    SettingsStore settings(*m_paths, m_disk);
    DataFolderWatcher watcher(*m_paths, events, settings);
    QSignalSpy changed(&events, &EventStore::eventsChanged);
    QSignalSpy settingsChanged(&settings, &SettingsStore::settingsChanged);

    // A command adds three events in a burst and changes a setting.
    EventStore command(*m_paths, m_disk);
    for (const QString &title : {u"One"_s, u"Two"_s, u"Three"_s})
        QVERIFY(command.addEvent(makeEvent(title)));
    SettingsStore commandSettings(*m_paths, m_disk);
    Settings dark = commandSettings.settings();
    dark.theme = ThemePref::dark;
    commandSettings.setSettings(dark);

    QTRY_COMPARE_WITH_TIMEOUT(events.events().size(), 3, 1000);
    QTRY_COMPARE_WITH_TIMEOUT(settings.settings().theme, ThemePref::dark, 1000);
    QVERIFY(changed.count() >= 1 && changed.count() <= 3); // bursts are taken in together
    QCOMPARE(settingsChanged.count(), 1);

    // Its own saves are no outside change; an editor writing the file in place is one.
    QSignalSpy reloads(&events, &EventStore::reloaded);
    QVERIFY(events.addEvent(makeEvent(u"Four"_s)));
    QFile inPlace(file());
    QVERIFY(inPlace.open(QIODevice::WriteOnly | QIODevice::Truncate));
    inPlace.write(envelope(Concert));
    inPlace.close();
    QTRY_COMPARE_WITH_TIMEOUT(titles(events), QStringList {u"Concert"_s}, 1000);
    QCOMPARE(reloads.count(), 1);
}

void TestDataFolder::settingsChangedByTwoWritersBothSurvive()
{
    // Each writer changes other fields of the settings it loaded before the other's change.
    SettingsStore app(*m_paths, m_disk);
    SettingsStore command(*m_paths, m_disk);
    Settings expected = app.settings(), changed = expected;
    expected.theme = changed.theme = ThemePref::dark;
    app.setSettings(changed);
    changed = command.settings();
    expected.language = changed.language = LanguagePref::de;
    command.setSettings(changed);

    QCOMPARE(SettingsStore(*m_paths, m_disk).settings(), expected);
    QCOMPARE(command.settings(), expected);
    QVERIFY(app.reloadIfChanged());
    QCOMPARE(app.settings(), expected);
}

void TestDataFolder::whatTheFileCannotHoldIsRefusedAndNothingWritten()
{
    EventStore store(*m_paths, m_disk);
    QVERIFY(store.addEvent(makeEvent(u"Kept"_s)));
    const QByteArray before = readFile(file());
    EventStoreError error;

    Event far = makeEvent(u"Far"_s);
    far.targetDate = QDateTime::fromMSecsSinceEpoch(IsoDate::MaxMSecs + 1, Qt::UTC);
    QVERIFY(!store.addEvent(far, &error));
    QCOMPARE(error.kind, EventStoreError::Kind::refused);
    QVERIFY2(error.description.contains(u"outside the years 0001 to 9999"),
             qPrintable(error.description));

    // Titles count characters: an emoji is one.
    const QString longest = QString(Event::MaxTitleLength - 1, u'x') + u"🎉"_s;
    QVERIFY(!store.addEvent(makeEvent(longest + u'x'), &error));
    QCOMPARE(error.description, u"the title is longer than 200 characters"_s);
    QCOMPARE(readFile(file()), before);
    QCOMPARE(titles(store), QStringList {u"Kept"_s});
    QVERIFY(store.addEvent(makeEvent(longest), &error));
}

void TestDataFolder::theLockExcludesOtherHoldersAndDiesWithItsHolder()
{
    FileLock first(file());
    FileLock second(file());
    QString error;
    QVERIFY(first.lock(&error));
    QVERIFY(!second.lock(&error, 50));
    QCOMPARE(error, u"event.json is locked by another process (waited 0.05 s)"_s);
    first.unlock();

    // A holder that is killed leaves no stale lock behind (flock(1) stands in for a command).
    const auto isFree = [&] {
        const bool free = first.lock(&error, 0);
        first.unlock();
        return free;
    };
    QProcess holder;
    holder.start(u"flock"_s, {u"--no-fork"_s, file() + u".lock"_s, u"sleep"_s, u"60"_s});
    QVERIFY(holder.waitForStarted());
    QTRY_VERIFY_WITH_TIMEOUT(!isFree(), 2000);
    holder.kill();
    holder.waitForFinished();
    QTRY_VERIFY_WITH_TIMEOUT(isFree(), 2000);
}

void TestDataFolder::arrivalsOfOnePassAreStampedInOneWrite()
{
    FaultyFileAccess files;
    EventStore store(*m_paths, files);
    for (const char *target :
         {"2026-03-01T08:00:00Z", "2026-03-01T08:30:00Z", "2026-09-01T08:00:00Z"})
        QVERIFY(store.addEvent(makeEvent(QString::fromLatin1(target), target)));
    files.writes = 0;
    const QDateTime now = at("2026-03-01T09:00:00Z");
    const SinglePassEngine pass(store, now);
    QCOMPARE(files.writes, 1);
    const QList<Event> saved = EventStore(*m_paths, files).events();
    QCOMPARE(std::count_if(saved.begin(), saved.end(),
                           [&](const Event &event) { return event.reachedAt == now; }),
             2);
}

QTEST_GUILESS_MAIN(TestDataFolder)
#include "tst_datafolder.moc"

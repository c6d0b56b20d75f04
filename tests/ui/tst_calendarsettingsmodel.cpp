// The model of the calendars settings page: adding and removing files and links (with the
// refusals in the interface language), a file's state once read, the calendar switches grouped by
// account, the calendar settings written to settings.json, and the user's addresses.
#include "ui/CalendarSettingsModel.h"

#include "calendar/CalendarStore.h"
#include "l10n/LocaleManager.h"
#include "platform/calendars/CalendarBackends.h"
#include "storage/EventStore.h"
#include "storage/SettingsStore.h"

#include "support/FakeClock.h"
#include "support/Fixtures.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class TestCalendarSettingsModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void editsTheCalendarsPage();
};

void TestCalendarSettingsModel::editsTheCalendarsPage()
{
    TempPathProvider paths;
    DiskFileAccess files;
    FakeClock clock(QDateTime(QDate(2025, 3, 2), QTime(12, 0), Qt::UTC));
    EventStore events(paths, files);
    SettingsStore settings(paths, files);
    Settings german = settings.settings();
    german.language = LanguagePref::de;
    settings.setSettings(german);
    LocaleManager locale(settings);
    CalendarBackends backends(paths, files, clock, locale.table());
    CalendarStore store(backends.providers(), settings, events, &backends.subscriptions(), clock);
    CalendarSettingsModel model(backends, store, settings, locale);

    // Refusals speak the interface language.
    QCOMPARE(model.addSource(u"ftp://example.com/x.ics"_s),
             u"Gib eine iCalendar-Datei oder einen Weblink ein (http, https, webcal)"_s);
    const QString file = QDir(paths.supportDirectory()).filePath(u"team.ics"_s);
    QFile ics(file);
    QVERIFY(ics.open(QIODevice::WriteOnly));
    ics.write(fixtureBytes(u"calendars/weekly-berlin.ics"_s));
    ics.close();
    QSignalSpy sources(&model, &CalendarSettingsModel::sourcesChanged);
    QCOMPARE(model.addSource(file), QString());
    QCOMPARE(model.addSource(file), u"Dieser Kalender ist bereits hinzugefügt"_s);
    QVERIFY(!sources.isEmpty());

    // Once read, the row carries the calendar's own name and its state.
    QTRY_VERIFY(!backends.ics().isBusy());
    QVariantMap row = model.sources().value(0).toMap();
    QCOMPARE(row[u"title"_s].toString(), u"Team"_s);
    QCOMPARE(row[u"location"_s].toString(), file);
    QVERIFY(row[u"isFile"_s].toBool() && row[u"ok"_s].toBool());
    QVERIFY2(row[u"state"_s].toString().startsWith(u"Aktualisiert: "),
             qPrintable(row[u"state"_s].toString()));

    // The switches, grouped by account.
    QVariantMap account = model.accounts().value(0).toMap();
    QCOMPARE(account[u"title"_s].toString(), u"Auf diesem Computer"_s);
    QCOMPARE(account[u"kind"_s].toString(), u"onThisMac"_s);
    const QVariantMap calendar = account[u"calendars"_s].toList().value(0).toMap();
    QVERIFY(calendar[u"enabled"_s].toBool());
    QCOMPARE(model.setCalendarEnabled(calendar[u"id"_s].toString(), false), QString());
    QVERIFY(settings.settings().calendars.hasEverChosen);
    QVERIFY(
        settings.settings().calendars.disabledCalendarIDs.contains(calendar[u"id"_s].toString()));
    account = model.accounts().value(0).toMap();
    QVERIFY(!account[u"calendars"_s].toList().value(0).toMap()[u"enabled"_s].toBool());

    // The settings, written through.
    model.setSkipDeclined(false);
    model.setIncludeAllDay(true);
    model.setHorizonDays(500);
    const CalendarSettings written = SettingsStore(paths, files).settings().calendars;
    QVERIFY(!written.skipDeclined && written.includeAllDay);
    QCOMPARE(written.horizonDays, 366);

    // Addresses, one bad one refusing the lot.
    QCOMPARE(model.setAddresses(u"me@example.com, nobody"_s),
             u"„nobody“ ist keine E-Mail-Adresse"_s);
    QVERIFY(model.addresses().isEmpty());
    QCOMPARE(model.setAddresses(u"Me@Example.com\nwork@example.org"_s), QString());
    QCOMPARE(model.addresses(), (QStringList {u"me@example.com"_s, u"work@example.org"_s}));

    QCOMPARE(model.removeSource(row[u"id"_s].toString()), QString());
    QVERIFY(model.sources().isEmpty());
}

QTEST_MAIN(TestCalendarSettingsModel)
#include "tst_calendarsettingsmodel.moc"

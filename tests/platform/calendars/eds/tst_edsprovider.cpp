// The EDS plugin against a real, private Evolution Data Server (run-with-eds.sh): its calendars by
// account, a seeded weekly series expanded across DST, and an event another program creates.
#include "calendar/CalendarProviderPlugin.h"
#include "calendar/CalendarRules.h"

#include <QDir>
#include <QPluginLoader>
#include <QSignalSpy>
#include <QTest>

#include <libecal/libecal.h>

using namespace Qt::StringLiterals;

namespace {

QDateTime utc(const char *text)
{
    return QDateTime::fromString(QString::fromLatin1(text), Qt::ISODate).toUTC();
}

} // namespace

class TestEdsProvider : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void listsTheCalendarsByAccount();
    void expandsTheSeededSeries();
    void announcesEventsCreatedElsewhere();

private:
    CalendarInfo calendar(const QString &title) const;
    QList<ProviderOccurrence> read(const QDateTime &from, const QDateTime &to);

    QPluginLoader m_loader;
    std::unique_ptr<PluginCalendarProvider> m_provider;
};

void TestEdsProvider::initTestCase()
{
    m_loader.setFileName(
        QDir(qEnvironmentVariable("TARROW_PLUGIN_DIR")).filePath(u"tarrow-calendar-eds.so"_s));
    auto *plugin = qobject_cast<CalendarProviderPlugin *>(m_loader.instance());
    QVERIFY2(plugin, qPrintable(m_loader.errorString()));
    QCOMPARE(plugin->backendID(), u"eds"_s);
    m_provider = std::make_unique<PluginCalendarProvider>(plugin->createBackend());
    QVERIFY(QTest::qWaitFor([this] { return !m_provider->isBusy(); }, 30'000));
}

CalendarInfo TestEdsProvider::calendar(const QString &title) const
{
    for (const CalendarInfo &info : m_provider->calendars()) {
        if (info.title == title)
            return info;
    }
    return {};
}

QList<ProviderOccurrence> TestEdsProvider::read(const QDateTime &from, const QDateTime &to)
{
    QFuture<QList<ProviderOccurrence>> future =
        m_provider->occurrences({{calendar(u"Work"_s).id}, from, to, {}});
    future.waitForFinished();
    QList<ProviderOccurrence> list = future.result();
    std::sort(list.begin(), list.end(),
              [](const auto &a, const auto &b) { return a.start < b.start; });
    return list;
}

void TestEdsProvider::listsTheCalendarsByAccount()
{
    // EDS sets up "Personal" and the contacts' birthdays in every new home.
    QStringList lines;
    for (const CalendarInfo &c : m_provider->calendars())
        lines << c.title + u": "_s + accountKindRawValue(c.accountKind) + u", "_s + c.accountTitle;
    lines.sort();
    QCOMPARE(lines,
             (QStringList {u"Birthdays & Anniversaries: birthdays, Contacts"_s,
                           u"Personal: onThisMac, On This Computer"_s,
                           u"Work: onThisMac, On This Computer"_s}));
    QCOMPARE(qRound(calendar(u"Work"_s).tint.value().red * 255), 0xf6);
}

void TestEdsProvider::expandsTheSeededSeries()
{
    QStringList standups;
    for (const ProviderOccurrence &o : read(utc("2025-03-01T00:00Z"), utc("2025-04-10T00:00Z"))) {
        if (o.ref.series.seriesID != u"standup@example.com")
            continue;
        QCOMPARE(o.timeZoneID, u"Europe/Berlin"_s);
        QCOMPARE(o.meetingURL, QUrl(u"https://acme.zoom.us/j/123456"_s));
        standups << o.start.toString(Qt::ISODate)
                + (o.ref.occurrenceDate != o.start
                       ? u" for "_s + o.ref.occurrenceDate.toString(Qt::ISODate)
                       : QString());
    }
    QCOMPARE(
        standups,
        (QStringList {u"2025-03-03T08:00:00Z"_s, u"2025-03-10T08:00:00Z"_s,
                      u"2025-03-25T13:00:00Z for 2025-03-24T08:00:00Z"_s, u"2025-03-29T09:00:00Z"_s,
                      u"2025-03-31T07:00:00Z"_s, u"2025-04-07T07:00:00Z"_s}));
}

void TestEdsProvider::announcesEventsCreatedElsewhere()
{
    // Another program (Evolution, GNOME Calendar) adds an event through EDS.
    GError *error = nullptr;
    ESourceRegistry *registry = e_source_registry_new_sync(nullptr, &error);
    QVERIFY(registry);
    ESource *source = e_source_registry_ref_source(registry, "work-local");
    QVERIFY(source);
    EClient *client =
        e_cal_client_connect_sync(source, E_CAL_CLIENT_SOURCE_TYPE_EVENTS, 10, nullptr, &error);
    QVERIFY2(client, error ? error->message : "");
    ICalComponent *event = i_cal_component_new_from_string(
        "BEGIN:VEVENT\r\nUID:launch@example.com\r\nDTSTAMP:20250101T000000Z\r\n"
        "DTSTART:20250402T150000Z\r\nDTEND:20250402T160000Z\r\nSUMMARY:Launch\r\n"
        "END:VEVENT\r\n");
    QSignalSpy changed(m_provider.get(), &CalendarProvider::changed);
    gchar *uid = nullptr;
    QVERIFY(e_cal_client_create_object_sync(E_CAL_CLIENT(client), event, E_CAL_OPERATION_FLAG_NONE,
                                            &uid, nullptr, &error));
    g_free(uid);
    g_object_unref(event);
    g_object_unref(client);
    g_object_unref(source);
    g_object_unref(registry);

    QVERIFY(changed.wait(10'000));
    const QList<ProviderOccurrence> april =
        read(utc("2025-04-02T00:00Z"), utc("2025-04-03T00:00Z"));
    QVERIFY(std::any_of(april.cbegin(), april.cend(), [](const ProviderOccurrence &o) {
        return o.title == u"Launch" && o.start == utc("2025-04-02T15:00Z");
    }));
}

QTEST_GUILESS_MAIN(TestEdsProvider)
#include "tst_edsprovider.moc"

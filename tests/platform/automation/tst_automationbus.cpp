// The running app's automation on a private session bus, as gdbus or the command line meet it:
// the intents' rules and sentences and their errors, introspection, the well-known name and the
// folder it serves (the status signal: tst_automationcli).
#include "platform/automation/AutomationClient.h"
#include "platform/automation/AutomationDBusService.h"
#include "support/ItemFixtures.h"
#include "support/ListCalendarSource.h"
#include "support/PanelCore.h"
#include "support/PrivateSessionBus.h"

#include <QDBusMessage>
#include <QTest>

using namespace Fixture;
using namespace Qt::StringLiterals;

static const QDateTime start = at("2026-03-01T12:00:00Z"); // 15:00 in Istanbul

// One app's core with a calendar the test fills, and its automation service on a connection of
// its own.
struct App : PanelCore
{
    App(const PrivateSessionBus &bus, const QString &name)
        : PanelCore(start)
        , connection(bus.connect(name))
    {
        registry.attachCalendarSource(&calendar);
    }

    ListCalendarSource calendar;
    CountdownIntents intents {store, registry, clock, settings, locale};
    AutomationDBusService service {intents, &feed, paths.supportDirectory()};
    QDBusConnection connection;
};

class tst_AutomationBus : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup() { m_app.reset(); }
    void intents_data();
    void intents();
    void theNameBelongsToTheFirstAppAndItsFolder();

private:
    // A method call from another connection, as gdbus or the command line sends it.
    QDBusMessage call(const QString &method, const QVariantList &arguments = {},
                      const QString &interface = AutomationBus::interfaceName());

    PrivateSessionBus m_bus;
    std::unique_ptr<App> m_app;
    std::optional<QDBusConnection> m_client;
};

void tst_AutomationBus::initTestCase()
{
    if (!m_bus.start())
        QSKIP("dbus-daemon is not available");
    m_client = m_bus.connect(u"client"_s);
}

void tst_AutomationBus::init()
{
    m_app = std::make_unique<App>(m_bus, u"app-%1"_s.arg(QTest::currentTestFunction()));
    QVERIFY(m_app->service.registerOn(m_app->connection));
}

QDBusMessage tst_AutomationBus::call(const QString &method, const QVariantList &arguments,
                                     const QString &interface)
{
    QDBusMessage message = QDBusMessage::createMethodCall(
        AutomationBus::serviceName(), u"/org/tarrow/Tarrow"_s, interface, method);
    message.setArguments(arguments);
    return m_client->call(message, QDBus::BlockWithGui, 5000);
}

void tst_AutomationBus::intents_data()
{
    QTest::addColumn<QList<Event>>("events");
    QTest::addColumn<QList<CalendarOccurrence>>("occurrences");
    QTest::addColumn<QString>("method");
    QTest::addColumn<QVariantList>("arguments"); // TimeUntil without any: the first event's id
    QTest::addColumn<QString>("answer"); // or "error name: message"
    QTest::addColumn<QString>("created"); // the target of the countdown it added, and its kind

    const auto create = [](const char *name, const QString &title, const QString &date,
                           const QString &answer, const QString &created = {}) {
        QTest::newRow(name) << QList<Event>() << QList<CalendarOccurrence>() << u"CreateCountdown"_s
                            << QVariantList {title, date} << answer << created;
    };
    const auto ask = [](const char *name, const QList<Event> &events, const QString &answer,
                        const QList<CalendarOccurrence> &occurrences = {}) {
        QTest::newRow(name) << events << occurrences
                            << (events.size() == 1 ? u"TimeUntil"_s : u"NextCountdown"_s)
                            << QVariantList() << answer << QString();
    };
    const QString tomorrow = u"2026-03-02T17:00"_s, timed = u"2026-03-02T14:00:00Z timed"_s;
    const QString forty = QString(40, u'a'), emoji = u"👍🏽"_s.repeated(40);
    const QString badTitle =
        u"org.tarrow.Tarrow.Error.InvalidTitle: The title must be 1 to 40 characters long."_s;
    const QString pastDate = u"org.tarrow.Tarrow.Error.PastDate: The date must be in the future."_s;
    const QString badDate = u"org.tarrow.Tarrow.Error.InvalidDate: The date could not be read. "
                            u"Write it like 2026-12-24, 2026-12-24T18:30 or “tomorrow at 3pm”."_s;
    create("A title is trimmed and the answer tells the time left", u" Dentist "_s, tomorrow,
           u"Created “Dentist”: 1d 2h to go."_s, timed);
    create("Forty emoji with skin tones are forty characters", emoji, tomorrow,
           u"Created “%1”: 1d 2h to go."_s.arg(emoji), timed);
    create("A 41-character title is InvalidTitle", forty + u'a', tomorrow, badTitle);
    create("A title of white space is InvalidTitle", u"   "_s, tomorrow, badTitle);
    create("A date exactly now is PastDate", u"x"_s, u"2026-03-01T12:00:00Z"_s, pastDate);
    create("A day is a countdown to the whole day in the local zone", u"x"_s, u"2026-03-05"_s,
           u"Created “x”: 3d 9h to go."_s, u"2026-03-04T21:00:00Z whole day"_s);
    create("Midnight makes a countdown to the whole day", u"x"_s, u"2026-03-05T00:00"_s,
           u"Created “x”: 3d 9h to go."_s, u"2026-03-04T21:00:00Z whole day"_s);
    create("One minute past midnight keeps its time", u"x"_s, u"2026-03-05T00:01"_s,
           u"Created “x”: 3d 9h to go."_s, u"2026-03-04T21:01:00Z timed"_s);
    create("A phrase that is only a date is understood", u"x"_s, u"tomorrow at 3pm"_s,
           u"Created “x”: 1d 0h to go."_s, u"2026-03-02T12:00:00Z timed"_s);
    create("A phrase with other words is InvalidDate", u"x"_s, u"dentist tomorrow"_s, badDate);

    const Event soon = countdown(u"Dentist"_s, start.addSecs(26 * 3600));
    const Event later = countdown(u"Trip"_s, start.addDays(3));
    const CalendarOccurrence standup = occurrence(u"standup"_s, u"Standup"_s, start.addSecs(7200));
    const QString none = u"There are no upcoming countdowns."_s;
    ask("Only count-ups and past countdowns: there is none",
        {countUp(u"Quit"_s, start.addDays(-3)), reached(countdown(u"Gone"_s, start))}, none);
    ask("The earliest countdown is next", {later, soon}, u"1d 2h until “Dentist”."_s);
    ask("A calendar event that starts sooner is next", {}, u"2h 0m until “Standup”."_s, {standup});
    ask("A countdown to a whole day counts from the start of its day",
        {countdown(u"Trip"_s, at("2026-03-03T09:00:00Z"), "Europe/Istanbul")},
        u"1d 9h until “Trip”."_s);
    ask("The time since a count-up", {countUp(u"Quit"_s, start.addDays(-3))},
        u"It has been 3d 0h since “Quit”."_s);
    QTest::newRow("An unknown id is NotFound")
        << QList<Event>() << QList<CalendarOccurrence>() << u"TimeUntil"_s
        << QVariantList {u"6F1C9E0A-3B7D-4C2E-9A51-0D8E2F4B7C11"_s}
        << u"org.tarrow.Tarrow.Error.NotFound: That countdown no longer exists."_s << QString();
}

void tst_AutomationBus::intents()
{
    QFETCH(QList<Event>, events);
    QFETCH(QString, method);
    QFETCH(QVariantList, arguments);
    QFETCH(QList<CalendarOccurrence>, occurrences);
    for (const Event &event : events)
        QVERIFY(m_app->store.addEvent(event));
    m_app->calendar.publish(occurrences);
    if (method == u"TimeUntil" && arguments.isEmpty())
        arguments = {events.constFirst().id.toString(QUuid::WithoutBraces)};

    const QDBusMessage reply = call(method, arguments);
    QTEST(reply.type() == QDBusMessage::ErrorMessage
              ? reply.errorName() + u": "_s + reply.errorMessage()
              : reply.arguments().value(0).toString(),
          "answer");
    QStringList created;
    for (const Event &event : m_app->store.events()) {
        if (!events.contains(event)) {
            QCOMPARE(event.createdAt, start);
            QCOMPARE(event.timeZone, u"Europe/Istanbul"_s);
            created << event.targetDate.toString(Qt::ISODate)
                    + (event.includeTime ? u" timed"_s : u" whole day"_s);
        }
    }
    QTEST(created.join(u'\n'), "created");
}

void tst_AutomationBus::theNameBelongsToTheFirstAppAndItsFolder()
{
    // Introspection tells gdbus and busctl what the interface holds.
    const QString xml = call(u"Introspect"_s, {}, u"org.freedesktop.DBus.Introspectable"_s)
                            .arguments()
                            .value(0)
                            .toString();
    for (const QString &part : {u"name=\"org.tarrow.Tarrow.Automation\""_s, u"\"a(ss)\""_s,
                                u"<signal name=\"StatusChanged\">"_s, u"\"DataDirectory\""_s})
        QVERIFY2(xml.contains(part), qPrintable(part));

    const AutomationClient client(*m_client);
    const QString folder = m_app->paths.supportDirectory();
    QVERIFY(client.servesDataDirectory(folder));
    QVERIFY(client.servesDataDirectory(folder + u"/./"_s));
    QVERIFY(!client.servesDataDirectory(folder + u"/.."_s));

    App second(m_bus, u"second"_s);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"org.tarrow.Tarrow is taken"_s));
    QVERIFY(!second.service.registerOn(second.connection));
    QVERIFY(client.servesDataDirectory(folder));

    // Once the first app is gone, nothing answers and the command line acts on its own.
    m_app.reset();
    QVERIFY(!client.servesDataDirectory(folder));
    QCOMPARE(client.call(u"NextCountdown"_s).kind, AutomationClient::Reply::Kind::unreachable);
    QVERIFY(!AutomationClient(QDBusConnection(u"not connected"_s)).servesDataDirectory(folder));
}

QTEST_GUILESS_MAIN(tst_AutomationBus)
#include "tst_automationbus.moc"

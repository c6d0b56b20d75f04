// The running app's automation on a private session bus: the rules of creating a countdown as a
// client meets them, the answers and errors, introspection, the well-known name, the status signal.
#include "platform/automation/AutomationClient.h"
#include "platform/automation/AutomationDBusService.h"
#include "support/ItemFixtures.h"
#include "support/PanelCore.h"
#include "support/PrivateSessionBus.h"

#include <QDBusMessage>
#include <QTest>

using namespace Qt::StringLiterals;

static const QDateTime start = Fixture::at("2026-03-01T12:00:00Z"); // 15:00 in Istanbul

// One app's core and its automation service on a connection of its own.
struct App : PanelCore
{
    App(const PrivateSessionBus &bus, const QString &name)
        : PanelCore(start)
        , connection(bus.connect(name))
    {
    }

    CountdownIntents intents {store, registry, clock, settings, locale};
    AutomationDBusService service {intents, &feed, paths.supportDirectory()};
    QDBusConnection connection;
};

// Collects the StatusChanged signals a client receives.
class StatusListener : public QObject
{
    Q_OBJECT
public:
    QStringList lines;
public Q_SLOTS:
    void take(const QString &line) { lines << line; }
};

class tst_AutomationBus : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup() { m_app.reset(); }
    void createCountdownRules_data();
    void createCountdownRules();
    void answersAreSentencesAndErrorsCarryTheirMessage();
    void introspectionDescribesTheInterface();
    void theNameBelongsToTheFirstAppAndItsFolder();
    void whatThePanelShowsIsSignalled();

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

void tst_AutomationBus::createCountdownRules_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("date");
    QTest::addColumn<QString>("error");
    QTest::addColumn<bool>("includeTime");

    const QString tomorrow = u"2026-03-02T17:00"_s;
    const QString invalidTitle = u"org.tarrow.Tarrow.Error.InvalidTitle"_s;
    const QString pastDate = u"org.tarrow.Tarrow.Error.PastDate"_s;
    const auto row = [](const char *name, const QString &title, const QString &date,
                        const QString &error, bool includeTime) {
        QTest::newRow(name) << title << date << error << includeTime;
    };
    row("A 40-character title is accepted", QString(40, u'a'), tomorrow, {}, true);
    row("A 41-character title is InvalidTitle", QString(41, u'a'), tomorrow, invalidTitle, false);
    row("An empty title is InvalidTitle", {}, tomorrow, invalidTitle, false);
    row("A title of white space is InvalidTitle", u"   "_s, tomorrow, invalidTitle, false);
    row("Forty emoji with skin tones are forty characters", u"👍🏽"_s.repeated(40), tomorrow,
        {}, true);
    row("A date one second ago is PastDate", u"x"_s, u"2026-03-01T11:59:59Z"_s, pastDate, false);
    row("A date exactly now is PastDate", u"x"_s, u"2026-03-01T12:00:00Z"_s, pastDate, false);
    row("Midnight makes a countdown to the whole day", u"x"_s, u"2026-03-05T00:00"_s, {}, false);
    row("One minute past midnight keeps its time", u"x"_s, u"2026-03-05T00:01"_s, {}, true);
    row("A date that is no date is InvalidDate", u"x"_s, u"soonish"_s,
        u"org.tarrow.Tarrow.Error.InvalidDate"_s, false);
}

void tst_AutomationBus::createCountdownRules()
{
    QFETCH(QString, title);
    QFETCH(QString, date);
    QFETCH(QString, error);
    const QDBusMessage reply = call(u"CreateCountdown"_s, {title, date});
    if (!error.isEmpty()) {
        QCOMPARE(reply.errorName(), error);
        QVERIFY(m_app->store.events().isEmpty());
        return;
    }
    QCOMPARE(reply.type(), QDBusMessage::ReplyMessage);
    QCOMPARE(m_app->store.events().size(), 1);
    const Event &event = m_app->store.events().constFirst();
    QCOMPARE(event.title, title);
    QTEST(event.includeTime, "includeTime");
    QCOMPARE(event.timeZone, u"Europe/Istanbul"_s);
    QCOMPARE(event.direction, CountdownDirection::until);
    QCOMPARE(event.createdAt, start);
    QVERIFY(!event.reachedAt && !event.recurrence);
}

void tst_AutomationBus::answersAreSentencesAndErrorsCarryTheirMessage()
{
    QCOMPARE(call(u"NextCountdown"_s).arguments(),
             QVariantList {u"There are no upcoming countdowns."_s});
    QCOMPARE(call(u"CreateCountdown"_s, {u" Dentist "_s, u"2026-03-02T17:00"_s}).arguments(),
             QVariantList {u"Created “Dentist”: 1d 2h to go."_s});
    const QDBusMessage refused = call(u"CreateCountdown"_s, {QString(), u"2026-03-02"_s});
    QCOMPARE(refused.errorMessage(), u"The title must be 1 to 40 characters long."_s);
    const QDBusMessage unknown = call(u"TimeUntil"_s, {u"6F1C9E0A-3B7D-4C2E-9A51-0D8E2F4B7C11"_s});
    QCOMPARE(unknown.errorName(), u"org.tarrow.Tarrow.Error.NotFound"_s);
    QCOMPARE(unknown.errorMessage(), u"That countdown no longer exists."_s);
    QCOMPARE(call(u"TimeUntil"_s, {42}).errorName(), u"org.freedesktop.DBus.Error.UnknownMethod"_s);
}

void tst_AutomationBus::introspectionDescribesTheInterface()
{
    const QString xml = call(u"Introspect"_s, {}, u"org.freedesktop.DBus.Introspectable"_s)
                            .arguments()
                            .value(0)
                            .toString();
    for (const QString &part : {u"name=\"org.tarrow.Tarrow.Automation\""_s, u"\"a(ss)\""_s,
                                u"<signal name=\"StatusChanged\">"_s, u"\"DataDirectory\""_s})
        QVERIFY2(xml.contains(part), qPrintable(part));
}

void tst_AutomationBus::theNameBelongsToTheFirstAppAndItsFolder()
{
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

void tst_AutomationBus::whatThePanelShowsIsSignalled()
{
    StatusListener listener;
    QVERIFY(m_client->connect(AutomationBus::serviceName(), AutomationBus::objectPath(),
                              AutomationBus::interfaceName(), u"StatusChanged"_s, &listener,
                              SLOT(take(QString))));
    const AutomationClient client(*m_client);
    const QString idle = u"\"text\":\"New countdown\""_s;
    QVERIFY(client.status()->contains(idle));

    QVERIFY(m_app->store.addEvent(Fixture::countdown(u"Tea"_s, start.addSecs(90))));
    QTRY_COMPARE(listener.lines.size(), 1);
    const QString tea = u"\"text\":\"Tea 1m\",\"tooltip\":\"1m until “Tea”.\""_s;
    QVERIFY2(listener.lines.constFirst().contains(tea), qPrintable(listener.lines.constFirst()));
    QCOMPARE(client.status(), listener.lines.constFirst());
}

QTEST_GUILESS_MAIN(tst_AutomationBus)
#include "tst_automationbus.moc"

// The running app's automation on a private session bus: the messages a client sends and gets
// back, the errors, introspection, the well-known name, and the status signal.
#include "platform/automation/AutomationClient.h"
#include "platform/automation/AutomationDBusService.h"
#include "support/ItemFixtures.h"
#include "support/PanelCore.h"
#include "support/PrivateSessionBus.h"

#include <QDBusMessage>
#include <QTemporaryDir>
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
    void intentsAnswerWithSentencesOrNamedErrors_data();
    void intentsAnswerWithSentencesOrNamedErrors();
    void countdownsArePickedByIdOrTitle();
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

void tst_AutomationBus::intentsAnswerWithSentencesOrNamedErrors_data()
{
    QTest::addColumn<QString>("method");
    QTest::addColumn<QVariantList>("arguments");
    QTest::addColumn<QString>("error");
    QTest::addColumn<QString>("text");

    QTest::newRow("A new countdown is created and told")
        << u"CreateCountdown"_s << QVariantList {u"Dentist"_s, u"2026-03-02T17:00"_s} << QString()
        << u"Created “Dentist”: 1d 2h to go."_s;
    QTest::newRow("A 41-character title is InvalidTitle")
        << u"CreateCountdown"_s << QVariantList {QString(41, u'x'), u"2026-03-02"_s}
        << u"org.tarrow.Tarrow.Error.InvalidTitle"_s
        << u"The title must be 1 to 40 characters long."_s;
    QTest::newRow("A date one second ago is PastDate")
        << u"CreateCountdown"_s << QVariantList {u"Late"_s, u"2026-03-01T11:59:59Z"_s}
        << u"org.tarrow.Tarrow.Error.PastDate"_s << u"The date must be in the future."_s;
    QTest::newRow("A date that is no date is InvalidDate")
        << u"CreateCountdown"_s << QVariantList {u"Soon"_s, u"soonish"_s}
        << u"org.tarrow.Tarrow.Error.InvalidDate"_s
        << u"The date could not be read. Write it like 2026-12-24, 2026-12-24T18:30 or "
           "“tomorrow at 3pm”."_s;
    QTest::newRow("Nothing to come is said in words")
        << u"NextCountdown"_s << QVariantList() << QString()
        << u"There are no upcoming countdowns."_s;
    QTest::newRow("An unknown id is NotFound")
        << u"TimeUntil"_s << QVariantList {u"6F1C9E0A-3B7D-4C2E-9A51-0D8E2F4B7C11"_s}
        << u"org.tarrow.Tarrow.Error.NotFound"_s << u"That countdown no longer exists."_s;
    QTest::newRow("Arguments of the wrong type are refused by the bus")
        << u"TimeUntil"_s << QVariantList {42} << u"org.freedesktop.DBus.Error.UnknownMethod"_s
        << QString();
}

void tst_AutomationBus::intentsAnswerWithSentencesOrNamedErrors()
{
    QFETCH(QString, method);
    QFETCH(QVariantList, arguments);
    QFETCH(QString, error);
    QFETCH(QString, text);
    const QDBusMessage reply = call(method, arguments);
    if (error.isEmpty()) {
        QCOMPARE(reply.type(), QDBusMessage::ReplyMessage);
        QCOMPARE(reply.arguments(), QVariantList {text});
        return;
    }
    QCOMPARE(reply.errorName(), error);
    if (!text.isEmpty())
        QCOMPARE(reply.errorMessage(), text);
    QCOMPARE(m_app->store.events().size(), 0);
}

void tst_AutomationBus::countdownsArePickedByIdOrTitle()
{
    const AutomationClient client(*m_client);
    QCOMPARE(client.call(u"CreateCountdown"_s, {u"Trip"_s, u"2026-03-05"_s}).text,
             u"Created “Trip”: 3d 9h to go."_s);
    QCOMPARE(client.call(u"CreateCountdown"_s, {u"Exam"_s, u"2026-03-02T15:00"_s}).kind,
             AutomationClient::Reply::Kind::answered);
    const std::optional<StoredCountdownEntities> listed = client.listCountdowns();
    QVERIFY(listed);
    QCOMPARE(*listed, StoredCountdownQuery::all(m_app->store));
    const StoredCountdownEntities trip = StoredCountdownQuery::titled(*listed, u" trip "_s);
    QCOMPARE(trip.size(), 1);
    QCOMPARE(client.call(u"TimeUntil"_s, {trip.constFirst().id.toString()}).text,
             u"3d 9h until “Trip”."_s);
    QCOMPARE(client.call(u"NextCountdown"_s).text, u"1d 0h until “Exam”."_s);

    QVERIFY(m_app->store.deleteEvent(trip.constFirst().id));
    const AutomationClient::Reply gone =
        client.call(u"TimeUntil"_s, {trip.constFirst().id.toString()});
    QCOMPARE(gone.kind, AutomationClient::Reply::Kind::refused);
    QCOMPARE(gone.text, u"That countdown no longer exists."_s);
}

void tst_AutomationBus::introspectionDescribesTheInterface()
{
    const QDBusMessage reply = call(u"Introspect"_s, {}, u"org.freedesktop.DBus.Introspectable"_s);
    const QString xml = reply.arguments().value(0).toString();
    const QStringList parts {
        u"<interface name='org.tarrow.Tarrow.Automation'>"_s,
        u"<method name='CreateCountdown'>"_s,
        u"<arg name='date' type='s' direction='in'/>"_s,
        u"<method name='NextCountdown'>"_s,
        u"<method name='TimeUntil'>"_s,
        u"<arg name='countdowns' type='a(ss)' direction='out'/>"_s,
        u"<signal name='StatusChanged'>"_s,
        u"<property name='DataDirectory' type='s' access='read'/>"_s,
        u"<property name='Status' type='s' access='read'/>"_s,
    };
    for (QString part : parts) {
        part.replace(u'\'', u'"');
        QVERIFY2(xml.contains(part), qPrintable(part));
    }
}

void tst_AutomationBus::theNameBelongsToTheFirstAppAndItsFolder()
{
    const AutomationClient client(*m_client);
    const QString folder = m_app->paths.supportDirectory();
    QVERIFY(client.servesDataDirectory(folder));
    QVERIFY(client.servesDataDirectory(folder + u"/./"_s));
    QTemporaryDir links;
    QVERIFY(QFile::link(folder, links.filePath(u"data"_s)));
    QVERIFY(client.servesDataDirectory(links.filePath(u"data"_s)));
    QVERIFY(!client.servesDataDirectory(links.path()));

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

#include "platform/notifications/ReachNotificationScheduler.h"

#include "l10n/LocaleManager.h"
#include "storage/SettingsStore.h"
#include "support/PrivateSessionBus.h"

#include <QDBusContext>
#include <QDBusMessage>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

// Stands in for the desktop's notification server: records every call with its arguments, hands
// out ids, and emits its signals when the test says so.
class FakeNotificationServer : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

public:
    FakeNotificationServer(QDBusConnection bus, QStringList capabilities)
        : m_bus(std::move(bus))
        , m_capabilities(std::move(capabilities))
    {
        m_bus.registerObject(ReachNotificationScheduler::ObjectPath, this,
                             QDBusConnection::ExportScriptableContents);
    }
    ~FakeNotificationServer() override
    {
        m_bus.unregisterService(ReachNotificationScheduler::ServiceName);
        m_bus.unregisterObject(ReachNotificationScheduler::ObjectPath);
    }
    bool start() { return m_bus.registerService(ReachNotificationScheduler::ServiceName); }

    struct Call
    {
        uint replacesID;
        QString summary, body;
        QStringList actions;
        QVariantMap hints;
        QString appName, appIcon;
    };
    QList<Call> calls;
    QList<uint> closed;

    void invoke(uint id, const QString &action)
    {
        m_bus.send(QDBusMessage::createSignal(ReachNotificationScheduler::ObjectPath,
                                              ReachNotificationScheduler::ServiceName,
                                              u"ActionInvoked"_s)
                   << id << action);
    }

public Q_SLOTS:
    Q_SCRIPTABLE QStringList GetCapabilities() { return m_capabilities; }
    Q_SCRIPTABLE uint Notify(const QString &appName, uint replacesID, const QString &appIcon,
                             const QString &summary, const QString &body,
                             const QStringList &actions, const QVariantMap &hints, int)
    {
        calls.append({replacesID, summary, body, actions, hints, appName, appIcon});
        return replacesID ? replacesID : ++m_lastID;
    }
    Q_SCRIPTABLE void CloseNotification(uint id) { closed.append(id); }

private:
    QDBusConnection m_bus;
    QStringList m_capabilities;
    uint m_lastID = 0;
};

namespace {

Notice arrivalOf(const QString &title, const std::optional<QString> &link)
{
    Event event;
    event.id = QUuid("{2a4f7a51-1111-4c2b-9a11-0123456789ab}");
    event.title = title;
    event.link = link;
    LanguageTable table = LanguageTable::load(u"en"_s);
    return Notice::arrival(event, CountdownID::manual(event.id), table);
}

} // namespace

class tst_ReachNotificationScheduler : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_bus.start()); }
    void theJoinActionFollowsTheServersCapabilities_data();
    void theJoinActionFollowsTheServersCapabilities();
    void actionsAndReplacement();
    void withoutAServerNothingIsShownAndThatIsLoggedOnce();

private:
    struct Setup
    {
        Setup(const PrivateSessionBus &bus, QStringList capabilities, const QString &name)
            : server(bus.connect(name + u"-server"_s), std::move(capabilities))
            , scheduler(bus.connect(name + u"-app"_s), locale, [this](const QUrl &url) {
                opened.append(url);
                return true;
            })
        {
        }
        TempPathProvider paths;
        DiskFileAccess files;
        SettingsStore settings {paths, files};
        LocaleManager locale {settings, [] {
                                  return QStringList {u"en"_s};
                              }};
        FakeNotificationServer server;
        QList<QUrl> opened;
        ReachNotificationScheduler scheduler;
    };

    PrivateSessionBus m_bus;
    int m_setups = 0;
    QString nextName() { return u"setup%1"_s.arg(++m_setups); }
};

void tst_ReachNotificationScheduler::theJoinActionFollowsTheServersCapabilities_data()
{
    QTest::addColumn<QStringList>("capabilities");
    QTest::addColumn<QString>("link");
    QTest::addColumn<QStringList>("actions");
    QTest::addColumn<QString>("body");

    const QStringList openOnly {u"default"_s, u"Open"_s};
    const QString meet = u"https://meet.google.com/abc-defg-hij"_s;
    QTest::newRow("a meeting link on a server with actions gets the join button")
        << QStringList {u"actions"_s, u"body"_s} << meet
        << (openOnly + QStringList {u"tarrow.action.join"_s, u"Join Meeting"_s})
        << u"The moment has arrived!"_s;
    QTest::newRow("without actions the link goes into the body as a hyperlink")
        << QStringList {u"body"_s, u"body-hyperlinks"_s} << meet << openOnly
        << u"The moment has arrived!\n<a href=\"%1\">%1</a>"_s.arg(meet);
    QTest::newRow("a file link is never offered")
        << QStringList {u"actions"_s, u"body-hyperlinks"_s} << u"file:///etc/passwd"_s << openOnly
        << u"The moment has arrived!"_s;
}

void tst_ReachNotificationScheduler::theJoinActionFollowsTheServersCapabilities()
{
    QFETCH(QStringList, capabilities);
    QFETCH(QString, link);
    QFETCH(QStringList, actions);
    QFETCH(QString, body);
    Setup s(m_bus, capabilities, nextName());
    QVERIFY(s.server.start());
    if (link.startsWith(u"file:"_s))
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"Refused to offer the link"_s));

    s.scheduler.post(
        arrivalOf(u"Launch <party>"_s, link.isEmpty() ? std::nullopt : std::optional(link)));
    QTRY_COMPARE(s.server.calls.size(), 1);
    const FakeNotificationServer::Call &call = s.server.calls.constFirst();
    QCOMPARE(call.appName, u"Tarrow"_s);
    QCOMPARE(call.summary, u"Launch <party>"_s);
    QCOMPARE(call.body, body);
    QCOMPARE(call.actions, actions);
    // The installed desktop entry and icon are named after the app's id.
    QCOMPARE(call.hints.value(u"desktop-entry"_s).toString(), u"org.tarrow.Tarrow"_s);
    QCOMPARE(call.appIcon, u"org.tarrow.Tarrow"_s);
    QCOMPARE(call.hints.value(u"sound-name"_s).toString(), u"alarm-clock-elapsed"_s);
    QCOMPARE(call.hints.value(u"urgency"_s).typeId(), QMetaType::UChar);
}

void tst_ReachNotificationScheduler::actionsAndReplacement()
{
    Setup s(m_bus, {u"actions"_s}, nextName());
    QVERIFY(s.server.start());
    QSignalSpy activated(&s.scheduler, &ReachNotificationScheduler::activated);
    const Notice meeting = arrivalOf(u"Standup"_s, u"https://acme.zoom.us/j/42"_s);
    s.scheduler.post(meeting);
    QTRY_VERIFY(s.scheduler.serverID(meeting.identifier));
    const uint id = *s.scheduler.serverID(meeting.identifier);

    s.server.invoke(id + 100, ReachNotificationScheduler::JoinAction); // another app's
    s.server.invoke(id, ReachNotificationScheduler::JoinAction);
    QTRY_COMPARE(s.opened, QList<QUrl> {QUrl(u"https://acme.zoom.us/j/42"_s)});
    QTRY_COMPARE(s.server.closed, QList<uint> {id});
    s.server.invoke(id, ReachNotificationScheduler::JoinAction); // handled once only
    QTest::qWait(50);
    QCOMPARE(s.opened.size(), 1);

    // Posted again, and again while it is shown: the second replaces the first in place.
    s.scheduler.post(meeting);
    QTRY_VERIFY(s.scheduler.serverID(meeting.identifier));
    s.scheduler.post(meeting);
    QTRY_COMPARE(s.server.calls.size(), 3);
    QCOMPARE(s.server.calls.at(1).replacesID, 0u);
    QCOMPARE(s.server.calls.at(2).replacesID, *s.scheduler.serverID(meeting.identifier));

    // A plain click asks for the popup at the item.
    s.server.invoke(*s.scheduler.serverID(meeting.identifier), u"default"_s);
    QTRY_COMPARE(activated.count(), 1);
    const QVariant item = activated.constFirst().constFirst();
    QCOMPARE(*static_cast<const CountdownID *>(item.constData()), *meeting.item);
    QCOMPARE(s.opened.size(), 1);

    s.scheduler.post(meeting);
    QTRY_VERIFY(s.scheduler.serverID(meeting.identifier));
    s.scheduler.withdrawAll();
    QTRY_COMPARE(s.server.closed.size(), 3);
}

void tst_ReachNotificationScheduler::withoutAServerNothingIsShownAndThatIsLoggedOnce()
{
    Setup s(m_bus, {u"actions"_s}, nextName());
    QTest::ignoreMessage(QtWarningMsg,
                         "No notification server on the session bus: notifications "
                         "are not shown");
    s.scheduler.post(arrivalOf(u"One"_s, std::nullopt));
    s.scheduler.post(arrivalOf(u"Two"_s, std::nullopt)); // no second message
    QVERIFY(s.server.calls.isEmpty());

    // A server that appears later shows what comes next.
    QVERIFY(s.server.start());
    QTest::qWait(50);
    s.scheduler.post(arrivalOf(u"Three"_s, std::nullopt));
    QTRY_COMPARE(s.server.calls.size(), 1);
    QCOMPARE(s.server.calls.constFirst().summary, u"Three"_s);
}

QTEST_GUILESS_MAIN(tst_ReachNotificationScheduler)
#include "tst_reachnotificationscheduler.moc"

#include "platform/notifications/ReachNotificationScheduler.h"

#include "l10n/LocaleManager.h"
#include "storage/SettingsStore.h"
#include "support/PrivateSessionBus.h"

#include <QDBusContext>
#include <QDBusMessage>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

// Stands in for the desktop's notification server: writes down every call, hands out ids, and
// emits its signals when the test says so.
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
    void invoke(uint id, const QString &action)
    {
        m_bus.send(QDBusMessage::createSignal(ReachNotificationScheduler::ObjectPath,
                                              ReachNotificationScheduler::ServiceName,
                                              u"ActionInvoked"_s)
                   << id << action);
    }

    QStringList calls; // "replaces id|summary|body|actions"
    QVariantMap lastHints;
    QList<uint> closed;

public Q_SLOTS:
    Q_SCRIPTABLE QStringList GetCapabilities() { return m_capabilities; }
    Q_SCRIPTABLE uint Notify(const QString &appName, uint replacesID, const QString &appIcon,
                             const QString &summary, const QString &body,
                             const QStringList &actions, const QVariantMap &hints, int)
    {
        calls << QStringList {QString::number(replacesID), summary, body, actions.join(u',')}.join(
            u'|');
        lastHints = hints;
        lastHints.insert(u"app"_s, appName);
        lastHints.insert(u"icon"_s, appIcon);
        return replacesID ? replacesID : ++m_lastID;
    }
    Q_SCRIPTABLE void CloseNotification(uint id) { closed.append(id); }

private:
    QDBusConnection m_bus;
    QStringList m_capabilities;
    uint m_lastID = 0;
};

namespace {

Notice arrivalOf(const QString &title, const QString &link = {})
{
    Event event;
    event.id = QUuid("{2a4f7a51-1111-4c2b-9a11-0123456789ab}");
    event.title = title;
    if (!link.isEmpty())
        event.link = link;
    return Notice::arrival(event, CountdownID::manual(event.id), LanguageTable::load(u"en"_s));
}

} // namespace

class tst_ReachNotificationScheduler : public QObject
{
    Q_OBJECT

    // The server and the app on their own connections of the private bus, in English.
    struct Setup
    {
        Setup(const PrivateSessionBus &bus, QStringList capabilities)
            : server(bus.connect(u"server%1"_s.arg(++count)), std::move(capabilities))
            , scheduler(bus.connect(u"app%1"_s.arg(count)), locale, [this](const QUrl &url) {
                opened.append(url);
                return true;
            })
        {
        }
        static inline int count = 0;
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

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_bus.start()); }

    void theJoinActionFollowsTheServersCapabilities_data()
    {
        QTest::addColumn<QStringList>("capabilities");
        QTest::addColumn<QString>("link");
        QTest::addColumn<QString>("call");

        const QString meet = u"https://meet.google.com/abc-defg-hij"_s;
        QTest::newRow("a meeting link on a server with actions gets the join button")
            << QStringList {u"actions"_s, u"body"_s} << meet
            << u"0|Launch <party>|The moment has arrived!|default,Open,tarrow.action.join,Join "
               "Meeting"_s;
        QTest::newRow("without actions the link goes into the body as a hyperlink")
            << QStringList {u"body"_s, u"body-hyperlinks"_s} << meet
            << u"0|Launch <party>|The moment has arrived!\n<a href=\"%1\">%1</a>|default,Open"_s
                   .arg(meet);
        QTest::newRow("text that does not parse as a link is not offered")
            << QStringList {u"actions"_s, u"body-hyperlinks"_s} << u"meet.google.com/abc"_s
            << u"0|Launch <party>|The moment has arrived!|default,Open"_s;
        QTest::newRow("a file link is never offered")
            << QStringList {u"actions"_s, u"body-hyperlinks"_s} << u"file:///etc/passwd"_s
            << u"0|Launch <party>|The moment has arrived!|default,Open"_s;
    }

    void theJoinActionFollowsTheServersCapabilities()
    {
        QFETCH(QStringList, capabilities);
        QFETCH(QString, link);
        Setup s(m_bus, capabilities);
        QVERIFY(s.server.start());
        if (link.startsWith(u"file:"_s))
            QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"Refused to offer the link"_s));
        s.scheduler.post(arrivalOf(u"Launch <party>"_s, link));
        QTRY_COMPARE(s.server.calls.size(), 1);
        QTEST(s.server.calls.constFirst(), "call");
        QCOMPARE(s.server.lastHints,
                 (QVariantMap {{u"app"_s, u"Tarrow"_s},
                               {u"icon"_s, u"org.tarrow.Tarrow"_s},
                               {u"desktop-entry"_s, u"org.tarrow.Tarrow"_s},
                               {u"urgency"_s, QVariant::fromValue(uchar(1))},
                               {u"category"_s, u"x-tarrow.reached"_s},
                               {u"sound-name"_s, u"alarm-clock-elapsed"_s}}));
    }

    // Join opens the link once and closes the notice, another app's ids are ignored; posted again
    // while shown, it replaces itself in place; a plain click asks for the popup at the item.
    void actionsAndReplacement()
    {
        Setup s(m_bus, {u"actions"_s});
        QVERIFY(s.server.start());
        QSignalSpy activated(&s.scheduler, &ReachNotificationScheduler::activated);
        const Notice meeting = arrivalOf(u"Standup"_s, u"https://acme.zoom.us/j/42"_s);
        const auto shownID = [&] {
            return QTest::qWaitFor(
                       [&] { return s.scheduler.serverID(meeting.identifier).has_value(); })
                ? *s.scheduler.serverID(meeting.identifier)
                : 0u;
        };
        s.scheduler.post(meeting);
        const uint id = shownID();
        s.server.invoke(id + 100, ReachNotificationScheduler::JoinAction);
        s.server.invoke(id, ReachNotificationScheduler::JoinAction);
        s.server.invoke(id, ReachNotificationScheduler::JoinAction);
        QTRY_COMPARE(s.server.closed, QList<uint> {id});
        QTest::qWait(50);
        QCOMPARE(s.opened, QList<QUrl> {QUrl(u"https://acme.zoom.us/j/42"_s)});

        s.scheduler.post(meeting);
        const uint second = shownID();
        s.scheduler.post(meeting);
        QTRY_COMPARE(s.server.calls.size(), 3);
        QVERIFY(s.server.calls.at(1).startsWith(u"0|"_s));
        QVERIFY(s.server.calls.at(2).startsWith(QString::number(second) + u'|'));

        s.server.invoke(second, u"default"_s);
        QTRY_COMPARE(activated.count(), 1);
        const QVariant item = activated.constFirst().constFirst();
        QCOMPARE(*static_cast<const CountdownID *>(item.constData()), *meeting.item);
        s.scheduler.withdrawAll();
        QTRY_COMPARE(s.server.closed.size(), 2);
    }

    // Logged once; a server that appears later shows what comes next.
    void withoutAServerNothingIsShownAndThatIsLoggedOnce()
    {
        Setup s(m_bus, {u"actions"_s});
        QTest::ignoreMessage(QtWarningMsg,
                             "No notification server on the session bus: notifications "
                             "are not shown");
        s.scheduler.post(arrivalOf(u"One"_s));
        s.scheduler.post(arrivalOf(u"Two"_s));
        QVERIFY(s.server.calls.isEmpty());
        QVERIFY(s.server.start());
        QTest::qWait(50);
        s.scheduler.post(arrivalOf(u"Three"_s));
        QTRY_COMPARE(s.server.calls,
                     QStringList {u"0|Three|The moment has arrived!|default,Open"_s});
    }
};

QTEST_GUILESS_MAIN(tst_ReachNotificationScheduler)
#include "tst_reachnotificationscheduler.moc"

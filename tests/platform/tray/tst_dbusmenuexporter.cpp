#include "support/PrivateSessionBus.h"

#include "platform/tray/DBusMenuExporter.h"

#include <QDBusPendingCall>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

// One call a host makes, and its reply: the arguments as text, or the error's name.
struct HostCall
{
    QString method;
    QVariantList arguments;
    QString reply;
};
using HostCalls = QList<HostCall>;

QVariant events(const QList<std::pair<int, QString>> &list, const QVariant &data, uint time)
{
    DBusMenuEventList all;
    for (const auto &[id, eventId] : list)
        all.append({id, eventId, QDBusVariant(data), time});
    return QVariant::fromValue(all);
}

// Lists of ints as "[1,2]", other structures as their signature, the rest as text.
QString describe(const QDBusMessage &reply)
{
    if (reply.type() == QDBusMessage::ErrorMessage)
        return reply.errorName();
    QStringList parts;
    for (const QVariant &argument : reply.arguments()) {
        const auto structured = argument.value<QDBusArgument>();
        if (!argument.canConvert<QDBusArgument>())
            parts << argument.toString();
        else if (structured.currentSignature() != u"ai"_s)
            parts << structured.currentSignature();
        else {
            QStringList ids;
            for (int id : qdbus_cast<QList<int>>(structured))
                ids << QString::number(id);
            parts << u'[' + ids.join(u',') + u']';
        }
    }
    return parts.join(u' ');
}

} // namespace

// The panel menu as hosts call it, over a private session bus. The xfce4-panel calls are those
// recorded with dbus-monitor against xfce4-panel 4.18 (tests/fixtures/dbusmenu); the KDE-style
// ones are libdbusmenu-qt's.
class tst_DBusMenuExporter : public QObject
{
    Q_OBJECT

    PrivateSessionBus m_bus;
    QDBusConnection m_host {QString()};
    QDBusConnection m_app {QString()};
    std::unique_ptr<DBusMenuExporter> m_menu;
    QStringList m_chosen;

    QDBusMessage hostCall(const QString &method, const QVariantList &arguments)
    {
        QDBusMessage call = QDBusMessage::createMethodCall(u"org.example.Menu"_s, u"/MenuBar"_s,
                                                           u"com.canonical.dbusmenu"_s, method);
        call.setArguments(arguments);
        QDBusPendingCall pending = m_host.asyncCall(call);
        if (!QTest::qWaitFor([&pending] { return pending.isFinished(); }, 5000))
            return QDBusMessage::createError(QDBusError::Timeout, u"no reply"_s);
        return pending.reply();
    }
    void setEntries(const QStringList &labels)
    {
        QList<StatusItemMenuEntry> entries;
        for (const QString &label : labels)
            entries.append({label, [this, label] {
                                m_chosen.append(label);
                            }});
        m_menu->setEntries(entries);
    }

private Q_SLOTS:
    void initTestCase()
    {
        registerStatusNotifierTypes();
        if (!m_bus.start())
            QSKIP("dbus-daemon is not available");
        m_host = m_bus.connect(u"host"_s);
        m_app = m_bus.connect(u"app"_s);
        QVERIFY(m_app.registerService(u"org.example.Menu"_s));
    }

    void init()
    {
        m_chosen.clear();
        m_menu = std::make_unique<DBusMenuExporter>();
        QVERIFY(
            m_app.registerObject(u"/MenuBar"_s, m_menu.get(), QDBusConnection::ExportAllContents));
        setEntries({u"Show countdowns…"_s, QString(), u"Quit"_s});
    }

    void cleanup() { m_app.unregisterObject(u"/MenuBar"_s); }

    void answersHostsAsTheyCall_data()
    {
        QTest::addColumn<HostCalls>("calls");
        QTest::addColumn<QStringList>("chosen");

        const QString noId = u"org.freedesktop.DBus.Error.InvalidArgs"_s;
        const QStringList xfceProperties {
            u"type"_s,           u"label"_s, u"visible"_s, u"enabled"_s, u"children-display"_s,
            u"accessible-desc"_s};
        QTest::newRow("xfce4-panel reads the menu, opens it and chooses Quit") << HostCalls {
            {u"GetLayout"_s, {0, -1, xfceProperties}, u"2 (ia{sv}av)"_s},
            {u"GetGroupProperties"_s,
             {QVariant::fromValue(QList<int> {0, 1, 2, 3}), QStringList()},
             u"a(ia{sv})"_s},
            {u"AboutToShowGroup"_s, {QVariant::fromValue(QList<int> {0})}, u"[] []"_s},
            {u"EventGroup"_s, {events({{3, u"clicked"_s}}, 0, 5321371u)}, u"[]"_s},
        } << QStringList {u"Quit"_s};
        QTest::newRow("A KDE-style host opens the menu and chooses Show countdowns…") << HostCalls {
            {u"AboutToShow"_s, {0}, u"false"_s},
            {u"Event"_s, {0, u"opened"_s, QVariant::fromValue(QDBusVariant(u""_s)), 0u}, {}},
            {u"Event"_s, {1, u"clicked"_s, QVariant::fromValue(QDBusVariant(u""_s)), 9u}, {}},
            {u"Event"_s, {0, u"closed"_s, QVariant::fromValue(QDBusVariant(u""_s)), 0u}, {}},
        } << QStringList {u"Show countdowns…"_s};
        QTest::newRow("Unknown ids are reported, errors when nothing else is asked; separators "
                      "do nothing")
            << HostCalls {
                   {u"AboutToShowGroup"_s, {QVariant::fromValue(QList<int> {0, 9})}, u"[] [9]"_s},
                   {u"AboutToShowGroup"_s, {QVariant::fromValue(QList<int> {9})}, noId},
                   {u"EventGroup"_s, {events({{9, u"clicked"_s}, {2, u"clicked"_s}}, 0, 0)}, u"[9]"_s},
                   {u"EventGroup"_s, {events({{9, u"clicked"_s}}, 0, 0)}, noId},
                   {u"Event"_s, {9, u"clicked"_s, QVariant::fromValue(QDBusVariant(0)), 0u}, noId},
               }
            << QStringList();
    }

    void answersHostsAsTheyCall()
    {
        QFETCH(HostCalls, calls);
        QFETCH(QStringList, chosen);
        for (const HostCall &call : calls)
            QCOMPARE(describe(hostCall(call.method, call.arguments)), call.reply);
        // The choice runs after the reply went out, on the next turn of the event loop.
        QTRY_COMPARE(m_chosen, chosen);
    }

    // A new language relabels the entries: hosts hear of it and read the new labels, an
    // underscore doubled so that they do not take it for a mnemonic.
    void announcesNewLabels()
    {
        QSignalSpy updates(m_menu.get(), &DBusMenuExporter::LayoutUpdated);
        setEntries({u"Show countdowns…"_s, QString(), u"Quit"_s});
        setEntries({u"Geri sayımları göster…"_s, QString(), u"Çık_"_s});
        QCOMPARE(QList<QVariantList>(updates), (QList<QVariantList> {{m_menu->revision(), 0}}));
        const QDBusMessage reply =
            hostCall(u"GetGroupProperties"_s,
                     {QVariant::fromValue(QList<int> {1, 2, 3, 42}), QStringList {u"label"_s}});
        QStringList labels;
        for (const DBusMenuItemProperties &item :
             qdbus_cast<DBusMenuItemPropertiesList>(reply.arguments().at(0)))
            labels << item.properties.value(u"label"_s).toString();
        QCOMPARE(labels, (QStringList {u"Geri sayımları göster…"_s, QString(), u"Çık__"_s}));
    }
};

QTEST_MAIN(tst_DBusMenuExporter)
#include "tst_dbusmenuexporter.moc"

#include "support/PrivateSessionBus.h"

#include "platform/tray/DBusMenuExporter.h"

#include <QDBusPendingCall>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString kService = u"org.example.MenuTest"_s;
const QString kPath = u"/MenuBar"_s;
const QString kInterface = u"com.canonical.dbusmenu"_s;

// One call a host makes, with the reply's arguments as text ("" for none) or the error's name.
struct HostCall
{
    QString method;
    QVariantList arguments;
    QString reply;
};
using HostCalls = QList<HostCall>;

QVariant menuEvent(int id, const QString &eventId, const QVariant &data, uint timestamp)
{
    return QVariant::fromValue(DBusMenuEvent {id, eventId, QDBusVariant(data), timestamp});
}

QVariant events(const QList<QVariant> &list)
{
    DBusMenuEventList all;
    for (const QVariant &one : list)
        all.append(one.value<DBusMenuEvent>());
    return QVariant::fromValue(all);
}

QVariant ids(const QList<int> &list)
{
    return QVariant::fromValue(list);
}

QVariant data(const QString &text)
{
    return QVariant::fromValue(QDBusVariant(text));
}

// The reply's arguments in a compact text form: lists of ints as "[1,2]", other structured
// values by their signature, the rest as text; an error by its name.
QString describe(const QDBusMessage &reply)
{
    if (reply.type() == QDBusMessage::ErrorMessage)
        return reply.errorName();
    QStringList parts;
    for (const QVariant &argument : reply.arguments()) {
        if (argument.canConvert<QDBusArgument>()) {
            const QDBusArgument structured = argument.value<QDBusArgument>();
            if (structured.currentSignature() != u"ai"_s) {
                parts << u'(' + structured.currentSignature() + u')';
                continue;
            }
            QList<int> list;
            structured >> list;
            QStringList numbers;
            for (int n : list)
                numbers << QString::number(n);
            parts << u'[' + numbers.join(u',') + u']';
        } else {
            parts << argument.toString();
        }
    }
    return parts.join(u' ');
}

} // namespace

// The panel menu as hosts call it over a private session bus. The xfce4-panel calls were recorded
// with dbus-monitor against xfce4-panel 4.18 (its status tray uses libdbusmenu) opening the menu
// with a right click and choosing an entry; the KDE-style ones are those of libdbusmenu-qt.
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
        QDBusMessage call = QDBusMessage::createMethodCall(kService, kPath, kInterface, method);
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
        QVERIFY(m_app.registerService(kService));
    }

    void init()
    {
        m_chosen.clear();
        m_menu = std::make_unique<DBusMenuExporter>();
        QVERIFY(m_app.registerObject(kPath, m_menu.get(), QDBusConnection::ExportAllContents));
        setEntries({u"Show countdowns…"_s, QString(), u"Quit"_s});
    }

    void cleanup()
    {
        m_app.unregisterObject(kPath);
        m_menu.reset();
    }

    void answersHostsAsTheyCall_data()
    {
        QTest::addColumn<HostCalls>("calls");
        QTest::addColumn<QStringList>("chosen");

        const QVariant none = data(QString());
        // As recorded from xfce4-panel 4.18: the layout and the properties as soon as the item
        // registers, then on a right click AboutToShowGroup, and on a choice EventGroup with the
        // data an int32 0 and the X server's time.
        const QStringList xfceProperties {
            u"type"_s,           u"label"_s, u"visible"_s, u"enabled"_s, u"children-display"_s,
            u"accessible-desc"_s};
        QTest::newRow("xfce4-panel opens the menu and chooses Quit") << HostCalls {
            {u"GetLayout"_s, {0, -1, xfceProperties}, u"2 ((ia{sv}av))"_s},
            {u"GetGroupProperties"_s, {ids({0, 1, 2, 3}), QStringList()}, u"(a(ia{sv}))"_s},
            {u"AboutToShowGroup"_s, {ids({0})}, u"[] []"_s},
            {u"EventGroup"_s, {events({menuEvent(3, u"clicked"_s, 0, 5321371u)})}, u"[]"_s},
        } << QStringList {u"Quit"_s};
        QTest::newRow("A KDE-style host opens the menu and chooses Show countdowns…") << HostCalls {
            {u"GetLayout"_s, {0, -1, QStringList {u"label"_s}}, u"2 ((ia{sv}av))"_s},
            {u"AboutToShow"_s, {0}, u"false"_s},
            {u"Event"_s, {0, u"opened"_s, data(QString()), 0u}, QString()},
            {u"Event"_s, {1, u"clicked"_s, data(QString()), 1234u}, QString()},
            {u"Event"_s, {0, u"closed"_s, data(QString()), 0u}, QString()},
        } << QStringList {u"Show countdowns…"_s};
        QTest::newRow("Ids that do not exist are reported and the others still run") << HostCalls {
            {u"AboutToShowGroup"_s, {ids({0, 9})}, u"[] [9]"_s},
            {u"EventGroup"_s,
             {events({menuEvent(9, u"clicked"_s, none, 0), menuEvent(1, u"clicked"_s, none, 0)})},
             u"[9]"_s},
        } << QStringList {u"Show countdowns…"_s};
        QTest::newRow("Calls about nothing but unknown ids are errors") << HostCalls {
            {u"AboutToShowGroup"_s, {ids({7})}, u"org.freedesktop.DBus.Error.InvalidArgs"_s},
            {u"EventGroup"_s,
             {events({menuEvent(7, u"clicked"_s, none, 0)})},
             u"org.freedesktop.DBus.Error.InvalidArgs"_s},
            {u"Event"_s,
             {7, u"clicked"_s, data(QString()), 0u},
             u"org.freedesktop.DBus.Error.InvalidArgs"_s},
            {u"AboutToShow"_s, {7}, u"org.freedesktop.DBus.Error.InvalidArgs"_s},
        } << QStringList();
        QTest::newRow("A click on the separator or the root does nothing") << HostCalls {
            {u"EventGroup"_s,
             {events({menuEvent(2, u"clicked"_s, none, 0), menuEvent(0, u"clicked"_s, none, 0)})},
             u"[]"_s},
        } << QStringList();
    }

    void answersHostsAsTheyCall()
    {
        QFETCH(HostCalls, calls);
        QFETCH(QStringList, chosen);
        for (const HostCall &call : calls) {
            const QDBusMessage reply = hostCall(call.method, call.arguments);
            QCOMPARE(describe(reply), call.reply);
        }
        // The choice runs after the reply went out, on the next turn of the event loop.
        QTRY_COMPARE(m_chosen, chosen);
    }

    void servesTheEntriesWithTheirProperties()
    {
        setEntries({u"Show countdowns…"_s, QString(), u"Save_as"_s});
        const QDBusMessage reply =
            hostCall(u"GetGroupProperties"_s, {ids({1, 2, 3, 42}), QStringList()});
        QCOMPARE(reply.signature(), u"a(ia{sv})"_s);
        DBusMenuItemPropertiesList items;
        reply.arguments().at(0).value<QDBusArgument>() >> items;
        QStringList seen;
        for (const DBusMenuItemProperties &item : items)
            seen << QString::number(item.id) + u'='
                    + item.properties.value(u"label"_s, item.properties.value(u"type"_s))
                          .toString();
        // An underscore is doubled so that hosts do not take it for a mnemonic.
        QCOMPARE(seen, (QStringList {u"1=Show countdowns…"_s, u"2=separator"_s, u"3=Save__as"_s}));

        const QDBusMessage layout = hostCall(u"GetLayout"_s, {0, -1, QStringList {u"label"_s}});
        QCOMPARE(layout.signature(), u"u(ia{sv}av)"_s);
    }

    // Hosts fetch the layout again when told; a new language relabels the entries.
    void announcesNewLabels()
    {
        QSignalSpy updates(m_menu.get(), &DBusMenuExporter::LayoutUpdated);
        const uint before = m_menu->revision();
        setEntries({u"Show countdowns…"_s, QString(), u"Quit"_s});
        QCOMPARE(updates.size(), 0);
        setEntries({u"Geri sayımları göster…"_s, QString(), u"Çık"_s});
        QCOMPARE(updates.size(), 1);
        QCOMPARE(updates.at(0), (QVariantList {before + 1, 0}));
        QCOMPARE(describe(hostCall(u"GetLayout"_s, {0, 0, QStringList()})).section(u' ', 0, 0),
                 QString::number(before + 1));
    }
};

QTEST_MAIN(tst_DBusMenuExporter)
#include "tst_dbusmenuexporter.moc"

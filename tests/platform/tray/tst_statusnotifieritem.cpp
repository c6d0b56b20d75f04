#include "support/FakeStatusNotifierWatcher.h"
#include "support/PrivateSessionBus.h"

#include "platform/tray/StatusNotifierItem.h"
#include "platform/tray/StatusNotifierTypes.h"
#include "platform/tray/TrayIconRenderer.h"

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusVariant>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const QString kItemInterface = u"org.kde.StatusNotifierItem"_s;
const QString kMenuInterface = u"com.canonical.dbusmenu"_s;

MenubarChipPresentation dentist(const QString &detail = u"2d 4h"_s)
{
    return MenubarChipPresentation {u"star.fill"_s, u"Dentist"_s, detail, 0.4};
}

template<typename T>
T demarshalled(const QVariant &argument)
{
    T value;
    argument.value<QDBusArgument>() >> value;
    return value;
}

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

// The item as panels see it over a private session bus, with a stand-in watcher.
class tst_StatusNotifierItem : public QObject
{
    Q_OBJECT

    PrivateSessionBus m_bus;
    QDBusConnection m_panel {QString()};
    QDBusConnection m_app {QString()};
    std::unique_ptr<FakeStatusNotifierWatcher> m_watcher;
    std::unique_ptr<StatusNotifierItem> m_item;
    QStringList m_chosen;

    void setMenu(const QStringList &labels)
    {
        QList<StatusItemMenuEntry> entries;
        for (const QString &label : labels)
            entries.append({label, [this, label] {
                                m_chosen.append(label);
                            }});
        m_item->setMenuEntries(entries);
    }
    // Logs the item's signals `names` from `path` as the panel receives them.
    void listen(const QString &path, const QString &interface, const QStringList &names)
    {
        for (const QString &name : names)
            QVERIFY(m_panel.connect(m_item->serviceName(), path, interface, name, m_watcher.get(),
                                    SLOT(record(QDBusMessage))));
        // A round trip after the match rules, so the bus has them before the item signals.
        panelCall(u"Ping"_s, {}, u"org.freedesktop.DBus.Peer"_s);
    }

    // A call from the panel's side. Item and panel share this thread, so the reply is awaited
    // while the event loop runs.
    QDBusMessage panelCall(const QString &method, const QVariantList &arguments = {},
                           const QString &interface = kItemInterface,
                           const QString &path = StatusNotifierItem::itemObjectPath)
    {
        QDBusMessage call =
            QDBusMessage::createMethodCall(m_item->serviceName(), path, interface, method);
        call.setArguments(arguments);
        QDBusPendingCall pending = m_panel.asyncCall(call);
        if (!QTest::qWaitFor([&pending] { return pending.isFinished(); }, 5000))
            return QDBusMessage::createError(QDBusError::Timeout, u"no reply"_s);
        return pending.reply();
    }
    // GetAll is what most panels ask first. The values read from the reply until the next one.
    QVariantMap allProperties()
    {
        m_reply = panelCall(u"GetAll"_s, {kItemInterface}, u"org.freedesktop.DBus.Properties"_s);
        return m_reply.arguments().isEmpty() ? QVariantMap()
                                             : demarshalled<QVariantMap>(m_reply.arguments().at(0));
    }
    QDBusMessage m_reply;

private Q_SLOTS:
    void initTestCase()
    {
        registerStatusNotifierTypes();
        QVERIFY(m_bus.start());
        m_panel = m_bus.connect(u"panel"_s);
        m_app = m_bus.connect(u"app"_s);
    }

    // Every test starts with the watcher up and an item showing the dentist's chip.
    void init()
    {
        m_watcher = std::make_unique<FakeStatusNotifierWatcher>(m_panel);
        m_item = std::make_unique<StatusNotifierItem>(m_app);
        QVERIFY(m_watcher->start() && m_item->start());
        m_item->show(dentist(), u"Dentist, 2d 4h"_s);
        m_chosen.clear();
        setMenu({u"Show countdowns…"_s, QString(), u"Quit"_s});
        QTRY_VERIFY(m_item->isRegistered());
    }

    void cleanup()
    {
        m_item.reset();
        m_watcher.reset();
    }

    // Any new owner of the watcher's name (a late or restarted panel) starts with no items.
    void registersWithEveryWatcher()
    {
        const QString registration = m_item->serviceName() + u" from "_s + m_app.baseService();
        QCOMPARE(m_watcher->items, QStringList {registration});
        QVERIFY(m_item->serviceName().startsWith(u"org.kde.StatusNotifierItem-"_s));
        m_watcher->stop();
        QTRY_VERIFY(!m_item->isRegistered());
        QVERIFY(m_watcher->start());
        QTRY_VERIFY(m_item->isRegistered());
        QCOMPARE(m_watcher->items, QStringList(2, registration));
    }

    // Every property must survive the trip. The tool tip would cover the open popup: it is empty
    // meanwhile, and so is the title, which XFCE's tray shows in its place.
    void publishesWhatPanelsRead()
    {
        QVariantMap all = allProperties();
        // Square ARGB icons in every standard size, in network byte order.
        const auto pixmaps = demarshalled<SniIconPixmapList>(all.take(u"IconPixmap"_s));
        QList<QSize> sizes;
        for (const SniIconPixmap &pixmap : pixmaps)
            sizes.append(QSize(pixmap.width, pixmap.height));
        QCOMPARE(sizes, (QList<QSize> {{16, 16}, {22, 22}, {24, 24}, {32, 32}, {48, 48}}));
        const QImage drawn =
            TrayIconRenderer::render(dentist(), 22).convertToFormat(QImage::Format_ARGB32);
        QCOMPARE(pixmaps.at(1).toImage(), drawn);
        const QRgb c = drawn.pixel(11, 11);
        const char argb[] {char(qAlpha(c)), char(qRed(c)), char(qGreen(c)), char(qBlue(c))};
        QCOMPARE(pixmaps.at(1).bytes.mid((11 * 22 + 11) * 4, 4), QByteArray(argb, 4));

        const QVariantMap expected {
            {u"XAyatanaLabel"_s, u"Dentist 2d 4h"_s},
            // The label guide keeps the panel item as wide whatever the digits.
            {u"XAyatanaLabelGuide"_s, u"Dentist 0d 0h"_s},
            {u"Title"_s, u"Dentist, 2d 4h"_s},
            {u"Id"_s, u"tarrow"_s},
            {u"Category"_s, u"ApplicationStatus"_s},
            {u"Status"_s, u"Active"_s},
            // A click activates the item instead of opening its menu.
            {u"ItemIsMenu"_s, false},
            {u"Menu"_s, QVariant::fromValue(QDBusObjectPath(u"/MenuBar"_s))}};
        for (const auto &[key, value] : expected.asKeyValueRange())
            QVERIFY2(all.value(key) == value, qPrintable(key + u" is "_s + all[key].toString()));

        const auto shownAsToolTip = [this]() -> QString {
            const QVariantMap now = allProperties();
            return demarshalled<SniToolTip>(now.value(u"ToolTip"_s)).title + u'|'
                + now.value(u"Title"_s).toString();
        };
        QCOMPARE(shownAsToolTip(), u"Dentist, 2d 4h|Dentist, 2d 4h"_s);
        m_item->setPopupOpen(true);
        m_item->show(dentist(u"2d 3h"_s), u"Dentist, 2d 3h"_s);
        QCOMPARE(shownAsToolTip(), u"|"_s);
        m_item->setPopupOpen(false);
        QCOMPARE(shownAsToolTip(), u"Dentist, 2d 3h|Dentist, 2d 3h"_s);
    }

    void signalsOnlyWhatChanged()
    {
        listen(StatusNotifierItem::itemObjectPath, kItemInterface,
               {u"NewIcon"_s, u"NewTitle"_s, u"NewToolTip"_s, u"XAyatanaNewLabel"_s});
        // The same frame again tells nothing. An hour less changes the texts, but the square
        // icon shows only the days: it is sent again when the day turns.
        m_item->show(dentist(), u"Dentist, 2d 4h"_s);
        m_item->show(dentist(u"2d 3h"_s), u"Dentist, 2d 3h"_s);
        m_item->show(dentist(u"1d 3h"_s), u"Dentist, 1d 3h"_s);
        QTRY_COMPARE(m_watcher->signalLog,
                     (QStringList {u"NewTitle"_s, u"NewToolTip"_s,
                                   u"XAyatanaNewLabel|Dentist 2d 3h|Dentist 0d 0h"_s, u"NewIcon"_s,
                                   u"NewTitle"_s, u"NewToolTip"_s,
                                   u"XAyatanaNewLabel|Dentist 1d 3h|Dentist 0d 0h"_s}));
    }

    // A left click activates; a right click on a panel that does not show menus asks for the
    // context menu, and the popup offers everything the menu would.
    void clicksAndMenuReachTheApp()
    {
        QSignalSpy clicks(m_item.get(), &StatusItemHost::clicked);
        for (const QString &method : {u"Activate"_s, u"ContextMenu"_s})
            panelCall(method, {1234, 5});
        QCOMPARE(clicks.size(), 2);
        for (const QList<QVariant> &click : clicks)
            QCOMPARE(click.at(0).value<StatusItemClick>(), (StatusItemClick {{1234, 5}, {}}));
    }

    // The menu as hosts call it. The xfce4-panel calls are those recorded with dbus-monitor
    // against xfce4-panel 4.18 (tests/fixtures/dbusmenu); the KDE-style ones are libdbusmenu-qt's.
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
            QCOMPARE(describe(panelCall(call.method, call.arguments, kMenuInterface,
                                        StatusNotifierItem::menuObjectPath)),
                     call.reply);
        // The choice runs after the reply went out, on the next turn of the event loop.
        QTRY_COMPARE(m_chosen, chosen);
    }

    // A new language relabels the entries: hosts hear of it and read the new labels, an
    // underscore doubled so that they do not take it for a mnemonic.
    void menuAnnouncesNewLabels()
    {
        listen(StatusNotifierItem::menuObjectPath, kMenuInterface, {u"LayoutUpdated"_s});
        setMenu({u"Show countdowns…"_s, QString(), u"Quit"_s});
        setMenu({u"Geri sayımları göster…"_s, QString(), u"Çık_"_s});
        QTRY_COMPARE(m_watcher->signalLog, QStringList {u"LayoutUpdated|3|0"_s});
        const QDBusMessage reply =
            panelCall(u"GetGroupProperties"_s,
                      {QVariant::fromValue(QList<int> {1, 2, 3, 42}), QStringList {u"label"_s}},
                      kMenuInterface, StatusNotifierItem::menuObjectPath);
        QStringList labels;
        for (const DBusMenuItemProperties &item :
             demarshalled<DBusMenuItemPropertiesList>(reply.arguments().value(0)))
            labels << item.properties.value(u"label"_s).toString();
        QCOMPARE(labels, (QStringList {u"Geri sayımları göster…"_s, QString(), u"Çık__"_s}));
    }
};

QTEST_MAIN(tst_StatusNotifierItem)
#include "tst_statusnotifieritem.moc"

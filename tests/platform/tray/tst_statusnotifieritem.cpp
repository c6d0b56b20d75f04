#include "FakeStatusNotifierWatcher.h"
#include "support/PrivateSessionBus.h"

#include "platform/tray/StatusNotifierItem.h"
#include "platform/tray/StatusNotifierTypes.h"
#include "platform/tray/TrayIconRenderer.h"

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusReply>
#include <QDBusVariant>
#include <QSignalSpy>
#include <QTest>

#include <memory>

namespace {

const QString kItemInterface = QStringLiteral("org.kde.StatusNotifierItem");

MenubarChipPresentation dentist(const QString &detail = QStringLiteral("2d 4h"))
{
    return MenubarChipPresentation {QStringLiteral("star.fill"), QStringLiteral("Dentist"), detail,
                                    0.4};
}

// Records the change signals an item sends, as a panel would see them.
class SignalRecorder : public QObject
{
    Q_OBJECT
public:
    QStringList labels;
    int newIcons = 0;

public Q_SLOTS:
    void onLabel(const QString &label, const QString &) { labels.append(label); }
    void onNewIcon() { ++newIcons; }
};

} // namespace

class tst_StatusNotifierItem : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void registersWithARunningWatcher();
    void registersWhenTheWatcherAppearsLater();
    void registersAgainWhenTheWatcherRestarts();
    void publishesWhatPanelsRead_data();
    void publishesWhatPanelsRead();
    void toolTipCarriesTheAccessibleLabel();
    void iconIsSquareArgbInNetworkByteOrder();
    void signalsOnlyWhatChanged();
    void activateReportsTheClickPosition();
    void menuListsEntriesAndRunsThem();

private:
    QVariant readProperty(const QString &name);
    // A call from the panel's side. Item and panel share this thread, so the reply is awaited
    // while the event loop runs.
    QDBusMessage panelCall(const QDBusMessage &call);
    std::unique_ptr<StatusNotifierItem> startItem();

    PrivateSessionBus m_bus;
    int m_round = 0;
    std::unique_ptr<QDBusConnection> m_panel;
    std::unique_ptr<QDBusConnection> m_app;
    std::unique_ptr<FakeStatusNotifierWatcher> m_watcher;
};

void tst_StatusNotifierItem::initTestCase()
{
    registerStatusNotifierTypes();
    if (!m_bus.start()) {
        QSKIP("dbus-daemon is not available");
    }
}

void tst_StatusNotifierItem::init()
{
    ++m_round;
    m_panel =
        std::make_unique<QDBusConnection>(m_bus.connect(QStringLiteral("panel-%1").arg(m_round)));
    m_app = std::make_unique<QDBusConnection>(m_bus.connect(QStringLiteral("app-%1").arg(m_round)));
    QVERIFY(m_panel->isConnected());
    QVERIFY(m_app->isConnected());
    m_watcher = std::make_unique<FakeStatusNotifierWatcher>(*m_panel);
}

void tst_StatusNotifierItem::cleanup()
{
    m_watcher.reset();
    QDBusConnection::disconnectFromBus(m_panel->name());
    QDBusConnection::disconnectFromBus(m_app->name());
    m_panel.reset();
    m_app.reset();
}

std::unique_ptr<StatusNotifierItem> tst_StatusNotifierItem::startItem()
{
    auto item = std::make_unique<StatusNotifierItem>(*m_app);
    if (!item->start()) {
        return nullptr;
    }
    return item;
}

QDBusMessage tst_StatusNotifierItem::panelCall(const QDBusMessage &call)
{
    QDBusPendingCall pending = m_panel->asyncCall(call);
    if (!QTest::qWaitFor([&pending] { return pending.isFinished(); }, 5000)) {
        return QDBusMessage::createError(QDBusError::Timeout, QStringLiteral("no reply"));
    }
    return pending.reply();
}

QVariant tst_StatusNotifierItem::readProperty(const QString &name)
{
    const QString service = m_watcher->registeredItems().value(0);
    QDBusMessage get = QDBusMessage::createMethodCall(
        service, StatusNotifierItem::itemObjectPath,
        QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    get << kItemInterface << name;
    const QDBusReply<QDBusVariant> reply = panelCall(get);
    if (!reply.isValid()) {
        qWarning() << "Get" << name << reply.error().message();
        return {};
    }
    return reply.value().variant();
}

void tst_StatusNotifierItem::registersWithARunningWatcher()
{
    QVERIFY(m_watcher->start());
    const auto item = startItem();
    QVERIFY(item);
    QTRY_COMPARE(m_watcher->registeredItems(), QStringList {item->serviceName()});
    QVERIFY(item->serviceName().startsWith(QStringLiteral("org.kde.StatusNotifierItem-")));
    QCOMPARE(m_watcher->senders(), QStringList {m_app->baseService()});
    QTRY_VERIFY(item->isRegistered());
}

void tst_StatusNotifierItem::registersWhenTheWatcherAppearsLater()
{
    const auto item = startItem();
    QVERIFY(item);
    QTest::qWait(100);
    QVERIFY(!item->isRegistered());
    QVERIFY(m_watcher->start());
    QTRY_COMPARE(m_watcher->registeredItems(), QStringList {item->serviceName()});
    QTRY_VERIFY(item->isRegistered());
}

void tst_StatusNotifierItem::registersAgainWhenTheWatcherRestarts()
{
    QVERIFY(m_watcher->start());
    const auto item = startItem();
    QVERIFY(item);
    QTRY_COMPARE(m_watcher->registeredItems().size(), 1);
    QTRY_VERIFY(item->isRegistered());

    m_watcher->stop();
    QTRY_VERIFY(!item->isRegistered());
    QVERIFY(m_watcher->start());
    QTRY_COMPARE(m_watcher->registeredItems().size(), 2);
    QCOMPARE(m_watcher->registeredItems().at(1), item->serviceName());
    QTRY_VERIFY(item->isRegistered());
}

void tst_StatusNotifierItem::publishesWhatPanelsRead_data()
{
    QTest::addColumn<QString>("property");
    QTest::addColumn<QVariant>("expected");

    QTest::newRow("The label GNOME shows joins the title and the time")
        << "XAyatanaLabel" << QVariant(QStringLiteral("Dentist 2d 4h"));
    QTest::newRow("The label guide keeps the width whatever the digits")
        << "XAyatanaLabelGuide" << QVariant(QStringLiteral("Dentist 0d 0h"));
    QTest::newRow("The title is the text screen readers announce")
        << "Title" << QVariant(QStringLiteral("Dentist, 2d 4h"));
    QTest::newRow("The item names the application") << "Id" << QVariant(QStringLiteral("tarrow"));
    QTest::newRow("The item is an application status")
        << "Category" << QVariant(QStringLiteral("ApplicationStatus"));
    QTest::newRow("The item is active") << "Status" << QVariant(QStringLiteral("Active"));
    QTest::newRow("A click activates the item instead of opening its menu")
        << "ItemIsMenu" << QVariant(false);
    QTest::newRow("The menu lives at /MenuBar")
        << "Menu" << QVariant::fromValue(QDBusObjectPath(QStringLiteral("/MenuBar")));
}

void tst_StatusNotifierItem::publishesWhatPanelsRead()
{
    QFETCH(QString, property);
    QFETCH(QVariant, expected);

    QVERIFY(m_watcher->start());
    const auto item = startItem();
    QVERIFY(item);
    item->show(dentist(), QStringLiteral("Dentist, 2d 4h"));
    QTRY_COMPARE(m_watcher->registeredItems().size(), 1);
    QCOMPARE(readProperty(property), expected);
}

void tst_StatusNotifierItem::toolTipCarriesTheAccessibleLabel()
{
    QVERIFY(m_watcher->start());
    const auto item = startItem();
    QVERIFY(item);
    item->show(dentist(), QStringLiteral("Dentist, 2d 4h"));
    QTRY_COMPARE(m_watcher->registeredItems().size(), 1);

    const QVariant value = readProperty(QStringLiteral("ToolTip"));
    SniToolTip toolTip;
    value.value<QDBusArgument>() >> toolTip;
    QCOMPARE(toolTip.title, QStringLiteral("Dentist, 2d 4h"));
}

void tst_StatusNotifierItem::iconIsSquareArgbInNetworkByteOrder()
{
    QVERIFY(m_watcher->start());
    const auto item = startItem();
    QVERIFY(item);
    item->show(dentist(), QStringLiteral("Dentist, 2d 4h"));
    QTRY_COMPARE(m_watcher->registeredItems().size(), 1);

    SniIconPixmapList pixmaps;
    readProperty(QStringLiteral("IconPixmap")).value<QDBusArgument>() >> pixmaps;
    QList<int> sides;
    for (const SniIconPixmap &pixmap : pixmaps) {
        QCOMPARE(pixmap.width, pixmap.height);
        sides.append(pixmap.width);
    }
    QCOMPARE(sides, TrayIconRenderer::standardSides());

    // Decoding big-endian ARGB must give back exactly the drawn icon.
    const SniIconPixmap &at22 = pixmaps.at(TrayIconRenderer::standardSides().indexOf(22));
    const QImage drawn =
        TrayIconRenderer::render(dentist(), 22).convertToFormat(QImage::Format_ARGB32);
    QCOMPARE(at22.toImage(), drawn);
    const uchar *first = reinterpret_cast<const uchar *>(at22.bytes.constData());
    const QRgb corner = drawn.pixel(11, 11);
    QCOMPARE(first[(11 * 22 + 11) * 4 + 0], uchar(qAlpha(corner)));
    QCOMPARE(first[(11 * 22 + 11) * 4 + 1], uchar(qRed(corner)));
}

void tst_StatusNotifierItem::signalsOnlyWhatChanged()
{
    QVERIFY(m_watcher->start());
    const auto item = startItem();
    QVERIFY(item);
    QTRY_COMPARE(m_watcher->registeredItems().size(), 1);
    SignalRecorder recorder;
    QVERIFY(m_panel->connect(item->serviceName(), StatusNotifierItem::itemObjectPath,
                             kItemInterface, QStringLiteral("XAyatanaNewLabel"), &recorder,
                             SLOT(onLabel(QString, QString))));
    QVERIFY(m_panel->connect(item->serviceName(), StatusNotifierItem::itemObjectPath,
                             kItemInterface, QStringLiteral("NewIcon"), &recorder,
                             SLOT(onNewIcon())));

    item->show(dentist(QStringLiteral("2d 4h")), QStringLiteral("Dentist, 2d 4h"));
    QTRY_COMPARE(recorder.labels, QStringList {QStringLiteral("Dentist 2d 4h")});
    QTRY_COMPARE(recorder.newIcons, 1);

    // Same frame again: nothing to tell. Then an hour less: the label changes, but the square
    // icon only shows the days, so it is not sent again.
    item->show(dentist(QStringLiteral("2d 4h")), QStringLiteral("Dentist, 2d 4h"));
    item->show(dentist(QStringLiteral("2d 3h")), QStringLiteral("Dentist, 2d 3h"));
    QTRY_COMPARE(recorder.labels,
                 (QStringList {QStringLiteral("Dentist 2d 4h"), QStringLiteral("Dentist 2d 3h")}));
    QCOMPARE(recorder.newIcons, 1);
}

void tst_StatusNotifierItem::activateReportsTheClickPosition()
{
    QVERIFY(m_watcher->start());
    const auto item = startItem();
    QVERIFY(item);
    QTRY_COMPARE(m_watcher->registeredItems().size(), 1);
    QSignalSpy clicks(item.get(), &StatusItemHost::clicked);

    QDBusMessage activate =
        QDBusMessage::createMethodCall(item->serviceName(), StatusNotifierItem::itemObjectPath,
                                       kItemInterface, QStringLiteral("Activate"));
    activate << 1234 << 5;
    m_panel->asyncCall(activate);

    QTRY_COMPARE(clicks.size(), 1);
    const auto click = clicks.at(0).at(0).value<StatusItemClick>();
    QCOMPARE(click.position, QPoint(1234, 5));
    QVERIFY(click.geometry.isEmpty());
}

void tst_StatusNotifierItem::menuListsEntriesAndRunsThem()
{
    QVERIFY(m_watcher->start());
    const auto item = startItem();
    QVERIFY(item);
    QTRY_COMPARE(m_watcher->registeredItems().size(), 1);
    int quits = 0;
    item->setMenuEntries({{QStringLiteral("Show countdowns…"),
                           [] {
                           }},
                          {QString(), {}},
                          {QStringLiteral("Quit"), [&quits] {
                               ++quits;
                           }}});

    QDBusMessage getLayout = QDBusMessage::createMethodCall(
        item->serviceName(), StatusNotifierItem::menuObjectPath,
        QStringLiteral("com.canonical.dbusmenu"), QStringLiteral("GetLayout"));
    getLayout << 0 << -1 << QStringList();
    const QDBusMessage reply = panelCall(getLayout);
    QCOMPARE(reply.type(), QDBusMessage::ReplyMessage);
    QCOMPARE(reply.signature(), QStringLiteral("u(ia{sv}av)"));
    DBusMenuLayoutItem root;
    reply.arguments().at(1).value<QDBusArgument>() >> root;
    QCOMPARE(root.children.size(), 3);
    QCOMPARE(root.children.at(0).properties.value(QStringLiteral("label")).toString(),
             QStringLiteral("Show countdowns…"));
    QCOMPARE(root.children.at(1).properties.value(QStringLiteral("type")).toString(),
             QStringLiteral("separator"));

    QDBusMessage event = QDBusMessage::createMethodCall(
        item->serviceName(), StatusNotifierItem::menuObjectPath,
        QStringLiteral("com.canonical.dbusmenu"), QStringLiteral("Event"));
    event << root.children.at(2).id << QStringLiteral("clicked")
          << QVariant::fromValue(QDBusVariant(QString())) << 0u;
    m_panel->asyncCall(event);
    QTRY_COMPARE(quits, 1);
}

QTEST_MAIN(tst_StatusNotifierItem)
#include "tst_statusnotifieritem.moc"

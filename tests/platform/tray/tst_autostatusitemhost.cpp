#include "support/FakeStatusNotifierWatcher.h"
#include "support/PrivateSessionBus.h"

#include "platform/tray/AutoStatusItemHost.h"
#include "platform/tray/ClassicTrayPresence.h"
#include "platform/tray/StatusNotifierItem.h"
#include "platform/tray/StatusNotifierTypes.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// A classic tray that the test starts and stops.
class SwitchableTray final : public ClassicTrayPresence
{
    Q_OBJECT
public:
    bool isPresent() const override { return m_present; }
    void set(bool present)
    {
        if (present == m_present)
            return;
        m_present = present;
        Q_EMIT presentChanged(present);
    }

private:
    bool m_present = false;
};

// The classic icon as the host hands things to it.
class RecordingIcon final : public StatusItemHost
{
    Q_OBJECT
public:
    void show(const MenubarChipPresentation &presentation, const QString &label) override
    {
        shown = presentation.title + u' ' + label;
    }
    void setMenuEntries(const QList<StatusItemMenuEntry> &entries) override
    {
        menuSize = int(entries.size());
    }
    void setPopupOpen(bool open) override { popupOpen = open; }

    QString shown;
    int menuSize = 0;
    bool popupOpen = false;
};

} // namespace

// The choice between the StatusNotifierItem and the classic tray icon, made again as panels and
// trays come and go, over a private session bus with a stand-in panel.
class tst_AutoStatusItemHost : public QObject
{
    Q_OBJECT

    PrivateSessionBus m_bus;
    QDBusConnection m_panelConnection {QString()};
    QDBusConnection m_app {QString()};
    std::unique_ptr<FakeStatusNotifierWatcher> m_panel;
    SwitchableTray *m_tray = nullptr;
    RecordingIcon *m_icon = nullptr; // the classic icon while there is one
    int m_iconsMade = 0;
    std::unique_ptr<AutoStatusItemHost> m_host;

    // Whether the classic icon is there once the host has had time to settle.
    bool settlesOnClassicIcon()
    {
        QTest::qWait(150);
        return m_host->usesTrayIcon();
    }

private Q_SLOTS:
    void initTestCase()
    {
        registerStatusNotifierTypes();
        if (!m_bus.start())
            QSKIP("dbus-daemon is not available");
        m_panelConnection = m_bus.connect(u"panel"_s);
        m_app = m_bus.connect(u"app"_s);
    }

    void init()
    {
        m_panel = std::make_unique<FakeStatusNotifierWatcher>(m_panelConnection);
        auto tray = std::make_unique<SwitchableTray>();
        m_tray = tray.get();
        m_iconsMade = 0;
        m_host = std::make_unique<AutoStatusItemHost>(
            m_app, std::move(tray),
            [this] {
                auto icon = std::make_unique<RecordingIcon>();
                m_icon = icon.get();
                ++m_iconsMade;
                return icon;
            },
            50ms);
        m_host->setMenuEntries({{u"Show countdowns…"_s, {}}, {u"Quit"_s, {}}});
        m_host->show({u"hourglass"_s, u"Dentist"_s, u"2d"_s, 0.5}, u"Dentist, 2d"_s);
    }

    void cleanup()
    {
        m_host.reset();
        m_panel.reset();
    }

    void aTrayStartedLaterGetsTheIconWithWhatWasShown()
    {
        m_host->start();
        QVERIFY(!settlesOnClassicIcon());
        m_host->setPopupOpen(true);
        m_tray->set(true);
        QVERIFY(!m_host->usesTrayIcon()); // not before things settled
        QTRY_VERIFY(m_host->usesTrayIcon());
        QCOMPARE(m_icon->shown, u"Dentist Dentist, 2d"_s);
        QCOMPARE(m_icon->menuSize, 2);
        QVERIFY(m_icon->popupOpen);

        // The tray goes and comes back (a restarted panel): a new icon each time.
        m_tray->set(false);
        QVERIFY(!m_host->usesTrayIcon());
        m_tray->set(true);
        QTRY_VERIFY(m_host->usesTrayIcon());
        QCOMPARE(m_iconsMade, 2);
    }

    void aPanelThatShowsTheItemTakesOverFromTheTray()
    {
        m_tray->set(true);
        m_host->start();
        QTRY_VERIFY(m_host->usesTrayIcon());

        QVERIFY(m_panel->start());
        QTRY_VERIFY(m_host->item().isHosted());
        QVERIFY(!m_host->usesTrayIcon());

        // The panel quits; its tray stays (trayer beside a panel that went away).
        m_panel->stop();
        QTRY_VERIFY(m_host->usesTrayIcon());
    }

    void aPanelOfferingBothKindsGetsOnlyTheItem()
    {
        QVERIFY(m_panel->start());
        m_tray->set(true);
        m_host->start();
        QTRY_VERIFY(m_host->item().isHosted());
        QVERIFY(!settlesOnClassicIcon());
        QCOMPARE(m_iconsMade, 0);
    }

    // A watcher whose panel tray has stopped shows nothing: the classic tray takes over until a
    // host registers again.
    void aWatcherWithoutAHostLeavesTheIconToTheTray()
    {
        QVERIFY(m_panel->start());
        m_tray->set(true);
        m_host->start();
        QTRY_VERIFY(m_host->item().isHosted());

        m_panel->setHost(false);
        QTRY_VERIFY(m_host->usesTrayIcon());
        QVERIFY(m_host->item().isRegistered());

        m_panel->setHost(true);
        QTRY_VERIFY(!m_host->usesTrayIcon());
    }

    void withoutASessionBusTheTrayIsTheOnlyHost()
    {
        QDBusConnection none =
            QDBusConnection::connectToBus(u"unix:path=/nonexistent"_s, u"none"_s);
        auto tray = std::make_unique<SwitchableTray>();
        tray->set(true);
        bool made = false;
        AutoStatusItemHost host(
            none, std::move(tray),
            [&made] {
                made = true;
                return std::make_unique<RecordingIcon>();
            },
            10ms);
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"No session bus"_s));
        host.start();
        QTRY_VERIFY(made && host.usesTrayIcon());
    }
};

QTEST_MAIN(tst_AutoStatusItemHost)
#include "tst_autostatusitemhost.moc"

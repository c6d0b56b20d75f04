#include "support/FakeStatusNotifierWatcher.h"
#include "support/PrivateSessionBus.h"

#include "platform/tray/AutoStatusItemHost.h"
#include "platform/tray/ClassicTrayPresence.h"
#include "platform/tray/StatusNotifierItem.h"
#include "platform/tray/StatusNotifierTypes.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// A classic tray that the test starts and stops.
class SwitchableTray final : public ClassicTrayPresence
{
    Q_OBJECT
public:
    bool isPresent() const override { return present; }
    void set(bool on)
    {
        present = on;
        Q_EMIT presentChanged(on);
    }
    bool present = false;
};

// The classic icon, keeping what the host handed it.
class RecordingIcon final : public StatusItemHost
{
    Q_OBJECT
public:
    void show(const MenubarChipPresentation &, const QString &label) override { shown = label; }
    void setMenuEntries(const QList<StatusItemMenuEntry> &entries) override
    {
        menuSize = int(entries.size());
    }
    QString shown;
    int menuSize = 0;
};

} // namespace

// The choice between the StatusNotifierItem and the classic tray icon, made again as panels and
// trays come and go: a private session bus with a stand-in panel, and a tray the test switches.
class tst_AutoStatusItemHost : public QObject
{
    Q_OBJECT

    PrivateSessionBus m_bus;
    std::unique_ptr<FakeStatusNotifierWatcher> m_panel;
    SwitchableTray *m_tray = nullptr;
    RecordingIcon *m_icon = nullptr; // the last classic icon made
    int m_iconsMade = 0;
    std::unique_ptr<AutoStatusItemHost> m_host;

private Q_SLOTS:
    void initTestCase()
    {
        registerStatusNotifierTypes();
        if (!m_bus.start())
            QSKIP("dbus-daemon is not available");
        m_panel = std::make_unique<FakeStatusNotifierWatcher>(m_bus.connect(u"panel"_s));
        auto tray = std::make_unique<SwitchableTray>();
        m_tray = tray.get();
        m_host = std::make_unique<AutoStatusItemHost>(
            m_bus.connect(u"app"_s), std::move(tray),
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

    // A tray started later gets the icon once things settled. A panel offering both kinds
    // (xfce4-panel) gets only the item; its tray stopping hands the icon to the classic tray
    // until a host shows the item again, as does the panel quitting.
    void theIconGoesWhereItIsShown()
    {
        m_host->start();
        m_tray->set(true);
        QVERIFY(!m_host->usesTrayIcon());
        QTRY_VERIFY(m_host->usesTrayIcon());
        QCOMPARE(std::pair(m_icon->shown, m_icon->menuSize), std::pair(u"Dentist, 2d"_s, 2));

        QVERIFY(m_panel->start());
        QTRY_VERIFY(m_host->item().isHosted());
        QTRY_VERIFY(!m_host->usesTrayIcon());
        m_panel->setHost(false);
        QTRY_VERIFY(m_host->usesTrayIcon());
        QCOMPARE(m_iconsMade, 2);
        m_panel->setHost(true);
        QTRY_VERIFY(!m_host->usesTrayIcon());
        m_panel->stop();
        QTRY_VERIFY(m_host->usesTrayIcon());
        QVERIFY(m_panel->start());
        QTRY_VERIFY(!m_host->usesTrayIcon());
    }
};

QTEST_MAIN(tst_AutoStatusItemHost)
#include "tst_autostatusitemhost.moc"

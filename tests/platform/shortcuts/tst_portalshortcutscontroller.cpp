// The portal engine against a stand-in GlobalShortcuts portal on a private session bus: the
// session and the bound shortcuts with their triggers, presses, a shortcut the user declines.
#include "platform/shortcuts/PortalShortcutsController.h"
#include "shortcuts/KeyCodeTable.h"
#include "shortcuts/ShortcutsService.h"
#include "storage/SettingsStore.h"

#include "FakeDesktopPortal.h"
#include "support/PrivateSessionBus.h"
#include "support/ServiceThread.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_PortalShortcutsController : public QObject
{
    Q_OBJECT

private:
    PrivateSessionBus m_bus;
    std::unique_ptr<ServiceThread> m_thread;
    FakeDesktopPortal *m_portal = nullptr;

private Q_SLOTS:
    void initTestCase()
    {
        if (!m_bus.start())
            QSKIP("dbus-daemon is not available");
        QVERIFY(!PortalShortcutsController::isAvailable(m_bus.connect(u"before"_s)));
        m_thread = std::make_unique<ServiceThread>();
        m_portal = m_thread->make<FakeDesktopPortal>();
        m_thread->run([this] {
            QDBusConnection bus = m_bus.connect(u"portal"_s);
            bus.registerObject(u"/org/freedesktop/portal/desktop"_s, m_portal,
                               QDBusConnection::ExportAllSlots
                                   | QDBusConnection::ExportAllProperties);
            bus.registerService(u"org.freedesktop.portal.Desktop"_s);
        });
        QVERIFY(PortalShortcutsController::isAvailable(m_bus.connect(u"client"_s)));
    }

    void cleanupTestCase() { m_thread.reset(); }

    // Both actions are bound in one session with their triggers; a press of a bound one comes
    // back; the one the user declined is unavailable. A new combination binds a new session.
    void bindsPressesAndDeclines()
    {
        m_thread->run([this] { m_portal->declined = {u"newCountdown"_s}; });
        TempPathProvider paths;
        DiskFileAccess files;
        SettingsStore store(paths, files);
        QList<ShortcutAction> triggered;
        ShortcutsService service(store,
                                 std::make_unique<PortalShortcutsController>(
                                     m_bus.connect(u"client"_s), QMap<ShortcutAction, QString>()),
                                 [&](ShortcutAction action) { triggered << action; });
        QTest::ignoreMessage(QtWarningMsg,
                             "Could not register the newCountdown shortcut (status 3) - most "
                             "likely another app holds it");
        service.start();
        QTRY_COMPARE(service.unavailable(), QSet {ShortcutAction::newCountdown});
        QCOMPARE(m_portal->calls(),
                 (QStringList {u"CreateSession"_s,
                               u"BindShortcuts (session) togglePopover=CTRL+LOGO+t "
                               "newCountdown=CTRL+LOGO+n"_s}));

        m_thread->run([this] {
            m_portal->activate(u"togglePopover"_s);
            m_portal->activate(u"newCountdown"_s); // declined: never bound
        });
        QTRY_COMPARE(triggered.size(), 1);
        QTest::qWait(100); // the declined one does not follow
        QCOMPARE(triggered, QList {ShortcutAction::togglePopover});

        m_thread->run([this] { m_portal->declined.clear(); });
        service.setCombo(ShortcutAction::newCountdown,
                         KeyCombo {43, KeyModifier::control | KeyModifier::shift});
        QTRY_COMPARE(m_portal->calls().size(), 4);
        QCOMPARE(
            m_portal->calls().last(),
            u"BindShortcuts (session) togglePopover=CTRL+LOGO+t newCountdown=CTRL+SHIFT+comma"_s);
        QVERIFY(service.unavailable().isEmpty());
    }
};

QTEST_GUILESS_MAIN(tst_PortalShortcutsController)
#include "tst_portalshortcutscontroller.moc"

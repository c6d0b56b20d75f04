// The engines that ask a desktop service for the keys, each against a stand-in on a private
// session bus running on a thread of its own: what the service receives, presses coming back, a
// key another app holds or the user declines, a key changed in the desktop's settings.
#include "platform/shortcuts/KGlobalAccelController.h"
#include "platform/shortcuts/PortalShortcutsController.h"
#include "shortcuts/KeyCodeTable.h"
#include "shortcuts/ShortcutsService.h"
#include "storage/SettingsStore.h"

#include "FakeDesktopPortal.h"
#include "FakeKGlobalAccel.h"
#include "support/PrivateSessionBus.h"
#include "support/ServiceThread.h"

#include <QDBusMetaType>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_DesktopShortcutServices : public QObject
{
    Q_OBJECT

    PrivateSessionBus m_bus;
    std::unique_ptr<ServiceThread> m_thread;
    FakeKGlobalAccel *m_kglobalaccel = nullptr;
    FakeDesktopPortal *m_portal = nullptr;
    TempPathProvider m_paths;
    DiskFileAccess m_files;
    SettingsStore m_store {m_paths, m_files};
    QList<ShortcutAction> m_triggered;

    ShortcutsService service(std::unique_ptr<GlobalHotkeyController> engine)
    {
        m_store.setSettings(Settings());
        m_triggered.clear();
        return ShortcutsService(m_store, std::move(engine),
                                [this](ShortcutAction action) { m_triggered << action; });
    }

private Q_SLOTS:
    void initTestCase()
    {
        qDBusRegisterMetaType<QList<int>>();
        QVERIFY(m_bus.start());
        QVERIFY(!KGlobalAccelController::isAvailable(m_bus.connect(u"before"_s)));
        QVERIFY(!PortalShortcutsController::isAvailable(m_bus.connect(u"before"_s)));
        m_thread = std::make_unique<ServiceThread>();
        m_kglobalaccel = m_thread->make<FakeKGlobalAccel>();
        m_portal = m_thread->make<FakeDesktopPortal>();
        m_thread->run([this] {
            QDBusConnection bus = m_bus.connect(u"services"_s);
            bus.registerObject(u"/kglobalaccel"_s, m_kglobalaccel,
                               QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals);
            bus.registerObject(u"/component/tarrow"_s, &m_kglobalaccel->component,
                               QDBusConnection::ExportAllSignals);
            bus.registerService(u"org.kde.kglobalaccel"_s);
            bus.registerObject(u"/org/freedesktop/portal/desktop"_s, m_portal,
                               QDBusConnection::ExportAllSlots
                                   | QDBusConnection::ExportAllProperties);
            bus.registerService(u"org.freedesktop.portal.Desktop"_s);
        });
        QVERIFY(KGlobalAccelController::isAvailable(m_bus.connect(u"client"_s)));
        QVERIFY(PortalShortcutsController::isAvailable(m_bus.connect(u"client"_s)));
    }

    void cleanupTestCase() { m_thread.reset(); }

    // The action is registered under Tarrow's component with its name, its default recorded as
    // the default, our key set over any saved one; presses of it come back; stopping releases it.
    void kglobalaccelRegistersPressesAndReleases()
    {
        auto controller = std::make_unique<KGlobalAccelController>(
            m_bus.connect(u"client"_s),
            QMap<ShortcutAction, QString> {{ShortcutAction::togglePopover, u"Show countdowns"_s}});
        QSignalSpy activated(controller.get(), &GlobalHotkeyController::activated);
        QVERIFY(controller->registerHotKey(ShortcutAction::togglePopover,
                                           defaultCombo(ShortcutAction::togglePopover)));
        QCOMPARE(
            m_kglobalaccel->calls(),
            (QStringList {u"doRegister tarrow|togglePopover|Tarrow|Show countdowns"_s,
                          u"setShortcut togglePopover 14000054 8"_s,
                          u"setShortcut togglePopover 14000054 6"_s, u"getComponent tarrow"_s}));
        // A round trip on the same connection, so the bus has the match rule before the presses.
        QVERIFY(KGlobalAccelController::isAvailable(m_bus.connect(u"client"_s)));
        m_thread->run([this] {
            Q_EMIT m_kglobalaccel->component.globalShortcutPressed(u"tarrow"_s, u"togglePopover"_s,
                                                                   0);
            Q_EMIT m_kglobalaccel->component.globalShortcutPressed(u"other"_s, u"togglePopover"_s,
                                                                   0);
        });
        QTRY_COMPARE(activated.size(), 1);
        QCOMPARE(activated.first().first().value<ShortcutAction>(), ShortcutAction::togglePopover);
        controller.reset();
        QCOMPARE(m_kglobalaccel->calls().last(), u"setInactive togglePopover"_s);
    }

    // A key another app holds makes the action unavailable (status 1) and leaves the other
    // working; a key the user picks in the desktop's settings becomes the user's choice.
    void kglobalaccelTakenKeyAndDesktopChange()
    {
        m_thread->run([this] { m_kglobalaccel->taken = {0x1400004e}; }); // Ctrl+Super+N
        QTest::ignoreMessage(QtWarningMsg,
                             "Could not register the newCountdown shortcut (status 1) - most "
                             "likely another app holds it");
        ShortcutsService kde = service(std::make_unique<KGlobalAccelController>(
            m_bus.connect(u"client"_s), QMap<ShortcutAction, QString>()));
        kde.start();
        QCOMPARE(kde.unavailable(), QSet {ShortcutAction::newCountdown});

        m_thread->run([this] {
            Q_EMIT m_kglobalaccel->yourShortcutsChanged(
                {u"tarrow"_s, u"togglePopover"_s, u"Tarrow"_s, u"Show countdowns"_s},
                {0x0c00004b}); // Ctrl+Alt+K
        });
        const KeyCombo picked {40, KeyModifier::control | KeyModifier::alt};
        QTRY_COMPARE(kde.combo(ShortcutAction::togglePopover), picked);
        QCOMPARE(m_store.settings().shortcutOverrides.value(u"togglePopover"_s), picked);
        m_thread->run([this] { m_kglobalaccel->taken.clear(); });
    }

    // Both actions are bound in one portal session with their triggers; a press of a bound one
    // comes back; the one the user declined is unavailable. A new combination binds again.
    void portalBindsPressesAndDeclines()
    {
        m_thread->run([this] { m_portal->declined = {u"newCountdown"_s}; });
        ShortcutsService portal = service(std::make_unique<PortalShortcutsController>(
            m_bus.connect(u"client"_s), QMap<ShortcutAction, QString>()));
        QTest::ignoreMessage(QtWarningMsg,
                             "Could not register the newCountdown shortcut (status 3) - most "
                             "likely another app holds it");
        portal.start();
        QTRY_COMPARE(portal.unavailable(), QSet {ShortcutAction::newCountdown});
        QCOMPARE(m_portal->calls(),
                 (QStringList {u"CreateSession"_s,
                               u"BindShortcuts (session) togglePopover=CTRL+LOGO+t "
                               "newCountdown=CTRL+LOGO+n"_s}));

        m_thread->run([this] {
            m_portal->activate(u"togglePopover"_s);
            m_portal->activate(u"newCountdown"_s); // declined: never bound
        });
        QTRY_COMPARE(m_triggered.size(), 1);
        QTest::qWait(100); // the declined one does not follow
        QCOMPARE(m_triggered, QList {ShortcutAction::togglePopover});

        m_thread->run([this] { m_portal->declined.clear(); });
        portal.setCombo(ShortcutAction::newCountdown,
                        KeyCombo {43, KeyModifier::control | KeyModifier::shift});
        QTRY_COMPARE(m_portal->calls().size(), 4);
        QCOMPARE(
            m_portal->calls().last(),
            u"BindShortcuts (session) togglePopover=CTRL+LOGO+t newCountdown=CTRL+SHIFT+comma"_s);
        QVERIFY(portal.unavailable().isEmpty());
    }
};

QTEST_GUILESS_MAIN(tst_DesktopShortcutServices)
#include "tst_desktopshortcutservices.moc"

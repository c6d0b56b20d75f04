// The kglobalaccel engine against a stand-in service on a private session bus: what the service
// receives, presses coming back, a key another app holds, a key changed in the desktop's settings.
#include "platform/shortcuts/KGlobalAccelController.h"
#include "shortcuts/KeyCodeTable.h"
#include "shortcuts/ShortcutsService.h"
#include "storage/SettingsStore.h"

#include "FakeKGlobalAccel.h"
#include "support/PrivateSessionBus.h"
#include "support/ServiceThread.h"

#include <QDBusConnectionInterface>
#include <QDBusMetaType>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {
constexpr int ctrlSuperT = 0x14000054; // Qt::ControlModifier | Qt::MetaModifier | Qt::Key_T
constexpr int ctrlSuperN = 0x1400004e;
constexpr int ctrlAltK = 0x0c00004b;
} // namespace

class tst_KGlobalAccelController : public QObject
{
    Q_OBJECT

private:
    PrivateSessionBus m_bus;
    std::unique_ptr<ServiceThread> m_thread;
    FakeKGlobalAccel *m_service = nullptr;
    TempPathProvider m_paths;
    DiskFileAccess m_files;

    std::unique_ptr<KGlobalAccelController> makeController()
    {
        return std::make_unique<KGlobalAccelController>(
            m_bus.connect(u"client"_s),
            QMap<ShortcutAction, QString> {{ShortcutAction::togglePopover, u"Show countdowns"_s}});
    }

    // Runs `work` on the service's thread and waits for it.
    template<typename Work>
    void onService(Work work)
    {
        QMetaObject::invokeMethod(m_service, work, Qt::BlockingQueuedConnection);
    }

private Q_SLOTS:
    void initTestCase()
    {
        qDBusRegisterMetaType<QList<int>>();
        if (!m_bus.start())
            QSKIP("dbus-daemon is not available");
        QVERIFY(!KGlobalAccelController::isAvailable(m_bus.connect(u"before"_s)));
        m_thread = std::make_unique<ServiceThread>();
        m_service = m_thread->make<FakeKGlobalAccel>();
        onService([this] {
            QDBusConnection bus = m_bus.connect(u"service"_s);
            bus.registerObject(u"/kglobalaccel"_s, m_service,
                               QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals);
            bus.registerObject(u"/component/tarrow"_s, &m_service->component,
                               QDBusConnection::ExportAllSignals);
            bus.registerService(u"org.kde.kglobalaccel"_s);
        });
        QVERIFY(KGlobalAccelController::isAvailable(m_bus.connect(u"client"_s)));
    }

    void cleanupTestCase() { m_thread.reset(); }

    // The action is registered under Tarrow's component with its name, its default recorded as
    // the default, our key set over any saved one; presses of it come back; stopping releases it.
    void registersPressesAndReleases()
    {
        auto controller = makeController();
        QSignalSpy activated(controller.get(), &GlobalHotkeyController::activated);
        QVERIFY(controller->registerHotKey(ShortcutAction::togglePopover,
                                           defaultCombo(ShortcutAction::togglePopover)));
        QCOMPARE(
            m_service->calls(),
            (QStringList {u"doRegister tarrow|togglePopover|Tarrow|Show countdowns"_s,
                          u"setShortcut togglePopover 14000054 8"_s,
                          u"setShortcut togglePopover 14000054 6"_s, u"getComponent tarrow"_s}));
        onService([this] {
            Q_EMIT m_service->component.globalShortcutPressed(u"tarrow"_s, u"togglePopover"_s, 0);
            Q_EMIT m_service->component.globalShortcutPressed(u"other"_s, u"togglePopover"_s, 0);
        });
        QTRY_COMPARE(activated.size(), 1);
        QCOMPARE(activated.first().first().value<ShortcutAction>(), ShortcutAction::togglePopover);
        controller.reset();
        QCOMPARE(m_service->calls().last(), u"setInactive togglePopover"_s);
        Q_UNUSED(ctrlSuperT);
    }

    // A key another app holds makes the action unavailable (status 1) and leaves the other
    // working; a key the user picks in the desktop's settings becomes the user's choice.
    void takenKeyAndDesktopChange()
    {
        onService([this] { m_service->taken = {ctrlSuperN}; });
        SettingsStore store(m_paths, m_files);
        QTest::ignoreMessage(QtWarningMsg,
                             "Could not register the newCountdown shortcut (status 1) - most "
                             "likely another app holds it");
        ShortcutsService service(store, makeController(), {});
        service.start();
        QCOMPARE(service.unavailable(), QSet {ShortcutAction::newCountdown});

        onService([this] {
            Q_EMIT m_service->yourShortcutsChanged(
                {u"tarrow"_s, u"togglePopover"_s, u"Tarrow"_s, u"Show countdowns"_s}, {ctrlAltK});
        });
        const KeyCombo picked {40, KeyModifier::control | KeyModifier::alt};
        QTRY_COMPARE(service.combo(ShortcutAction::togglePopover), picked);
        QCOMPARE(store.settings().shortcutOverrides.value(u"togglePopover"_s), picked);
        onService([this] { m_service->taken.clear(); });
    }
};

QTEST_GUILESS_MAIN(tst_KGlobalAccelController)
#include "tst_kglobalaccelcontroller.moc"

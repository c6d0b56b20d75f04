// The shortcuts service over an engine that refuses what the test says: the combinations it
// registers, settings.json as the place the user's choices live, and what a refusal leaves.
#include "shortcuts/ShortcutsService.h"
#include "storage/SettingsStore.h"
#include "json/JsonDocument.h"

#include "support/FakeHotkeyController.h"
#include "support/Fixtures.h"

#include <QPointer>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {
const KeyCombo ctrlShiftK {40, 0x60000};
}

class tst_ShortcutsService : public QObject
{
    Q_OBJECT

private:
    // A service over the fake engine; `refused` are held by "another app".
    std::unique_ptr<ShortcutsService> makeService(const QList<KeyCombo> &refused = {})
    {
        auto controller = std::make_unique<FakeHotkeyController>();
        controller->refused = refused;
        m_controller = controller.get();
        m_triggered.clear();
        return std::make_unique<ShortcutsService>(
            *m_store, std::move(controller),
            [this](ShortcutAction action) { m_triggered << action; });
    }

    TempPathProvider m_paths;
    DiskFileAccess m_files;
    std::unique_ptr<SettingsStore> m_store;
    FakeHotkeyController *m_controller = nullptr;
    QList<ShortcutAction> m_triggered;

private Q_SLOTS:
    void init()
    {
        QFile::remove(m_paths.settingsFile());
        m_store = std::make_unique<SettingsStore>(m_paths, m_files);
    }

    // The user's choice from settings.json wins over the default; presses reach the app.
    void startRegistersTheChosenCombinations()
    {
        QFile file(m_paths.settingsFile());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(R"({"shortcutOverrides": {"newCountdown": {"keyCode": 40,
                      "modifierFlags": 393216}, "someLaterAction": {"keyCode": 1,
                      "modifierFlags": 262144}}})");
        file.close();
        m_store = std::make_unique<SettingsStore>(m_paths, m_files);
        auto service = makeService();
        service->start();
        QCOMPARE(m_controller->calls,
                 (QStringList {u"register togglePopover 17/140000"_s,
                               u"register newCountdown 40/60000"_s}));
        QCOMPARE(service->property("combos").toMap().value(u"newCountdown"_s).toMap(),
                 (QVariantMap {{u"keyCode"_s, 40}, {u"modifierFlags"_s, qulonglong(0x60000)}}));

        m_controller->press(ShortcutAction::newCountdown);
        m_controller->press(ShortcutAction::togglePopover);
        QCOMPARE(m_triggered,
                 (QList {ShortcutAction::newCountdown, ShortcutAction::togglePopover}));
    }

    // A combination another app holds costs only its own action, with the log line; picking
    // another one in the recorder stores it, re-registers and makes the action available again.
    void refusedCombinationCanBeReplaced()
    {
        auto service = makeService({defaultCombo(ShortcutAction::togglePopover)});
        QTest::ignoreMessage(QtWarningMsg,
                             "Could not register the togglePopover shortcut (status 10) - most "
                             "likely another app holds it");
        service->start();
        QCOMPARE(service->unavailable(), QSet {ShortcutAction::togglePopover});
        QVERIFY(m_controller->registered.contains(ShortcutAction::newCountdown));

        QSignalSpy unavailable(service.get(), &ShortcutsService::unavailableChanged);
        m_controller->calls.clear();
        service->setCombo(ShortcutAction::togglePopover, ctrlShiftK);
        QVERIFY(service->unavailable().isEmpty());
        QCOMPARE(unavailable.count(), 1);
        QCOMPARE(m_controller->calls,
                 (QStringList {u"unregister newCountdown"_s, u"register togglePopover 40/60000"_s,
                               u"register newCountdown 45/140000"_s}));
        const auto saved = JsonDocument::parse(readFile(m_paths.settingsFile()));
        QVERIFY(saved);
        QCOMPARE(saved->root()["shortcutOverrides"_L1]["togglePopover"_L1]["keyCode"_L1].toInt64(),
                 40);
    }

    // "Restore Defaults" forgets both choices (and nothing else in the file); a change made to
    // the settings by anything else is followed too.
    void restoreDefaultsAndOutsideChanges()
    {
        auto service = makeService();
        service->start();
        service->setCombo(ShortcutAction::newCountdown, ctrlShiftK);
        Settings outside = m_store->settings();
        outside.shortcutOverrides.insert(u"togglePopover"_s, KeyCombo {3, 0x140000});
        outside.shortcutOverrides.insert(u"someLaterAction"_s, KeyCombo {1, 0x40000});
        m_store->setSettings(outside);
        QCOMPARE(service->combo(ShortcutAction::togglePopover), (KeyCombo {3, 0x140000}));
        QCOMPARE(m_controller->registered.value(ShortcutAction::togglePopover),
                 (KeyCombo {3, 0x140000}));

        service->restoreDefaults();
        for (const ShortcutAction action : allShortcutActions()) {
            QCOMPARE(service->combo(action), defaultCombo(action));
            QCOMPARE(m_controller->registered.value(action), defaultCombo(action));
        }
        QCOMPARE(m_store->settings().shortcutOverrides.keys(), QStringList {u"someLaterAction"_s});
    }

    // An engine that answers later can still refuse; stopping lets go of every key.
    void lateRefusalAndStop()
    {
        auto service = makeService();
        service->start();
        QTest::ignoreMessage(QtWarningMsg,
                             "Could not register the newCountdown shortcut (status 2) - most "
                             "likely another app holds it");
        m_controller->refuseLater(ShortcutAction::newCountdown);
        QCOMPARE(service->property("unavailable").toStringList(), QStringList {u"newCountdown"_s});
        QPointer<QObject> controller(m_controller);
        service->stop();
        QVERIFY(controller.isNull());
        QVERIFY(service->unavailable().isEmpty());
        QVERIFY(!service->engine());
    }
};

QTEST_GUILESS_MAIN(tst_ShortcutsService)
#include "tst_shortcutsservice.moc"

// The shortcuts service and the settings page over an engine that refuses what the test says: the
// combinations it registers, the settings as the place the user's choices live, what a refusal
// leaves, the page in the interface language and "Restore Defaults".
#include "l10n/LocaleManager.h"
#include "shortcuts/ShortcutRecorderModel.h"
#include "shortcuts/ShortcutsPageModel.h"
#include "shortcuts/ShortcutsService.h"
#include "storage/SettingsStore.h"
#include "support/FakeHotkeyController.h"

#include <QAbstractItemModelTester>
#include <QPointer>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

const KeyCombo ctrlShiftK {40, 0x60000};

} // namespace

class tst_ShortcutsService : public QObject
{
    Q_OBJECT

private:
    // Settings on disk, the service over a fake engine, and the page over the service.
    struct World
    {
        explicit World(QList<KeyCombo> refused = {})
            : engine(new FakeHotkeyController(std::move(refused)))
        {
        }
        QString keys(ShortcutAction action, int role = ShortcutsPageModel::KeysRole) const
        {
            return page.data(page.index(int(allShortcutActions().indexOf(action))), role)
                .toString();
        }
        void change(const std::function<void(Settings &)> &edit)
        {
            Settings changed = settings.settings();
            edit(changed);
            settings.setSettings(changed);
        }
        TempPathProvider paths;
        DiskFileAccess files;
        SettingsStore settings {paths, files};
        LocaleManager locale {settings, [] {
                                  return QStringList {u"en"_s};
                              }};
        FakeHotkeyController *engine;
        QList<ShortcutAction> triggered;
        ShortcutsService service {settings, std::unique_ptr<FakeHotkeyController>(engine),
                                  [this](ShortcutAction action) {
                                      triggered << action;
                                  }};
        ShortcutsPageModel page {service, locale};
        QAbstractItemModelTester tester {&page,
                                         QAbstractItemModelTester::FailureReportingMode::QtTest};
    };

private Q_SLOTS:
    // The user's choice wins over the default and presses reach the app; a change of the settings
    // by anything else is followed; "Restore Defaults" forgets both choices (and nothing else)
    // and stops a recorder.
    void choicesDefaultsAndOutsideChanges()
    {
        World w;
        w.change([](Settings &s) {
            s.shortcutOverrides.insert(u"newCountdown"_s, ctrlShiftK);
            s.shortcutOverrides.insert(u"someLaterAction"_s, KeyCombo {1, 0x40000});
        });
        w.service.start();
        QCOMPARE(w.engine->calls,
                 (QStringList {u"register togglePopover 17/140000"_s,
                               u"register newCountdown 40/60000"_s}));
        w.engine->press(ShortcutAction::newCountdown);
        w.engine->press(ShortcutAction::togglePopover);
        QCOMPARE(w.triggered,
                 (QList {ShortcutAction::newCountdown, ShortcutAction::togglePopover}));
        QVERIFY(w.page.engineNote().isEmpty()); // X11 grabs need no explanation

        w.change([](Settings &s) {
            s.shortcutOverrides.insert(u"togglePopover"_s, KeyCombo {3, 0x140000});
        });
        QCOMPARE(w.engine->registered.value(ShortcutAction::togglePopover),
                 (KeyCombo {3, 0x140000}));
        QVERIFY(w.page.isCustomised());
        w.page.recorder(ShortcutAction::newCountdown)->startRecording();
        w.page.restoreDefaults();
        QVERIFY(!w.page.recorder(ShortcutAction::newCountdown)->isRecording());
        QVERIFY(!w.page.isCustomised());
        for (const ShortcutAction action : allShortcutActions())
            QCOMPARE(w.engine->registered.value(action), defaultCombo(action));
        QCOMPARE(w.settings.settings().shortcutOverrides.keys(),
                 QStringList {u"someLaterAction"_s});
    }

    // A combination another app holds costs only its own action, with the log line, and the page
    // says so; recording another one stores it, re-registers and makes the action available.
    // Starting one recorder stops the other.
    void refusedCombinationIsReplacedFromThePage()
    {
        World w({defaultCombo(ShortcutAction::togglePopover)});
        QTest::ignoreMessage(QtWarningMsg,
                             "Could not register the togglePopover shortcut (status 10) - most "
                             "likely another app holds it");
        w.service.start();
        QCOMPARE(w.service.unavailable(), QSet {ShortcutAction::togglePopover});
        QCOMPARE(w.keys(ShortcutAction::togglePopover, ShortcutsPageModel::StatusRole),
                 u"Not available: another application already uses this shortcut."_s);
        QCOMPARE(w.keys(ShortcutAction::newCountdown, ShortcutsPageModel::StatusRole), QString());

        ShortcutRecorderModel *toggle = w.page.recorder(ShortcutAction::togglePopover);
        w.page.recorder(ShortcutAction::newCountdown)->startRecording();
        toggle->startRecording();
        QVERIFY(!w.page.recorder(ShortcutAction::newCountdown)->isRecording());
        w.engine->calls.clear();
        toggle->keyPressed(Qt::Key_K, Qt::ControlModifier | Qt::ShiftModifier);
        QVERIFY(w.service.unavailable().isEmpty());
        QCOMPARE(w.engine->calls,
                 (QStringList {u"unregister newCountdown"_s, u"register togglePopover 40/60000"_s,
                               u"register newCountdown 45/140000"_s}));
        QCOMPARE(w.keys(ShortcutAction::togglePopover), u"Ctrl+Shift+K"_s);
        QCOMPARE(SettingsStore(w.paths, w.files).settings().shortcutOverrides,
                 (QMap<QString, KeyCombo> {{u"togglePopover"_s, ctrlShiftK}}));
    }

    // The rows follow the interface language; without an engine the page tells how to bind the
    // forwarded commands. An engine that answers later can still refuse; stopping lets go.
    void pageLanguageLateRefusalAndStop()
    {
        World w;
        w.service.start();
        ShortcutsService none(w.settings, nullptr, {});
        QCOMPARE(ShortcutsPageModel(none, w.locale).engineNote(),
                 u"Your desktop does not let apps register global keys: bind a key to “tarrow "
                 "--toggle-popup” (and one to “tarrow --new-countdown” for a new countdown) in "
                 "your desktop’s keyboard settings."_s);
        w.change([](Settings &s) { s.language = LanguagePref::de; });
        QCOMPARE(w.keys(ShortcutAction::togglePopover, ShortcutsPageModel::TitleRole),
                 u"Countdowns ein- oder ausblenden"_s);

        QTest::ignoreMessage(QtWarningMsg,
                             "Could not register the newCountdown shortcut (status 2) - most "
                             "likely another app holds it");
        w.engine->refuseLater(ShortcutAction::newCountdown);
        QCOMPARE(w.service.property("unavailable").toStringList(), QStringList {u"newCountdown"_s});
        QPointer<QObject> engine(w.engine);
        w.service.stop();
        QVERIFY(engine.isNull() && w.service.unavailable().isEmpty() && !w.service.engine());
    }
};

QTEST_GUILESS_MAIN(tst_ShortcutsService)
#include "tst_shortcutsservice.moc"

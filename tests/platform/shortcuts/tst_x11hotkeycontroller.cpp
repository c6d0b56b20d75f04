// The X11 engine on a private Xvfb: keys typed with xdotool reach the action with and without
// CapsLock and NumLock, a combination another client holds is refused with the log line, and the
// running app opens its popup on the key.
#include "platform/shortcuts/X11HotkeyController.h"
#include "platform/shortcuts/X11KeySymbols.h"
#include "shortcuts/KeyCodeTable.h"
#include "shortcuts/ShortcutsService.h"
#include "storage/SettingsStore.h"

#include "support/TarrowProcess.h"
#include "support/XvfbDisplay.h"

#include <QGuiApplication>
#include <QSignalSpy>
#include <QTest>

#include <xcb/xcb.h>

using namespace Qt::StringLiterals;

namespace {

// Types `keys` ("ctrl+super+t") with xdotool.
bool type(const QString &keys)
{
    return QProcess::execute(u"xdotool"_s, {u"key"_s, keys}) == 0;
}

const KeyCombo ctrlAltK {40, KeyModifier::control | KeyModifier::alt};

// A second X client holding keys, the way another app would.
struct OtherClient
{
    std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection {
        xcb_connect(nullptr, nullptr), xcb_disconnect};
    X11HotkeyController keys {connection.get(),
                              xcb_setup_roots_iterator(xcb_get_setup(connection.get())).data->root};
    bool grabCtrlAltK() { return keys.registerHotKey(ShortcutAction::newCountdown, ctrlAltK); }
};

} // namespace

class tst_X11HotkeyController : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Every key a shortcut can use has a keysym, and the keysym leads back to it.
    void everyKeyHasAKeysym()
    {
        for (const KeyCodeTable::Entry &entry : KeyCodeTable::entries()) {
            const std::optional<quint32> keysym = X11KeySymbols::keysymOf(entry.key);
            QVERIFY2(keysym, qPrintable(QString::number(entry.code)));
            QCOMPARE(X11KeySymbols::qtKeyOf(*keysym), std::optional(entry.key));
        }
        QCOMPARE(X11KeySymbols::nameOf(Qt::Key_PageUp), u"Page_Up"_s);
    }

    void pressesReachTheirAction()
    {
        std::unique_ptr<X11HotkeyController> controller = X11HotkeyController::create();
        QVERIFY(controller);
        QSignalSpy activated(controller.get(), &GlobalHotkeyController::activated);
        QVERIFY(controller->registerHotKey(ShortcutAction::togglePopover,
                                           defaultCombo(ShortcutAction::togglePopover)));
        QVERIFY(controller->registerHotKey(ShortcutAction::newCountdown, ctrlAltK));
        const auto pressedFires = [&](const QString &keys, ShortcutAction action) {
            activated.clear();
            return type(keys) && QTest::qWaitFor([&] { return activated.size() == 1; }, 5000)
                && activated.first().first().value<ShortcutAction>() == action;
        };
        QVERIFY(pressedFires(u"ctrl+super+t"_s, ShortcutAction::togglePopover));
        QVERIFY(pressedFires(u"ctrl+alt+k"_s, ShortcutAction::newCountdown));
        for (const QString &lock : {u"Num_Lock"_s, u"Caps_Lock"_s}) {
            QVERIFY(type(lock));
            QVERIFY2(pressedFires(u"ctrl+super+t"_s, ShortcutAction::togglePopover),
                     qPrintable(lock));
        }
        QVERIFY(type(u"Num_Lock"_s) && type(u"Caps_Lock"_s));
        // A combination with a modifier more or less is another combination.
        activated.clear();
        QVERIFY(type(u"ctrl+t"_s) && type(u"ctrl+shift+super+t"_s));
        QTest::qWait(300);
        QCOMPARE(activated.size(), 0);
        // Unregistered, the key is free for others.
        controller->unregisterHotKey(ShortcutAction::newCountdown);
        QVERIFY(OtherClient().grabCtrlAltK());
    }

    // Another client holds Ctrl+Alt+K: the action that wants it is unavailable with the log
    // line; the other action works.
    void combinationHeldByAnotherClient()
    {
        OtherClient other;
        QVERIFY(other.grabCtrlAltK());
        TempPathProvider paths;
        DiskFileAccess files;
        SettingsStore store(paths, files);
        Settings settings;
        settings.shortcutOverrides.insert(u"togglePopover"_s, ctrlAltK);
        store.setSettings(settings);
        QList<ShortcutAction> triggered;
        ShortcutsService service(store, X11HotkeyController::create(),
                                 [&](ShortcutAction action) { triggered << action; });
        QTest::ignoreMessage(QtWarningMsg,
                             "Could not register the togglePopover shortcut (status 10) - most "
                             "likely another app holds it");
        service.start();
        QCOMPARE(service.unavailable(), QSet {ShortcutAction::togglePopover});
        QVERIFY(type(u"ctrl+super+n"_s));
        QTRY_COMPARE(triggered, QList {ShortcutAction::newCountdown});
    }

    // The running app: its log names the engine, and the key opens the popup.
    void theAppOpensThePopupOnTheKey()
    {
        QTemporaryDir world;
        TarrowProcess tarrow(world);
        QProcessEnvironment env = tarrow.process().processEnvironment();
        env.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
        tarrow.process().setProcessEnvironment(env);
        tarrow.start({u"--autostart"_s}); // a login launch: no popup of its own
        QVERIFY(tarrow.waitForLog(u"Global shortcuts through x11"_s));
        QVERIFY(tarrow.staysWithout(u"Opened the popup"_s, 300));
        QVERIFY(type(u"ctrl+super+t"_s));
        QVERIFY(tarrow.waitForLog(u"Opened the popup"_s));
    }
};

int main(int argc, char **argv)
{
    XvfbDisplay display;
    if (!display.start()) {
        std::fputs("Xvfb is not available: skipped\n", stderr);
        return qEnvironmentVariableIsSet("CI") ? 1 : 77;
    }
    QGuiApplication app(argc, argv);
    tst_X11HotkeyController test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_x11hotkeycontroller.moc"

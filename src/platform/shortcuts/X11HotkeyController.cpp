#include "platform/shortcuts/X11HotkeyController.h"

#include "platform/shortcuts/X11KeySymbols.h"
#include "shortcuts/KeyCodeTable.h"

#include <QCoreApplication>
#include <QGuiApplication>

#include <X11/keysym.h>
#include <xcb/xcb.h>
#include <xcb/xcb_keysyms.h>

#include <cstdlib>

// The key symbols of the connection: keysym to keycode, following keyboard changes.
struct X11HotkeyController::KeySymbols
{
    explicit KeySymbols(xcb_connection_t *connection)
        : symbols(xcb_key_symbols_alloc(connection))
    {
    }
    ~KeySymbols() { xcb_key_symbols_free(symbols); }

    // Every keycode that produces `keysym`, in the server's order.
    QList<quint8> keycodes(quint32 keysym) const
    {
        QList<quint8> found;
        xcb_keycode_t *codes = xcb_key_symbols_get_keycode(symbols, keysym);
        for (xcb_keycode_t *code = codes; code && *code != XCB_NO_SYMBOL; ++code)
            found << *code;
        std::free(codes);
        return found;
    }

    xcb_key_symbols_t *symbols;
};

std::unique_ptr<X11HotkeyController> X11HotkeyController::create()
{
    const auto *x11 =
        qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    if (!x11 || !x11->connection())
        return nullptr;
    xcb_connection_t *connection = x11->connection();
    const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    return std::make_unique<X11HotkeyController>(connection, screen->root);
}

X11HotkeyController::X11HotkeyController(xcb_connection_t *connection, quint32 rootWindow,
                                         QObject *parent)
    : GlobalHotkeyController(parent)
    , m_connection(connection)
    , m_root(rootWindow)
    , m_symbols(std::make_unique<KeySymbols>(connection))
    , m_masks(readModifierMasks())
{
    QCoreApplication::instance()->installNativeEventFilter(this);
}

X11HotkeyController::~X11HotkeyController()
{
    QCoreApplication::instance()->removeNativeEventFilter(this);
    for (const Grab &grab : std::as_const(m_grabs))
        ungrab(grab);
    xcb_flush(m_connection);
}

X11HotkeyController::ModifierMasks X11HotkeyController::readModifierMasks() const
{
    // Which of the eight modifiers (Shift, Lock, Control, Mod1 ... Mod5) holds the keys of Alt,
    // Super and NumLock; the usual layout when the server does not say.
    ModifierMasks masks {XCB_MOD_MASK_1, XCB_MOD_MASK_4, XCB_MOD_MASK_2};
    const xcb_get_modifier_mapping_cookie_t cookie = xcb_get_modifier_mapping(m_connection);
    xcb_get_modifier_mapping_reply_t *reply =
        xcb_get_modifier_mapping_reply(m_connection, cookie, nullptr);
    if (!reply)
        return masks;
    const xcb_keycode_t *mapped = xcb_get_modifier_mapping_keycodes(reply);
    const int perModifier = reply->keycodes_per_modifier;
    const auto maskOf = [&](std::initializer_list<quint32> keysyms, quint16 fallback) {
        for (const quint32 keysym : keysyms) {
            for (const quint8 keycode : m_symbols->keycodes(keysym)) {
                for (int modifier = 3; modifier < 8; ++modifier) { // Mod1 ... Mod5
                    for (int i = 0; i < perModifier; ++i) {
                        if (mapped[modifier * perModifier + i] == keycode)
                            return quint16(1 << modifier);
                    }
                }
            }
        }
        return fallback;
    };
    masks.alt = maskOf({XK_Alt_L, XK_Alt_R}, masks.alt);
    masks.super = maskOf({XK_Super_L, XK_Super_R}, masks.super);
    masks.numLock = maskOf({XK_Num_Lock}, masks.numLock);
    std::free(reply);
    return masks;
}

quint16 X11HotkeyController::x11Modifiers(quint64 flags) const
{
    quint16 modifiers = 0;
    if (flags & KeyModifier::shift)
        modifiers |= XCB_MOD_MASK_SHIFT;
    if (flags & KeyModifier::control)
        modifiers |= XCB_MOD_MASK_CONTROL;
    if (flags & KeyModifier::alt)
        modifiers |= m_masks.alt;
    if (flags & KeyModifier::super)
        modifiers |= m_masks.super;
    return modifiers;
}

QList<quint16> X11HotkeyController::lockVariants(quint16 modifiers) const
{
    return {modifiers, quint16(modifiers | XCB_MOD_MASK_LOCK), quint16(modifiers | m_masks.numLock),
            quint16(modifiers | XCB_MOD_MASK_LOCK | m_masks.numLock)};
}

int X11HotkeyController::registerWithEngine(ShortcutAction action, const KeyCombo &combo)
{
    unregisterHotKey(action);
    const std::optional<Qt::Key> key = KeyCodeTable::qtKeyOf(combo.keyCode);
    const std::optional<quint32> keysym = key ? X11KeySymbols::keysymOf(*key) : std::nullopt;
    const QList<quint8> keycodes = keysym ? m_symbols->keycodes(*keysym) : QList<quint8>();
    if (keycodes.isEmpty())
        return noSuchKey;
    const Grab grab {keycodes.first(), x11Modifiers(combo.modifierFlags)};
    QList<xcb_void_cookie_t> cookies;
    for (const quint16 modifiers : lockVariants(grab.modifiers))
        cookies << xcb_grab_key_checked(m_connection, 1, m_root, modifiers, grab.keycode,
                                        XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    int status = 0;
    for (const xcb_void_cookie_t cookie : std::as_const(cookies)) {
        if (xcb_generic_error_t *error = xcb_request_check(m_connection, cookie)) {
            status = error->error_code;
            std::free(error);
        }
    }
    if (status != 0) {
        ungrab(grab); // the variants that did succeed
        xcb_flush(m_connection);
        return status;
    }
    m_grabs.insert(action, grab);
    return 0;
}

void X11HotkeyController::unregisterHotKey(ShortcutAction action)
{
    if (const auto grab = m_grabs.constFind(action); grab != m_grabs.cend()) {
        ungrab(*grab);
        m_grabs.erase(grab);
        xcb_flush(m_connection);
    }
}

void X11HotkeyController::ungrab(const Grab &grab)
{
    for (const quint16 modifiers : lockVariants(grab.modifiers))
        xcb_ungrab_key(m_connection, grab.keycode, m_root, modifiers);
}

bool X11HotkeyController::nativeEventFilter(const QByteArray &eventType, void *message, qintptr *)
{
    if (eventType != "xcb_generic_event_t")
        return false;
    const auto *event = static_cast<const xcb_generic_event_t *>(message);
    if ((event->response_type & ~0x80) != XCB_KEY_PRESS)
        return false;
    const auto *press = static_cast<const xcb_key_press_event_t *>(message);
    constexpr quint16 keyboardModifiers = 0xff; // Shift, Lock, Control, Mod1 ... Mod5
    const quint16 state = press->state & keyboardModifiers & ~(XCB_MOD_MASK_LOCK | m_masks.numLock);
    for (auto it = m_grabs.cbegin(); it != m_grabs.cend(); ++it) {
        if (it->keycode == press->detail && it->modifiers == state) {
            Q_EMIT activated(it.key());
            return true;
        }
    }
    return false;
}

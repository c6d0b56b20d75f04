#pragma once

#include "shortcuts/GlobalHotkeyController.h"

#include <QAbstractNativeEventFilter>
#include <QMap>

#include <memory>

struct xcb_connection_t;

// Global shortcuts on an X11 session: passive key grabs on the root window, with and without
// CapsLock and NumLock so the keys work whatever the lock keys say, and the presses picked out of
// Qt's event stream by a native event filter. A grab the server refuses (another client holds the
// combination: BadAccess, status 10) fails that action alone.
class X11HotkeyController final : public GlobalHotkeyController, public QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    // Null unless the application runs on X11 (QNativeInterface::QX11Application).
    static std::unique_ptr<X11HotkeyController> create();

    // Status when the keyboard has no key for the combination's key.
    static constexpr int noSuchKey = -1;

    X11HotkeyController(xcb_connection_t *connection, quint32 rootWindow,
                        QObject *parent = nullptr);
    ~X11HotkeyController() override;

    Engine engine() const override { return Engine::x11; }
    void unregisterHotKey(ShortcutAction action) override;

    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

protected:
    int registerWithEngine(ShortcutAction action, const KeyCombo &combo) override;

private:
    struct Grab
    {
        quint8 keycode;
        quint16 modifiers;
    };
    struct ModifierMasks
    {
        quint16 alt;
        quint16 super;
        quint16 numLock;
    };

    ModifierMasks readModifierMasks() const;
    quint16 x11Modifiers(quint64 flags) const;
    // The grab with each combination of CapsLock and NumLock added.
    QList<quint16> lockVariants(quint16 modifiers) const;
    void ungrab(const Grab &grab);

    xcb_connection_t *m_connection;
    quint32 m_root;
    struct KeySymbols;
    std::unique_ptr<KeySymbols> m_symbols;
    ModifierMasks m_masks;
    QMap<ShortcutAction, Grab> m_grabs;
};

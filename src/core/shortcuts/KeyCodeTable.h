#pragma once

#include <QList>
#include <Qt>

#include <optional>

// How a KeyCombo is stored: the key code and modifier bits that settings.json has always held, so
// files round-trip between versions. The codes are hardware-independent virtual key codes (Space
// 49, Tab 48, Escape 53, Q 12 ...); keys a compact keyboard lacks use the code of the key in the
// same place on an extended one (Print 105, Insert 114).
//
// The modifier bits mean, on this desktop:
//   0x020000 Shift, 0x040000 Ctrl, 0x080000 Alt, 0x100000 Super (the logo key).
namespace KeyModifier {
inline constexpr quint64 shift = 0x20000;
inline constexpr quint64 control = 0x40000;
inline constexpr quint64 alt = 0x80000;
inline constexpr quint64 super = 0x100000;
inline constexpr quint64 mask = shift | control | alt | super;

// Qt calls Super "Meta" (Qt::MetaModifier); bits outside `mask` are dropped.
Qt::KeyboardModifiers toQt(quint64 flags);
quint64 fromQt(Qt::KeyboardModifiers modifiers);
} // namespace KeyModifier

// The keys a shortcut can use (a US layout): letters, digits, F1-F12, arrows, Space, Tab, Escape,
// Return, the editing keys, Print and punctuation; plus the Super key itself, which only appears
// when it is pressed alone.
namespace KeyCodeTable {

struct Entry
{
    quint16 code;
    Qt::Key key;
};

// Every key, one row per code, with the key Qt reports without Shift.
const QList<Entry> &entries();

// The code of a key as Qt reports it. Shifted symbols of a US layout ("!" on 1, "?" on /) and
// Backtab give the code of their key.
std::optional<quint16> codeOf(int qtKey);
std::optional<Qt::Key> qtKeyOf(quint16 code);

// Shift, Ctrl, Alt, AltGr, Super, Meta, Hyper and the lock keys: never the key of a shortcut.
bool isModifierKey(int qtKey);

} // namespace KeyCodeTable

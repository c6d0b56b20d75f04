#include "shortcuts/ShortcutJudge.h"

#include "shortcuts/KeyCodeTable.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr quint64 shift = KeyModifier::shift;
constexpr quint64 ctrl = KeyModifier::control;
constexpr quint64 alt = KeyModifier::alt;
constexpr quint64 super = KeyModifier::super;

KeyCombo combo(int qtKey, quint64 modifiers)
{
    return KeyCombo {*KeyCodeTable::codeOf(qtKey), modifiers};
}

ReservedShortcut as(int qtKey, quint64 modifiers, const char *name)
{
    return {combo(qtKey, modifiers), QString::fromUtf8(name), false};
}

// Linux rows: their names are looked up in the interface language.
ReservedShortcut linux_(int qtKey, quint64 modifiers, const char *name)
{
    return {combo(qtKey, modifiers), u"settings.shortcuts.reserved."_s + QLatin1String(name), true};
}

QList<ReservedShortcut> buildReservedShortcuts()
{
    QList<ReservedShortcut> rows {
        as(Qt::Key_Space, super, "Spotlight"),
        as(Qt::Key_Space, alt | super, "Finder search"),
        as(Qt::Key_Space, ctrl | super, "Character Viewer"),
        as(Qt::Key_Tab, super, "App Switcher"),
        as(Qt::Key_Q, super, "Quit"),
        as(Qt::Key_W, super, "Close Window"),
        as(Qt::Key_H, super, "Hide"),
        as(Qt::Key_M, super, "Minimise"),
        as(Qt::Key_Q, ctrl | super, "Lock Screen"),
        as(Qt::Key_F, ctrl | super, "Full Screen"),
        as(Qt::Key_3, shift | super, "Screenshot"),
        as(Qt::Key_4, shift | super, "Screenshot Region"),
        as(Qt::Key_5, shift | super, "Screen Capture"),
        as(Qt::Key_Up, ctrl, "Mission Control"),
        as(Qt::Key_Down, ctrl, "App Exposé"),
        // What GNOME, KDE Plasma, Xfce, Cinnamon and MATE keep for themselves.
        linux_(Qt::Key_Super_L, super, "overview"),
        linux_(Qt::Key_Delete, ctrl | alt, "log_out"),
        linux_(Qt::Key_T, ctrl | alt, "terminal"),
        linux_(Qt::Key_L, super, "lock_screen"),
        linux_(Qt::Key_L, ctrl | alt, "lock_screen"),
        linux_(Qt::Key_Escape, ctrl | alt, "force_quit"),
        linux_(Qt::Key_D, super, "show_desktop"),
        linux_(Qt::Key_D, ctrl | alt, "show_desktop"),
        linux_(Qt::Key_A, super, "show_apps"),
        linux_(Qt::Key_V, super, "notifications"),
        linux_(Qt::Key_Print, ctrl, "screenshot"),
        linux_(Qt::Key_Print, ctrl | shift, "screenshot"),
        linux_(Qt::Key_Print, ctrl | alt, "screenshot"),
        linux_(Qt::Key_Print, super, "screenshot"),
        linux_(Qt::Key_Print, shift | super, "screenshot"),
        linux_(Qt::Key_S, shift | super, "screenshot"),
    };
    for (const int arrow : {Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down}) {
        rows << linux_(arrow, ctrl | alt, "switch_workspace");
        rows << linux_(arrow, super, "arrange_windows");
    }
    for (int digit = Qt::Key_1; digit <= Qt::Key_9; ++digit)
        rows << linux_(digit, super, "taskbar_app");
    for (int function = Qt::Key_F1; function <= Qt::Key_F12; ++function)
        rows << linux_(function, ctrl | alt, "virtual_terminal");
    return rows;
}

} // namespace

const QList<ReservedShortcut> &reservedShortcuts()
{
    static const QList<ReservedShortcut> rows = buildReservedShortcuts();
    return rows;
}

ShortcutJudgement judgeRecordedKey(const KeyCombo &pressed)
{
    using Verdict = ShortcutJudgement::Verdict;
    const KeyCombo masked {pressed.keyCode, pressed.modifierFlags & KeyModifier::mask};
    if (KeyCodeTable::qtKeyOf(pressed.keyCode) == Qt::Key_Escape)
        return {Verdict::cancel, masked, {}};
    if (!(masked.modifierFlags & (KeyModifier::control | KeyModifier::super)))
        return {Verdict::invalid, masked, {}};
    const QList<ReservedShortcut> &reserved = reservedShortcuts();
    const auto match =
        std::find_if(reserved.begin(), reserved.end(),
                     [&](const ReservedShortcut &row) { return row.combo == masked; });
    if (match != reserved.end())
        return {Verdict::reserved, masked, *match};
    return {Verdict::capture, masked, {}};
}

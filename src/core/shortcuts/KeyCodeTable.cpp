#include "shortcuts/KeyCodeTable.h"

#include <QHash>

#include <algorithm>

namespace KeyModifier {

Qt::KeyboardModifiers toQt(quint64 flags)
{
    Qt::KeyboardModifiers modifiers;
    modifiers.setFlag(Qt::ShiftModifier, flags & shift);
    modifiers.setFlag(Qt::ControlModifier, flags & control);
    modifiers.setFlag(Qt::AltModifier, flags & alt);
    modifiers.setFlag(Qt::MetaModifier, flags & super);
    return modifiers;
}

quint64 fromQt(Qt::KeyboardModifiers modifiers)
{
    quint64 flags = 0;
    if (modifiers & Qt::ShiftModifier)
        flags |= shift;
    if (modifiers & Qt::ControlModifier)
        flags |= control;
    if (modifiers & Qt::AltModifier)
        flags |= alt;
    if (modifiers & Qt::MetaModifier)
        flags |= super;
    return flags;
}

} // namespace KeyModifier

namespace KeyCodeTable {

namespace {

// What a US layout gives with Shift held, by the key's unshifted Qt key.
const QHash<int, Qt::Key> &shiftedSymbols()
{
    static const QHash<int, Qt::Key> symbols {
        {Qt::Key_Exclam, Qt::Key_1},
        {Qt::Key_At, Qt::Key_2},
        {Qt::Key_NumberSign, Qt::Key_3},
        {Qt::Key_Dollar, Qt::Key_4},
        {Qt::Key_Percent, Qt::Key_5},
        {Qt::Key_AsciiCircum, Qt::Key_6},
        {Qt::Key_Ampersand, Qt::Key_7},
        {Qt::Key_Asterisk, Qt::Key_8},
        {Qt::Key_ParenLeft, Qt::Key_9},
        {Qt::Key_ParenRight, Qt::Key_0},
        {Qt::Key_AsciiTilde, Qt::Key_QuoteLeft},
        {Qt::Key_Underscore, Qt::Key_Minus},
        {Qt::Key_Plus, Qt::Key_Equal},
        {Qt::Key_BraceLeft, Qt::Key_BracketLeft},
        {Qt::Key_BraceRight, Qt::Key_BracketRight},
        {Qt::Key_Bar, Qt::Key_Backslash},
        {Qt::Key_Colon, Qt::Key_Semicolon},
        {Qt::Key_QuoteDbl, Qt::Key_Apostrophe},
        {Qt::Key_Less, Qt::Key_Comma},
        {Qt::Key_Greater, Qt::Key_Period},
        {Qt::Key_Question, Qt::Key_Slash},
        {Qt::Key_Backtab, Qt::Key_Tab},
    };
    return symbols;
}

} // namespace

const QList<Entry> &entries()
{
    static const QList<Entry> table {
        // Letters
        {0, Qt::Key_A},
        {11, Qt::Key_B},
        {8, Qt::Key_C},
        {2, Qt::Key_D},
        {14, Qt::Key_E},
        {3, Qt::Key_F},
        {5, Qt::Key_G},
        {4, Qt::Key_H},
        {34, Qt::Key_I},
        {38, Qt::Key_J},
        {40, Qt::Key_K},
        {37, Qt::Key_L},
        {46, Qt::Key_M},
        {45, Qt::Key_N},
        {31, Qt::Key_O},
        {35, Qt::Key_P},
        {12, Qt::Key_Q},
        {15, Qt::Key_R},
        {1, Qt::Key_S},
        {17, Qt::Key_T},
        {32, Qt::Key_U},
        {9, Qt::Key_V},
        {13, Qt::Key_W},
        {7, Qt::Key_X},
        {16, Qt::Key_Y},
        {6, Qt::Key_Z},
        // Digits
        {29, Qt::Key_0},
        {18, Qt::Key_1},
        {19, Qt::Key_2},
        {20, Qt::Key_3},
        {21, Qt::Key_4},
        {23, Qt::Key_5},
        {22, Qt::Key_6},
        {26, Qt::Key_7},
        {28, Qt::Key_8},
        {25, Qt::Key_9},
        // Function keys
        {122, Qt::Key_F1},
        {120, Qt::Key_F2},
        {99, Qt::Key_F3},
        {118, Qt::Key_F4},
        {96, Qt::Key_F5},
        {97, Qt::Key_F6},
        {98, Qt::Key_F7},
        {100, Qt::Key_F8},
        {101, Qt::Key_F9},
        {109, Qt::Key_F10},
        {103, Qt::Key_F11},
        {111, Qt::Key_F12},
        // Arrows
        {123, Qt::Key_Left},
        {124, Qt::Key_Right},
        {125, Qt::Key_Down},
        {126, Qt::Key_Up},
        // Whitespace, editing and the rest
        {49, Qt::Key_Space},
        {48, Qt::Key_Tab},
        {53, Qt::Key_Escape},
        {36, Qt::Key_Return},
        {51, Qt::Key_Backspace},
        {117, Qt::Key_Delete},
        {114, Qt::Key_Insert},
        {115, Qt::Key_Home},
        {119, Qt::Key_End},
        {116, Qt::Key_PageUp},
        {121, Qt::Key_PageDown},
        {105, Qt::Key_Print},
        {55, Qt::Key_Super_L},
        // Punctuation
        {50, Qt::Key_QuoteLeft},
        {27, Qt::Key_Minus},
        {24, Qt::Key_Equal},
        {33, Qt::Key_BracketLeft},
        {30, Qt::Key_BracketRight},
        {42, Qt::Key_Backslash},
        {41, Qt::Key_Semicolon},
        {39, Qt::Key_Apostrophe},
        {43, Qt::Key_Comma},
        {47, Qt::Key_Period},
        {44, Qt::Key_Slash},
    };
    return table;
}

std::optional<quint16> codeOf(int qtKey)
{
    if (qtKey == Qt::Key_Super_R || qtKey == Qt::Key_Meta)
        qtKey = Qt::Key_Super_L;
    qtKey = shiftedSymbols().value(qtKey, Qt::Key(qtKey));
    const QList<Entry> &table = entries();
    const auto found = std::find_if(table.begin(), table.end(),
                                    [qtKey](const Entry &entry) { return entry.key == qtKey; });
    return found == table.end() ? std::nullopt : std::optional(found->code);
}

std::optional<Qt::Key> qtKeyOf(quint16 code)
{
    const QList<Entry> &table = entries();
    const auto found = std::find_if(table.begin(), table.end(),
                                    [code](const Entry &entry) { return entry.code == code; });
    return found == table.end() ? std::nullopt : std::optional(found->key);
}

bool isModifierKey(int qtKey)
{
    switch (qtKey) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
    case Qt::Key_Hyper_L:
    case Qt::Key_Hyper_R:
    case Qt::Key_CapsLock:
    case Qt::Key_NumLock:
    case Qt::Key_ScrollLock:
        return true;
    default:
        return false;
    }
}

} // namespace KeyCodeTable

#include "platform/shortcuts/X11KeySymbols.h"

#include <QList>

#include <X11/keysym.h>

#include <algorithm>

namespace X11KeySymbols {

namespace {

struct Row
{
    Qt::Key key;
    quint32 keysym;
    const char *name;
};

#define TARROW_KEYSYM(qtName, xName)                                                               \
    Row                                                                                            \
    {                                                                                              \
        Qt::Key_##qtName, XK_##xName, #xName                                                       \
    }

const QList<Row> &rows()
{
    static const QList<Row> table {
        TARROW_KEYSYM(A, a),
        TARROW_KEYSYM(B, b),
        TARROW_KEYSYM(C, c),
        TARROW_KEYSYM(D, d),
        TARROW_KEYSYM(E, e),
        TARROW_KEYSYM(F, f),
        TARROW_KEYSYM(G, g),
        TARROW_KEYSYM(H, h),
        TARROW_KEYSYM(I, i),
        TARROW_KEYSYM(J, j),
        TARROW_KEYSYM(K, k),
        TARROW_KEYSYM(L, l),
        TARROW_KEYSYM(M, m),
        TARROW_KEYSYM(N, n),
        TARROW_KEYSYM(O, o),
        TARROW_KEYSYM(P, p),
        TARROW_KEYSYM(Q, q),
        TARROW_KEYSYM(R, r),
        TARROW_KEYSYM(S, s),
        TARROW_KEYSYM(T, t),
        TARROW_KEYSYM(U, u),
        TARROW_KEYSYM(V, v),
        TARROW_KEYSYM(W, w),
        TARROW_KEYSYM(X, x),
        TARROW_KEYSYM(Y, y),
        TARROW_KEYSYM(Z, z),
        TARROW_KEYSYM(0, 0),
        TARROW_KEYSYM(1, 1),
        TARROW_KEYSYM(2, 2),
        TARROW_KEYSYM(3, 3),
        TARROW_KEYSYM(4, 4),
        TARROW_KEYSYM(5, 5),
        TARROW_KEYSYM(6, 6),
        TARROW_KEYSYM(7, 7),
        TARROW_KEYSYM(8, 8),
        TARROW_KEYSYM(9, 9),
        TARROW_KEYSYM(F1, F1),
        TARROW_KEYSYM(F2, F2),
        TARROW_KEYSYM(F3, F3),
        TARROW_KEYSYM(F4, F4),
        TARROW_KEYSYM(F5, F5),
        TARROW_KEYSYM(F6, F6),
        TARROW_KEYSYM(F7, F7),
        TARROW_KEYSYM(F8, F8),
        TARROW_KEYSYM(F9, F9),
        TARROW_KEYSYM(F10, F10),
        TARROW_KEYSYM(F11, F11),
        TARROW_KEYSYM(F12, F12),
        TARROW_KEYSYM(Left, Left),
        TARROW_KEYSYM(Right, Right),
        TARROW_KEYSYM(Up, Up),
        TARROW_KEYSYM(Down, Down),
        TARROW_KEYSYM(Space, space),
        TARROW_KEYSYM(Tab, Tab),
        TARROW_KEYSYM(Escape, Escape),
        TARROW_KEYSYM(Return, Return),
        TARROW_KEYSYM(Backspace, BackSpace),
        TARROW_KEYSYM(Delete, Delete),
        TARROW_KEYSYM(Insert, Insert),
        TARROW_KEYSYM(Home, Home),
        TARROW_KEYSYM(End, End),
        TARROW_KEYSYM(PageUp, Page_Up),
        TARROW_KEYSYM(PageDown, Page_Down),
        TARROW_KEYSYM(Print, Print),
        TARROW_KEYSYM(Super_L, Super_L),
        TARROW_KEYSYM(QuoteLeft, grave),
        TARROW_KEYSYM(Minus, minus),
        TARROW_KEYSYM(Equal, equal),
        TARROW_KEYSYM(BracketLeft, bracketleft),
        TARROW_KEYSYM(BracketRight, bracketright),
        TARROW_KEYSYM(Backslash, backslash),
        TARROW_KEYSYM(Semicolon, semicolon),
        TARROW_KEYSYM(Apostrophe, apostrophe),
        TARROW_KEYSYM(Comma, comma),
        TARROW_KEYSYM(Period, period),
        TARROW_KEYSYM(Slash, slash),
    };
    return table;
}

#undef TARROW_KEYSYM

template<typename Match>
const Row *find(Match match)
{
    const auto found = std::find_if(rows().begin(), rows().end(), match);
    return found == rows().end() ? nullptr : &*found;
}

} // namespace

std::optional<quint32> keysymOf(Qt::Key key)
{
    const Row *row = find([key](const Row &r) { return r.key == key; });
    return row ? std::optional(row->keysym) : std::nullopt;
}

std::optional<Qt::Key> qtKeyOf(quint32 keysym)
{
    const Row *row = find([keysym](const Row &r) { return r.keysym == keysym; });
    return row ? std::optional(row->key) : std::nullopt;
}

QString nameOf(Qt::Key key)
{
    const Row *row = find([key](const Row &r) { return r.key == key; });
    return row ? QString::fromLatin1(row->name) : QString();
}

} // namespace X11KeySymbols

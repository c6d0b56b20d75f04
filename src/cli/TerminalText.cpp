#include "cli/TerminalText.h"

namespace {

bool needsEscape(char16_t c)
{
    return c < 0x20 || (c >= 0x7f && c <= 0x9f) || c == 0x2028 || c == 0x2029
        || (c >= 0x202a && c <= 0x202e) || (c >= 0x2066 && c <= 0x2069);
}

QString escaped(char16_t c)
{
    switch (c) {
    case u'\n':
        return QStringLiteral("\\n");
    case u'\r':
        return QStringLiteral("\\r");
    case u'\t':
        return QStringLiteral("\\t");
    case 0x1b:
        return QStringLiteral("\\e");
    default:
        break;
    }
    if (c < 0x100)
        return QStringLiteral("\\x%1").arg(uint(c), 2, 16, QLatin1Char('0'));
    return QStringLiteral("\\u{%1}").arg(uint(c), 4, 16, QLatin1Char('0'));
}

} // namespace

QString terminalSafe(QStringView text)
{
    QString out;
    out.reserve(text.size());
    for (const QChar c : text) {
        if (needsEscape(c.unicode()))
            out += escaped(c.unicode());
        else
            out += c;
    }
    return out;
}

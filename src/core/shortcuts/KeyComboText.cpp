#include "shortcuts/KeyComboText.h"

#include "l10n/LanguageTable.h"
#include "shortcuts/KeyCodeTable.h"

#include <QHash>

using namespace Qt::StringLiterals;

namespace {

// Keys whose name is a word, by the end of their localisation key ("settings.shortcuts.key.tab").
const QHash<int, QString> &namedKeys()
{
    static const QHash<int, QString> names {
        {Qt::Key_Space, u"space"_s},
        {Qt::Key_Tab, u"tab"_s},
        {Qt::Key_Escape, u"escape"_s},
        {Qt::Key_Return, u"return"_s},
        {Qt::Key_Backspace, u"backspace"_s},
        {Qt::Key_Delete, u"delete"_s},
        {Qt::Key_Insert, u"insert"_s},
        {Qt::Key_Home, u"home"_s},
        {Qt::Key_End, u"end"_s},
        {Qt::Key_PageUp, u"page_up"_s},
        {Qt::Key_PageDown, u"page_down"_s},
        {Qt::Key_Print, u"print"_s},
        {Qt::Key_Super_L, u"super"_s},
    };
    return names;
}

QString keyText(const LanguageTable &texts, const QString &name)
{
    return texts.text(QString(u"settings.shortcuts.key."_s + name));
}

} // namespace

QString keyName(quint16 code, const LanguageTable &texts)
{
    const std::optional<Qt::Key> key = KeyCodeTable::qtKeyOf(code);
    if (!key)
        return u"#"_s + QString::number(code);
    if (const auto named = namedKeys().constFind(*key); named != namedKeys().cend())
        return keyText(texts, *named);
    switch (*key) {
    case Qt::Key_Left:
        return u"←"_s;
    case Qt::Key_Right:
        return u"→"_s;
    case Qt::Key_Up:
        return u"↑"_s;
    case Qt::Key_Down:
        return u"↓"_s;
    default:
        break;
    }
    if (*key >= Qt::Key_F1 && *key <= Qt::Key_F12)
        return u"F"_s + QString::number(*key - Qt::Key_F1 + 1);
    // Letters, digits and punctuation: the character itself.
    return QString(QChar(char16_t(*key)));
}

QString keyComboText(const KeyCombo &combo, const LanguageTable &texts)
{
    QStringList parts;
    const std::pair<quint64, const char *> modifiers[] = {{KeyModifier::control, "ctrl"},
                                                          {KeyModifier::alt, "alt"},
                                                          {KeyModifier::shift, "shift"},
                                                          {KeyModifier::super, "super"}};
    for (const auto &[bit, name] : modifiers) {
        if (combo.modifierFlags & bit)
            parts << keyText(texts, QString::fromLatin1(name));
    }
    // The Super key alone is its own modifier.
    if (KeyCodeTable::qtKeyOf(combo.keyCode) != Qt::Key_Super_L || parts.isEmpty())
        parts << keyName(combo.keyCode, texts);
    return parts.join(u'+');
}

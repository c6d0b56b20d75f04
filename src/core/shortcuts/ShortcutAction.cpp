#include "shortcuts/ShortcutAction.h"

#include "shortcuts/KeyCodeTable.h"

using namespace Qt::StringLiterals;

const QList<ShortcutAction> &allShortcutActions()
{
    static const QList<ShortcutAction> actions {ShortcutAction::togglePopover,
                                                ShortcutAction::newCountdown};
    return actions;
}

QString rawValue(ShortcutAction action)
{
    switch (action) {
    case ShortcutAction::togglePopover:
        return u"togglePopover"_s;
    case ShortcutAction::newCountdown:
        return u"newCountdown"_s;
    }
    Q_UNREACHABLE();
    return {};
}

std::optional<ShortcutAction> shortcutActionFromRaw(const QString &raw)
{
    for (const ShortcutAction action : allShortcutActions()) {
        if (rawValue(action) == raw)
            return action;
    }
    return std::nullopt;
}

QString titleKey(ShortcutAction action)
{
    return action == ShortcutAction::togglePopover ? u"settings.shortcuts.toggle_popover.title"_s
                                                   : u"settings.shortcuts.new_countdown.title"_s;
}

QString helpKey(ShortcutAction action)
{
    return action == ShortcutAction::togglePopover ? u"settings.shortcuts.toggle_popover.help"_s
                                                   : u"settings.shortcuts.new_countdown.help"_s;
}

KeyCombo defaultCombo(ShortcutAction action)
{
    constexpr quint64 ctrlSuper = KeyModifier::control | KeyModifier::super;
    const Qt::Key key = action == ShortcutAction::togglePopover ? Qt::Key_T : Qt::Key_N;
    return KeyCombo {*KeyCodeTable::codeOf(key), ctrlSuper};
}

KeyCombo comboIn(const Settings &settings, ShortcutAction action)
{
    return settings.shortcutOverrides.value(rawValue(action), defaultCombo(action));
}

#pragma once

#include "countdown/CountdownItem.h"

#include <QString>
#include <QTimeZone>

#include <optional>

// What the status item presents of the item that holds the menu bar. A calendar item without an
// icon of its own shows the symbol "calendar"; a manual event without one has none (the chip then
// draws its default).
struct MenubarSubject
{
    QString title;
    std::optional<IconRef> icon;
    QTimeZone timeZone;

    static MenubarSubject of(const CountdownItem &item);
    bool operator==(const MenubarSubject &other) const;
};

#include "countdown/MenubarSubject.h"

MenubarSubject MenubarSubject::of(const CountdownItem &item)
{
    MenubarSubject subject;
    subject.title = item.title();
    subject.timeZone = item.zone();
    if (const Event *event = item.event())
        subject.icon = event->icon;
    else
        subject.icon = item.occurrence()->icon.value_or(IconRef {QStringLiteral("calendar")});
    return subject;
}

bool MenubarSubject::operator==(const MenubarSubject &other) const
{
    return title == other.title && icon == other.icon && timeZone == other.timeZone;
}

#pragma once

#include "countdown/MenubarChipPresentation.h"

#include <QList>
#include <QObject>
#include <QPoint>
#include <QRect>

#include <functional>
#include <optional>

// Where the user clicked the status item. `position` is the point the panel reported (global
// screen coordinates where the panel knows them); `geometry` is the item's rectangle on screen,
// empty when the panel does not tell.
struct StatusItemClick
{
    QPoint position;
    QRect geometry;
    bool operator==(const StatusItemClick &) const = default;
};
Q_DECLARE_METATYPE(StatusItemClick)

// One entry of the status item's menu, for panels that show a menu instead of (or besides)
// passing clicks on. An empty label makes a separator.
struct StatusItemMenuEntry
{
    QString label;
    std::function<void()> trigger;
};

// A status item on some panel. The controller hands it every new presentation with the text for
// screen readers; the host draws whatever its panel can show and reports clicks.
class StatusItemHost : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    virtual void show(const MenubarChipPresentation &presentation,
                      const QString &accessibleLabel) = 0;
    virtual void setMenuEntries(const QList<StatusItemMenuEntry> &entries) = 0;
    // The popup opened or closed beside the item: while it is open the item shows no tool tip,
    // which would cover it.
    virtual void setPopupOpen(bool open) { Q_UNUSED(open); }
    // Where the item is on screen (global coordinates), for panels that tell without a click.
    virtual std::optional<QRect> iconGeometry() const { return std::nullopt; }

Q_SIGNALS:
    void clicked(const StatusItemClick &click);
};

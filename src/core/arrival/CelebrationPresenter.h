#pragma once

#include "countdown/CountdownID.h"
#include "records/EventColor.h"
#include "records/IconRef.h"

#include <QObject>

#include <optional>

// What a celebration shows.
struct Celebration
{
    CountdownID item;
    QString title;
    std::optional<IconRef> icon;
    std::optional<EventColor> color;
};

// Shows the celebration of an arrival (the windows on every screen) and reports its dismissal.
class CelebrationPresenter : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    virtual void present(const Celebration &celebration) = 0;
    virtual bool isPresenting() const = 0;

Q_SIGNALS:
    // The user (or the auto-dismiss delay) closed the celebration; it is gone from every screen.
    void dismissed();
};

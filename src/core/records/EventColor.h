#pragma once

#include <QString>
#include <QStringView>

#include <array>
#include <optional>

// The eight accent colours a countdown can carry; none means the default accent.
enum class EventColor { red, orange, yellow, green, teal, blue, purple, pink };

inline constexpr std::array AllEventColors = {
    EventColor::red,  EventColor::orange, EventColor::yellow, EventColor::green,
    EventColor::teal, EventColor::blue,   EventColor::purple, EventColor::pink};

QString rawValue(EventColor color);
std::optional<EventColor> eventColorFromRaw(QStringView raw);
// The display colour as 0xRRGGBB.
quint32 rgbOf(EventColor color);
// The localisation key of the colour's name: "color.name.<raw>", or "color.name.default".
QString displayNameKey(std::optional<EventColor> color);

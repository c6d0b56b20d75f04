#include "records/EventColor.h"

namespace {

struct ColorInfo
{
    EventColor color;
    const char16_t *raw;
    quint32 rgb;
};

constexpr ColorInfo Colors[] = {
    {EventColor::red, u"red", 0xE5534B},       {EventColor::orange, u"orange", 0xEE8A3C},
    {EventColor::yellow, u"yellow", 0xD9B53A}, {EventColor::green, u"green", 0x4FA66A},
    {EventColor::teal, u"teal", 0x3AA6A6},     {EventColor::blue, u"blue", 0x4A86E8},
    {EventColor::purple, u"purple", 0x9067D6}, {EventColor::pink, u"pink", 0xD9668F},
};

const ColorInfo &infoOf(EventColor color)
{
    return Colors[int(color)];
}

} // namespace

QString rawValue(EventColor color)
{
    return QString::fromUtf16(infoOf(color).raw);
}

std::optional<EventColor> eventColorFromRaw(QStringView raw)
{
    for (const ColorInfo &info : Colors) {
        if (raw == QStringView(info.raw))
            return info.color;
    }
    return std::nullopt;
}

quint32 rgbOf(EventColor color)
{
    return infoOf(color).rgb;
}

QString displayNameKey(std::optional<EventColor> color)
{
    return color ? QStringLiteral("color.name.") + rawValue(*color)
                 : QStringLiteral("color.name.default");
}

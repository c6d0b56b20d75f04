#include "ui/AccentColors.h"

#include <cmath>

namespace {

double linear(double channel)
{
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

} // namespace

QColor AccentColors::of(std::optional<EventColor> color)
{
    return color ? QColor::fromRgb(rgbOf(*color)) : QColor();
}

QColor AccentColors::of(const std::optional<CalendarTint> &tint)
{
    return tint ? QColor::fromRgbF(float(tint->red), float(tint->green), float(tint->blue))
                : QColor();
}

double AccentColors::luminance(const QColor &color)
{
    const QColor rgb = color.toRgb();
    return 0.2126 * linear(rgb.redF()) + 0.7152 * linear(rgb.greenF())
        + 0.0722 * linear(rgb.blueF());
}

double AccentColors::contrast(const QColor &a, const QColor &b)
{
    const double la = luminance(a);
    const double lb = luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

QColor AccentColors::legibleOn(const QColor &accent, const QColor &background,
                               double minimumContrast)
{
    if (!accent.isValid() || contrast(accent, background) >= minimumContrast)
        return accent;
    // Walk the lightness towards the far end in small steps, keeping hue and saturation, so
    // the shade is still recognisably the accent.
    const bool darken = luminance(background) > 0.18;
    const QColor hsl = accent.toHsl();
    for (int step = 1; step <= 40; ++step) {
        const float lightness = darken
            ? hsl.lightnessF() * (1.0f - step / 40.0f)
            : hsl.lightnessF() + (1.0f - hsl.lightnessF()) * step / 40.0f;
        const QColor shade =
            QColor::fromHslF(hsl.hslHueF(), hsl.hslSaturationF(), lightness).toRgb();
        if (contrast(shade, background) >= minimumContrast)
            return shade;
    }
    return darken ? QColor(Qt::black) : QColor(Qt::white);
}

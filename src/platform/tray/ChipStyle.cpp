#include "platform/tray/ChipStyle.h"

#include <QFontDatabase>
#include <QFontMetricsF>

namespace {

QColor fromUnit(qreal red, qreal green, qreal blue, qreal alpha)
{
    return QColor::fromRgbF(float(red), float(green), float(blue), float(alpha));
}

bool hasTabularDigits(const QFont &font)
{
    const QFontMetricsF metrics(font);
    const qreal zero = metrics.horizontalAdvance(QLatin1Char('0'));
    for (char digit = '1'; digit <= '9'; ++digit) {
        if (!qFuzzyCompare(metrics.horizontalAdvance(QLatin1Char(digit)), zero)) {
            return false;
        }
    }
    return true;
}

} // namespace

QColor ChipStyle::textColor()
{
    return fromUnit(0.208, 0.322, 0.169, 1.0);
}

QColor ChipStyle::fillColor()
{
    return fromUnit(0.533, 0.659, 0.471, 0.55);
}

QColor ChipStyle::outlineColor()
{
    return fromUnit(0.533, 0.659, 0.471, 0.3);
}

QColor ChipStyle::backgroundColor()
{
    return QColor(Qt::white);
}

QFont ChipStyle::titleFont()
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPixelSize(int(textPixelSize));
    font.setWeight(QFont::Normal);
    font.setStyleStrategy(QFont::PreferAntialias);
    return font;
}

QFont ChipStyle::detailFont()
{
    QFont font = titleFont();
    font.setWeight(QFont::DemiBold);
    if (!hasTabularDigits(font)) {
        font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
        font.setPixelSize(int(textPixelSize));
        font.setWeight(QFont::DemiBold);
    }
    return font;
}

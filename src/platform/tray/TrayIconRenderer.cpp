#include "platform/tray/TrayIconRenderer.h"

#include "platform/tray/ChipStyle.h"
#include "platform/tray/IconSet.h"

#include <QFontMetricsF>
#include <QPainter>

namespace {

// The largest pixel size at which `text` fits into `width`, at most `maximum`.
QFont fittedFont(const QString &text, qreal width, qreal maximum)
{
    QFont font = ChipStyle::detailFont();
    font.setWeight(QFont::Bold);
    font.setPixelSize(std::max(1, int(maximum)));
    const qreal natural = QFontMetricsF(font).horizontalAdvance(text);
    if (natural > width) {
        font.setPixelSize(std::max(1, int(maximum * width / natural)));
    }
    return font;
}

} // namespace

QString TrayIconRenderer::shortDetail(const QString &detail)
{
    return detail.section(QLatin1Char(' '), 0, 0, QString::SectionSkipEmpty);
}

QList<int> TrayIconRenderer::standardSides()
{
    return {16, 22, 24, 32, 48};
}

QImage TrayIconRenderer::render(const MenubarChipPresentation &presentation, int side)
{
    using namespace ChipStyle;
    const qreal s = side;
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);

    // The tile carries its own light background, so the dark text reads on any panel; its rim,
    // in the text's colour, keeps the tile apart from a panel as light as the tile.
    const qreal rim = std::max(1.0, s / 22.0);
    const QRectF square(rim / 2, rim / 2, s - rim, s - rim);
    QColor rimColor = textColor();
    rimColor.setAlphaF(0.55f);
    painter.setPen(QPen(rimColor, rim));
    painter.setBrush(backgroundColor());
    painter.drawRoundedRect(square, s * 0.2, s * 0.2);
    painter.setPen(Qt::NoPen);

    const qreal barHeight = std::max(2.0, s / 11.0);
    const qreal inset = s * 0.12;
    const QRectF bar(inset, s - barHeight - s * 0.06, s - 2 * inset, barHeight);
    painter.setBrush(outlineColor());
    painter.drawRoundedRect(bar, barHeight / 2, barHeight / 2);
    if (presentation.remaining > 0) {
        QColor fill = fillColor();
        fill.setAlphaF(1.0);
        painter.setBrush(fill);
        QRectF filled = bar;
        filled.setWidth(bar.width() * std::min(presentation.remaining, 1.0));
        painter.drawRoundedRect(filled, barHeight / 2, barHeight / 2);
    }

    const QString text = shortDetail(presentation.detail);
    const qreal contentBottom = bar.top() - s * 0.04;
    const qreal symbolSideInSquare = text.isEmpty() ? contentBottom - s * 0.1 : s * 0.46;
    const QSizeF symbolSize(symbolSideInSquare, symbolSideInSquare);
    const QPointF symbolOrigin((s - symbolSideInSquare) / 2, text.isEmpty() ? s * 0.06 : s * 0.05);
    const QImage symbol = IconSet::render(presentation.symbolName, symbolSize, 1.0, textColor());
    painter.drawImage(symbolOrigin, symbol);

    if (!text.isEmpty()) {
        const QFont font = fittedFont(text, s * 0.96, s * 0.42);
        painter.setFont(font);
        painter.setPen(textColor());
        const QFontMetricsF metrics(font);
        const qreal x = (s - metrics.horizontalAdvance(text)) / 2;
        painter.drawText(QPointF(x, contentBottom), text);
    }
    painter.end();
    return image;
}

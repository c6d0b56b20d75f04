#include "platform/tray/ChipRenderer.h"

#include "platform/tray/ChipStyle.h"
#include "platform/tray/IconSet.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

#include <cmath>

namespace {

qreal textWidth(const QString &text, const QFont &font)
{
    return text.isEmpty() ? 0.0 : QFontMetricsF(font).horizontalAdvance(text);
}

// Baseline that centres the font's capital letters in the chip's height.
qreal capCentredBaseline(const QFont &font)
{
    return (ChipStyle::height + QFontMetricsF(font).capHeight()) / 2.0;
}

QPainterPath capsule(const QRectF &rect)
{
    QPainterPath path;
    path.addRoundedRect(rect, rect.height() / 2.0, rect.height() / 2.0);
    return path;
}

} // namespace

ChipLayout ChipRenderer::layout(const MenubarChipPresentation &presentation)
{
    using namespace ChipStyle;
    ChipLayout result;
    result.titleWidth = textWidth(presentation.title, titleFont());
    result.detailWidth = textWidth(presentation.detail, detailFont());
    const qreal tw = result.titleWidth;
    const qreal dw = result.detailWidth;
    if (tw > 0) {
        result.width =
            std::ceil(textLeft + tw + (dw > 0 ? titleDetailGap : 0.0) + dw + textRightPadding);
    } else if (dw > 0) {
        result.width = std::ceil(textLeft + dw + textRightPadding);
    } else {
        result.width = std::ceil(std::max(symbolSide, symbolOnlyMinimumSide) + symbolOnlyPadding);
    }
    const qreal symbolTop = (height - symbolSide) / 2.0;
    const bool hasText = tw > 0 || dw > 0;
    result.symbolOrigin =
        QPointF(hasText ? symbolLeft : (result.width - symbolSide) / 2.0, symbolTop);
    result.titleBaseline = QPointF(textLeft, capCentredBaseline(titleFont()));
    result.detailBaseline = QPointF(tw > 0 ? textLeft + tw + titleDetailGap : textLeft,
                                    capCentredBaseline(detailFont()));
    return result;
}

QImage ChipRenderer::render(const MenubarChipPresentation &presentation, qreal devicePixelRatio)
{
    using namespace ChipStyle;
    const ChipLayout parts = layout(presentation);
    QImage image(QSize(int(std::ceil(parts.width * devicePixelRatio)),
                       int(std::ceil(height * devicePixelRatio))),
                 QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(devicePixelRatio);
    image.fill(Qt::transparent);

    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);

    const QRectF bounds(0, 0, parts.width, height);
    const QPainterPath body = capsule(bounds);
    painter.fillPath(body, backgroundColor());

    if (presentation.remaining > 0) {
        painter.save();
        painter.setClipPath(body);
        painter.fillRect(QRectF(0, 0, std::min(presentation.remaining, 1.0) * parts.width, height),
                         fillColor());
        painter.restore();
    }

    painter.setPen(QPen(outlineColor(), 0.5));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(capsule(bounds.adjusted(0.25, 0.25, -0.25, -0.25)));

    painter.drawImage(parts.symbolOrigin,
                      IconSet::render(presentation.symbolName, QSizeF(symbolSide, symbolSide),
                                      devicePixelRatio, textColor()));

    painter.setPen(textColor());
    if (parts.titleWidth > 0) {
        painter.setFont(titleFont());
        painter.drawText(parts.titleBaseline, presentation.title);
    }
    if (parts.detailWidth > 0) {
        painter.setFont(detailFont());
        painter.drawText(parts.detailBaseline, presentation.detail);
    }
    painter.end();
    return image;
}

#include "ui/ChipPreviewProvider.h"

#include "platform/tray/ChipRenderer.h"

ChipPreviewProvider::ChipPreviewProvider(Source source)
    : QQuickImageProvider(QQuickImageProvider::Image)
    , m_source(std::move(source))
{
}

QImage ChipPreviewProvider::requestImage(const QString &id, QSize *size, const QSize &requestedSize)
{
    Q_UNUSED(requestedSize)
    const std::optional<MenubarChipPresentation> presentation =
        m_source(id.section(QLatin1Char('/'), 0, 0));
    QImage image = presentation ? ChipRenderer::render(*presentation, scale) : QImage();
    if (image.isNull()) {
        image = QImage(1, 1, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
    }
    image.setDevicePixelRatio(1.0); // QML sizes it by sourceSize / scale
    if (size)
        *size = image.size();
    return image;
}

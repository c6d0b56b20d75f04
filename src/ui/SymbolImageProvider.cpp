#include "ui/SymbolImageProvider.h"

#include "platform/tray/IconSet.h"

#include <QColor>

SymbolImageProvider::SymbolImageProvider()
    : QQuickImageProvider(QQuickImageProvider::Image)
{
}

QImage SymbolImageProvider::requestImage(const QString &id, QSize *size, const QSize &requestedSize)
{
    const qsizetype slash = id.lastIndexOf(QLatin1Char('/'));
    const QString name = slash < 0 ? id : id.left(slash);
    const QColor color(QLatin1Char('#')
                       + (slash < 0 ? QStringLiteral("808080") : id.mid(slash + 1)));
    const QSize logical = requestedSize.isValid() ? requestedSize : QSize(24, 24);
    QImage image = IconSet::render(name, logical, 1.0, color.isValid() ? color : QColor(Qt::gray));
    if (size)
        *size = image.size();
    return image;
}

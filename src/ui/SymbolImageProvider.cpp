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
    const QColor tint = color.isValid() ? color : QColor(Qt::gray);
    QImage image = name.startsWith(u"ui.")
        ? IconSet::renderFile(QStringLiteral(":/tarrow/glyphs/%1.svg").arg(name.mid(3)), logical,
                              1.0, tint)
        : IconSet::render(name, logical, 1.0, tint);
    if (size)
        *size = image.size();
    return image;
}

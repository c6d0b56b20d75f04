#include "platform/tray/IconSet.h"

#include <QHash>
#include <QPainter>
#include <QSvgRenderer>

#include <memory>

namespace {

const QStringList &bundledNames()
{
    static const QStringList names = {
        QStringLiteral("hourglass"),          QStringLiteral("calendar"),
        QStringLiteral("party.popper.fill"),  QStringLiteral("star.fill"),
        QStringLiteral("heart.fill"),         QStringLiteral("gift.fill"),
        QStringLiteral("birthday.cake.fill"), QStringLiteral("airplane"),
        QStringLiteral("graduationcap.fill"), QStringLiteral("briefcase.fill"),
        QStringLiteral("house.fill"),         QStringLiteral("bell.fill"),
        QStringLiteral("flag.fill"),          QStringLiteral("sun.max.fill"),
        QStringLiteral("moon.fill"),          QStringLiteral("leaf.fill"),
        QStringLiteral("car.fill"),           QStringLiteral("book.fill"),
        QStringLiteral("music.note"),         QStringLiteral("sparkles"),
        QStringLiteral("trophy.fill"),        QStringLiteral("cart.fill"),
        QStringLiteral("figure.run"),
    };
    return names;
}

// Parsed SVGs are kept for the life of the process; there are only a few dozen.
QSvgRenderer &rendererFor(const QString &path)
{
    static QHash<QString, std::shared_ptr<QSvgRenderer>> cache;
    std::shared_ptr<QSvgRenderer> &renderer = cache[path];
    if (!renderer)
        renderer = std::make_shared<QSvgRenderer>(path);
    return *renderer;
}

} // namespace

const QString IconSet::fallbackName = QStringLiteral("hourglass");

QStringList IconSet::names()
{
    return bundledNames();
}

bool IconSet::contains(const QString &name)
{
    return bundledNames().contains(name);
}

QString IconSet::resolvedName(const QString &name)
{
    return contains(name) ? name : fallbackName;
}

QImage IconSet::render(const QString &name, const QSizeF &logicalSize, qreal devicePixelRatio,
                       const QColor &color)
{
    return renderFile(QStringLiteral(":/tarrow/symbols/%1.svg").arg(resolvedName(name)),
                      logicalSize, devicePixelRatio, color);
}

QImage IconSet::renderFile(const QString &path, const QSizeF &logicalSize, qreal devicePixelRatio,
                           const QColor &color)
{
    const QSize pixels = (logicalSize * devicePixelRatio).toSize();
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    rendererFor(path).render(&painter, QRectF(QPointF(0, 0), QSizeF(pixels)));
    // The files are drawn in black; keep their shape and paint it in the wanted colour.
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    painter.end();
    image.setDevicePixelRatio(devicePixelRatio);
    return image;
}

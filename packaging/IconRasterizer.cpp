// Renders the application icon into the hicolor sizes at build time:
//   tarrow_icon_rasterizer ICON.svg NAME OUT_DIR SIZE...
// writes OUT_DIR/<size>x<size>/apps/NAME.png for each size.
#include <QCoreApplication>
#include <QDir>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QStringList arguments = app.arguments();
    if (arguments.size() < 5) {
        std::fputs("usage: tarrow_icon_rasterizer ICON.svg NAME OUT_DIR SIZE...\n", stderr);
        return 2;
    }
    QSvgRenderer renderer(arguments.at(1));
    if (!renderer.isValid()) {
        std::fprintf(stderr, "tarrow_icon_rasterizer: cannot read %s\n",
                     qPrintable(arguments.at(1)));
        return 1;
    }
    for (const QString &sizeText : arguments.mid(4)) {
        const int size = sizeText.toInt();
        if (size <= 0) {
            std::fprintf(stderr, "tarrow_icon_rasterizer: bad size %s\n", qPrintable(sizeText));
            return 2;
        }
        QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        renderer.render(&painter, QRectF(0, 0, size, size));
        painter.end();
        const QString folder = QStringLiteral("%1/%2x%2/apps").arg(arguments.at(3)).arg(size);
        const QString file = folder + u'/' + arguments.at(2) + QStringLiteral(".png");
        if (!QDir().mkpath(folder) || !image.save(file, "PNG")) {
            std::fprintf(stderr, "tarrow_icon_rasterizer: cannot write %s\n", qPrintable(file));
            return 1;
        }
    }
    return 0;
}

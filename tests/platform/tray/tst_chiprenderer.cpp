#include "platform/tray/ChipRenderer.h"
#include "platform/tray/ChipStyle.h"
#include "platform/tray/IconSet.h"
#include "platform/tray/TrayIconRenderer.h"

#include <QFontMetricsF>
#include <QTest>

#include <cmath>

namespace {

MenubarChipPresentation frame(const QString &title, const QString &detail, double remaining = 1.0,
                              const QString &symbol = QStringLiteral("hourglass"))
{
    return MenubarChipPresentation {symbol, title, detail, remaining};
}

// The chip's width rule, written out from the fonts' own measurements.
qreal expectedWidth(const QString &title, const QString &detail)
{
    const qreal tw =
        title.isEmpty() ? 0 : QFontMetricsF(ChipStyle::titleFont()).horizontalAdvance(title);
    const qreal dw =
        detail.isEmpty() ? 0 : QFontMetricsF(ChipStyle::detailFont()).horizontalAdvance(detail);
    if (tw > 0) {
        return std::ceil(27 + tw + (dw > 0 ? 8 : 0) + dw + 10);
    }
    if (dw > 0) {
        return std::ceil(27 + dw + 10);
    }
    return std::ceil(std::max(ChipStyle::symbolSide, 12.0) + 16);
}

int countOpaque(const QImage &image)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            count += qAlpha(image.pixel(x, y)) > 0 ? 1 : 0;
        }
    }
    return count;
}

bool near(QRgb actual, QRgb expected)
{
    return std::abs(qRed(actual) - qRed(expected)) <= 3
        && std::abs(qGreen(actual) - qGreen(expected)) <= 3
        && std::abs(qBlue(actual) - qBlue(expected)) <= 3
        && std::abs(qAlpha(actual) - qAlpha(expected)) <= 3;
}

} // namespace

class tst_ChipRenderer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void widthFollowsTheTexts_data();
    void widthFollowsTheTexts();
    void scalesForTheDevicePixelRatio();
    void fillCoversTheRemainingFraction_data();
    void fillCoversTheRemainingFraction();
    void emojiInTitlesDrawInColour();
    void everySymbolDraws();
    void squareIconShowsTheLargestUnit_data();
    void squareIconShowsTheLargestUnit();
    void squareIconsComeInEveryStandardSize();
};

void tst_ChipRenderer::widthFollowsTheTexts_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("detail");

    QTest::newRow("Full style: symbol, title, gap and time") << "Dentist"
                                                             << "2d 4h";
    QTest::newRow("Title-only style: no gap after the title") << "Dentist"
                                                              << "";
    QTest::newRow("Compact style: the time right after the symbol") << ""
                                                                    << "12m";
    QTest::newRow("Icon-only style: the symbol with room either side") << ""
                                                                       << "";
    QTest::newRow("A title with an emoji is measured with the emoji's font") << "Party 🎉"
                                                                             << "✓";
    QTest::newRow("A Turkish title with dotted capitals") << "İstanbul uçuşu"
                                                          << "3g 2sa";
}

void tst_ChipRenderer::widthFollowsTheTexts()
{
    QFETCH(QString, title);
    QFETCH(QString, detail);
    const MenubarChipPresentation chip = frame(title, detail);
    const qreal width = expectedWidth(title, detail);
    QCOMPARE(ChipRenderer::layout(chip).width, width);
    const QImage image = ChipRenderer::render(chip);
    QCOMPARE(image.size(), QSize(int(width), 24));
    QVERIFY(image.width() >= 28);
}

void tst_ChipRenderer::scalesForTheDevicePixelRatio()
{
    const MenubarChipPresentation chip = frame(QStringLiteral("Dentist"), QStringLiteral("2d 4h"));
    const QImage single = ChipRenderer::render(chip, 1.0);
    const QImage twice = ChipRenderer::render(chip, 2.0);
    QCOMPARE(twice.size(), single.size() * 2);
    QCOMPARE(twice.devicePixelRatio(), 2.0);
    QCOMPARE(twice.deviceIndependentSize(), QSizeF(single.size()));
}

void tst_ChipRenderer::fillCoversTheRemainingFraction_data()
{
    QTest::addColumn<double>("remaining");
    QTest::addColumn<double>("probe"); // fraction of the width probed
    QTest::addColumn<bool>("filled");

    QTest::newRow("A full chip is pale green at its right end") << 1.0 << 0.9 << true;
    QTest::newRow("An empty chip is white at its left end") << 0.0 << 0.1 << false;
    QTest::newRow("A half-filled chip is green at a quarter") << 0.5 << 0.25 << true;
    QTest::newRow("A half-filled chip is white at three quarters") << 0.5 << 0.75 << false;
}

void tst_ChipRenderer::fillCoversTheRemainingFraction()
{
    QFETCH(double, remaining);
    QFETCH(double, probe);
    QFETCH(bool, filled);

    const QImage image =
        ChipRenderer::render(frame(QStringLiteral("Dentist"), QString(), remaining))
            .convertToFormat(QImage::Format_ARGB32);
    // Below the text, away from the rounded ends.
    const QRgb pixel = image.pixel(int(probe * image.width()), 21);
    const QColor fill = ChipStyle::fillColor();
    const QRgb pale = qRgb(qRound(255 * (1 - fill.alphaF()) + fill.red() * fill.alphaF()),
                           qRound(255 * (1 - fill.alphaF()) + fill.green() * fill.alphaF()),
                           qRound(255 * (1 - fill.alphaF()) + fill.blue() * fill.alphaF()));
    QVERIFY2(near(pixel, filled ? pale : qRgb(255, 255, 255)),
             qPrintable(QColor::fromRgba(pixel).name(QColor::HexArgb)));
    QCOMPARE(qAlpha(image.pixel(0, 0)), 0); // outside the capsule
}

void tst_ChipRenderer::emojiInTitlesDrawInColour()
{
    const QImage image = ChipRenderer::render(frame(QStringLiteral("🎉🎂"), QString(), 0.0))
                             .convertToFormat(QImage::Format_ARGB32);
    // Everything of the chip's own palette is greenish or grey; a red-dominant pixel can only
    // come from a colour emoji.
    bool colourful = false;
    for (int y = 0; y < image.height() && !colourful; ++y) {
        for (int x = 27; x < image.width() && !colourful; ++x) {
            const QRgb p = image.pixel(x, y);
            colourful = qRed(p) > qGreen(p) + 40;
        }
    }
    QVERIFY(colourful);
}

void tst_ChipRenderer::everySymbolDraws()
{
    const QImage fallback =
        IconSet::render(QStringLiteral("hourglass"), QSizeF(24, 24), 1.0, Qt::black);
    QVERIFY(countOpaque(fallback) > 40);
    for (const QString &name : IconSet::names()) {
        const QImage image = IconSet::render(name, QSizeF(24, 24), 1.0, Qt::black);
        QVERIFY2(countOpaque(image) > 40, qPrintable(name));
        QVERIFY2(name == QLatin1String("hourglass") || image != fallback, qPrintable(name));
    }
    QCOMPARE(IconSet::render(QStringLiteral("no.such.symbol"), QSizeF(24, 24), 1.0, Qt::black),
             fallback);
}

void tst_ChipRenderer::squareIconShowsTheLargestUnit_data()
{
    QTest::addColumn<QString>("detail");
    QTest::addColumn<QString>("shown");

    QTest::newRow("Days and hours show the days") << "2d 4h"
                                                  << "2d";
    QTest::newRow("The last minute shows the clock") << "0:59"
                                                     << "0:59";
    QTest::newRow("A reached item shows its check mark") << "✓"
                                                         << "✓";
    QTest::newRow("A count-up keeps its plus sign") << "+1y 3d"
                                                    << "+1y";
    QTest::newRow("No time shows no text") << ""
                                           << "";
}

void tst_ChipRenderer::squareIconShowsTheLargestUnit()
{
    QFETCH(QString, detail);
    QFETCH(QString, shown);
    QCOMPARE(TrayIconRenderer::shortDetail(detail), shown);
}

void tst_ChipRenderer::squareIconsComeInEveryStandardSize()
{
    const MenubarChipPresentation chip =
        frame(QStringLiteral("Dentist"), QStringLiteral("2d 4h"), 0.3);
    for (int side : TrayIconRenderer::standardSides()) {
        const QImage icon = TrayIconRenderer::render(chip, side);
        QCOMPARE(icon.size(), QSize(side, side));
        QVERIFY(countOpaque(icon) > side * side / 2);
    }
    // The time is part of the square: another largest unit draws another icon.
    QVERIFY(TrayIconRenderer::render(chip, 22)
            != TrayIconRenderer::render(
                frame(QStringLiteral("Dentist"), QStringLiteral("3d 4h"), 0.3), 22));
}

QTEST_MAIN(tst_ChipRenderer)
#include "tst_chiprenderer.moc"

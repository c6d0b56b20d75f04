#include "platform/tray/ChipRenderer.h"
#include "platform/tray/ChipStyle.h"
#include "platform/tray/IconSet.h"
#include "platform/tray/TrayIconRenderer.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

MenubarChipPresentation chip(const QString &title, const QString &detail, double remaining = 1.0)
{
    return MenubarChipPresentation {u"hourglass"_s, title, detail, remaining};
}

int countOpaque(const QImage &image)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            count += qAlpha(image.pixel(x, y)) > 0 ? 1 : 0;
    return count;
}

} // namespace

class tst_ChipRenderer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Symbol, title and time side by side: none overlaps the next or runs past the capsule.
    void partsFitTheChip_data()
    {
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("detail");

        QTest::newRow("Full style: symbol, title and time") << u"Dentist"_s << u"2d 4h"_s;
        QTest::newRow("Title-only style") << u"Dentist"_s << QString();
        QTest::newRow("Compact style: the time right after the symbol") << QString() << u"12m"_s;
        QTest::newRow("Icon-only style: the symbol alone, centred") << QString() << QString();
        QTest::newRow("A Turkish title with an emoji, measured with the emoji's font")
            << u"İstanbul uçuşu 🎉"_s << u"3g 2sa"_s;
    }

    void partsFitTheChip()
    {
        QFETCH(QString, title);
        QFETCH(QString, detail);
        const ChipLayout parts = ChipRenderer::layout(chip(title, detail));
        QCOMPARE(ChipRenderer::render(chip(title, detail)).size(), QSize(int(parts.width), 24));
        QVERIFY(parts.width >= 28);

        qreal end = parts.symbolOrigin.x() + ChipStyle::symbolSide;
        if (!title.isEmpty()) {
            QVERIFY(parts.titleBaseline.x() > end);
            end = parts.titleBaseline.x()
                + QFontMetricsF(ChipStyle::titleFont()).horizontalAdvance(title);
        }
        if (!detail.isEmpty()) {
            QVERIFY(parts.detailBaseline.x() >= end + (title.isEmpty() ? 1 : 4));
            end = parts.detailBaseline.x()
                + QFontMetricsF(ChipStyle::detailFont()).horizontalAdvance(detail);
        }
        QVERIFY2(end + 4 <= parts.width, qPrintable(u"%1 of %2"_s.arg(end).arg(parts.width)));
        if (title.isEmpty() && detail.isEmpty())
            QCOMPARE(2 * parts.symbolOrigin.x() + ChipStyle::symbolSide, parts.width);
    }

    void fillCoversTheRemainingFraction_data()
    {
        QTest::addColumn<double>("remaining");
        QTest::addColumn<double>("probe"); // fraction of the width probed
        QTest::addColumn<bool>("filled");

        QTest::newRow("A full chip is pale green at its right end") << 1.0 << 0.9 << true;
        QTest::newRow("An empty chip is white at its left end") << 0.0 << 0.1 << false;
        QTest::newRow("A half-filled chip is green at a quarter") << 0.5 << 0.25 << true;
        QTest::newRow("A half-filled chip is white at three quarters") << 0.5 << 0.75 << false;
    }

    void fillCoversTheRemainingFraction()
    {
        QFETCH(double, remaining);
        QFETCH(double, probe);
        QFETCH(bool, filled);
        const QImage image = ChipRenderer::render(chip(u"Dentist"_s, QString(), remaining))
                                 .convertToFormat(QImage::Format_ARGB32);
        // Below the text, away from the rounded ends.
        const QRgb pixel = image.pixel(int(probe * image.width()), 21);
        QImage expected(1, 1, QImage::Format_ARGB32); // the fill over the white capsule
        expected.fill(Qt::white);
        if (filled)
            QPainter(&expected).fillRect(expected.rect(), ChipStyle::fillColor());
        for (const auto channel :
             std::initializer_list<int (*)(QRgb)> {qRed, qGreen, qBlue, qAlpha})
            QVERIFY2(std::abs(channel(pixel) - channel(expected.pixel(0, 0))) <= 3,
                     qPrintable(QColor::fromRgba(pixel).name(QColor::HexArgb)));
        QCOMPARE(qAlpha(image.pixel(0, 0)), 0); // outside the capsule
    }

    void emojiInTitlesDrawInColour()
    {
        const QImage image = ChipRenderer::render(chip(u"🎉🎂"_s, QString(), 0.0))
                                 .convertToFormat(QImage::Format_ARGB32);
        // The chip's own palette is greenish or grey; a red-dominant pixel can only come from a
        // colour emoji.
        bool colourful = false;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 27; x < image.width(); ++x)
                colourful |= qRed(image.pixel(x, y)) > qGreen(image.pixel(x, y)) + 40;
        QVERIFY(colourful);
    }

    void everySymbolDraws()
    {
        const auto draw = [](const QString &name) {
            return IconSet::render(name, QSizeF(24, 24), 1.0, Qt::black);
        };
        const QImage fallback = draw(u"hourglass"_s);
        for (const QString &name : IconSet::names()) {
            QVERIFY2(countOpaque(draw(name)) > 40, qPrintable(name));
            QVERIFY2(name == u"hourglass"_s || draw(name) != fallback, qPrintable(name));
        }
        QCOMPARE(draw(u"no.such.symbol"_s), fallback);
    }

    void squareIconShowsTheLargestUnit_data()
    {
        QTest::addColumn<QString>("detail");
        QTest::addColumn<QString>("shown");

        QTest::newRow("Days and hours show the days") << u"2d 4h"_s << u"2d"_s;
        QTest::newRow("A count-up keeps its plus sign") << u"+1y 3d"_s << u"+1y"_s;
        QTest::newRow("The last minute's clock shows whole") << u"0:59"_s << u"0:59"_s;
    }

    void squareIconShowsTheLargestUnit()
    {
        QFETCH(QString, detail);
        QFETCH(QString, shown);
        QCOMPARE(TrayIconRenderer::shortDetail(detail), shown);
    }

    void squareIconsComeInEveryStandardSize()
    {
        const MenubarChipPresentation dentist = chip(u"Dentist"_s, u"2d 4h"_s, 0.3);
        for (int side : TrayIconRenderer::standardSides()) {
            const QImage icon = TrayIconRenderer::render(dentist, side);
            QCOMPARE(icon.size(), QSize(side, side));
            QVERIFY(countOpaque(icon) > side * side / 2);
        }
        // The time is part of the square: another largest unit draws another icon.
        QVERIFY(TrayIconRenderer::render(dentist, 22)
                != TrayIconRenderer::render(chip(u"Dentist"_s, u"3d 4h"_s, 0.3), 22));
    }
};

QTEST_MAIN(tst_ChipRenderer)
#include "tst_chiprenderer.moc"

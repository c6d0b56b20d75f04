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

    // The pale green fill over the white capsule covers the fraction of the time left.
    void fillCoversTheRemainingFraction()
    {
        QImage fill(1, 1, QImage::Format_ARGB32);
        fill.fill(Qt::white);
        QPainter(&fill).fillRect(fill.rect(), ChipStyle::fillColor());
        const QRgb green = fill.pixel(0, 0), white = qRgb(255, 255, 255);
        for (const auto &[remaining, probe, colour] :
             {std::tuple {1.0, 0.9, green}, {0.5, 0.25, green}, {0.5, 0.75, white}}) {
            const QImage image = ChipRenderer::render(chip(u"Dentist"_s, QString(), remaining))
                                     .convertToFormat(QImage::Format_ARGB32);
            // Below the text, away from the rounded ends; nothing is drawn outside the capsule.
            const QRgb pixel = image.pixel(int(probe * image.width()), 21);
            for (const auto channel :
                 std::initializer_list<int (*)(QRgb)> {qRed, qGreen, qBlue, qAlpha})
                QVERIFY2(std::abs(channel(pixel) - channel(colour)) <= 3,
                         qPrintable(QColor::fromRgba(pixel).name(QColor::HexArgb)));
            QCOMPARE(qAlpha(image.pixel(0, 0)), 0);
        }
    }

    // Every symbol draws, and differs from the hourglass an unknown name falls back to. The
    // square icon comes in every standard size and shows only the time's largest unit; a count-up
    // keeps its sign, the last minute's clock shows whole.
    void symbolsAndSquareIcons()
    {
        const auto draw = [](const QString &name) {
            return IconSet::render(name, QSizeF(24, 24), 1.0, Qt::black);
        };
        const QImage fallback = draw(u"no.such.symbol"_s);
        for (const QString &name : IconSet::names()) {
            QVERIFY2(countOpaque(draw(name)) > 40, qPrintable(name));
            QVERIFY2((name == u"hourglass"_s) == (draw(name) == fallback), qPrintable(name));
        }
        for (int side : TrayIconRenderer::standardSides()) {
            const QImage icon = TrayIconRenderer::render(chip(u"Dentist"_s, u"2d 4h"_s, 0.3), side);
            QCOMPARE(icon.size(), QSize(side, side));
            QVERIFY(countOpaque(icon) > side * side / 2);
        }
        for (const auto &[detail, shown] :
             {std::pair {u"2d 4h"_s, u"2d"_s}, {u"+1y 3d"_s, u"+1y"_s}, {u"0:59"_s, u"0:59"_s}})
            QCOMPARE(TrayIconRenderer::shortDetail(detail), shown);
    }
};

QTEST_MAIN(tst_ChipRenderer)
#include "tst_chiprenderer.moc"

#include "ui/PopupPlacement.h"

#include <QTest>

class tst_PopupPlacement : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void placesBesideTheItem_data()
    {
        QTest::addColumn<QRect>("available");
        QTest::addColumn<QRect>("anchor");
        QTest::addColumn<QPoint>("topLeft");

        // A 1920×1080 screen with a 32 px panel on one edge; the popup is 360×480, the gap 4 px.
        const QRect belowTopPanel(0, 32, 1920, 1048);
        const QRect aboveBottomPanel(0, 0, 1920, 1048);
        const QRect rightOfLeftPanel(32, 0, 1888, 1080);
        const QRect leftOfRightPanel(0, 0, 1888, 1080);

        QTest::newRow("Top panel: the popup hangs below the item, centred on it")
            << belowTopPanel << QRect(900, 4, 24, 24) << QPoint(731, 32);
        QTest::newRow("Top panel, item at the right end: the popup is kept on screen")
            << belowTopPanel << QRect(1890, 4, 24, 24) << QPoint(1560, 32);
        QTest::newRow("Top panel, item at the left end: the popup starts at the screen's left edge")
            << belowTopPanel << QRect(2, 4, 24, 24) << QPoint(0, 32);
        QTest::newRow(
            "Bottom panel: the popup stands above the item, clear of the screen's right edge")
            << aboveBottomPanel << QRect(1800, 1052, 24, 24) << QPoint(1560, 568);
        QTest::newRow("Left panel: the popup opens to the right of the item")
            << rightOfLeftPanel << QRect(4, 500, 24, 24) << QPoint(32, 271);
        QTest::newRow("Right panel: the popup opens to the left of the item")
            << leftOfRightPanel << QRect(1892, 500, 24, 24) << QPoint(1528, 271);
        QTest::newRow("A click point on a top panel is placed like an item there")
            << belowTopPanel << QRect(1000, 16, 1, 1) << QPoint(820, 32);
        QTest::newRow("A second screen to the right keeps the popup on that screen")
            << QRect(1920, 32, 2560, 1408) << QRect(4460, 4, 24, 24) << QPoint(4120, 32);
        QTest::newRow("A screen above the primary one (negative coordinates) places alike")
            << QRect(0, -1048, 1920, 1048) << QRect(900, -20, 24, 24) << QPoint(731, -504);
        QTest::newRow("A screen to the left with a bottom panel keeps the popup inside it")
            << QRect(-1280, 0, 1280, 992) << QRect(-1270, 1000, 24, 24) << QPoint(-1280, 512);
        QTest::newRow("A pointer in mid-screen opens away from the nearest edge")
            << belowTopPanel << QRect(960, 600, 1, 1) << QPoint(780, 116);
    }

    void placesBesideTheItem()
    {
        QFETCH(QRect, available);
        QFETCH(QRect, anchor);
        QFETCH(QPoint, topLeft);
        QCOMPARE(PopupPlacement::topLeft(available, anchor, QSize(360, 480)), topLeft);
    }

    void popupLargerThanTheScreenStartsAtItsCorner()
    {
        QCOMPARE(PopupPlacement::topLeft(QRect(100, 50, 300, 200), QRect(250, 10, 20, 20),
                                         QSize(360, 480)),
                 QPoint(100, 50));
    }
};

QTEST_GUILESS_MAIN(tst_PopupPlacement)
#include "tst_popupplacement.moc"

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

        QTest::newRow("Top panel: the popup hangs below the item, centred on it")
            << belowTopPanel << QRect(900, 4, 24, 24) << QPoint(731, 32);
        QTest::newRow("Bottom panel: the popup stands above the item, clear of the right edge")
            << QRect(0, 0, 1920, 1048) << QRect(1800, 1052, 24, 24) << QPoint(1560, 568);
        QTest::newRow("Left panel: the popup opens to the right of the item")
            << QRect(32, 0, 1888, 1080) << QRect(4, 500, 24, 24) << QPoint(32, 271);
        QTest::newRow("Right panel: the popup opens to the left of the item")
            << QRect(0, 0, 1888, 1080) << QRect(1892, 500, 24, 24) << QPoint(1528, 271);
        QTest::newRow("Item at the right end of a second screen: the popup is kept on that screen")
            << QRect(1920, 32, 2560, 1408) << QRect(4460, 4, 24, 24) << QPoint(4120, 32);
        QTest::newRow("Item at the left end of a screen at negative coordinates: kept on it")
            << QRect(-1280, 0, 1280, 992) << QRect(-1270, 1000, 24, 24) << QPoint(-1280, 512);
        QTest::newRow("A pointer in mid-screen opens away from the nearest edge")
            << belowTopPanel << QRect(960, 600, 1, 1) << QPoint(780, 116);
        QTest::newRow("A popup larger than the screen starts at the screen's corner")
            << QRect(100, 50, 300, 200) << QRect(250, 10, 20, 20) << QPoint(100, 50);
    }

    void placesBesideTheItem()
    {
        QFETCH(QRect, available);
        QFETCH(QRect, anchor);
        QFETCH(QPoint, topLeft);
        QCOMPARE(PopupPlacement::topLeft(available, anchor, QSize(360, 480)), topLeft);
    }
};

QTEST_GUILESS_MAIN(tst_PopupPlacement)
#include "tst_popupplacement.moc"

#include "app/AppURLRouter.h"

#include <QTest>

using namespace Qt::StringLiterals;

class tst_AppURLRouter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void routesByScheme_data()
    {
        QTest::addColumn<QString>("link");
        QTest::addColumn<bool>("opensPopover");
        QTest::addColumn<QString>("loggedScheme"); // null: nothing logged

        QTest::newRow("A bare tarrow: link opens the popup") << u"tarrow:"_s << true << QString();
        QTest::newRow("A tarrow:// link with host, path and query opens the popup")
            << u"tarrow://add/new?title=Dentist&date=2026-06-01"_s << true << QString();
        QTest::newRow("A scheme in mixed case opens the popup")
            << u"TaRRow://open"_s << true << QString();
        QTest::newRow("A mailto link is ignored and logged with its scheme")
            << u"mailto:someone@example.com"_s << false << u"mailto"_s;
        QTest::newRow("A scheme that only starts like ours is not ours")
            << u"tarrowx://open"_s << false << u"tarrowx"_s;
        QTest::newRow("A link without a scheme is logged with a question mark")
            << u"open/the/popup"_s << false << u"?"_s;
        QTest::newRow("Text that is not a URL is dropped")
            << u"tarrow://[::1"_s << false << QString();
    }

    void routesByScheme()
    {
        QFETCH(QString, link);
        QFETCH(bool, opensPopover);
        QFETCH(QString, loggedScheme);

        if (!loggedScheme.isNull())
            QTest::ignoreMessage(
                QtCriticalMsg,
                qPrintable(u"Ignored a link Tarrow does not own: "_s + loggedScheme));
        int opened = 0;
        AppURLRouter([&opened] { ++opened; }).route(link);
        QCOMPARE(opened, opensPopover ? 1 : 0);
    }
};

QTEST_GUILESS_MAIN(tst_AppURLRouter)
#include "tst_appurlrouter.moc"

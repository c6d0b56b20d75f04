#include "app/AppURLRouter.h"

#include <QTest>

namespace {

QStringList routerLog;
QtMessageHandler previousHandler = nullptr;

void captureRouterLog(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (qstrcmp(context.category, "AppURLRouter") == 0 && type == QtCriticalMsg)
        routerLog << message;
    else
        previousHandler(type, context, message);
}

} // namespace

class tst_AppURLRouter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { previousHandler = qInstallMessageHandler(captureRouterLog); }
    void cleanupTestCase() { qInstallMessageHandler(previousHandler); }
    void init() { routerLog.clear(); }

    void routesByScheme_data()
    {
        QTest::addColumn<QString>("link");
        QTest::addColumn<bool>("opensPopover");
        QTest::addColumn<QStringList>("logged");

        const QStringList nothing;
        QTest::newRow("A bare tarrow: link opens the popup") << "tarrow:" << true << nothing;
        QTest::newRow("A tarrow:// link with host, path and query opens the popup")
            << "tarrow://add/new?title=Dentist&date=2026-06-01" << true << nothing;
        QTest::newRow("A tarrow: link without slashes opens the popup")
            << "tarrow:add?title=x" << true << nothing;
        QTest::newRow("A scheme written in capitals opens the popup")
            << "TARROW://open" << true << nothing;
        QTest::newRow("A scheme in mixed case opens the popup") << "TaRRow:" << true << nothing;
        QTest::newRow("A mailto link is ignored and logged with its scheme")
            << "mailto:someone@example.com" << false
            << QStringList {QStringLiteral("Ignored a link Tarrow does not own: mailto")};
        QTest::newRow("A web link is ignored and logged with its scheme")
            << "https://tarrow.example/open" << false
            << QStringList {QStringLiteral("Ignored a link Tarrow does not own: https")};
        QTest::newRow("A scheme that only starts like ours is not ours")
            << "tarrowx://open" << false
            << QStringList {QStringLiteral("Ignored a link Tarrow does not own: tarrowx")};
        QTest::newRow("A link without a scheme is logged with a question mark")
            << "open/the/popup" << false
            << QStringList {QStringLiteral("Ignored a link Tarrow does not own: ?")};
        QTest::newRow("Text that is not a URL is dropped without a word")
            << "tarrow://[::1" << false << nothing;
    }

    void routesByScheme()
    {
        QFETCH(QString, link);
        QFETCH(bool, opensPopover);
        QFETCH(QStringList, logged);

        int opened = 0;
        const AppURLRouter router([&opened] { ++opened; });
        router.route(link);

        QCOMPARE(opened, opensPopover ? 1 : 0);
        QCOMPARE(routerLog, logged);
    }
};

QTEST_GUILESS_MAIN(tst_AppURLRouter)
#include "tst_appurlrouter.moc"

#include "time/Remaining.h"

#include <QTest>

class tst_Remaining : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void untilAndSince_data();
    void untilAndSince();
};

void tst_Remaining::untilAndSince_data()
{
    QTest::addColumn<qint64>("msecsAhead");
    QTest::addColumn<Remaining>("expected");

    QTest::newRow("90,061 seconds is one day, one hour, one minute and one second")
        << qint64(90061000) << Remaining {1, 1, 1, 1, 90061};
    QTest::newRow("a fraction of a second is cut off, not rounded")
        << qint64(59999) << Remaining {0, 0, 0, 59, 59.999};
    QTest::newRow("a target in the past leaves nothing") << qint64(-5000) << Remaining {};
    QTest::newRow("a week and a second keeps days beyond a week")
        << qint64(604801000) << Remaining {7, 0, 0, 1, 604801};
}

void tst_Remaining::untilAndSince()
{
    QFETCH(qint64, msecsAhead);
    const QDateTime now =
        QDateTime::fromString(QStringLiteral("2026-03-01T12:00:00Z"), Qt::ISODate);
    QTEST(Remaining::until(now.addMSecs(msecsAhead), now), "expected");
    QTEST(Remaining::since(now, now.addMSecs(msecsAhead)), "expected");
}

QTEST_GUILESS_MAIN(tst_Remaining)
#include "tst_remaining.moc"

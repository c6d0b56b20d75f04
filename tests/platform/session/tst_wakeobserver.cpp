#include "platform/session/WakeObserver.h"

#include "support/PrivateSessionBus.h"

#include <QDBusMessage>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <cstdio>

using namespace Qt::StringLiterals;

class tst_WakeObserver : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_bus.start()); }
    void wakingFromSleepIsTold_data();
    void wakingFromSleepIsTold();
    void aNewTimeZoneIsTold();

private:
    PrivateSessionBus m_bus; // standing in for the system bus, where login1 lives
};

void tst_WakeObserver::wakingFromSleepIsTold_data()
{
    QTest::addColumn<QList<bool>>("prepareForSleep");
    QTest::addColumn<int>("wakes");

    QTest::newRow("going to sleep is not a wake") << QList<bool> {true} << 0;
    QTest::newRow("sleep then resume is one wake") << QList<bool> {true, false} << 1;
}

void tst_WakeObserver::wakingFromSleepIsTold()
{
    QFETCH(QList<bool>, prepareForSleep);
    QFETCH(int, wakes);
    static int round = 0;
    QDBusConnection login1 = m_bus.connect(u"login1-%1"_s.arg(++round));
    QVERIFY(login1.registerService(u"org.freedesktop.login1"_s));
    QTemporaryDir etc;
    WakeObserver observer(m_bus.connect(u"observer-%1"_s.arg(round)), etc.filePath(u"localtime"_s));
    QVERIFY(observer.watchesSleep());
    QSignalSpy woke(&observer, &WakeObserver::wokeUp);
    QSignalSpy changed(&observer, &WakeObserver::timeChanged);

    for (bool sleeping : prepareForSleep) {
        login1.send(QDBusMessage::createSignal(u"/org/freedesktop/login1"_s,
                                               u"org.freedesktop.login1.Manager"_s,
                                               u"PrepareForSleep"_s)
                    << sleeping);
    }
    QTest::qWait(100);
    QTRY_COMPARE(woke.count(), wakes);
    QCOMPARE(changed.count(), wakes);
    login1.unregisterService(u"org.freedesktop.login1"_s);
}

void tst_WakeObserver::aNewTimeZoneIsTold()
{
    // /etc/localtime is replaced by a link to another zone, as timedatectl does.
    QTemporaryDir etc;
    const QString localtime = etc.filePath(u"localtime"_s);
    QVERIFY(QFile::link(u"/usr/share/zoneinfo/Europe/Istanbul"_s, localtime));
    WakeObserver observer(QDBusConnection(u"none"_s), localtime);
    QVERIFY(observer.watchesClock());
    QSignalSpy zone(&observer, &WakeObserver::timeZoneChanged);

    QFile::link(u"/usr/share/zoneinfo/Europe/Berlin"_s, localtime + u".new"_s);
    QCOMPARE(std::rename(qPrintable(localtime + u".new"_s), qPrintable(localtime)), 0);
    QTRY_COMPARE(zone.count(), 1);

    // Other files of the folder changing say nothing.
    QFile other(etc.filePath(u"hostname"_s));
    QVERIFY(other.open(QIODevice::WriteOnly));
    other.write("tarrow\n");
    other.close();
    QTest::qWait(200);
    QCOMPARE(zone.count(), 1);
}

QTEST_GUILESS_MAIN(tst_WakeObserver)
#include "tst_wakeobserver.moc"

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
    void resumeAndANewTimeZoneAreTold()
    {
        PrivateSessionBus bus; // standing in for the system bus, where login1 lives
        QVERIFY(bus.start());
        QDBusConnection login1 = bus.connect(u"login1"_s);
        QVERIFY(login1.registerService(u"org.freedesktop.login1"_s));
        QTemporaryDir etc;
        const QString localtime = etc.filePath(u"localtime"_s);
        QVERIFY(QFile::link(u"/usr/share/zoneinfo/Europe/Istanbul"_s, localtime));
        WakeObserver observer(bus.connect(u"observer"_s), localtime);
        QVERIFY(observer.watchesSleep() && observer.watchesClock());
        QSignalSpy woke(&observer, &WakeObserver::wokeUp);
        QSignalSpy zone(&observer, &WakeObserver::timeZoneChanged);
        QSignalSpy changed(&observer, &WakeObserver::timeChanged);

        // Going to sleep is not a wake; resuming is one.
        for (bool sleeping : {true, false}) {
            login1.send(QDBusMessage::createSignal(u"/org/freedesktop/login1"_s,
                                                   u"org.freedesktop.login1.Manager"_s,
                                                   u"PrepareForSleep"_s)
                        << sleeping);
        }
        QTRY_COMPARE(woke.count(), 1);

        // Another file of the folder says nothing; /etc/localtime replaced by a link to another
        // zone (as timedatectl does it) is a new time zone.
        QFile other(etc.filePath(u"hostname"_s));
        QVERIFY(other.open(QIODevice::WriteOnly) && other.write("tarrow\n") > 0);
        other.close();
        QVERIFY(QFile::link(u"/usr/share/zoneinfo/Europe/Berlin"_s, localtime + u".new"_s));
        QCOMPARE(std::rename(qPrintable(localtime + u".new"_s), qPrintable(localtime)), 0);
        QTRY_COMPARE(zone.count(), 1);
        QTest::qWait(100);
        QCOMPARE(woke.count(), 1);
        QCOMPARE(changed.count(), 2);
    }
};

QTEST_GUILESS_MAIN(tst_WakeObserver)
#include "tst_wakeobserver.moc"

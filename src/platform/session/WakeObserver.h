#pragma once

#include <QDBusConnection>
#include <QLoggingCategory>
#include <QObject>

class QFileSystemWatcher;
class QSocketNotifier;

Q_DECLARE_LOGGING_CATEGORY(lcWakeObserver)

// Tells when the time Tarrow keeps may be wrong: the system woke from sleep (login1's
// PrepareForSleep(false) on the system bus), the wall clock was set (a timer that the kernel
// cancels when CLOCK_REALTIME jumps), or the system's time zone changed (/etc/localtime was
// replaced). Each of them emits `timeChanged` at once, so the countdowns can catch up without
// waiting for their next tick.
class WakeObserver : public QObject
{
    Q_OBJECT

public:
    // `systemBus` carries login1 (a private bus in tests); `localtimePath` names the file whose
    // replacement means a new time zone.
    explicit WakeObserver(QDBusConnection systemBus,
                          QString localtimePath = QStringLiteral("/etc/localtime"),
                          QObject *parent = nullptr);
    ~WakeObserver() override;

    // Whether each source could be watched on this system.
    bool watchesSleep() const { return m_watchesSleep; }
    bool watchesClock() const { return m_clockFd >= 0; }

Q_SIGNALS:
    void wokeUp();
    void clockChanged();
    void timeZoneChanged();
    // Any of the three.
    void timeChanged();

private Q_SLOTS:
    void onPrepareForSleep(bool sleeping);

private:
    void watchClock();
    void armClockTimer();
    void onClockEvent();
    void onLocaltimeMaybeChanged();
    QByteArray localtimeIdentity() const;

    QDBusConnection m_systemBus;
    QString m_localtimePath;
    QByteArray m_localtime;
    QFileSystemWatcher *m_localtimeWatcher = nullptr;
    QSocketNotifier *m_clockNotifier = nullptr;
    int m_clockFd = -1;
    bool m_watchesSleep = false;
};

#include "platform/session/WakeObserver.h"

#include <QFile>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QSocketNotifier>

#include <ctime>

#ifdef Q_OS_LINUX
#include <cerrno>
#include <limits>
#include <sys/timerfd.h>
#include <unistd.h>
#endif

Q_LOGGING_CATEGORY(lcWakeObserver, "WakeObserver")

WakeObserver::WakeObserver(QDBusConnection systemBus, QString localtimePath, QObject *parent)
    : QObject(parent)
    , m_systemBus(std::move(systemBus))
    , m_localtimePath(std::move(localtimePath))
{
    m_watchesSleep = m_systemBus.isConnected()
        && m_systemBus.connect(
            QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
            QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("PrepareForSleep"),
            this, SLOT(onPrepareForSleep(bool)));
    watchClock();

    // /etc/localtime is replaced, not written, when the zone changes: watch its folder and
    // compare what the link points to (or what the file holds).
    m_localtime = localtimeIdentity();
    m_localtimeWatcher = new QFileSystemWatcher(this);
    m_localtimeWatcher->addPath(QFileInfo(m_localtimePath).absolutePath());
    connect(m_localtimeWatcher, &QFileSystemWatcher::directoryChanged, this,
            &WakeObserver::onLocaltimeMaybeChanged);
    connect(this, &WakeObserver::wokeUp, this, &WakeObserver::timeChanged);
    connect(this, &WakeObserver::clockChanged, this, &WakeObserver::timeChanged);
    connect(this, &WakeObserver::timeZoneChanged, this, &WakeObserver::timeChanged);
}

WakeObserver::~WakeObserver()
{
#ifdef Q_OS_LINUX
    if (m_clockFd >= 0)
        ::close(m_clockFd);
#endif
}

void WakeObserver::onPrepareForSleep(bool sleeping)
{
    if (sleeping)
        return;
    qCInfo(lcWakeObserver) << "Woke from sleep";
    Q_EMIT wokeUp();
}

void WakeObserver::watchClock()
{
#ifdef Q_OS_LINUX
    m_clockFd = ::timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC);
    if (m_clockFd < 0)
        return;
    armClockTimer();
    m_clockNotifier = new QSocketNotifier(m_clockFd, QSocketNotifier::Read, this);
    connect(m_clockNotifier, &QSocketNotifier::activated, this, &WakeObserver::onClockEvent);
#endif
}

void WakeObserver::armClockTimer()
{
#ifdef Q_OS_LINUX
    // A timer set far in the future that never fires; the kernel cancels it (and wakes us) when
    // the realtime clock is set.
    itimerspec spec {};
    spec.it_value.tv_sec = std::numeric_limits<time_t>::max() / 2;
    if (::timerfd_settime(m_clockFd, TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &spec, nullptr)
        != 0) {
        qCWarning(lcWakeObserver) << "Cannot watch the system clock for jumps";
        ::close(m_clockFd);
        m_clockFd = -1;
    }
#endif
}

void WakeObserver::onClockEvent()
{
#ifdef Q_OS_LINUX
    quint64 expirations = 0;
    const ssize_t read = ::read(m_clockFd, &expirations, sizeof expirations);
    if (read >= 0 || errno != ECANCELED)
        return;
    armClockTimer();
    qCInfo(lcWakeObserver) << "The system clock was set";
    Q_EMIT clockChanged();
#endif
}

QByteArray WakeObserver::localtimeIdentity() const
{
    const QFileInfo info(m_localtimePath);
    if (info.isSymLink())
        return info.symLinkTarget().toUtf8();
    QFile file(m_localtimePath);
    return file.open(QIODevice::ReadOnly) ? file.read(1 << 16) : QByteArray();
}

void WakeObserver::onLocaltimeMaybeChanged()
{
    const QByteArray now = localtimeIdentity();
    if (now == m_localtime)
        return;
    m_localtime = now;
    // The C library reads the zone once; make it read the new one.
    ::tzset();
    qCInfo(lcWakeObserver) << "The system time zone changed";
    Q_EMIT timeZoneChanged();
}

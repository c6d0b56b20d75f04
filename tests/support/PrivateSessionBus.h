#pragma once

#include <QDBusConnection>
#include <QProcess>

#include <signal.h>
#include <sys/prctl.h>

// A dbus-daemon of its own for one test executable, so tests never talk to the desktop's bus.
class PrivateSessionBus
{
public:
    ~PrivateSessionBus()
    {
        m_daemon.terminate();
        m_daemon.waitForFinished(5000);
    }

    // Starts the daemon and waits for its address; false when dbus-daemon cannot run.
    bool start()
    {
        // The daemon goes when the test goes, even when the test crashes.
        m_daemon.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGTERM); });
        m_daemon.start(
            QStringLiteral("dbus-daemon"),
            QStringLiteral("--session --nofork --nopidfile --print-address=1").split(u' '));
        while (!m_daemon.canReadLine() && m_daemon.waitForReadyRead(5000)) { }
        m_address = QString::fromUtf8(m_daemon.readLine()).trimmed();
        return !m_address.isEmpty();
    }

    // The address clients in other processes connect to (DBUS_SESSION_BUS_ADDRESS).
    QString address() const { return m_address; }

    // A new connection to this bus under `name` (unique per connection in the process).
    QDBusConnection connect(const QString &name) const
    {
        return QDBusConnection::connectToBus(m_address, name);
    }

private:
    QProcess m_daemon;
    QString m_address;
};

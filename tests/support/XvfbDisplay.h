#pragma once

#include <QProcess>
#include <QStandardPaths>

#include <signal.h>
#include <sys/prctl.h>

// An Xvfb server of its own for one test executable, started before the application object so
// that Qt's xcb platform connects to it (DISPLAY and QT_QPA_PLATFORM are set for this process and
// the processes it starts).
class XvfbDisplay
{
public:
    ~XvfbDisplay()
    {
        m_server.terminate();
        m_server.waitForFinished(5000);
    }

    // False when Xvfb is not installed or does not start.
    bool start()
    {
        if (QStandardPaths::findExecutable(QStringLiteral("Xvfb")).isEmpty())
            return false;
        m_server.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGTERM); });
        // Xvfb writes the display number it took to stdout once it accepts connections.
        m_server.start(
            QStringLiteral("Xvfb"),
            QStringLiteral("-displayfd 1 -screen 0 1024x600x24 -nolisten tcp").split(u' '));
        while (!m_server.canReadLine() && m_server.waitForReadyRead(10000)) { }
        const QByteArray number = m_server.readLine().trimmed();
        if (number.isEmpty())
            return false;
        qputenv("DISPLAY", ':' + number);
        qputenv("QT_QPA_PLATFORM", "xcb");
        return true;
    }

private:
    QProcess m_server;
};

#pragma once

#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

// A `tarrow` process started the way a desktop session starts it, in a private world: its own
// data folder, runtime folder (mode 0700, as the session's), configuration and an offscreen
// display. Its standard error (the debug log) is collected for the test to read.
class TarrowProcess
{
public:
    explicit TarrowProcess(const QTemporaryDir &world)
    {
        QDir(world.path()).mkpath(QStringLiteral("run"));
        QFile::setPermissions(world.filePath(QStringLiteral("run")),
                              QFileDevice::ReadOwner | QFileDevice::WriteOwner
                                  | QFileDevice::ExeOwner);
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("XDG_RUNTIME_DIR"), world.filePath(QStringLiteral("run")));
        env.insert(QStringLiteral("XDG_CONFIG_HOME"), world.filePath(QStringLiteral("config")));
        env.insert(QStringLiteral("XDG_DATA_HOME"), world.filePath(QStringLiteral("share")));
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        env.insert(
            QStringLiteral("QT_LOGGING_RULES"),
            QStringLiteral(
                "SingleInstance.debug=true;PopoverController.debug=true;AppDelegate.debug=true"));
        env.remove(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
        m_process.setProcessEnvironment(env);
        m_process.setProcessChannelMode(QProcess::SeparateChannels);
    }

    ~TarrowProcess()
    {
        if (m_process.state() != QProcess::NotRunning) {
            m_process.terminate();
            if (!m_process.waitForFinished(5000))
                m_process.kill();
            m_process.waitForFinished(2000);
        }
    }

    void setEnvironment(const QString &name, const QString &value)
    {
        QProcessEnvironment env = m_process.processEnvironment();
        value.isNull() ? env.remove(name) : env.insert(name, value);
        m_process.setProcessEnvironment(env);
    }

    void start(const QStringList &arguments)
    {
        m_process.start(QStringLiteral(TARROW_EXECUTABLE), arguments);
    }

    // Waits until the log holds `line`; false after `timeoutMs`.
    bool waitForLog(const QString &line, int timeoutMs = 15000)
    {
        QElapsedTimer timer;
        timer.start();
        while (!log().contains(line)) {
            if (timer.elapsed() > timeoutMs || m_process.state() == QProcess::NotRunning)
                return log().contains(line);
            m_process.waitForReadyRead(100);
        }
        return true;
    }

    QString log()
    {
        m_log += QString::fromUtf8(m_process.readAllStandardError());
        return m_log;
    }

    QProcess &process() { return m_process; }

private:
    QProcess m_process;
    QString m_log;
};

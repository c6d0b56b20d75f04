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
        : m_world(world.path())
    {
        const QString run = world.filePath(QStringLiteral("run"));
        QDir().mkpath(run);
        QFile::setPermissions(run, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("XDG_RUNTIME_DIR"), run);
        env.insert(QStringLiteral("XDG_CONFIG_HOME"), world.filePath(QStringLiteral("config")));
        env.insert(QStringLiteral("XDG_DATA_HOME"), world.filePath(QStringLiteral("share")));
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        env.insert(QStringLiteral("QT_LOGGING_RULES"),
                   QStringLiteral("SingleInstance.debug=true;PopoverController.debug=true;"
                                  "AppDelegate.debug=true"));
        env.remove(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
        m_process.setProcessEnvironment(env);
    }

    ~TarrowProcess()
    {
        m_process.terminate();
        if (!m_process.waitForFinished(5000))
            m_process.kill();
        m_process.waitForFinished(2000);
    }

    // Sets (or, for a null value, removes) a variable of the process's environment.
    void setEnvironment(const QString &name, const QString &value)
    {
        QProcessEnvironment env = m_process.processEnvironment();
        value.isNull() ? env.remove(name) : env.insert(name, value);
        m_process.setProcessEnvironment(env);
    }

    // Starts `tarrow --data-dir WORLD/dataFolder arguments...`.
    void start(const QStringList &arguments = {},
               const QString &dataFolder = QStringLiteral("data"))
    {
        m_process.start(QStringLiteral(TARROW_EXECUTABLE),
                        QStringList {QStringLiteral("--data-dir"), m_world.filePath(dataFolder)}
                            + arguments);
    }

    // Waits until the log holds `line`; false (and the log printed) when it does not within
    // `timeoutMs` or the process ends without it.
    bool waitForLog(const QString &line, int timeoutMs = 15000)
    {
        QElapsedTimer timer;
        timer.start();
        while (!log().contains(line) && !timer.hasExpired(timeoutMs)
               && m_process.state() != QProcess::NotRunning)
            m_process.waitForReadyRead(100);
        return reported(log().contains(line), line);
    }

    // True when the log still lacks `line` after `ms`; false (and the log printed) otherwise.
    bool staysWithout(const QString &line, int ms)
    {
        QTest::qWait(ms);
        return reported(!log().contains(line), line);
    }

    QString log() { return m_log += QString::fromUtf8(m_process.readAllStandardError()); }
    QProcess &process() { return m_process; }

private:
    bool reported(bool ok, const QString &line)
    {
        if (!ok)
            qWarning().noquote() << "tarrow's log, looked at for" << line << ":\n" << m_log;
        return ok;
    }

    QDir m_world;
    QProcess m_process;
    QString m_log;
};

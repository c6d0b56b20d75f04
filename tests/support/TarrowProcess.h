#pragma once

#include <QDir>
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
                                  "AppDelegate.debug=true;PopupNavigator.debug=true;"
                                  "SettingsWindow.debug=true"));
        env.remove(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
        m_process.setProcessEnvironment(env);
    }

    // Asks the process to quit; QProcess kills it when it does not within five seconds.
    ~TarrowProcess()
    {
        m_process.terminate();
        m_process.waitForFinished(5000);
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
        const auto seenOrEnded = [&] {
            return log().contains(line) || m_process.state() == QProcess::NotRunning;
        };
        return reported(QTest::qWaitFor(seenOrEnded, timeoutMs) && log().contains(line), line);
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

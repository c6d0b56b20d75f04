#pragma once

#include <QLocalServer>
#include <QLoggingCategory>
#include <QObject>
#include <QStringList>

#include <memory>

class QLocalSocket;
class QLockFile;

Q_DECLARE_LOGGING_CATEGORY(lcSingleInstance)

// Keeps one running Tarrow per data folder. The first process takes a lock file and listens on a
// local socket in the user's runtime folder; a later process hands its request (its arguments) to
// that one and exits.
class SingleInstance : public QObject
{
    Q_OBJECT

public:
    enum class Role { primary, forwarded, failed };

    // `runtimeDirectory` holds the socket and the lock; `dataDirectory` names the instance.
    SingleInstance(const QString &runtimeDirectory, const QString &dataDirectory,
                   QObject *parent = nullptr);
    ~SingleInstance() override;

    // Forwards `request` to the running instance, or else becomes the running instance. Blocks for
    // at most `patienceMs` while another process is half-way through starting.
    Role start(const QStringList &request, int patienceMs = 3000);

    QString socketPath() const { return m_socketPath; }

Q_SIGNALS:
    // A later process asked for something (its arguments, without the program name).
    void requestReceived(const QStringList &request);

private:
    bool forward(const QStringList &request) const;
    bool listen();
    void accept();
    void readRequest(QLocalSocket *socket);

    QString m_socketPath;
    std::unique_ptr<QLockFile> m_lock;
    QLocalServer m_server;
};

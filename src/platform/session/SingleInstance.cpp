#include "platform/session/SingleInstance.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QDeadlineTimer>
#include <QDir>
#include <QLocalSocket>
#include <QLockFile>
#include <QThread>

Q_LOGGING_CATEGORY(lcSingleInstance, "SingleInstance")

namespace {

constexpr int ioTimeoutMs = 1500;
const QByteArray acknowledgement = QByteArrayLiteral("ok\n");

// Socket and lock names are derived from the data folder, so copies for different folders (tests,
// a demo folder) run side by side.
QString instanceName(const QString &dataDirectory)
{
    const QByteArray path = QDir(dataDirectory).absolutePath().toUtf8();
    const QByteArray digest = QCryptographicHash::hash(path, QCryptographicHash::Sha1).toHex();
    return QStringLiteral("tarrow-") + QString::fromLatin1(digest.left(16));
}

} // namespace

SingleInstance::SingleInstance(const QString &runtimeDirectory, const QString &dataDirectory,
                               QObject *parent)
    : QObject(parent)
{
    const QString base = QDir(runtimeDirectory).filePath(instanceName(dataDirectory));
    m_socketPath = base + QStringLiteral(".sock");
    m_lock = std::make_unique<QLockFile>(base + QStringLiteral(".lock"));
    // The lock is held for the whole life of the process: only a dead owner makes it stale.
    m_lock->setStaleLockTime(0);
    connect(&m_server, &QLocalServer::newConnection, this, &SingleInstance::accept);
}

SingleInstance::~SingleInstance()
{
    m_server.close();
}

SingleInstance::Role SingleInstance::start(const QStringList &request, int patienceMs)
{
    const QDeadlineTimer deadline(patienceMs);
    for (;;) {
        if (forward(request))
            return Role::forwarded;
        if (m_lock->tryLock(0))
            return listen() ? Role::primary : Role::failed;
        if (deadline.hasExpired()) {
            qCWarning(lcSingleInstance).noquote()
                << QStringLiteral("Another Tarrow holds %1 but does not answer").arg(m_socketPath);
            return Role::failed;
        }
        QThread::msleep(50);
    }
}

bool SingleInstance::forward(const QStringList &request) const
{
    QLocalSocket socket;
    socket.connectToServer(m_socketPath);
    if (!socket.waitForConnected(ioTimeoutMs))
        return false;
    QDataStream out(&socket);
    out << request;
    if (!socket.waitForBytesWritten(ioTimeoutMs))
        return false;
    QByteArray reply;
    while (!reply.endsWith('\n') && socket.waitForReadyRead(ioTimeoutMs))
        reply += socket.readAll();
    const bool delivered = reply == acknowledgement;
    qCDebug(lcSingleInstance).noquote()
        << (delivered ? QStringLiteral("Forwarded to the running instance: %1")
                      : QStringLiteral("The running instance did not confirm: %1"))
               .arg(request.join(QLatin1Char(' ')));
    return delivered;
}

bool SingleInstance::listen()
{
    // Safe under the lock: a socket file left here belongs to a dead instance.
    QLocalServer::removeServer(m_socketPath);
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    if (!m_server.listen(m_socketPath)) {
        qCWarning(lcSingleInstance).noquote() << QStringLiteral("Failed to listen on %1: %2")
                                                     .arg(m_socketPath, m_server.errorString());
        return false;
    }
    qCDebug(lcSingleInstance).noquote() << QStringLiteral("Listening on %1").arg(m_socketPath);
    return true;
}

void SingleInstance::accept()
{
    while (QLocalSocket *socket = m_server.nextPendingConnection()) {
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] { readRequest(socket); });
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        if (socket->bytesAvailable() > 0)
            readRequest(socket);
    }
}

void SingleInstance::readRequest(QLocalSocket *socket)
{
    QDataStream in(socket);
    in.startTransaction();
    QStringList request;
    in >> request;
    if (!in.commitTransaction())
        return; // the rest of the request is still on its way
    socket->write(acknowledgement);
    socket->flush();
    socket->disconnectFromServer();
    qCDebug(lcSingleInstance).noquote()
        << QStringLiteral("Received a request: [%1]").arg(request.join(QLatin1Char(' ')));
    Q_EMIT requestReceived(request);
}

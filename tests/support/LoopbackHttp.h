#pragma once

#include <QHash>
#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>

// An HTTP server on 127.0.0.1, served by the test's own event loop: each path answers as the test
// sets it, and the head of every request is kept. A connection that does not speak plain HTTP (a
// TLS greeting) is dropped. Tests that use it link Qt6::Network.
class LoopbackHttp : public QTcpServer
{
public:
    struct Answer
    {
        Answer(int code = 200, QByteArray content = {}, QByteArray lines = {}, bool silent = false,
               bool withLength = true)
            : status(code)
            , body(content)
            , headers(lines)
            , hangs(silent)
            , announced(withLength)
        {
        }
        int status;
        QByteArray body;
        QByteArray headers; // more header lines, each ending in "\r\n"
        bool hangs; // never answers
        bool announced; // with a Content-Length
    };
    QHash<QByteArray, Answer> answers; // by path; other paths answer 404
    QHash<QByteArray, QList<QByteArray>> requests; // by path

    LoopbackHttp()
    {
        listen(QHostAddress::LocalHost);
        connect(this, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket *socket = nextPendingConnection()) {
                connect(socket, &QTcpSocket::readyRead, socket, [this, socket] { serve(*socket); });
                connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            }
        });
    }
    QUrl url(const QString &path, const QString &scheme = QStringLiteral("http")) const
    {
        return QUrl(QStringLiteral("%1://127.0.0.1:%2%3").arg(scheme).arg(serverPort()).arg(path));
    }

private:
    void serve(QTcpSocket &socket)
    {
        const QByteArray head = socket.peek(1 << 16);
        if (!head.startsWith('G'))
            return socket.abort();
        if (!head.contains("\r\n\r\n"))
            return;
        socket.readAll();
        const QByteArray path = head.split(' ').value(1);
        requests[path].append(head);
        const Answer answer = answers.value(path, Answer {404});
        if (answer.hangs)
            return;
        socket.write("HTTP/1.1 " + QByteArray::number(answer.status) + " Status\r\n"
                     + answer.headers + "Connection: close\r\n"
                     + (answer.announced
                            ? "Content-Length: " + QByteArray::number(answer.body.size()) + "\r\n"
                            : QByteArray())
                     + "\r\n" + answer.body);
        socket.disconnectFromHost();
    }
};

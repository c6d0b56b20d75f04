#pragma once

#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QProcess>
#include <QStandardPaths>
#include <QTimer>
#include <QUrlQuery>

// The loopback feed server of feed_server.py, started for one test and stopped with it.
class FeedServer
{
public:
    FeedServer()
    {
        m_process.setProgram(QStandardPaths::findExecutable(QStringLiteral("python3")));
        m_process.setArguments({qEnvironmentVariable("TARROW_FEED_SERVER")});
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start();
        if (m_process.waitForReadyRead(10'000))
            m_port = m_process.readLine().trimmed().toInt();
    }
    ~FeedServer()
    {
        m_process.closeWriteChannel();
        if (!m_process.waitForFinished(3000))
            m_process.kill();
        m_process.waitForFinished(1000);
    }

    bool isRunning() const { return m_port > 0; }
    QString url(const QString &path, const QString &scheme = QStringLiteral("http")) const
    {
        return QStringLiteral("%1://127.0.0.1:%2%3").arg(scheme).arg(m_port).arg(path);
    }
    // How `path` answers from now on (see feed_server.py).
    bool set(const QString &path, const QList<std::pair<QString, QString>> &behaviour)
    {
        QUrlQuery query;
        for (const auto &[key, value] : behaviour)
            query.addQueryItem(key, QString::fromUtf8(QUrl::toPercentEncoding(value)));
        QUrl control(url(QStringLiteral("/control") + path));
        control.setQuery(query);
        return get(control) == "ok";
    }
    // The request headers seen for `path`, one JSON object per request.
    QList<QByteArray> log(const QString &path)
    {
        const QByteArray lines = get(QUrl(url(QStringLiteral("/log") + path)));
        return lines.isEmpty() ? QList<QByteArray>() : lines.split('\n');
    }

private:
    QByteArray get(const QUrl &target)
    {
        QNetworkReply *reply = m_network.get(QNetworkRequest(target));
        QEventLoop loop;
        QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
        QTimer::singleShot(5000, &loop, &QEventLoop::quit);
        loop.exec();
        const QByteArray body = reply->readAll();
        delete reply;
        return body;
    }

    QProcess m_process;
    QNetworkAccessManager m_network;
    int m_port = 0;
};

#pragma once

#include "platform/calendars/SubscriptionStatus.h"

#include <QObject>
#include <QUrl>

#include <functional>

class QNetworkAccessManager;
class QNetworkReply;

// One answer of a feed's server.
struct FetchResult
{
    enum class Kind { fresh, notModified, failed };
    Kind kind = Kind::failed;
    QByteArray body; // fresh only
    QString etag; // validators of a fresh copy
    QString lastModified;
    SubscriptionProblem problem = SubscriptionProblem::none; // failed only
    QString detail;
};

// Fetches calendar feeds over HTTP(S) with the validators of the cached copy (ETag,
// Last-Modified), so an unchanged feed costs a 304. A fetch gives up after `timeoutMs` without
// data, stops past `maxBytes`, follows at most `maxRedirects` redirects and only to http or https
// links. webcal links are fetched over https, and over plain http when no TLS connection can be
// made (servers of webcal links often speak only http).
class SubscriptionFetcher : public QObject
{
    Q_OBJECT
public:
    struct Limits
    {
        int timeoutMs = 30'000;
        qint64 maxBytes = 20 * 1024 * 1024;
        int maxRedirects = 5;
    };

    SubscriptionFetcher(QNetworkAccessManager &network, Limits limits, QObject *parent = nullptr);

    using Done = std::function<void(const FetchResult &)>;
    // Starts the fetch; `done` runs on this object's thread when it ends. Fetches end (failed)
    // when the fetcher is destroyed.
    void fetch(const QUrl &url, const QString &etag, const QString &lastModified, Done done);

    // The link as fetched: webcal -> https, webcals -> https.
    static QUrl fetchURL(const QUrl &url);

private:
    void start(const QUrl &url, const QString &etag, const QString &lastModified, Done done,
               bool webcalFallback);

    QNetworkAccessManager &m_network;
    Limits m_limits;
};

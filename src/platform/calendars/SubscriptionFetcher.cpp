#include "platform/calendars/SubscriptionFetcher.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPointer>

using namespace Qt::StringLiterals;

namespace {

bool isWebScheme(const QUrl &url)
{
    const QString scheme = url.scheme().toLower();
    return scheme == u"http" || scheme == u"https";
}

// Errors where no HTTP answer came at all.
bool isTransportFailure(QNetworkReply::NetworkError error)
{
    return error >= QNetworkReply::ConnectionRefusedError
        && error < QNetworkReply::ProxyConnectionRefusedError;
}

} // namespace

SubscriptionFetcher::SubscriptionFetcher(QNetworkAccessManager &network, Limits limits,
                                         QObject *parent)
    : QObject(parent)
    , m_network(network)
    , m_limits(limits)
{
}

QUrl SubscriptionFetcher::fetchURL(const QUrl &url)
{
    const QString scheme = url.scheme().toLower();
    if (scheme != u"webcal" && scheme != u"webcals")
        return url;
    QUrl web = url;
    web.setScheme(u"https"_s);
    return web;
}

void SubscriptionFetcher::fetch(const QUrl &url, const QString &etag, const QString &lastModified,
                                Done done)
{
    const bool webcal = url.scheme().compare(u"webcal"_s, Qt::CaseInsensitive) == 0;
    start(fetchURL(url), etag, lastModified, std::move(done), webcal);
}

void SubscriptionFetcher::start(const QUrl &url, const QString &etag, const QString &lastModified,
                                Done done, bool webcalFallback)
{
    QNetworkRequest request(url);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::UserVerifiedRedirectPolicy);
    request.setMaximumRedirectsAllowed(m_limits.maxRedirects);
    request.setTransferTimeout(m_limits.timeoutMs);
    request.setHeader(QNetworkRequest::UserAgentHeader, QStringLiteral("Tarrow/" TARROW_VERSION));
    request.setRawHeader("Accept", "text/calendar, */*;q=0.5");
    if (!etag.isEmpty())
        request.setRawHeader("If-None-Match", etag.toUtf8());
    if (!lastModified.isEmpty())
        request.setRawHeader("If-Modified-Since", lastModified.toUtf8());

    QNetworkReply *reply = m_network.get(request);
    reply->setParent(this);
    auto refused = std::make_shared<FetchResult>(); // set when we stop the transfer ourselves

    connect(reply, &QNetworkReply::redirected, reply, [reply, refused](const QUrl &target) {
        if (isWebScheme(target)) {
            Q_EMIT reply->redirectAllowed();
            return;
        }
        refused->problem = SubscriptionProblem::redirectRefused;
        refused->detail = target.toDisplayString();
        reply->abort();
    });
    const qint64 maxBytes = m_limits.maxBytes;
    const auto checkSize = [reply, refused, maxBytes](qint64 bytes) {
        if (bytes <= maxBytes || refused->problem != SubscriptionProblem::none)
            return;
        refused->problem = SubscriptionProblem::tooLarge;
        refused->detail = QString::number(maxBytes / (1024 * 1024));
        reply->abort();
    };
    connect(reply, &QNetworkReply::metaDataChanged, reply, [reply, checkSize] {
        const QVariant length = reply->header(QNetworkRequest::ContentLengthHeader);
        if (length.isValid())
            checkSize(length.toLongLong());
    });
    connect(reply, &QNetworkReply::downloadProgress, reply,
            [checkSize](qint64 received, qint64) { checkSize(received); });

    connect(
        reply, &QNetworkReply::finished, this,
        [this, reply, refused, done = std::move(done), webcalFallback, etag, lastModified] {
            reply->deleteLater();
            const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
            if (refused->problem != SubscriptionProblem::none) {
                refused->kind = FetchResult::Kind::failed;
                done(*refused);
                return;
            }
            const QNetworkReply::NetworkError error = reply->error();
            if (webcalFallback && status == 0 && isTransportFailure(error)) {
                QUrl plain = reply->request().url();
                plain.setScheme(u"http"_s);
                start(plain, etag, lastModified, done, false);
                return;
            }
            FetchResult result;
            if (status == 304) {
                result.kind = FetchResult::Kind::notModified;
            } else if (status >= 200 && status < 300 && error == QNetworkReply::NoError) {
                result.kind = FetchResult::Kind::fresh;
                result.body = reply->readAll();
                result.etag = QString::fromUtf8(reply->rawHeader("ETag"));
                result.lastModified = QString::fromUtf8(reply->rawHeader("Last-Modified"));
            } else if (const QUrl target = QUrl(QString::fromUtf8(reply->rawHeader("Location")));
                       status >= 300 && status < 400 && !target.isEmpty()) {
                // Redirects to the web are followed; what is left went elsewhere (or in
                // circles).
                result.problem = SubscriptionProblem::redirectRefused;
                result.detail = reply->url().resolved(target).toDisplayString();
            } else if (status >= 300) {
                result.problem = SubscriptionProblem::httpStatus;
                result.detail = QString::number(status);
            } else if (error == QNetworkReply::OperationCanceledError
                       || error == QNetworkReply::TimeoutError) {
                result.problem = SubscriptionProblem::timedOut;
            } else {
                result.problem = SubscriptionProblem::unreachable;
                result.detail = reply->errorString();
            }
            done(result);
        });
}

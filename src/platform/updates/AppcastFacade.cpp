#include "platform/updates/AppcastFacade.h"

#include "time/Clock.h"

#include <QHostAddress>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSettings>

#include <algorithm>
#include <limits>

Q_LOGGING_CATEGORY(lcAppcast, "Appcast")

namespace {

const QString automaticChecksKey = QStringLiteral("SUEnableAutomaticChecks");
const QString lastCheckKey = QStringLiteral("SULastCheckTime");
const QString storedFeedKey = QStringLiteral("SUFeedURL");
// A background check that hangs gives up after this; a check the user waits for is bounded by
// the checker's own, shorter probe timeout.
constexpr int backgroundTimeoutMs = 60000;

bool isLoopback(const QString &host)
{
    if (host == u"localhost")
        return true;
    const QHostAddress address(host);
    return !address.isNull() && address.isLoopback();
}

} // namespace

AppcastFacade::AppcastFacade(QUrl feedUrl, QString currentVersion, QNetworkAccessManager &network,
                             QSettings &defaults, const Clock &clock, QObject *parent)
    : QObject(parent)
    , m_feedUrl(std::move(feedUrl))
    , m_currentVersion(std::move(currentVersion))
    , m_network(network)
    , m_defaults(defaults)
    , m_clock(clock)
    , m_updatesEnabled(!m_feedUrl.isEmpty())
{
    m_automaticCheck.setSingleShot(true);
    m_automaticCheck.setTimerType(Qt::VeryCoarseTimer);
    connect(&m_automaticCheck, &QTimer::timeout, this, &AppcastFacade::checkForUpdatesInBackground);
}

AppcastFacade::~AppcastFacade()
{
    m_probeCompletion = nullptr;
    if (m_reply)
        m_reply->abort();
}

QUrl AppcastFacade::buildFeedUrl()
{
    return QUrl(QStringLiteral(TARROW_FEED_URL));
}

void AppcastFacade::start()
{
    if (m_started)
        return;
    m_started = true;
    m_defaults.remove(storedFeedKey);
    if (!m_updatesEnabled) {
        qCInfo(lcAppcast) << "update checks disabled for this build (no BRDFeedURLOverride); not "
                             "touching the appcast";
        return;
    }
    scheduleAutomaticCheck();
}

void AppcastFacade::launchCheck()
{
    if (!m_updatesEnabled || !m_started)
        return;
    if (!automaticallyChecksForUpdates()) {
        qCInfo(lcAppcast) << "skipping launch update check; automatic checks are off";
        return;
    }
    const std::optional<QDateTime> last = lastUpdateCheckDate();
    const double elapsed =
        last ? double(last->msecsTo(m_clock.now())) / 1000.0 : std::numeric_limits<double>::max();
    if (elapsed > double(launchCheckInterval)) {
        checkForUpdatesInBackground();
        return;
    }
    qCInfo(lcAppcast).noquote() << QString::asprintf(
        "skipping launch update check; last was %fs ago", elapsed);
}

bool AppcastFacade::automaticallyChecksForUpdates() const
{
    return m_defaults.value(automaticChecksKey, true).toBool();
}

void AppcastFacade::setAutomaticallyChecksForUpdates(bool enabled)
{
    if (enabled == automaticallyChecksForUpdates())
        return;
    m_defaults.setValue(automaticChecksKey, enabled);
    if (m_started && m_updatesEnabled)
        scheduleAutomaticCheck();
}

std::optional<QDateTime> AppcastFacade::lastUpdateCheckDate() const
{
    const QDateTime last = m_defaults.value(lastCheckKey).toDateTime();
    if (!last.isValid())
        return std::nullopt;
    return last;
}

std::optional<QDateTime> AppcastFacade::nextScheduledCheck() const
{
    if (!m_automaticCheck.isActive())
        return std::nullopt;
    const QDateTime last = lastUpdateCheckDate().value_or(m_clock.now());
    return std::max(last.addSecs(checkInterval), m_clock.now());
}

void AppcastFacade::scheduleAutomaticCheck()
{
    m_automaticCheck.stop();
    if (!automaticallyChecksForUpdates())
        return;
    const QDateTime now = m_clock.now();
    const QDateTime due = lastUpdateCheckDate().value_or(now).addSecs(checkInterval);
    m_automaticCheck.start(int(std::clamp<qint64>(now.msecsTo(due), 0, checkInterval * 1000)));
}

void AppcastFacade::checkForUpdatesInBackground()
{
    if (!m_updatesEnabled)
        return;
    fetch();
}

bool AppcastFacade::checkForUpdatesNow(std::function<void(const ProbeOutcome &)> completion)
{
    if (!m_updatesEnabled) {
        qCInfo(lcAppcast) << "checkForUpdatesNow ignored: update checks disabled for this build";
        return false;
    }
    m_probeCompletion = std::move(completion);
    fetch();
    return true;
}

void AppcastFacade::cancelProbe()
{
    m_probeCompletion = nullptr;
    if (m_reply)
        m_reply->abort();
}

bool AppcastFacade::feedIsSafe() const
{
    return m_feedUrl.isValid()
        && (m_feedUrl.scheme() == u"https"
            || (m_feedUrl.scheme() == u"http" && isLoopback(m_feedUrl.host())));
}

void AppcastFacade::fetch()
{
    if (m_reply)
        return; // the check under way answers this one too
    m_defaults.setValue(lastCheckKey, m_clock.now());
    scheduleAutomaticCheck();
    if (!feedIsSafe()) {
        qCWarning(lcAppcast).noquote()
            << QStringLiteral("refusing the appcast %1: only https feeds are read")
                   .arg(m_feedUrl.toDisplayString());
        // Answered on the next turn of the event loop, like any other check.
        QTimer::singleShot(0, this, [this] { finish({ProbeOutcome::Kind::failed, {}, {}}); });
        return;
    }
    QNetworkRequest request(m_feedUrl);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setHeader(QNetworkRequest::UserAgentHeader,
                      QStringLiteral("Tarrow/%1").arg(m_currentVersion));
    request.setTransferTimeout(backgroundTimeoutMs);
    QNetworkReply *reply = m_network.get(request);
    m_reply = reply;
    connect(reply, &QNetworkReply::downloadProgress, this, [reply](qint64 received, qint64) {
        if (received > maximumFeedSize)
            reply->abort();
    });
    connect(reply, &QNetworkReply::finished, this, [this, reply] {
        reply->deleteLater();
        m_reply = nullptr;
        finish(outcomeOf(reply));
    });
    qCDebug(lcAppcast).noquote() << QStringLiteral("checking %1").arg(m_feedUrl.toDisplayString());
}

AppcastFacade::ProbeOutcome AppcastFacade::outcomeOf(QNetworkReply *reply)
{
    const ProbeOutcome failed {ProbeOutcome::Kind::failed, {}, {}};
    if (reply->error() != QNetworkReply::NoError) {
        qCWarning(lcAppcast).noquote()
            << QStringLiteral("appcast check failed: %1").arg(reply->errorString());
        return failed;
    }
    QString error;
    const std::optional<QList<Appcast::Release>> releases =
        Appcast::parse(reply->read(maximumFeedSize), &error);
    if (!releases) {
        qCWarning(lcAppcast).noquote() << QStringLiteral("appcast unreadable: %1").arg(error);
        return failed;
    }
    const std::optional<Appcast::Release> newest = Appcast::newest(*releases);
    if (!newest || Appcast::compareVersions(newest->version, m_currentVersion) <= 0)
        return {ProbeOutcome::Kind::upToDate, {}, {}};
    qCInfo(lcAppcast).noquote()
        << QStringLiteral("update available: %1").arg(newest->displayVersion());
    return {ProbeOutcome::Kind::updateAvailable, newest->displayVersion(), newest->releasePage};
}

void AppcastFacade::finish(const ProbeOutcome &outcome)
{
    if (const auto completion = std::exchange(m_probeCompletion, nullptr))
        completion(outcome);
    Q_EMIT checkFinished(outcome);
}

#pragma once

#include "platform/updates/Appcast.h"

#include <QDateTime>
#include <QLoggingCategory>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QUrl>

#include <functional>
#include <optional>

class Clock;
class QNetworkAccessManager;
class QNetworkReply;
class QSettings;

Q_DECLARE_LOGGING_CATEGORY(lcAppcast)

// Checks the build's appcast feed for a newer Tarrow over HTTPS: at most daily in the background
// while automatic checks are on, once at launch unless a check ran in the last four hours, and
// on demand. Tarrow does not replace its own binary on Linux: a newer release is reported with
// its version and the page to get it from. A build without a feed address (distribution
// packages) never touches the network.
//
// What it keeps lives in the user defaults under the names desktop updaters use:
// "SUEnableAutomaticChecks" and "SULastCheckTime"; a feed address stored there ("SUFeedURL") is
// removed at start, so only the build's own feed is read.
class AppcastFacade : public QObject
{
    Q_OBJECT

public:
    struct ProbeOutcome
    {
        enum class Kind { updateAvailable, upToDate, failed };
        Kind kind = Kind::failed;
        QString version; // updateAvailable: the release shown to the user
        QUrl releasePage;

        bool operator==(const ProbeOutcome &) const = default;
    };

    static constexpr qint64 checkInterval = 86400; // seconds between automatic checks
    static constexpr qint64 launchCheckInterval = 14400; // no launch check within four hours
    static constexpr qint64 maximumFeedSize = 1024 * 1024;

    AppcastFacade(QUrl feedUrl, QString currentVersion, QNetworkAccessManager &network,
                  QSettings &defaults, const Clock &clock, QObject *parent = nullptr);
    ~AppcastFacade() override;

    // The feed address this build was configured with (-DBRDFeedURLOverride=...); empty when
    // none.
    static QUrl buildFeedUrl();

    bool updatesEnabled() const { return m_updatesEnabled; }
    QString currentVersion() const { return m_currentVersion; }

    // Once, at launch: takes the defaults in hand and, when the build has a feed, schedules the
    // automatic checks.
    void start();
    // Checks in the background unless the last check was less than four hours ago.
    void launchCheck();

    bool automaticallyChecksForUpdates() const;
    void setAutomaticallyChecksForUpdates(bool enabled);
    std::optional<QDateTime> lastUpdateCheckDate() const;
    // When the next automatic check is due; nothing while none is scheduled.
    std::optional<QDateTime> nextScheduledCheck() const;

    void checkForUpdatesInBackground();
    // A check the user asked for; `completion` gets its outcome. False (after logging) when the
    // build has no feed: nothing is checked and `completion` is never called.
    bool checkForUpdatesNow(std::function<void(const ProbeOutcome &)> completion);
    // Forgets the pending completion and stops the request (the checker gave up waiting).
    void cancelProbe();

Q_SIGNALS:
    // After every check, in the background or asked for.
    void checkFinished(const AppcastFacade::ProbeOutcome &outcome);

private:
    void fetch();
    void finish(const ProbeOutcome &outcome);
    ProbeOutcome outcomeOf(QNetworkReply *reply);
    void scheduleAutomaticCheck();
    bool feedIsSafe() const;

    QUrl m_feedUrl;
    QString m_currentVersion;
    QNetworkAccessManager &m_network;
    QSettings &m_defaults;
    const Clock &m_clock;
    bool m_updatesEnabled = false;
    bool m_started = false;
    QTimer m_automaticCheck;
    QPointer<QNetworkReply> m_reply;
    std::function<void(const ProbeOutcome &)> m_probeCompletion;
};

Q_DECLARE_METATYPE(AppcastFacade::ProbeOutcome)

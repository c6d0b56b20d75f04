#pragma once

#include "platform/updates/AppcastFacade.h"

#include <QLoggingCategory>
#include <QObject>
#include <QTimer>
#include <QUrl>

#include <chrono>

Q_DECLARE_LOGGING_CATEGORY(lcUpdateChecker)

// The state of update checks as the About page shows it: idle until something is known, checking
// while a check the user asked for runs, then up to date (with the running version), an update
// available (with its version and release page) or failed. A check that does not answer within
// the probe timeout has failed. Background checks move the state too when they find something;
// a background check that fails says nothing.
//
// Tests and screenshots can answer checks without a network with the environment switch
// BRD_UPDATE_PROBE_STUB: "upToDate", "updateAvailable:VERSION[:RELEASE-PAGE-URL]", "failed", or
// "hang" (no answer, so the timeout decides).
class UpdateChecker : public QObject
{
    Q_OBJECT
    Q_PROPERTY(State state READ state NOTIFY stateChanged)
    // upToDate: the running version; updateAvailable: the new one.
    Q_PROPERTY(QString version READ version NOTIFY stateChanged)
    Q_PROPERTY(QUrl releasePage READ releasePage NOTIFY stateChanged)
    // The localisation key of the state's line ("settings.about.updates.checking", ...; its "%1"
    // is the version), empty when idle.
    Q_PROPERTY(QString statusKey READ statusKey NOTIFY stateChanged)
    // Whether "Check Now" and the automatic switch apply: the build has a feed (or the stub
    // answers).
    Q_PROPERTY(bool updatesEnabled READ updatesEnabled CONSTANT)
    Q_PROPERTY(bool automaticChecks READ automaticChecks WRITE setAutomaticChecks NOTIFY
                   automaticChecksChanged)

public:
    enum class State { idle, checking, upToDate, updateAvailable, failed };
    Q_ENUM(State)

    static constexpr std::chrono::milliseconds defaultProbeTimeout {20000};
    static constexpr const char *stubVariable = "BRD_UPDATE_PROBE_STUB";

    explicit UpdateChecker(AppcastFacade &facade,
                           std::chrono::milliseconds probeTimeout = defaultProbeTimeout,
                           QObject *parent = nullptr);

    State state() const { return m_state; }
    QString version() const { return m_version; }
    QUrl releasePage() const { return m_releasePage; }
    QString statusKey() const;
    bool updatesEnabled() const;
    bool automaticChecks() const { return m_facade.automaticallyChecksForUpdates(); }
    void setAutomaticChecks(bool enabled);

    Q_INVOKABLE void checkNow();

Q_SIGNALS:
    void stateChanged();
    void automaticChecksChanged();

private:
    void setState(State state, const QString &version = {}, const QUrl &releasePage = {});
    void takeOutcome(const AppcastFacade::ProbeOutcome &outcome);
    void probeTimedOut();
    // The stub's answer, when the switch is set: nothing for "hang".
    bool answerFromStub();

    AppcastFacade &m_facade;
    std::chrono::milliseconds m_probeTimeout;
    QTimer m_timeout;
    State m_state = State::idle;
    QString m_version;
    QUrl m_releasePage;
};

#include "platform/updates/UpdateChecker.h"

Q_LOGGING_CATEGORY(lcUpdateChecker, "UpdateChecker")

UpdateChecker::UpdateChecker(AppcastFacade &facade, std::chrono::milliseconds probeTimeout,
                             QObject *parent)
    : QObject(parent)
    , m_facade(facade)
    , m_probeTimeout(probeTimeout)
{
    m_timeout.setSingleShot(true);
    connect(&m_timeout, &QTimer::timeout, this, &UpdateChecker::probeTimedOut);
    connect(&m_facade, &AppcastFacade::checkFinished, this,
            [this](const AppcastFacade::ProbeOutcome &outcome) {
                // What a check the user waits for found is taken by its own completion.
                if (m_state != State::checking
                    && outcome.kind != AppcastFacade::ProbeOutcome::Kind::failed)
                    takeOutcome(outcome);
            });
}

QString UpdateChecker::statusKey() const
{
    switch (m_state) {
    case State::checking:
        return QStringLiteral("settings.about.updates.checking");
    case State::upToDate:
        return QStringLiteral("settings.about.updates.up_to_date %@");
    case State::updateAvailable:
        return QStringLiteral("settings.about.updates.available %@");
    case State::failed:
        return QStringLiteral("settings.about.updates.failed");
    case State::idle:
        break;
    }
    return QString();
}

bool UpdateChecker::updatesEnabled() const
{
    return m_facade.updatesEnabled() || qEnvironmentVariableIsSet(stubVariable);
}

void UpdateChecker::setAutomaticChecks(bool enabled)
{
    if (enabled == automaticChecks())
        return;
    m_facade.setAutomaticallyChecksForUpdates(enabled);
    Q_EMIT automaticChecksChanged();
}

void UpdateChecker::checkNow()
{
    if (m_state == State::checking)
        return;
    const bool stubbed = qEnvironmentVariableIsSet(stubVariable);
    if (!stubbed && !m_facade.updatesEnabled()) {
        m_facade.checkForUpdatesNow(nullptr); // logs that this build does not check
        return;
    }
    setState(State::checking);
    m_timeout.start(m_probeTimeout);
    if (stubbed) {
        // Answered on the next turn of the event loop, as a real check would be.
        QTimer::singleShot(0, this, [this] {
            if (m_state == State::checking)
                answerFromStub();
        });
        return;
    }
    m_facade.checkForUpdatesNow(
        [this](const AppcastFacade::ProbeOutcome &outcome) { takeOutcome(outcome); });
}

bool UpdateChecker::answerFromStub()
{
    const QString stub = qEnvironmentVariable(stubVariable).trimmed();
    using Kind = AppcastFacade::ProbeOutcome::Kind;
    if (stub == u"upToDate") {
        takeOutcome({Kind::upToDate, {}, {}});
    } else if (stub.startsWith(u"updateAvailable:")) {
        takeOutcome({Kind::updateAvailable, stub.section(u':', 1, 1), QUrl(stub.section(u':', 2))});
    } else if (stub == u"hang") {
        return false;
    } else {
        takeOutcome({Kind::failed, {}, {}});
    }
    return true;
}

void UpdateChecker::takeOutcome(const AppcastFacade::ProbeOutcome &outcome)
{
    m_timeout.stop();
    switch (outcome.kind) {
    case AppcastFacade::ProbeOutcome::Kind::updateAvailable:
        setState(State::updateAvailable, outcome.version, outcome.releasePage);
        break;
    case AppcastFacade::ProbeOutcome::Kind::upToDate:
        setState(State::upToDate, m_facade.currentVersion());
        break;
    case AppcastFacade::ProbeOutcome::Kind::failed:
        setState(State::failed);
        break;
    }
}

void UpdateChecker::probeTimedOut()
{
    if (m_state != State::checking)
        return;
    qCWarning(lcUpdateChecker).noquote()
        << QStringLiteral("No answer from the update check in %1 ms").arg(m_probeTimeout.count());
    m_facade.cancelProbe();
    setState(State::failed);
}

void UpdateChecker::setState(State state, const QString &version, const QUrl &releasePage)
{
    if (state == m_state && version == m_version && releasePage == m_releasePage)
        return;
    m_state = state;
    m_version = version;
    m_releasePage = releasePage;
    Q_EMIT stateChanged();
}

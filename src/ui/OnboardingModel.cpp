#include "ui/OnboardingModel.h"

#include "ui/QuickEntryController.h"

#include <QSettings>

Q_LOGGING_CATEGORY(lcOnboarding, "Onboarding")

const QString OnboardingModel::completedKey = QStringLiteral("tarrow.onboarding.completed");

OnboardingModel::OnboardingModel(QuickEntryController &entry, QObject *parent)
    : QObject(parent)
    , m_entry(entry)
{
}

bool OnboardingModel::isCompleted()
{
    return QSettings().value(completedKey, false).toBool();
}

void OnboardingModel::reset()
{
    QSettings settings;
    settings.remove(completedKey);
    settings.sync();
    qCInfo(lcOnboarding) << "Onboarding was reset: the welcome page shows at the next opening";
}

bool OnboardingModel::finish()
{
    if (!m_entry.text().trimmed().isEmpty() && !m_entry.submit())
        return false;
    complete();
    return true;
}

void OnboardingModel::skip()
{
    m_entry.setText(QString());
    complete();
}

void OnboardingModel::complete()
{
    const bool was = isCompleted();
    QSettings settings;
    settings.setValue(completedKey, true);
    settings.sync();
    qCDebug(lcOnboarding) << "Onboarding completed";
    if (!was)
        Q_EMIT completedChanged();
    Q_EMIT finished();
}

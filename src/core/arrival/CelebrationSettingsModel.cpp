#include "arrival/CelebrationSettingsModel.h"

#include "l10n/LocaleManager.h"
#include "storage/SettingsStore.h"

CelebrationSettingsModel::CelebrationSettingsModel(SettingsStore &settings,
                                                   const LocaleManager &locale, QObject *parent)
    : QObject(parent)
    , m_settings(settings)
    , m_locale(locale)
    , m_confetti(settings.settings().celebrationConfetti)
    , m_sound(settings.settings().celebrationSound)
    , m_autoDismissSeconds(int(settings.settings().celebrationAutoDismissSeconds))
{
    connect(&settings, &SettingsStore::settingsChanged, this,
            &CelebrationSettingsModel::takeSettings);
    connect(&locale, &LocaleManager::languageChanged, this,
            &CelebrationSettingsModel::autoDismissLabelsChanged);
}

bool CelebrationSettingsModel::confetti() const
{
    return m_confetti;
}

bool CelebrationSettingsModel::sound() const
{
    return m_sound;
}

int CelebrationSettingsModel::autoDismissSeconds() const
{
    return m_autoDismissSeconds;
}

QList<int> CelebrationSettingsModel::autoDismissChoices() const
{
    return {5, 8, 15, 30, 0};
}

QStringList CelebrationSettingsModel::autoDismissLabels() const
{
    QStringList labels;
    for (const int seconds : autoDismissChoices())
        labels.append(autoDismissLabel(seconds));
    return labels;
}

void CelebrationSettingsModel::setConfetti(bool confetti)
{
    Settings next = m_settings.settings();
    next.celebrationConfetti = confetti;
    m_settings.setSettings(next);
}

void CelebrationSettingsModel::setSound(bool sound)
{
    Settings next = m_settings.settings();
    next.celebrationSound = sound;
    m_settings.setSettings(next);
}

void CelebrationSettingsModel::setAutoDismissSeconds(int seconds)
{
    Settings next = m_settings.settings();
    next.celebrationAutoDismissSeconds = Settings::clampedAutoDismissSeconds(seconds);
    m_settings.setSettings(next);
}

QString CelebrationSettingsModel::autoDismissLabel(int seconds) const
{
    if (seconds <= 0)
        return m_locale.text(QStringLiteral("settings.celebration.auto_dismiss.never"));
    return m_locale.format(QStringLiteral("settings.celebration.auto_dismiss.after %lld"),
                           {QString::number(seconds)});
}

void CelebrationSettingsModel::takeSettings()
{
    const Settings &settings = m_settings.settings();
    const auto update = [this](auto &member, auto value,
                               void (CelebrationSettingsModel::*changed)()) {
        if (member == value)
            return;
        member = value;
        Q_EMIT(this->*changed)();
    };
    update(m_confetti, settings.celebrationConfetti, &CelebrationSettingsModel::confettiChanged);
    update(m_sound, settings.celebrationSound, &CelebrationSettingsModel::soundChanged);
    update(m_autoDismissSeconds, int(settings.celebrationAutoDismissSeconds),
           &CelebrationSettingsModel::autoDismissSecondsChanged);
}

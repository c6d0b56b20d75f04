#pragma once

#include <QObject>
#include <QStringList>

class LocaleManager;
class SettingsStore;

// What the settings page binds to for celebrations: confetti, the short sound and how long the
// celebration stays before it closes by itself. Every change is saved at once; a change made
// elsewhere (another window, the file) is announced.
class CelebrationSettingsModel : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool confetti READ confetti WRITE setConfetti NOTIFY confettiChanged)
    Q_PROPERTY(bool sound READ sound WRITE setSound NOTIFY soundChanged)
    Q_PROPERTY(int autoDismissSeconds READ autoDismissSeconds WRITE setAutoDismissSeconds NOTIFY
                   autoDismissSecondsChanged)
    // The delays the page offers, in seconds (0: until dismissed).
    Q_PROPERTY(QList<int> autoDismissChoices READ autoDismissChoices CONSTANT)
    // The labels of those delays, in the interface language.
    Q_PROPERTY(QStringList autoDismissLabels READ autoDismissLabels NOTIFY autoDismissLabelsChanged)

public:
    CelebrationSettingsModel(SettingsStore &settings, const LocaleManager &locale,
                             QObject *parent = nullptr);

    bool confetti() const;
    bool sound() const;
    int autoDismissSeconds() const;
    QList<int> autoDismissChoices() const;
    QStringList autoDismissLabels() const;

    void setConfetti(bool confetti);
    void setSound(bool sound);
    void setAutoDismissSeconds(int seconds);

    // "After 8 seconds", "Until dismissed", in the interface language.
    Q_INVOKABLE QString autoDismissLabel(int seconds) const;

Q_SIGNALS:
    void confettiChanged();
    void soundChanged();
    void autoDismissSecondsChanged();
    void autoDismissLabelsChanged();

private:
    void takeSettings();

    SettingsStore &m_settings;
    const LocaleManager &m_locale;
    bool m_confetti;
    bool m_sound;
    int m_autoDismissSeconds;
};

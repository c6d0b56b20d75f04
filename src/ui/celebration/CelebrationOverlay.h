#pragma once

#include "arrival/CelebrationPresenter.h"

#include <QLoggingCategory>
#include <QPalette>
#include <QTimer>

#include <functional>
#include <memory>
#include <vector>

class CelebrationWindow;
class LocaleManager;
class SettingsStore;

Q_DECLARE_LOGGING_CATEGORY(lcCelebrationOverlay)

// Presents a celebration as a window on every screen, with the confetti and sound the settings
// ask for, and closes them all on the first click, Escape or Space on any of them, or once the
// auto-dismiss delay of the settings has passed. Confetti lies still when the desktop asks for
// reduced motion.
class CelebrationOverlay : public CelebrationPresenter
{
    Q_OBJECT

public:
    // The desktop's wish for less motion, asked at each celebration.
    using ReducedMotionProbe = std::function<bool()>;
    // Plays the short celebration sound; false when nothing could play it.
    using SoundPlayer = std::function<bool()>;

    CelebrationOverlay(const SettingsStore &settings, const LocaleManager &locale,
                       ReducedMotionProbe reducedMotion, SoundPlayer playSound,
                       QObject *parent = nullptr);
    ~CelebrationOverlay() override;

    void present(const Celebration &celebration) override;
    bool isPresenting() const override { return !m_windows.empty(); }

    // Closes the windows and reports the dismissal (what a click, Escape or Space does).
    void dismiss();

    // The palette the windows are drawn with; the application's by default.
    void setPalette(const QPalette &palette) { m_palette = palette; }
    const std::vector<std::unique_ptr<CelebrationWindow>> &windows() const { return m_windows; }
    bool autoDismissIsRunning() const { return m_autoDismiss.isActive(); }

    // The freedesktop sound theme's "complete" through canberra-gtk-play, when it is installed.
    static bool playThemeSound();

private:
    const SettingsStore &m_settings;
    const LocaleManager &m_locale;
    ReducedMotionProbe m_reducedMotion;
    SoundPlayer m_playSound;
    std::optional<QPalette> m_palette;
    std::vector<std::unique_ptr<CelebrationWindow>> m_windows;
    QTimer m_autoDismiss;
};

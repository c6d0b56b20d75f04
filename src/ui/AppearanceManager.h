#pragma once

#include "records/SettingsTypes.h"

#include <QColor>
#include <QLoggingCategory>
#include <QObject>
#include <QPalette>
#include <QVariantMap>

class SettingsStore;

Q_DECLARE_LOGGING_CATEGORY(lcAppearanceManager)

// Applies the theme setting to the application: "auto" keeps the desktop's own palette; "light"
// and "dark" keep it too when it already is one, and otherwise put a light or dark palette of
// our own in its place. Every window follows at once. Tells the interface whether it is dark and
// gives the shade of an accent colour that stays readable on a background.
class AppearanceManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool dark READ isDark NOTIFY appearanceChanged)
    // The palette's roles by name ("window", "base", "text", ...; "disabledText" and the like for
    // the disabled group), for windows to set on themselves: Qt Quick controls otherwise take some
    // colours from the style's own palettes instead of the application's.
    Q_PROPERTY(QVariantMap colors READ colors NOTIFY appearanceChanged)

public:
    // `systemPalette`: the desktop's palette, before any theme was applied.
    AppearanceManager(const SettingsStore &settings, QPalette systemPalette,
                      QObject *parent = nullptr);

    bool isDark() const { return isDarkPalette(m_palette); }
    const QPalette &palette() const { return m_palette; }
    QVariantMap colors() const;

    static bool isDarkPalette(const QPalette &palette);
    static QPalette lightPalette();
    static QPalette darkPalette();
    static QPalette paletteFor(ThemePref theme, const QPalette &system);

    // The shade of `accent` for text or thin lines on `background` (contrast of at least 4.5:1
    // for text, 3:1 for graphics).
    Q_INVOKABLE QColor legible(const QColor &accent, const QColor &background) const;
    Q_INVOKABLE QColor graphic(const QColor &accent, const QColor &background) const;

    // The Qt Quick Controls style the popup and settings are built on (Fusion, which follows the
    // palette), unless the user asked for another through QT_QUICK_CONTROLS_STYLE.
    static void installControlsStyle();

Q_SIGNALS:
    void appearanceChanged();

private:
    void apply();

    const SettingsStore &m_settings;
    QPalette m_systemPalette;
    QPalette m_palette;
    ThemePref m_theme = ThemePref::auto_;
};

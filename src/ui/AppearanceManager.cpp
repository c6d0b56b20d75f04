#include "ui/AppearanceManager.h"

#include "storage/SettingsStore.h"
#include "ui/AccentColors.h"

#include <QGuiApplication>
#include <QQuickStyle>

Q_LOGGING_CATEGORY(lcAppearanceManager, "AppearanceManager")

namespace {

struct PaletteColors
{
    QRgb window, base, alternateBase, text, button, highlight, highlightedText, mid, placeholder,
        link, disabledText, toolTipBase;
};

QPalette build(const PaletteColors &c)
{
    // QPalette(button, window) derives the bevel shades (light, midlight, dark, shadow) the
    // controls draw with; the roles the interface reads are then set outright.
    QPalette palette {QColor(c.button), QColor(c.window)};
    palette.setColor(QPalette::WindowText, QColor(c.text));
    palette.setColor(QPalette::Base, QColor(c.base));
    palette.setColor(QPalette::AlternateBase, QColor(c.alternateBase));
    palette.setColor(QPalette::Text, QColor(c.text));
    palette.setColor(QPalette::ButtonText, QColor(c.text));
    palette.setColor(QPalette::BrightText, QColor(c.base));
    palette.setColor(QPalette::Highlight, QColor(c.highlight));
    palette.setColor(QPalette::HighlightedText, QColor(c.highlightedText));
    palette.setColor(QPalette::Mid, QColor(c.mid));
    palette.setColor(QPalette::PlaceholderText, QColor(c.placeholder));
    palette.setColor(QPalette::Link, QColor(c.link));
    palette.setColor(QPalette::LinkVisited, QColor(c.link));
    palette.setColor(QPalette::ToolTipBase, QColor(c.toolTipBase));
    palette.setColor(QPalette::ToolTipText, QColor(c.text));
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, QColor(c.disabledText));
    }
    palette.setColor(QPalette::Disabled, QPalette::Highlight, QColor(c.mid));
    return palette;
}

} // namespace

AppearanceManager::AppearanceManager(const SettingsStore &settings, QPalette systemPalette,
                                     QObject *parent)
    : QObject(parent)
    , m_settings(settings)
    , m_systemPalette(std::move(systemPalette))
    , m_palette(m_systemPalette)
{
    connect(&settings, &SettingsStore::settingsChanged, this, &AppearanceManager::apply);
    apply();
}

bool AppearanceManager::isDarkPalette(const QPalette &palette)
{
    return palette.color(QPalette::Window).lightnessF() < 0.5;
}

QPalette AppearanceManager::lightPalette()
{
    return build({0xeff0f1, 0xffffff, 0xf5f6f7, 0x232629, 0xfcfcfc, 0x3d8fd9, 0xffffff, 0xc2c5c8,
                  0x6b7177, 0x1b6ac9, 0x9a9fa4, 0xf7f7f7});
}

QPalette AppearanceManager::darkPalette()
{
    return build({0x202326, 0x17191b, 0x1f2225, 0xeceff1, 0x2d3136, 0x3d8fd9, 0xffffff, 0x4a5057,
                  0x9aa1a8, 0x5aa9f0, 0x6c7278, 0x2a2e32});
}

QPalette AppearanceManager::paletteFor(ThemePref theme, const QPalette &system)
{
    switch (theme) {
    case ThemePref::auto_:
        return system;
    case ThemePref::light:
        return isDarkPalette(system) ? lightPalette() : system;
    case ThemePref::dark:
        return isDarkPalette(system) ? system : darkPalette();
    }
    return system;
}

void AppearanceManager::apply()
{
    const ThemePref theme = m_settings.settings().theme;
    const QPalette next = paletteFor(theme, m_systemPalette);
    if (theme == m_theme && next == m_palette)
        return;
    m_theme = theme;
    m_palette = next;
    if (qobject_cast<QGuiApplication *>(QCoreApplication::instance()))
        QGuiApplication::setPalette(m_palette);
    qCDebug(lcAppearanceManager).noquote()
        << QStringLiteral("Theme %1: a %2 palette")
               .arg(rawValue(theme), isDark() ? u"dark" : u"light");
    Q_EMIT appearanceChanged();
}

QVariantMap AppearanceManager::colors() const
{
    static const std::pair<const char *, QPalette::ColorRole> roles[] = {
        {"window", QPalette::Window},
        {"windowText", QPalette::WindowText},
        {"base", QPalette::Base},
        {"alternateBase", QPalette::AlternateBase},
        {"text", QPalette::Text},
        {"button", QPalette::Button},
        {"buttonText", QPalette::ButtonText},
        {"brightText", QPalette::BrightText},
        {"highlight", QPalette::Highlight},
        {"highlightedText", QPalette::HighlightedText},
        {"light", QPalette::Light},
        {"midlight", QPalette::Midlight},
        {"mid", QPalette::Mid},
        {"dark", QPalette::Dark},
        {"shadow", QPalette::Shadow},
        {"placeholderText", QPalette::PlaceholderText},
        {"link", QPalette::Link},
        {"toolTipBase", QPalette::ToolTipBase},
        {"toolTipText", QPalette::ToolTipText},
    };
    QVariantMap map;
    for (const auto &[name, role] : roles) {
        map.insert(QString::fromLatin1(name), m_palette.color(QPalette::Active, role));
        QString disabled = QString::fromLatin1(name);
        disabled[0] = disabled[0].toUpper();
        map.insert(u"disabled" + disabled, m_palette.color(QPalette::Disabled, role));
    }
    return map;
}

QColor AppearanceManager::legible(const QColor &accent, const QColor &background) const
{
    return AccentColors::legibleOn(accent, background, 4.5);
}

QColor AppearanceManager::graphic(const QColor &accent, const QColor &background) const
{
    return AccentColors::legibleOn(accent, background, 3.0);
}

void AppearanceManager::installControlsStyle()
{
    if (qEnvironmentVariableIsEmpty("QT_QUICK_CONTROLS_STYLE"))
        QQuickStyle::setStyle(QStringLiteral("Fusion"));
}

#include "ui/SettingsModel.h"

#include "l10n/LocaleManager.h"
#include "storage/SettingsStore.h"

Q_LOGGING_CATEGORY(lcSettingsModel, "SettingsModel")

namespace {

template<typename Enum>
std::optional<Enum> enumFromIndex(int index, Enum last)
{
    if (index < 0 || index > int(last))
        return std::nullopt;
    return Enum(index);
}

} // namespace

SettingsModel::SettingsModel(SettingsStore &store, const LocaleManager &locale,
                             CurrentChip currentChip, QObject *parent)
    : QObject(parent)
    , m_store(store)
    , m_locale(locale)
    , m_currentChip(std::move(currentChip))
{
    const auto changedAgain = [this] {
        ++m_revision;
        Q_EMIT changed();
    };
    connect(&store, &SettingsStore::settingsChanged, this, changedAgain);
    connect(&locale, &LocaleManager::languageChanged, this, changedAgain);
}

const Settings &SettingsModel::settings() const
{
    return m_store.settings();
}

void SettingsModel::change(const std::function<void(Settings &)> &edit)
{
    const Settings before = settings();
    Settings next = before;
    edit(next);
    if (next == before)
        return;
    setErrorText(QString());
    m_store.setSettings(next);
    if (!m_store.lastSaveFailed())
        return;
    qCWarning(lcSettingsModel) << "Took a setting back: settings.json could not be written";
    m_store.setSettings(before);
    setErrorText(m_locale.table().text("settings.error.save_failed"));
    Q_EMIT changed();
}

void SettingsModel::setMenubarStyle(int style)
{
    if (const auto value = enumFromIndex(style, MenubarStyle::iconOnly))
        change([&](Settings &s) { s.menubarStyle = *value; });
}

void SettingsModel::setTitleLength(int length)
{
    change([&](Settings &s) { s.menubarTitleLength = Settings::clampedTitleLength(length); });
}

void SettingsModel::setDisplayFormat(int format)
{
    if (const auto value = enumFromIndex(format, CountdownDisplayFormat::weeksDays))
        change([&](Settings &s) { s.displayFormat = *value; });
}

void SettingsModel::setLanguage(int language)
{
    if (const auto value = enumFromIndex(language, LanguagePref::fr))
        change([&](Settings &s) { s.language = *value; });
}

void SettingsModel::setTheme(int theme)
{
    if (const auto value = enumFromIndex(theme, ThemePref::dark))
        change([&](Settings &s) { s.theme = *value; });
}

void SettingsModel::setLaunchAtLogin(bool enabled)
{
    change([&](Settings &s) { s.launchAtLogin = enabled; });
}

void SettingsModel::setNewCountdownNotifies(bool enabled)
{
    change([&](Settings &s) { s.newCountdownNotifies = enabled; });
}

void SettingsModel::setNewCountdownCelebrates(bool enabled)
{
    change([&](Settings &s) { s.newCountdownCelebrates = enabled; });
}

void SettingsModel::dismissError()
{
    setErrorText(QString());
}

void SettingsModel::setErrorText(const QString &text)
{
    if (m_errorText == text)
        return;
    m_errorText = text;
    Q_EMIT errorTextChanged();
}

QString SettingsModel::chipPreview() const
{
    return QStringLiteral("image://chip/settings/%1").arg(m_revision);
}

MenubarChipPresentation SettingsModel::chipPresentation() const
{
    MenubarChipInputs inputs = m_currentChip ? m_currentChip() : MenubarChipInputs();
    if (!inputs.subject) {
        inputs.subject = MenubarSubject {m_locale.table().text("settings.preview.sample_title"),
                                         IconRef::named(QStringLiteral("airplane")),
                                         QTimeZone::systemTimeZone()};
        inputs.state = ReachState::counting(Remaining::fromInterval(12 * 86400 + 5 * 3600));
        inputs.progress = 0.6;
    }
    inputs.style = settings().menubarStyle;
    inputs.titleLength = settings().menubarTitleLength;
    inputs.displayFormat = settings().displayFormat;
    return MenubarChipPresentation::build(inputs, m_locale.table());
}

QString SettingsModel::version()
{
    return QStringLiteral(TARROW_VERSION);
}

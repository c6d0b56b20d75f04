#include "l10n/LocaleManager.h"

#include "l10n/SupportedLanguages.h"
#include "storage/SettingsStore.h"

#include <QLocale>
#include <QLoggingCategory>

Q_LOGGING_CATEGORY(lcLocaleManager, "LocaleManager")

QStringList LocaleManager::systemPreferredLanguages()
{
    return QLocale::system().uiLanguages();
}

LocaleManager::LocaleManager(const SettingsStore &settings, PreferredLanguages preferredLanguages,
                             QObject *parent)
    : QObject(parent)
    , m_settings(settings)
    , m_preferredLanguages(std::move(preferredLanguages))
{
    m_table = LanguageTable::load(
        resolveLanguage(m_settings.settings().language, m_preferredLanguages()));
    connect(&m_settings, &SettingsStore::settingsChanged, this, &LocaleManager::refresh);
}

QLocale LocaleManager::interfaceLocale() const
{
    const QLocale language(activeLanguage());
    const QLocale system = QLocale::system();
    return system.language() == language.language() ? system : language;
}

void LocaleManager::refresh()
{
    const QString code = resolveLanguage(m_settings.settings().language, m_preferredLanguages());
    if (code == m_table.code())
        return;
    m_table = LanguageTable::load(code);
    qCInfo(lcLocaleManager).noquote() << QStringLiteral("Interface language is now %1").arg(code);
    Q_EMIT languageChanged();
}

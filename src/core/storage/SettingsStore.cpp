#include "storage/SettingsStore.h"

#include "storage/LaunchAtLogin.h"
#include "json/JsonDocument.h"
#include "json/JsonWriter.h"

Q_LOGGING_CATEGORY(lcSettingsStore, "SettingsStore")

SettingsStore::SettingsStore(const PathProvider &paths, FileAccess &files,
                             LaunchAtLoginController *launchAtLogin, QObject *parent)
    : QObject(parent)
    , m_paths(paths)
    , m_files(files)
    , m_launchAtLogin(launchAtLogin)
{
    const QString path = m_paths.settingsFile();
    if (!m_files.exists(path))
        return;
    QString error;
    std::optional<Settings> loaded;
    if (const std::optional<QByteArray> bytes = m_files.read(path, &error)) {
        if (const std::optional<JsonDocument> document = JsonDocument::parse(*bytes, &error))
            loaded = Settings::fromJson(document->root(), &error);
    }
    if (loaded)
        m_settings = *loaded;
    else
        qCCritical(lcSettingsStore).noquote()
            << QStringLiteral("Failed to decode settings.json - using defaults: %1").arg(error);
}

void SettingsStore::setSettings(const Settings &settings)
{
    Settings next = settings;
    next.menubarTitleLength = Settings::clampedTitleLength(next.menubarTitleLength);
    if (next == m_settings)
        return;
    const bool loginChanged = next.launchAtLogin != m_settings.launchAtLogin;
    m_settings = next;
    if (loginChanged && m_launchAtLogin)
        m_launchAtLogin->setEnabled(m_settings.launchAtLogin);
    save();
    Q_EMIT settingsChanged();
}

void SettingsStore::save()
{
    JsonWriter writer;
    m_settings.toJson(writer);
    QString error;
    m_lastSaveFailed = !m_files.writeAtomically(m_paths.settingsFile(), writer.finish(), &error);
    if (m_lastSaveFailed)
        qCCritical(lcSettingsStore).noquote()
            << QStringLiteral("Failed to save settings.json: %1").arg(error);
}

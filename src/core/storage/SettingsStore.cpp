#include "storage/SettingsStore.h"

#include "storage/LaunchAtLogin.h"
#include "json/JsonDocument.h"
#include "json/JsonWriter.h"

Q_LOGGING_CATEGORY(lcSettingsStore, "SettingsStore")

SettingsStore::SettingsStore(const PathProvider &paths, FileAccess &files,
                             LaunchAtLoginController *launchAtLogin, QObject *parent)
    : QObject(parent)
    , m_file(paths.settingsFile(), files, lcSettingsStore)
    , m_launchAtLogin(launchAtLogin)
{
    if (const std::optional<Settings> loaded = outsideChange(true))
        m_settings = *loaded;
}

std::optional<Settings> SettingsStore::outsideChange(bool atStart)
{
    const DataFile::Read read = m_file.readIfChanged();
    QString error = read.error;
    switch (read.kind) {
    case DataFile::Read::Kind::unchanged:
        return std::nullopt;
    case DataFile::Read::Kind::missing:
        return Settings();
    case DataFile::Read::Kind::changed:
        if (const std::optional<JsonDocument> document = JsonDocument::parse(read.bytes, &error)) {
            if (std::optional<Settings> loaded = Settings::fromJson(document->root(), &error)) {
                m_file.accept(read.bytes);
                return loaded;
            }
        }
        m_file.reject(read.bytes);
        break;
    case DataFile::Read::Kind::failed:
        break;
    }
    if (atStart)
        qCCritical(lcSettingsStore).noquote()
            << QStringLiteral("Failed to decode settings.json - using defaults: %1").arg(error);
    else
        qCCritical(lcSettingsStore).noquote()
            << QStringLiteral("Ignored a change of settings.json that cannot be read: %1")
                   .arg(error);
    return std::nullopt;
}

void SettingsStore::apply(const Settings &settings)
{
    if (settings == m_settings)
        return;
    const bool loginChanged = settings.launchAtLogin != m_settings.launchAtLogin;
    m_settings = settings;
    if (loginChanged && m_launchAtLogin)
        m_launchAtLogin->setEnabled(m_settings.launchAtLogin);
    Q_EMIT settingsChanged();
}

void SettingsStore::setSettings(const Settings &settings)
{
    Settings next = settings;
    next.menubarTitleLength = Settings::clampedTitleLength(next.menubarTitleLength);
    if (next == m_settings)
        return;
    QString error;
    m_lastSaveFailed = !m_file.lock(&error);
    if (!m_lastSaveFailed) {
        // What another process saved meanwhile stays, except where this change differs.
        if (const std::optional<Settings> theirs = outsideChange(false))
            next = Settings::merged(m_settings, next, *theirs);
        JsonWriter writer;
        next.toJson(writer);
        m_lastSaveFailed = !m_file.write(writer.finish(), &error);
        m_file.unlock();
    }
    if (m_lastSaveFailed)
        qCCritical(lcSettingsStore).noquote()
            << QStringLiteral("Failed to save settings.json: %1").arg(error);
    apply(next);
}

bool SettingsStore::reloadIfChanged()
{
    const std::optional<Settings> loaded = outsideChange(false);
    if (!loaded)
        return false;
    qCInfo(lcSettingsStore) << "Reloaded settings.json after an outside change";
    apply(*loaded);
    return true;
}

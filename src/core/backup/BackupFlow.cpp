#include "backup/BackupFlow.h"

#include "l10n/LocaleManager.h"
#include "time/Clock.h"

namespace {

QVariantMap choice(const char *word, const QString &label, const char *role)
{
    return {{QStringLiteral("choice"), QString::fromLatin1(word)},
            {QStringLiteral("label"), label},
            {QStringLiteral("role"), QString::fromLatin1(role)}};
}

} // namespace

BackupFlow::BackupFlow(BackupService &service, const LocaleManager &locale, const Clock &clock,
                       QObject *parent)
    : QObject(parent)
    , m_service(service)
    , m_locale(locale)
    , m_clock(clock)
{
    connect(&locale, &LocaleManager::languageChanged, this, [this] {
        Q_EMIT languageChanged();
        Q_EMIT questionChanged();
        Q_EMIT messageChanged();
    });
}

QString BackupFlow::questionText() const
{
    switch (m_stage) {
    case Stage::confirmImport:
        return BackupService::confirmation(*m_pending).text(m_locale.table());
    case Stage::confirmReplace:
        return m_locale.text(QStringLiteral("settings.data.import.replace.confirm"));
    case Stage::none:
        break;
    }
    return QString();
}

QString BackupFlow::questionDetail() const
{
    switch (m_stage) {
    case Stage::confirmImport:
        return m_locale.text(QStringLiteral("settings.data.import.confirm.detail"));
    case Stage::confirmReplace:
        return m_locale.text(QStringLiteral("settings.data.import.replace.confirm.detail"));
    case Stage::none:
        break;
    }
    return QString();
}

QVariantList BackupFlow::choices() const
{
    const QString merge = m_locale.text(QStringLiteral("settings.data.import.merge"));
    const QString replace = m_locale.text(QStringLiteral("settings.data.import.replace"));
    const QString cancel = m_locale.text(QStringLiteral("settings.data.import.cancel"));
    switch (m_stage) {
    case Stage::confirmImport:
        return {choice("merge", merge, "accept"), choice("replace", replace, "destructive"),
                choice("cancel", cancel, "cancel")};
    case Stage::confirmReplace:
        return {choice("replace", replace, "destructive"), choice("cancel", cancel, "cancel")};
    case Stage::none:
        break;
    }
    return {};
}

QString BackupFlow::messageText() const
{
    return m_message ? m_message->text(m_locale.table()) : QString();
}

QStringList BackupFlow::nameFilters() const
{
    return {m_locale.text(QStringLiteral("settings.data.file_filter"))};
}

QString BackupFlow::proposedFileName() const
{
    return BackupService::proposedFileName(m_clock.now());
}

bool BackupFlow::beginExport()
{
    m_prepared = m_service.prepareExport();
    return true;
}

void BackupFlow::finishExport(const QUrl &file)
{
    if (!m_prepared)
        m_prepared = m_service.prepareExport();
    show(m_service.writeExport(*m_prepared, file.toLocalFile()));
    m_prepared.reset();
}

void BackupFlow::cancelExport()
{
    m_prepared.reset();
}

void BackupFlow::importFrom(const QUrl &file)
{
    m_pending.reset();
    setStage(Stage::none);
    BackupService::Reading reading = m_service.read(file.toLocalFile());
    if (!reading.archive) {
        show(reading.refusal);
        return;
    }
    m_pending = std::move(reading.archive);
    setStage(Stage::confirmImport);
}

void BackupFlow::answer(const QString &choice)
{
    if (m_stage == Stage::none || !m_pending)
        return;
    if (choice == u"replace" && m_stage == Stage::confirmImport) {
        setStage(Stage::confirmReplace);
        return;
    }
    const Stage answered = m_stage;
    std::optional<BackupArchive> archive = std::exchange(m_pending, std::nullopt);
    setStage(Stage::none);
    if (choice == u"merge" && answered == Stage::confirmImport)
        show(m_service.import(*archive, BackupImportMode::merge));
    else if (choice == u"replace")
        show(m_service.import(*archive, BackupImportMode::replace));
    // Anything else cancels: nothing changes.
}

void BackupFlow::dismissMessage()
{
    if (!m_message)
        return;
    m_message.reset();
    Q_EMIT messageChanged();
}

void BackupFlow::setStage(Stage stage)
{
    if (stage == m_stage)
        return;
    m_stage = stage;
    Q_EMIT questionChanged();
}

// Shown again even when it repeats the last one: it reports a new outcome.
void BackupFlow::show(const BackupMessage &message)
{
    m_message = message;
    Q_EMIT messageChanged();
}

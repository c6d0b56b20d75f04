#include "platform/tray/StatusItemController.h"

#include "countdown/CountdownEngine.h"
#include "l10n/LocaleManager.h"
#include "platform/tray/StatusItemHost.h"
#include "storage/SettingsStore.h"

StatusItemController::StatusItemController(StatusItemHost &host, const CountdownEngine &engine,
                                           const SettingsStore &settings,
                                           const LocaleManager &locale, QObject *parent)
    : QObject(parent)
    , m_host(host)
    , m_settings(settings)
    , m_engine(engine)
    , m_locale(locale)
{
    connect(&m_host, &StatusItemHost::clicked, this,
            [this](const StatusItemClick &click) { m_clickTarget.handle(click); });
    connect(&m_engine, &CountdownEngine::pinnedChanged, this, &StatusItemController::redraw);
    connect(&m_engine, &CountdownEngine::stateChanged, this, &StatusItemController::redraw);
    connect(&m_engine, &CountdownEngine::progressChanged, this, &StatusItemController::redraw);
    connect(&m_settings, &SettingsStore::settingsChanged, this, &StatusItemController::redraw);
    connect(&m_locale, &LocaleManager::languageChanged, this, &StatusItemController::redraw);
    redraw();
}

void StatusItemController::setPreviewIcon(const std::optional<IconRef> &icon)
{
    if (icon == m_previewIcon) {
        return;
    }
    m_previewIcon = icon;
    Q_EMIT previewIconChanged();
    redraw();
}

QString StatusItemController::previewSymbol() const
{
    return m_previewIcon ? m_previewIcon->symbol : QString();
}

void StatusItemController::setPreviewSymbol(const QString &symbol)
{
    setPreviewIcon(symbol.isEmpty() ? std::nullopt
                                    : std::optional<IconRef>(IconRef::named(symbol)));
}

void StatusItemController::setClickHandler(std::function<void(const StatusItemClick &)> handler)
{
    m_clickTarget.onClick = std::move(handler);
}

MenubarChipInputs StatusItemController::inputsFrom(const CountdownEngine &engine,
                                                   const Settings &settings)
{
    MenubarChipInputs inputs;
    if (const std::optional<CountdownItem> &holder = engine.pinned()) {
        inputs.subject = MenubarSubject::of(*holder);
    }
    inputs.state = engine.state();
    inputs.progress = engine.progress();
    inputs.style = settings.menubarStyle;
    inputs.titleLength = settings.menubarTitleLength;
    inputs.displayFormat = settings.displayFormat;
    return inputs;
}

MenubarChipInputs StatusItemController::currentInputs() const
{
    MenubarChipInputs inputs = inputsFrom(m_engine, m_settings.settings());
    inputs.previewIcon = m_previewIcon;
    return inputs;
}

void StatusItemController::redraw()
{
    const MenubarChipPresentation presentation =
        MenubarChipPresentation::build(currentInputs(), m_locale.table());
    if (m_lastPresentation == presentation) {
        return;
    }
    QString label = presentation.accessibleLabel();
    if (label.isEmpty()) {
        label = QStringLiteral("Tarrow");
    }
    m_host.show(presentation, label);
    m_lastPresentation = presentation;
    ++m_drawCount;
}

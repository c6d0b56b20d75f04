#pragma once

#include "countdown/MenubarChipPresentation.h"
#include "platform/tray/StatusItemClickTarget.h"

#include <QObject>

#include <optional>

class CountdownEngine;
class LocaleManager;
class SettingsStore;
struct Settings;
class StatusItemHost;

// Keeps the status item showing the item that holds the menu bar. It follows the engine's holder,
// state and progress, the menu-bar style, title length and display format, the interface language
// and the icon picker's preview, rebuilds the chip's presentation on every change and hands it to
// the host only when it differs from the one last drawn, so a tick that changes nothing visible
// (a countdown that still shows whole days) redraws nothing.
class StatusItemController : public QObject
{
    Q_OBJECT
    // The symbol name the icon picker previews in place of the holder's icon; empty for none.
    Q_PROPERTY(
        QString previewSymbol READ previewSymbol WRITE setPreviewSymbol NOTIFY previewIconChanged)

public:
    StatusItemController(StatusItemHost &host, const CountdownEngine &engine,
                         const SettingsStore &settings, const LocaleManager &locale,
                         QObject *parent = nullptr);

    const std::optional<IconRef> &previewIcon() const { return m_previewIcon; }
    void setPreviewIcon(const std::optional<IconRef> &icon);
    QString previewSymbol() const;
    void setPreviewSymbol(const QString &symbol);
    Q_INVOKABLE void clearPreview() { setPreviewIcon(std::nullopt); }

    // What a click on the item does: the application core opens or closes the popup there.
    void setClickHandler(std::function<void(const StatusItemClick &)> handler);

    const std::optional<MenubarChipPresentation> &lastPresentation() const
    {
        return m_lastPresentation;
    }
    // How many times the item was redrawn (the first draw at construction included).
    int drawCount() const { return m_drawCount; }

    // The inputs as they are now; a redraw builds the presentation from them.
    MenubarChipInputs currentInputs() const;
    // The chip's inputs from the engine's published values and the settings, without a preview.
    static MenubarChipInputs inputsFrom(const CountdownEngine &engine, const Settings &settings);

public Q_SLOTS:
    void redraw();

Q_SIGNALS:
    void previewIconChanged();

private:
    std::optional<IconRef> m_previewIcon;
    StatusItemHost &m_host;
    StatusItemClickTarget m_clickTarget;
    const SettingsStore &m_settings;
    const CountdownEngine &m_engine;
    const LocaleManager &m_locale;
    std::optional<MenubarChipPresentation> m_lastPresentation;
    int m_drawCount = 0;
};

#pragma once

#include "platform/tray/StatusItemHost.h"

#include <QDBusConnection>
#include <QLoggingCategory>
#include <QTimer>

#include <chrono>
#include <memory>
#include <optional>

class ClassicTrayPresence;
class StatusNotifierItem;

Q_DECLARE_LOGGING_CATEGORY(lcAutoStatusItemHost)

// The status item on whatever the session offers, at any moment: always a StatusNotifierItem, and
// besides it the classic tray icon while no panel shows the item but a classic tray is there.
// Panels come and go (a tray started after Tarrow, a panel restarted, one replaced by another),
// so the choice is made again whenever the StatusNotifierItem's host or the classic tray appears
// or leaves. The classic icon appears once things have been settled for a moment (a panel that
// offers both kinds takes the StatusNotifierItem a few milliseconds after its tray) and goes as
// soon as a panel shows the StatusNotifierItem.
class AutoStatusItemHost : public StatusItemHost
{
    Q_OBJECT
public:
    using ClassicIconFactory = std::function<std::unique_ptr<StatusItemHost>()>;

    AutoStatusItemHost(const QDBusConnection &connection,
                       std::unique_ptr<ClassicTrayPresence> classicTray,
                       ClassicIconFactory makeClassicIcon,
                       std::chrono::milliseconds settle = std::chrono::seconds(1),
                       QObject *parent = nullptr);
    ~AutoStatusItemHost() override;

    void start();
    bool usesTrayIcon() const { return bool(m_classicIcon); }
    StatusNotifierItem &item() const { return *m_item; }

    void show(const MenubarChipPresentation &presentation, const QString &accessibleLabel) override;
    void setMenuEntries(const QList<StatusItemMenuEntry> &entries) override;
    void setPopupOpen(bool open) override;
    std::optional<QRect> iconGeometry() const override;

Q_SIGNALS:
    void usesTrayIconChanged(bool usesTrayIcon);

private:
    void reconsider();
    void showClassicIcon();

    std::unique_ptr<StatusNotifierItem> m_item;
    std::unique_ptr<ClassicTrayPresence> m_classicTray;
    ClassicIconFactory m_makeClassicIcon;
    std::unique_ptr<StatusItemHost> m_classicIcon;
    QTimer m_settle;
    bool m_itemStarted = false;
    bool m_popupOpen = false;
    std::optional<std::pair<MenubarChipPresentation, QString>> m_shown;
    QList<StatusItemMenuEntry> m_entries;
};

#pragma once

#include "platform/tray/StatusItemHost.h"

#include <QDBusConnection>
#include <QTimer>

#include <chrono>
#include <memory>
#include <optional>

class StatusNotifierItem;
class SystemTrayIconHost;

// The status item on whatever the session offers: always a StatusNotifierItem, and besides it a
// QSystemTrayIcon when no panel has taken the item within a grace period (or there is no session
// bus) but an XEmbed tray is there. When a panel takes the item later, the tray icon goes away.
class AutoStatusItemHost : public StatusItemHost
{
    Q_OBJECT
public:
    explicit AutoStatusItemHost(const QDBusConnection &connection,
                                std::chrono::milliseconds grace = std::chrono::seconds(3),
                                QObject *parent = nullptr);
    ~AutoStatusItemHost() override;

    void start();
    bool usesTrayIcon() const { return bool(m_tray); }

    void show(const MenubarChipPresentation &presentation, const QString &accessibleLabel) override;
    void setMenuEntries(const QList<StatusItemMenuEntry> &entries) override;

private:
    void considerTrayIcon();
    void dropTrayIcon();

    std::unique_ptr<StatusNotifierItem> m_item;
    std::unique_ptr<SystemTrayIconHost> m_tray;
    QTimer m_grace;
    bool m_itemStarted = false;
    std::optional<std::pair<MenubarChipPresentation, QString>> m_shown;
    QList<StatusItemMenuEntry> m_entries;
};

#pragma once

#include "platform/tray/StatusItemHost.h"

#include <memory>

class QMenu;
class QSystemTrayIcon;

// The status item through QSystemTrayIcon, for X11 sessions whose tray speaks only XEmbed
// (trayer, tint2, i3bar): the square icon with the accessible text as tool tip. Needs a
// QApplication.
class SystemTrayIconHost : public StatusItemHost
{
    Q_OBJECT
public:
    explicit SystemTrayIconHost(QObject *parent = nullptr);
    ~SystemTrayIconHost() override;

    static bool isAvailable();

    void show(const MenubarChipPresentation &presentation, const QString &accessibleLabel) override;
    void setMenuEntries(const QList<StatusItemMenuEntry> &entries) override;

private:
    std::unique_ptr<QMenu> m_menu;
    QSystemTrayIcon *m_icon = nullptr;
    MenubarChipPresentation m_shown;
    bool m_hasShown = false;
};

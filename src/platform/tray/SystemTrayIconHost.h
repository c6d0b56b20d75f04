#pragma once

#include "platform/tray/StatusItemHost.h"

#include <memory>

class QMenu;
class QSystemTrayIcon;

// The status item through QSystemTrayIcon, for X11 sessions whose tray speaks only XEmbed
// (trayer, tint2, i3bar): the square icon with the accessible text as tool tip. Needs a
// QApplication. Create it only while no StatusNotifierItem host is there: Qt decides on the first
// QSystemTrayIcon, once per process, whether its icons go over D-Bus.
class SystemTrayIconHost : public StatusItemHost
{
    Q_OBJECT
public:
    explicit SystemTrayIconHost(QObject *parent = nullptr);
    ~SystemTrayIconHost() override;

    void show(const MenubarChipPresentation &presentation, const QString &accessibleLabel) override;
    void setMenuEntries(const QList<StatusItemMenuEntry> &entries) override;
    void setPopupOpen(bool open) override;
    std::optional<QRect> iconGeometry() const override;

private:
    std::unique_ptr<QMenu> m_menu;
    QSystemTrayIcon *m_icon = nullptr;
    MenubarChipPresentation m_shown;
    QString m_toolTip;
    bool m_hasShown = false;
    bool m_popupOpen = false;
};

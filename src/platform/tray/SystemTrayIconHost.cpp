#include "platform/tray/SystemTrayIconHost.h"

#include "platform/tray/TrayIconRenderer.h"

#include <QCursor>
#include <QIcon>
#include <QMenu>
#include <QPixmap>
#include <QSystemTrayIcon>

SystemTrayIconHost::SystemTrayIconHost(QObject *parent)
    : StatusItemHost(parent)
    , m_menu(std::make_unique<QMenu>())
    , m_icon(new QSystemTrayIcon(this))
{
    connect(m_icon, &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                if (reason != QSystemTrayIcon::Trigger && reason != QSystemTrayIcon::DoubleClick) {
                    return;
                }
                // XEmbed trays report the icon's place; elsewhere the pointer is the best guess.
                const QRect geometry = m_icon->geometry();
                const QPoint position = geometry.isValid() ? geometry.center() : QCursor::pos();
                Q_EMIT clicked(StatusItemClick {position, geometry});
            });
}

SystemTrayIconHost::~SystemTrayIconHost() = default;

void SystemTrayIconHost::show(const MenubarChipPresentation &presentation,
                              const QString &accessibleLabel)
{
    if (!m_hasShown || presentation.symbolName != m_shown.symbolName
        || presentation.detail != m_shown.detail || presentation.remaining != m_shown.remaining) {
        QIcon icon;
        for (int side : TrayIconRenderer::standardSides()) {
            icon.addPixmap(QPixmap::fromImage(TrayIconRenderer::render(presentation, side)));
        }
        m_icon->setIcon(icon);
    }
    m_shown = presentation;
    m_hasShown = true;
    m_toolTip = accessibleLabel;
    m_icon->setToolTip(m_popupOpen ? QString() : m_toolTip);
    m_icon->show();
}

void SystemTrayIconHost::setPopupOpen(bool open)
{
    m_popupOpen = open;
    m_icon->setToolTip(open ? QString() : m_toolTip);
}

std::optional<QRect> SystemTrayIconHost::iconGeometry() const
{
    const QRect geometry = m_icon->geometry();
    return geometry.isValid() ? std::optional<QRect>(geometry) : std::nullopt;
}

void SystemTrayIconHost::setMenuEntries(const QList<StatusItemMenuEntry> &entries)
{
    m_menu->clear();
    for (const StatusItemMenuEntry &entry : entries) {
        if (entry.label.isEmpty()) {
            m_menu->addSeparator();
        } else {
            m_menu->addAction(entry.label, m_menu.get(), entry.trigger);
        }
    }
    m_icon->setContextMenu(entries.isEmpty() ? nullptr : m_menu.get());
}

#include "platform/tray/AutoStatusItemHost.h"

#include "platform/tray/StatusNotifierItem.h"
#include "platform/tray/SystemTrayIconHost.h"

AutoStatusItemHost::AutoStatusItemHost(const QDBusConnection &connection,
                                       std::chrono::milliseconds grace, QObject *parent)
    : StatusItemHost(parent)
    , m_item(std::make_unique<StatusNotifierItem>(connection))
{
    m_grace.setSingleShot(true);
    m_grace.setInterval(grace);
    connect(&m_grace, &QTimer::timeout, this, &AutoStatusItemHost::considerTrayIcon);
    connect(m_item.get(), &StatusItemHost::clicked, this, &StatusItemHost::clicked);
    connect(m_item.get(), &StatusNotifierItem::registeredChanged, this, [this](bool registered) {
        if (registered) {
            dropTrayIcon();
        } else {
            m_grace.start();
        }
    });
}

AutoStatusItemHost::~AutoStatusItemHost() = default;

void AutoStatusItemHost::start()
{
    m_itemStarted = m_item->start();
    if (m_itemStarted) {
        m_grace.start();
    } else {
        considerTrayIcon();
    }
}

void AutoStatusItemHost::considerTrayIcon()
{
    if (m_tray || (m_itemStarted && m_item->isRegistered()) || !SystemTrayIconHost::isAvailable()) {
        return;
    }
    m_tray = std::make_unique<SystemTrayIconHost>();
    connect(m_tray.get(), &StatusItemHost::clicked, this, &StatusItemHost::clicked);
    m_tray->setMenuEntries(m_entries);
    if (m_shown) {
        m_tray->show(m_shown->first, m_shown->second);
    }
}

void AutoStatusItemHost::dropTrayIcon()
{
    m_grace.stop();
    m_tray.reset();
}

void AutoStatusItemHost::show(const MenubarChipPresentation &presentation,
                              const QString &accessibleLabel)
{
    m_shown = std::make_pair(presentation, accessibleLabel);
    m_item->show(presentation, accessibleLabel);
    if (m_tray) {
        m_tray->show(presentation, accessibleLabel);
    }
}

void AutoStatusItemHost::setMenuEntries(const QList<StatusItemMenuEntry> &entries)
{
    m_entries = entries;
    m_item->setMenuEntries(entries);
    if (m_tray) {
        m_tray->setMenuEntries(entries);
    }
}

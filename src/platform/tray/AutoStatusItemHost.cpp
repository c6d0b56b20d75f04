#include "platform/tray/AutoStatusItemHost.h"

#include "platform/tray/ClassicTrayPresence.h"
#include "platform/tray/StatusNotifierItem.h"

Q_LOGGING_CATEGORY(lcAutoStatusItemHost, "AutoStatusItemHost")

AutoStatusItemHost::AutoStatusItemHost(const QDBusConnection &connection,
                                       std::unique_ptr<ClassicTrayPresence> classicTray,
                                       ClassicIconFactory makeClassicIcon,
                                       std::chrono::milliseconds settle, QObject *parent)
    : StatusItemHost(parent)
    , m_item(std::make_unique<StatusNotifierItem>(connection))
    , m_classicTray(std::move(classicTray))
    , m_makeClassicIcon(std::move(makeClassicIcon))
{
    m_settle.setSingleShot(true);
    m_settle.setInterval(settle);
    connect(&m_settle, &QTimer::timeout, this, &AutoStatusItemHost::showClassicIcon);
    connect(m_item.get(), &StatusItemHost::clicked, this, &StatusItemHost::clicked);
    connect(m_item.get(), &StatusNotifierItem::hostedChanged, this,
            &AutoStatusItemHost::reconsider);
    connect(m_classicTray.get(), &ClassicTrayPresence::presentChanged, this,
            &AutoStatusItemHost::reconsider);
}

AutoStatusItemHost::~AutoStatusItemHost() = default;

void AutoStatusItemHost::start()
{
    m_itemStarted = m_item->start();
    reconsider();
}

void AutoStatusItemHost::reconsider()
{
    const bool panelShowsItem = m_itemStarted && m_item->isHosted();
    if (panelShowsItem || !m_classicTray->isPresent()) {
        m_settle.stop();
        if (m_classicIcon) {
            m_classicIcon.reset();
            qCDebug(lcAutoStatusItemHost).noquote()
                << (panelShowsItem ? QStringLiteral("A panel shows the item: dropped the classic "
                                                    "tray icon")
                                   : QStringLiteral("The classic tray left: dropped its icon"));
            Q_EMIT usesTrayIconChanged(false);
        }
        return;
    }
    if (!m_classicIcon && !m_settle.isActive())
        m_settle.start();
}

void AutoStatusItemHost::showClassicIcon()
{
    if (m_classicIcon || (m_itemStarted && m_item->isHosted()) || !m_classicTray->isPresent())
        return;
    m_classicIcon = m_makeClassicIcon();
    if (!m_classicIcon)
        return;
    connect(m_classicIcon.get(), &StatusItemHost::clicked, this, &StatusItemHost::clicked);
    m_classicIcon->setMenuEntries(m_entries);
    m_classicIcon->setPopupOpen(m_popupOpen);
    if (m_shown)
        m_classicIcon->show(m_shown->first, m_shown->second);
    qCDebug(lcAutoStatusItemHost) << "Showing the classic tray icon";
    Q_EMIT usesTrayIconChanged(true);
}

void AutoStatusItemHost::show(const MenubarChipPresentation &presentation,
                              const QString &accessibleLabel)
{
    m_shown = std::make_pair(presentation, accessibleLabel);
    m_item->show(presentation, accessibleLabel);
    if (m_classicIcon)
        m_classicIcon->show(presentation, accessibleLabel);
}

void AutoStatusItemHost::setMenuEntries(const QList<StatusItemMenuEntry> &entries)
{
    m_entries = entries;
    m_item->setMenuEntries(entries);
    if (m_classicIcon)
        m_classicIcon->setMenuEntries(entries);
}

void AutoStatusItemHost::setPopupOpen(bool open)
{
    m_popupOpen = open;
    m_item->setPopupOpen(open);
    if (m_classicIcon)
        m_classicIcon->setPopupOpen(open);
}

std::optional<QRect> AutoStatusItemHost::iconGeometry() const
{
    return m_classicIcon ? m_classicIcon->iconGeometry() : m_item->iconGeometry();
}

#include "platform/tray/StatusNotifierItemInterface.h"

#include <QPoint>

StatusNotifierItemInterface::StatusNotifierItemInterface(const QDBusObjectPath &menuPath,
                                                         QObject *parent)
    : QObject(parent)
    , m_menuPath(menuPath)
{
}

QString StatusNotifierItemInterface::category() const
{
    return QStringLiteral("ApplicationStatus");
}

QString StatusNotifierItemInterface::id() const
{
    return QStringLiteral("tarrow");
}

QString StatusNotifierItemInterface::status() const
{
    return QStringLiteral("Active");
}

SniToolTip StatusNotifierItemInterface::toolTip() const
{
    return SniToolTip {QString(), {}, m_toolTipHidden ? QString() : m_title, QString()};
}

void StatusNotifierItemInterface::setToolTipHidden(bool hidden)
{
    if (hidden == m_toolTipHidden)
        return;
    m_toolTipHidden = hidden;
    Q_EMIT NewTitle();
    Q_EMIT NewToolTip();
}

void StatusNotifierItemInterface::setTitle(const QString &title)
{
    if (title == m_title) {
        return;
    }
    m_title = title;
    Q_EMIT NewTitle();
    Q_EMIT NewToolTip();
}

void StatusNotifierItemInterface::setIconPixmap(const SniIconPixmapList &pixmaps)
{
    if (pixmaps == m_iconPixmap) {
        return;
    }
    m_iconPixmap = pixmaps;
    Q_EMIT NewIcon();
}

void StatusNotifierItemInterface::setLabel(const QString &label, const QString &guide)
{
    if (label == m_label && guide == m_labelGuide) {
        return;
    }
    m_label = label;
    m_labelGuide = guide;
    Q_EMIT XAyatanaNewLabel(m_label, m_labelGuide);
}

void StatusNotifierItemInterface::Activate(int x, int y)
{
    Q_EMIT activated(QPoint(x, y));
}

void StatusNotifierItemInterface::SecondaryActivate(int, int)
{
    // A middle click has no action of its own.
}

void StatusNotifierItemInterface::ContextMenu(int x, int y)
{
    // Panels ask for this when they do not show the exported menu themselves; the popup offers
    // everything the menu would.
    Q_EMIT activated(QPoint(x, y));
}

void StatusNotifierItemInterface::Scroll(int, const QString &) { }

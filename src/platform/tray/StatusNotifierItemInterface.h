#pragma once

#include "platform/tray/StatusNotifierTypes.h"

#include <QDBusObjectPath>
#include <QObject>

// The object exported at /StatusNotifierItem: the org.kde.StatusNotifierItem properties a panel
// reads, the calls it makes on clicks and scrolls, and the change signals. It holds only what
// was last shown; StatusNotifierItem decides what that is.
class StatusNotifierItemInterface : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category)
    Q_PROPERTY(QString Id READ id)
    Q_PROPERTY(QString Title READ title)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(int WindowId READ windowId)
    Q_PROPERTY(QString IconName READ emptyString)
    Q_PROPERTY(QString IconThemePath READ emptyString)
    Q_PROPERTY(SniIconPixmapList IconPixmap READ iconPixmap)
    Q_PROPERTY(QString OverlayIconName READ emptyString)
    Q_PROPERTY(SniIconPixmapList OverlayIconPixmap READ noPixmaps)
    Q_PROPERTY(QString AttentionIconName READ emptyString)
    Q_PROPERTY(SniIconPixmapList AttentionIconPixmap READ noPixmaps)
    Q_PROPERTY(QString AttentionMovieName READ emptyString)
    Q_PROPERTY(SniToolTip ToolTip READ toolTip)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu)
    Q_PROPERTY(QDBusObjectPath Menu READ menu)
    Q_PROPERTY(QString XAyatanaLabel READ label)
    Q_PROPERTY(QString XAyatanaLabelGuide READ labelGuide)
    Q_PROPERTY(uint XAyatanaOrderingIndex READ orderingIndex)

public:
    explicit StatusNotifierItemInterface(const QDBusObjectPath &menuPath,
                                         QObject *parent = nullptr);

    QString category() const;
    QString id() const;
    QString title() const { return m_toolTipHidden ? QString() : m_title; }
    QString status() const;
    int windowId() const { return 0; }
    QString emptyString() const { return {}; }
    SniIconPixmapList iconPixmap() const { return m_iconPixmap; }
    SniIconPixmapList noPixmaps() const { return {}; }
    SniToolTip toolTip() const;
    bool itemIsMenu() const { return false; }
    QDBusObjectPath menu() const { return m_menuPath; }
    QString label() const { return m_label; }
    QString labelGuide() const { return m_labelGuide; }
    uint orderingIndex() const { return 0; }

    // Each setter emits the matching D-Bus signal when the value changed.
    void setTitle(const QString &title);
    void setIconPixmap(const SniIconPixmapList &pixmaps);
    void setLabel(const QString &label, const QString &guide);
    // While hidden, the tool tip and the title are empty, so a panel shows no tool tip over the
    // open popup (XFCE's tray shows the title when the tool tip is empty).
    void setToolTipHidden(bool hidden);

    // Exported with QDBusConnection::ExportScriptableContents: only Q_SCRIPTABLE members and
    // the properties travel over D-Bus.
public Q_SLOTS:
    Q_SCRIPTABLE void Activate(int x, int y);
    Q_SCRIPTABLE void SecondaryActivate(int x, int y);
    Q_SCRIPTABLE void ContextMenu(int x, int y);
    Q_SCRIPTABLE void Scroll(int delta, const QString &orientation);

Q_SIGNALS:
    Q_SCRIPTABLE void NewTitle();
    Q_SCRIPTABLE void NewIcon();
    Q_SCRIPTABLE void NewToolTip();
    Q_SCRIPTABLE void NewStatus(const QString &status);
    Q_SCRIPTABLE void XAyatanaNewLabel(const QString &label, const QString &guide);

    // A panel asked for the item's main action at `position` (screen coordinates).
    void activated(const QPoint &position);

private:
    QDBusObjectPath m_menuPath;
    QString m_title;
    SniIconPixmapList m_iconPixmap;
    QString m_label;
    QString m_labelGuide;
    bool m_toolTipHidden = false;
};

#pragma once

#include "platform/tray/StatusItemHost.h"

#include <QDBusConnection>

class DBusMenuExporter;
class QDBusServiceWatcher;
class StatusNotifierItemInterface;

// The status item as an org.kde.StatusNotifierItem on the session bus: a square icon, the title
// and time as the label GNOME's AppIndicator extension shows, the accessible text as title and
// tool tip, and a small menu. It registers with org.kde.StatusNotifierWatcher whenever a watcher
// appears, so a panel that starts late or restarts still finds it.
class StatusNotifierItem : public StatusItemHost
{
    Q_OBJECT
    Q_PROPERTY(bool registered READ isRegistered NOTIFY registeredChanged)
    Q_PROPERTY(bool hosted READ isHosted NOTIFY hostedChanged)

public:
    static const QString watcherService; // "org.kde.StatusNotifierWatcher"
    static const QString itemObjectPath; // "/StatusNotifierItem"
    static const QString menuObjectPath; // "/MenuBar"

    explicit StatusNotifierItem(const QDBusConnection &connection, QObject *parent = nullptr);
    ~StatusNotifierItem() override;

    // Claims "org.kde.StatusNotifierItem-<pid>-<n>", exports the item and its menu and registers
    // with the watcher if one runs. False (and logged) when the bus refuses the name or objects.
    bool start();
    QString serviceName() const { return m_serviceName; }
    // True while a watcher has accepted the item.
    bool isRegistered() const { return m_registered; }
    // True while a watcher has accepted the item and a panel (a StatusNotifierHost) shows the
    // watcher's items. A watcher that cannot tell counts as having one.
    bool isHosted() const { return m_registered && m_hostPresent; }

    void show(const MenubarChipPresentation &presentation, const QString &accessibleLabel) override;
    void setMenuEntries(const QList<StatusItemMenuEntry> &entries) override;
    void setPopupOpen(bool open) override;

    // "title time" as the panel label: the visible texts of the chip joined by a space.
    static QString labelText(const MenubarChipPresentation &presentation);
    // The label with every digit as "0": as wide as the label whatever the digits, so the panel
    // keeps the item's width steady while the time counts.
    static QString labelGuide(const QString &label);

Q_SIGNALS:
    void registeredChanged(bool registered);
    void hostedChanged(bool hosted);

private Q_SLOTS:
    void onHostRegistered();
    void onHostUnregistered();

private:
    void registerWithWatcher();
    void askForHost();
    void setRegistered(bool registered);
    void setHostPresent(bool present);

    QDBusConnection m_connection;
    QString m_serviceName;
    StatusNotifierItemInterface *m_item = nullptr;
    DBusMenuExporter *m_menu = nullptr;
    QDBusServiceWatcher *m_watcher = nullptr;
    bool m_started = false;
    bool m_registered = false;
    bool m_hostPresent = true;
};

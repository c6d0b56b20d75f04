#pragma once

#include <QObject>

#include <memory>

// Whether a classic system tray (the XEmbed tray of X11 panels such as trayer, tint2 or i3bar, or
// the notification area of other systems) is there to take an icon, and when that changes: a tray
// may start after the application or go away with a restarted panel.
class ClassicTrayPresence : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool present READ isPresent NOTIFY presentChanged)

public:
    using QObject::QObject;

    virtual bool isPresent() const = 0;

    // The watcher for the running platform: the X11 tray selection on xcb, none on Wayland (where
    // only StatusNotifierItem hosts exist), the system's tray elsewhere.
    static std::unique_ptr<ClassicTrayPresence> forPlatform();

Q_SIGNALS:
    void presentChanged(bool present);
};

// A presence that never changes, for platforms whose tray is always there or never is.
class FixedTrayPresence final : public ClassicTrayPresence
{
    Q_OBJECT
public:
    explicit FixedTrayPresence(bool present, QObject *parent = nullptr)
        : ClassicTrayPresence(parent)
        , m_present(present)
    {
    }
    bool isPresent() const override { return m_present; }

private:
    bool m_present;
};

#pragma once

#include "platform/tray/ClassicTrayPresence.h"

#include <QAbstractNativeEventFilter>

#include <cstdint>
#include <memory>

struct xcb_connection_t;

// Follows the owner of the X11 selection "_NET_SYSTEM_TRAY_S0", which an XEmbed tray takes when
// it starts (announcing itself with a MANAGER client message to the root window) and loses when
// its window goes. Reads only what the X server tells; Qt's own QSystemTrayIcon decides once.
class XEmbedTrayWatcher final : public ClassicTrayPresence, public QAbstractNativeEventFilter
{
    Q_OBJECT
public:
    // Null when the application does not run on X11.
    static std::unique_ptr<XEmbedTrayWatcher> create();
    ~XEmbedTrayWatcher() override;

    bool isPresent() const override { return m_owner != 0; }
    // The tray's window, 0 when there is none.
    std::uint32_t owner() const { return m_owner; }

    bool nativeEventFilter(const QByteArray &eventType, void *message, qintptr *result) override;

private:
    explicit XEmbedTrayWatcher(xcb_connection_t *connection);
    std::uint32_t internAtom(const char *name) const;
    // Adds `mask` to the events this client selects on `window`, keeping those Qt selected.
    void addEventMask(std::uint32_t window, std::uint32_t mask) const;
    void refreshOwner();

    xcb_connection_t *m_connection;
    std::uint32_t m_root = 0;
    std::uint32_t m_selection = 0;
    std::uint32_t m_manager = 0;
    std::uint32_t m_owner = 0;
};

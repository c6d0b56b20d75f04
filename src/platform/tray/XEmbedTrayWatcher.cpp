#include "platform/tray/XEmbedTrayWatcher.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QLoggingCategory>

#include <cstdlib>
#include <xcb/xcb.h>

Q_LOGGING_CATEGORY(lcXEmbedTrayWatcher, "XEmbedTrayWatcher")

namespace {

// Frees an xcb reply when it goes out of scope.
template<typename Reply>
std::unique_ptr<Reply, decltype(&std::free)> owned(Reply *reply)
{
    return {reply, &std::free};
}

} // namespace

std::unique_ptr<XEmbedTrayWatcher> XEmbedTrayWatcher::create()
{
    auto *x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    if (!x11 || !x11->connection())
        return nullptr;
    return std::unique_ptr<XEmbedTrayWatcher>(new XEmbedTrayWatcher(x11->connection()));
}

XEmbedTrayWatcher::XEmbedTrayWatcher(xcb_connection_t *connection)
    : m_connection(connection)
{
    const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
    m_root = screen->root;
    // The tray of the first screen: with several X screens, panels still dock on screen 0.
    m_selection = internAtom("_NET_SYSTEM_TRAY_S0");
    m_manager = internAtom("MANAGER");
    // A new tray announces itself to the root window's StructureNotify listeners.
    addEventMask(m_root, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    QCoreApplication::instance()->installNativeEventFilter(this);
    refreshOwner();
    if (!m_owner)
        qCDebug(lcXEmbedTrayWatcher) << "No XEmbed tray";
}

XEmbedTrayWatcher::~XEmbedTrayWatcher()
{
    if (QCoreApplication *app = QCoreApplication::instance())
        app->removeNativeEventFilter(this);
}

std::uint32_t XEmbedTrayWatcher::internAtom(const char *name) const
{
    const auto reply = owned(xcb_intern_atom_reply(
        m_connection, xcb_intern_atom(m_connection, false, std::uint16_t(qstrlen(name)), name),
        nullptr));
    return reply ? reply->atom : std::uint32_t(XCB_ATOM_NONE);
}

void XEmbedTrayWatcher::addEventMask(std::uint32_t window, std::uint32_t mask) const
{
    const auto attributes = owned(xcb_get_window_attributes_reply(
        m_connection, xcb_get_window_attributes(m_connection, window), nullptr));
    if (!attributes)
        return;
    const std::uint32_t value = attributes->your_event_mask | mask;
    xcb_change_window_attributes(m_connection, window, XCB_CW_EVENT_MASK, &value);
    xcb_flush(m_connection);
}

void XEmbedTrayWatcher::refreshOwner()
{
    std::uint32_t owner = XCB_WINDOW_NONE;
    // The owner's window may go between asking for it and listening to it: ask again then.
    for (int attempt = 0; attempt < 3; ++attempt) {
        const auto reply = owned(xcb_get_selection_owner_reply(
            m_connection, xcb_get_selection_owner(m_connection, m_selection), nullptr));
        owner = reply ? reply->owner : std::uint32_t(XCB_WINDOW_NONE);
        if (owner == XCB_WINDOW_NONE || owner == m_owner)
            break;
        addEventMask(owner, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
        const auto again = owned(xcb_get_selection_owner_reply(
            m_connection, xcb_get_selection_owner(m_connection, m_selection), nullptr));
        if (again && again->owner == owner)
            break;
    }
    if (owner == m_owner)
        return;
    const bool wasPresent = isPresent();
    m_owner = owner;
    qCDebug(lcXEmbedTrayWatcher).noquote()
        << (owner ? QStringLiteral("An XEmbed tray is there (window 0x%1)").arg(owner, 0, 16)
                  : QStringLiteral("No XEmbed tray"));
    if (wasPresent != isPresent())
        Q_EMIT presentChanged(isPresent());
}

bool XEmbedTrayWatcher::nativeEventFilter(const QByteArray &eventType, void *message, qintptr *)
{
    if (eventType != "xcb_generic_event_t")
        return false;
    const auto *event = static_cast<const xcb_generic_event_t *>(message);
    switch (event->response_type & ~0x80) {
    case XCB_CLIENT_MESSAGE: {
        const auto *client = reinterpret_cast<const xcb_client_message_event_t *>(event);
        if (client->type == m_manager && client->format == 32
            && client->data.data32[1] == m_selection)
            refreshOwner();
        break;
    }
    case XCB_DESTROY_NOTIFY: {
        const auto *destroyed = reinterpret_cast<const xcb_destroy_notify_event_t *>(event);
        if (m_owner && destroyed->window == m_owner)
            refreshOwner();
        break;
    }
    default:
        break;
    }
    return false; // Qt handles the event as well
}

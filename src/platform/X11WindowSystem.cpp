#include "X11WindowSystem.h"

#include <QDeadlineTimer>
#include <QGuiApplication>
#include <QThread>
#include <QWidget>
#include <cstdlib>
#include <cstring>
#include <xcb/xcb.h>

namespace Pelorin {

namespace {

// _NET_WM_STATE client-message action.
constexpr std::uint32_t NetWmStateAdd = 1;
// Source indication of a normal application in EWMH client messages.
constexpr std::uint32_t SourceApplication = 1;
constexpr std::uint32_t AllDesktops = 0xFFFFFFFF;
// How long a window manager may take to release a withdrawn window.
constexpr int ReleaseTimeoutMs = 1000;

template <typename Reply> struct FreeReply {
    void operator()(Reply* reply) const { std::free(reply); }
};
template <typename Reply> using ReplyPtr = std::unique_ptr<Reply, FreeReply<Reply>>;

} // namespace

X11WindowSystem::X11WindowSystem(xcb_connection_t* connection, std::uint32_t root)
    : m_connection(connection), m_root(root) {}

X11Display ApplicationX11Display() {
    auto* app = qobject_cast<QGuiApplication*>(QCoreApplication::instance());
    if (app == nullptr)
        return {};
    auto* x11 = app->nativeInterface<QNativeInterface::QX11Application>();
    if (x11 == nullptr || x11->connection() == nullptr)
        return {};
    xcb_connection_t* connection = x11->connection();
    const xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    if (screens.rem == 0)
        return {};
    return {connection, screens.data->root};
}

std::unique_ptr<X11WindowSystem> X11WindowSystem::FromApplication() {
    const X11Display display = ApplicationX11Display();
    if (display.connection == nullptr)
        return nullptr;
    return std::make_unique<X11WindowSystem>(display.connection, display.root);
}

std::uint32_t X11WindowSystem::Atom(const char* name) {
    const QByteArray key(name);
    const auto cached = m_atoms.constFind(key);
    if (cached != m_atoms.cend())
        return *cached;
    const auto cookie =
        xcb_intern_atom(m_connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    ReplyPtr<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(m_connection, cookie, nullptr));
    std::uint32_t atom = XCB_ATOM_NONE;
    if (reply)
        atom = reply->atom;
    if (atom != XCB_ATOM_NONE)
        m_atoms.insert(key, atom);
    return atom;
}

QList<std::uint32_t> X11WindowSystem::WindowListProperty(std::uint32_t window,
                                                         std::uint32_t property,
                                                         std::uint32_t type) {
    QList<std::uint32_t> values;
    const auto cookie = xcb_get_property(m_connection, 0, window, property, type, 0, 4096);
    ReplyPtr<xcb_get_property_reply_t> reply(xcb_get_property_reply(m_connection, cookie, nullptr));
    if (!reply || reply->format != 32 || reply->type != type)
        return values;
    const int count = xcb_get_property_value_length(reply.get()) / 4;
    const auto* data = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
    values.reserve(count);
    for (int i = 0; i < count; ++i)
        values.append(data[i]);
    return values;
}

bool X11WindowSystem::HasWindowType(std::uint32_t window, std::uint32_t type) {
    return WindowListProperty(window, Atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM).contains(type);
}

bool X11WindowSystem::IsMapped(std::uint32_t window) {
    const auto cookie = xcb_get_window_attributes(m_connection, window);
    ReplyPtr<xcb_get_window_attributes_reply_t> reply(
        xcb_get_window_attributes_reply(m_connection, cookie, nullptr));
    return reply && reply->map_state != XCB_MAP_STATE_UNMAPPED;
}

void X11WindowSystem::SendToRoot(std::uint32_t window, std::uint32_t messageType,
                                 const std::uint32_t (&data)[5]) {
    xcb_client_message_event_t event;
    std::memset(&event, 0, sizeof event);
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = messageType;
    std::memcpy(event.data.data32, data, sizeof data);
    xcb_send_event(m_connection, 0, m_root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&event));
}

bool X11WindowSystem::SetOpacityProperty(WId window, quint32 opacity) {
    const std::uint32_t property = Atom("_NET_WM_WINDOW_OPACITY");
    if (window == 0 || property == XCB_ATOM_NONE)
        return false;
    const std::uint32_t value = opacity;
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, static_cast<std::uint32_t>(window),
                        property, XCB_ATOM_CARDINAL, 32, 1, &value);
    xcb_flush(m_connection);
    return true;
}

WId X11WindowSystem::FindDesktopWindow() {
    const std::uint32_t desktopType = Atom("_NET_WM_WINDOW_TYPE_DESKTOP");
    // Managed windows first: under a window manager the desktop is one of its clients.
    const QList<std::uint32_t> clients =
        WindowListProperty(m_root, Atom("_NET_CLIENT_LIST"), XCB_ATOM_WINDOW);
    for (const std::uint32_t client : clients) {
        if (HasWindowType(client, desktopType))
            return client;
    }
    // Without one, the desktop is a plain child of the root window.
    const auto cookie = xcb_query_tree(m_connection, m_root);
    ReplyPtr<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(m_connection, cookie, nullptr));
    if (!tree)
        return 0;
    const xcb_window_t* children = xcb_query_tree_children(tree.get());
    const int count = xcb_query_tree_children_length(tree.get());
    for (int i = 0; i < count; ++i) {
        if (HasWindowType(children[i], desktopType))
            return children[i];
    }
    return 0;
}

std::uint32_t X11WindowSystem::ParentOf(std::uint32_t window) {
    const auto cookie = xcb_query_tree(m_connection, window);
    ReplyPtr<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(m_connection, cookie, nullptr));
    return tree ? tree->parent : 0;
}

bool X11WindowSystem::ReparentInto(QWidget* widget, WId parent) {
    if (widget == nullptr || parent == 0)
        return false;
    const auto window = static_cast<std::uint32_t>(widget->winId());
    QWindow* handle = widget->windowHandle();
    if (handle == nullptr)
        return false;
    QWindow* host = handle->parent();
    if (host == nullptr || host->winId() != parent) {
        host = QWindow::fromWinId(parent);
        if (host == nullptr)
            return false;
        // The foreign window must outlive the widget's window, which becomes its child.
        QObject::connect(widget, &QObject::destroyed, host, &QObject::deleteLater);
    }
    // A window the window manager still holds would be taken back to the root when the manager
    // notices it left its frame; withdraw it first and wait until the manager let it go.
    const bool wasVisible = widget->isVisible();
    if (wasVisible) {
        widget->hide();
        xcb_flush(m_connection);
        QDeadlineTimer deadline(ReleaseTimeoutMs);
        while (ParentOf(window) != m_root && !deadline.hasExpired())
            QThread::msleep(5);
    }
    handle->setParent(host);
    if (wasVisible)
        widget->show();
    xcb_flush(m_connection);
    return ParentOf(window) == parent;
}

bool X11WindowSystem::KeepBelowOnAllDesktops(WId id) {
    const auto window = static_cast<std::uint32_t>(id);
    const std::uint32_t state = Atom("_NET_WM_STATE");
    const std::uint32_t below = Atom("_NET_WM_STATE_BELOW");
    const std::uint32_t skipTaskbar = Atom("_NET_WM_STATE_SKIP_TASKBAR");
    const std::uint32_t skipPager = Atom("_NET_WM_STATE_SKIP_PAGER");
    const std::uint32_t desktop = Atom("_NET_WM_DESKTOP");
    if (window == 0 || state == XCB_ATOM_NONE || desktop == XCB_ATOM_NONE)
        return false;

    if (IsMapped(window)) {
        // A mapped window's state belongs to the window manager: ask it.
        SendToRoot(window, state, {NetWmStateAdd, below, skipTaskbar, SourceApplication, 0});
        SendToRoot(window, state, {NetWmStateAdd, skipPager, 0, SourceApplication, 0});
        SendToRoot(window, desktop, {AllDesktops, SourceApplication, 0, 0, 0});
    } else {
        // Before mapping the client sets the hints itself; Qt merges its own into them.
        QList<std::uint32_t> atoms = WindowListProperty(window, state, XCB_ATOM_ATOM);
        for (const std::uint32_t atom : {below, skipTaskbar, skipPager}) {
            if (!atoms.contains(atom))
                atoms.append(atom);
        }
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, window, state, XCB_ATOM_ATOM, 32,
                            static_cast<std::uint32_t>(atoms.size()), atoms.constData());
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, window, desktop, XCB_ATOM_CARDINAL,
                            32, 1, &AllDesktops);
    }
    xcb_flush(m_connection);
    return true;
}

} // namespace Pelorin

#pragma once

// A second client of the X server that only looks: window properties, shape and parents as the
// window manager sees them.
#include <QRegion>
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>
#include <vector>
#include <xcb/shape.h>
#include <xcb/xcb.h>

namespace Pelorin::Testing {

class X11Probe {
public:
    X11Probe() : m_connection(xcb_connect(nullptr, nullptr)) {}
    ~X11Probe() { xcb_disconnect(m_connection); }
    X11Probe(const X11Probe&) = delete;
    X11Probe& operator=(const X11Probe&) = delete;

    bool Ok() const { return xcb_connection_has_error(m_connection) == 0; }
    xcb_connection_t* Connection() const { return m_connection; }
    xcb_window_t Root() const {
        return xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
    }

    xcb_atom_t Atom(const char* name) const {
        const auto cookie =
            xcb_intern_atom(m_connection, 0, static_cast<uint16_t>(std::strlen(name)), name);
        std::unique_ptr<xcb_intern_atom_reply_t, decltype(&std::free)> reply(
            xcb_intern_atom_reply(m_connection, cookie, nullptr), &std::free);
        return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
    }

    std::vector<uint32_t> Property(xcb_window_t window, const char* name, xcb_atom_t type) const {
        const auto cookie = xcb_get_property(m_connection, 0, window, Atom(name), type, 0, 1024);
        std::unique_ptr<xcb_get_property_reply_t, decltype(&std::free)> reply(
            xcb_get_property_reply(m_connection, cookie, nullptr), &std::free);
        std::vector<uint32_t> values;
        if (!reply || reply->format != 32 || reply->type != type)
            return values;
        const auto* data = static_cast<const uint32_t*>(xcb_get_property_value(reply.get()));
        values.assign(data, data + xcb_get_property_value_length(reply.get()) / 4);
        return values;
    }

    std::optional<uint32_t> Opacity(xcb_window_t window) const {
        const auto values = Property(window, "_NET_WM_WINDOW_OPACITY", XCB_ATOM_CARDINAL);
        if (values.empty())
            return std::nullopt;
        return values.front();
    }

    bool HasState(xcb_window_t window, const char* state) const {
        const auto values = Property(window, "_NET_WM_STATE", XCB_ATOM_ATOM);
        return std::find(values.begin(), values.end(), Atom(state)) != values.end();
    }

    // The window's bounding shape, in its own coordinates.
    QRegion BoundingShape(xcb_window_t window) const {
        const auto cookie = xcb_shape_get_rectangles(m_connection, window, XCB_SHAPE_SK_BOUNDING);
        std::unique_ptr<xcb_shape_get_rectangles_reply_t, decltype(&std::free)> reply(
            xcb_shape_get_rectangles_reply(m_connection, cookie, nullptr), &std::free);
        QRegion region;
        if (!reply)
            return region;
        const xcb_rectangle_t* rects = xcb_shape_get_rectangles_rectangles(reply.get());
        const int count = xcb_shape_get_rectangles_rectangles_length(reply.get());
        for (int i = 0; i < count; ++i)
            region += QRect(rects[i].x, rects[i].y, rects[i].width, rects[i].height);
        return region;
    }

    bool IsShaped(xcb_window_t window) const {
        const auto cookie = xcb_shape_query_extents(m_connection, window);
        std::unique_ptr<xcb_shape_query_extents_reply_t, decltype(&std::free)> reply(
            xcb_shape_query_extents_reply(m_connection, cookie, nullptr), &std::free);
        return reply && reply->bounding_shaped != 0;
    }

    xcb_window_t Parent(xcb_window_t window) const {
        const auto cookie = xcb_query_tree(m_connection, window);
        std::unique_ptr<xcb_query_tree_reply_t, decltype(&std::free)> reply(
            xcb_query_tree_reply(m_connection, cookie, nullptr), &std::free);
        return reply ? reply->parent : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
    }

    // A plain top-level window of another client, as a host for an embedded skin.
    xcb_window_t CreateWindow(int width, int height) {
        const xcb_window_t window = xcb_generate_id(m_connection);
        const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
        xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, window, screen->root, 0, 0,
                          static_cast<uint16_t>(width), static_cast<uint16_t>(height), 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, 0, nullptr);
        xcb_map_window(m_connection, window);
        xcb_flush(m_connection);
        return window;
    }

    // What a window manager sends when the user clicks a window's close control.
    void RequestClose(xcb_window_t window) {
        xcb_client_message_event_t event{};
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = 32;
        event.window = window;
        event.type = Atom("WM_PROTOCOLS");
        event.data.data32[0] = Atom("WM_DELETE_WINDOW");
        event.data.data32[1] = XCB_CURRENT_TIME;
        xcb_send_event(m_connection, 0, window, XCB_EVENT_MASK_NO_EVENT,
                       reinterpret_cast<const char*>(&event));
        xcb_flush(m_connection);
    }

    // A mapped full-screen window of type "desktop", as a file manager's desktop would be.
    xcb_window_t CreateDesktopWindow() {
        const xcb_window_t window = xcb_generate_id(m_connection);
        const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
        xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, window, screen->root, 0, 0,
                          screen->width_in_pixels, screen->height_in_pixels, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, 0, nullptr);
        const xcb_atom_t type = Atom("_NET_WM_WINDOW_TYPE_DESKTOP");
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, window,
                            Atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, 32, 1, &type);
        xcb_map_window(m_connection, window);
        xcb_flush(m_connection);
        return window;
    }

    void Destroy(xcb_window_t window) {
        xcb_destroy_window(m_connection, window);
        xcb_flush(m_connection);
    }

private:
    xcb_connection_t* m_connection;
};

} // namespace Pelorin::Testing

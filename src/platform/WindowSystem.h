#pragma once

#include <QString>
#include <QWindow>
#include <memory>

class QWidget;

namespace Pelorin {

// What the program needs of the window system beyond Qt: the opacity property that expresses
// "layered but opaque", the desktop window, and the hints that keep a window on the desktop.
// One implementation talks X11 through xcb; the null one (offscreen, Wayland without XWayland)
// does nothing and says so.
class WindowSystem {
public:
    virtual ~WindowSystem() = default;

    // False for the null implementation: nothing below has any effect then.
    virtual bool IsAvailable() const = 0;
    // "X11", or "not available".
    virtual QString Name() const = 0;

    // Sets the window's opacity property, 0 (clear) to 0xFFFFFFFF (opaque), kept even when opaque.
    virtual bool SetOpacityProperty(WId window, quint32 opacity) = 0;

    // The window of type "desktop" (the one that shows the desktop icons), 0 when there is none.
    virtual WId FindDesktopWindow() = 0;

    // Makes `widget`'s window a child of the foreign window `parent`.
    virtual bool ReparentInto(QWidget* widget, WId parent) = 0;

    // Keeps the window below all others, out of the task bar and the pager, on every desktop.
    // Works on shown and hidden windows alike.
    virtual bool KeepBelowOnAllDesktops(WId window) = 0;
};

// The X11 implementation when Qt runs on xcb, else the null one.
std::unique_ptr<WindowSystem> CreateWindowSystem();

} // namespace Pelorin

#pragma once

#include "WindowSystem.h"

#include <QHash>
#include <QList>
#include <cstdint>

struct xcb_connection_t;

namespace Pelorin {

// Qt's own xcb connection and the root window of its default screen, shared by the X11 parts of
// the program; `connection` is null when Qt does not run on xcb.
struct X11Display {
    xcb_connection_t* connection = nullptr;
    std::uint32_t root = 0;
};
X11Display ApplicationX11Display();

// The window system as X11 and its window manager (EWMH hints) see it, on Qt's own xcb
// connection.
class X11WindowSystem final : public WindowSystem {
public:
    // `connection` is Qt's; `root` the root window of its default screen.
    X11WindowSystem(xcb_connection_t* connection, std::uint32_t root);

    // The X11 window system of the running application; null when Qt does not run on xcb.
    static std::unique_ptr<X11WindowSystem> FromApplication();

    bool IsAvailable() const override { return true; }
    QString Name() const override { return QStringLiteral("X11"); }
    bool SetOpacityProperty(WId window, quint32 opacity) override;
    WId FindDesktopWindow() override;
    bool ReparentInto(QWidget* widget, WId parent) override;
    bool KeepBelowOnAllDesktops(WId window) override;

private:
    std::uint32_t Atom(const char* name);
    QList<std::uint32_t> WindowListProperty(std::uint32_t window, std::uint32_t property,
                                            std::uint32_t type);
    bool HasWindowType(std::uint32_t window, std::uint32_t type);
    bool IsMapped(std::uint32_t window);
    std::uint32_t ParentOf(std::uint32_t window);
    void SendToRoot(std::uint32_t window, std::uint32_t messageType,
                    const std::uint32_t (&data)[5]);

    xcb_connection_t* m_connection;
    std::uint32_t m_root;
    QHash<QByteArray, std::uint32_t> m_atoms;
};

} // namespace Pelorin

#pragma once

#include "hotkeys/HotkeySystem.h"

#include <QAbstractNativeEventFilter>
#include <QList>
#include <cstdint>
#include <memory>
#include <utility>

struct xcb_connection_t;
struct _XCBKeySymbols;

namespace Pelorin {

// Global hotkeys on X11: each registration grabs its key on the root window, once for every
// combination of the lock modifiers (Num Lock, Caps Lock, Scroll Lock) so that they never stop a
// shortcut. The X server refusing any of the grabs (another client holds the key) refuses the
// registration and releases the grabs it did get. X lets one client grab a key twice, so the
// combinations this process holds are kept here and a second one is refused as the server would
// refuse another client's. A key press on a grab goes back to (window, modifiers, key) and on to
// the window's procedure.
class X11HotkeySystem final : public HotkeySystem, private QAbstractNativeEventFilter {
public:
    // Null when the application does not run on X11.
    static std::unique_ptr<X11HotkeySystem> FromApplication();
    X11HotkeySystem(xcb_connection_t* connection, std::uint32_t root);
    ~X11HotkeySystem() override;
    X11HotkeySystem(const X11HotkeySystem&) = delete;
    X11HotkeySystem& operator=(const X11HotkeySystem&) = delete;

    bool RegisterHotKey(WindowHandle hwnd, int id, int modifiers, int vkey) override;
    bool UnregisterHotKey(WindowHandle hwnd, int id) override;

private:
    struct Registration {
        WindowHandle hwnd = 0;
        int id = 0;
        int modifiers = 0;
        int vkey = 0;
        std::uint16_t xModifiers = 0;
        QList<std::uint8_t> keycodes; // empty: a key this keyboard does not have
        // Every grab made for it: keycode and modifiers, the lock variants included.
        QList<std::pair<std::uint8_t, std::uint16_t>> grabs;
    };

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
    QList<std::uint8_t> KeycodesOf(std::uint32_t keySym) const;
    // The lock modifier combinations every grab is made for, read once from the server.
    const QList<std::uint16_t>& LockVariants();
    void Ungrab(const Registration& registration);

    xcb_connection_t* m_connection;
    std::uint32_t m_root;
    _XCBKeySymbols* m_symbols;
    QList<Registration> m_registrations;
    QList<std::uint16_t> m_lockVariants;
};

} // namespace Pelorin

#pragma once

#include "hotkeys/WindowProcedures.h"

#include <QString>
#include <memory>

namespace Pelorin {

// System-wide hotkeys as the desktop offers them: a combination (modifier bits Alt 1, Control 2,
// Shift 4, Win 8 and a Windows virtual-key code, the program's own vocabulary) registered for a
// window under an id, and a press of it delivered to that window's procedure as WM_HOTKEY. The
// X11 implementation grabs keys on the root window; the null one, for displays without global
// keys, refuses every registration.
class HotkeySystem {
public:
    // The failures a registration or its removal reports, with the system's texts.
    enum Error : int {
        NoError = 0,
        NotSupported = 50,
        AlreadyRegistered = 1409,
        NotRegistered = 1419,
    };

    virtual ~HotkeySystem();

    // True when registered; otherwise LastError() tells why. A combination is held once in the
    // whole desktop: one that this process or another program holds already is refused.
    virtual bool RegisterHotKey(WindowHandle hwnd, int id, int modifiers, int vkey) = 0;
    // False when the window holds no hotkey under that id.
    virtual bool UnregisterHotKey(WindowHandle hwnd, int id) = 0;
    // The error of the last call that failed.
    int LastError() const { return m_lastError; }
    // The system's text for an error number; empty for numbers it does not know.
    virtual QString ErrorText(int number) const;

    // The hotkey system of this process: the running display's, made on first use.
    static HotkeySystem& Current();
    // Puts `system` in place of the current one (tests) and returns the one it replaced.
    static std::unique_ptr<HotkeySystem> Replace(std::unique_ptr<HotkeySystem> system);

protected:
    void SetLastError(int number) { m_lastError = number; }
    // A press of a registered combination: sent to the window's procedure, from the event loop
    // rather than from inside the caller, so the code it runs may open dialogs or close windows.
    static void Deliver(WindowHandle hwnd, int id, int modifiers, int vkey);

private:
    int m_lastError = NoError;
};

// The hotkey system for the running application's display (defined with the implementations).
std::unique_ptr<HotkeySystem> CreateHotkeySystem();

} // namespace Pelorin

#pragma once

#include <QtGlobal>

namespace Pelorin {

// A skin window as the hotkey machinery names it: its native window id.
using WindowHandle = quintptr;

// The per-window message handler chain that hotkey dispatch runs through. Every window starts
// with DefWindowProc; a handler installed with SetWindowProc replaces it and may pass messages on
// to the one it replaced. Keeping the chain as plain, comparable function pointers lets the
// hotkey code see whether it already sits in a window's chain, and lets tests install a handler
// of their own and watch what reaches it.
namespace WindowProcedures {

using WindowProc = qintptr (*)(WindowHandle hwnd, quint32 message, quintptr wParam, qintptr lParam);

// The message a registered hotkey sends to its window: wParam is the hotkey id, the low word of
// lParam the modifier bits and the high word the virtual-key code.
inline constexpr quint32 WM_HOTKEY = 0x312;

// The handler at the end of every chain: it does nothing and answers 0.
qintptr DefWindowProc(WindowHandle hwnd, quint32 message, quintptr wParam, qintptr lParam);

// The window's current handler (DefWindowProc for a window nobody changed).
WindowProc GetWindowProc(WindowHandle hwnd);
// Installs `proc` and returns the handler it replaced. Installing DefWindowProc forgets the
// window.
WindowProc SetWindowProc(WindowHandle hwnd, WindowProc proc);
// Calls `proc` (DefWindowProc when null).
qintptr CallWindowProc(WindowProc proc, WindowHandle hwnd, quint32 message, quintptr wParam,
                       qintptr lParam);
// Sends a message to the window's current handler.
qintptr SendMessage(WindowHandle hwnd, quint32 message, quintptr wParam, qintptr lParam);

// lParam of WM_HOTKEY.
inline constexpr qintptr HotkeyLParam(int modifiers, int vkey) {
    return static_cast<qintptr>((static_cast<quint32>(vkey & 0xFFFF) << 16) |
                                static_cast<quint32>(modifiers & 0xFFFF));
}
inline constexpr int LowWord(qintptr value) {
    return static_cast<int>(static_cast<quint32>(value) & 0xFFFF);
}
inline constexpr int HighWord(qintptr value) {
    return static_cast<int>((static_cast<quint32>(value) >> 16) & 0xFFFF);
}

} // namespace WindowProcedures
} // namespace Pelorin

#include "hotkeys/WindowProcedures.h"

#include <QHash>

namespace Pelorin::WindowProcedures {

namespace {

QHash<WindowHandle, WindowProc>& Installed() {
    static QHash<WindowHandle, WindowProc> installed;
    return installed;
}

} // namespace

qintptr DefWindowProc(WindowHandle, quint32, quintptr, qintptr) {
    return 0;
}

WindowProc GetWindowProc(WindowHandle hwnd) {
    return Installed().value(hwnd, &DefWindowProc);
}

WindowProc SetWindowProc(WindowHandle hwnd, WindowProc proc) {
    const WindowProc previous = GetWindowProc(hwnd);
    if (proc == nullptr || proc == &DefWindowProc)
        Installed().remove(hwnd);
    else
        Installed().insert(hwnd, proc);
    return previous;
}

qintptr CallWindowProc(WindowProc proc, WindowHandle hwnd, quint32 message, quintptr wParam,
                       qintptr lParam) {
    if (proc == nullptr)
        proc = &DefWindowProc;
    return proc(hwnd, message, wParam, lParam);
}

qintptr SendMessage(WindowHandle hwnd, quint32 message, quintptr wParam, qintptr lParam) {
    return CallWindowProc(GetWindowProc(hwnd), hwnd, message, wParam, lParam);
}

} // namespace Pelorin::WindowProcedures

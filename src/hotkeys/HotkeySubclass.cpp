#include "hotkeys/HotkeySubclass.h"

#include "base/Log.h"
#include "hotkeys/HotkeySystem.h"
#include "hotkeys/VBHotkey.h"

#include <QMap>
#include <QPointer>
#include <memory>

namespace Pelorin::HotkeySubclass {

namespace {

struct State {
    std::unique_ptr<QMap<QString, ApiSubclassedWindow>> subclassedWindows;
    std::unique_ptr<QMap<QString, QPointer<VBHotkey>>> activeHotkeys;
    QString usedCombinations;
};

State& TheState() {
    static State state;
    return state;
}

QString WindowKey(WindowHandle hwnd) {
    return QStringLiteral("hwnd:%1").arg(hwnd);
}

// The most of a system error text that is kept.
constexpr int ErrorTextBuffer = 500;

} // namespace

void SubclassWindow(WindowHandle hwnd) {
    State& s = TheState();
    ApiSubclassedWindow window;
    if (WindowProcedures::GetWindowProc(hwnd) == &HotkeyWindowProc)
        return;
    window.Sethwnd(hwnd);
    window.SetOldWndProc(WindowProcedures::GetWindowProc(hwnd));
    if (WindowProcedures::SetWindowProc(hwnd, &HotkeyWindowProc) != nullptr)
        window.SetNewWndProc(WindowProcedures::GetWindowProc(hwnd));
    const bool failed = window.OldWndProc() == window.NewWndProc();
    qCDebug(lcHotkeys).noquote() << QStringLiteral("Window : %1%2")
                                        .arg(hwnd)
                                        .arg(failed ? QLatin1String(" subclassin failed")
                                                    : QLatin1String(" subclassed OK"));
    if (!s.subclassedWindows)
        s.subclassedWindows = std::make_unique<QMap<QString, ApiSubclassedWindow>>();
    s.subclassedWindows->insert(WindowKey(hwnd), window);
}

void UnsubclassWindow(WindowHandle hwnd) {
    State& s = TheState();
    const QString key = WindowKey(hwnd);
    if (s.subclassedWindows) {
        const auto found = s.subclassedWindows->constFind(key);
        if (found != s.subclassedWindows->cend()) {
            WindowProcedures::SetWindowProc(hwnd, found->OldWndProc());
            s.subclassedWindows->remove(key);
        }
    }
    if (s.activeHotkeys) {
        for (auto it = s.activeHotkeys->begin(); it != s.activeHotkeys->end();) {
            if (it.key().contains(key))
                it = s.activeHotkeys->erase(it);
            else
                ++it;
        }
    }
    if (s.subclassedWindows && s.subclassedWindows->isEmpty())
        s.subclassedWindows.reset();
    if (s.activeHotkeys && s.activeHotkeys->isEmpty())
        s.activeHotkeys.reset();
}

qintptr HotkeyWindowProc(WindowHandle hwnd, quint32 message, quintptr wParam, qintptr lParam) {
    State& s = TheState();
    const QString key = WindowKey(hwnd);
    WindowProcedures::WindowProc oldProc = nullptr;
    if (s.subclassedWindows) {
        const auto found = s.subclassedWindows->constFind(key);
        if (found != s.subclassedWindows->cend())
            oldProc = found->OldWndProc();
    }
    if (message == WindowProcedures::WM_HOTKEY) {
        const int vk = WindowProcedures::HighWord(lParam);
        const int modifiers = WindowProcedures::LowWord(lParam);
        if (VBHotkey* control =
                ActiveHotkey(key + QStringLiteral("VK:%1Mod:%2").arg(vk).arg(modifiers)))
            control->CheckHotkey(vk, modifiers);
    }
    if (oldProc == nullptr)
        return WindowProcedures::DefWindowProc(hwnd, message, wParam, lParam);
    return WindowProcedures::CallWindowProc(oldProc, hwnd, message, wParam, lParam);
}

QString LastDllErrorText() {
    const HotkeySystem& system = HotkeySystem::Current();
    return system.ErrorText(system.LastError()).left(ErrorTextBuffer).trimmed();
}

QString& UsedCombinations() {
    return TheState().usedCombinations;
}

VBHotkey* ActiveHotkey(const QString& uniqueKey) {
    const State& s = TheState();
    if (!s.activeHotkeys)
        return nullptr;
    return s.activeHotkeys->value(uniqueKey).data();
}

void AddActiveHotkey(const QString& uniqueKey, VBHotkey* control) {
    State& s = TheState();
    if (!s.activeHotkeys)
        s.activeHotkeys = std::make_unique<QMap<QString, QPointer<VBHotkey>>>();
    // A key listed already keeps its control, as a keyed collection refuses a second entry.
    if (!s.activeHotkeys->contains(uniqueKey))
        s.activeHotkeys->insert(uniqueKey, control);
}

const ApiSubclassedWindow* SubclassedWindow(WindowHandle hwnd) {
    const State& s = TheState();
    if (!s.subclassedWindows)
        return nullptr;
    const auto found = s.subclassedWindows->constFind(WindowKey(hwnd));
    return found == s.subclassedWindows->cend() ? nullptr : &*found;
}

bool HasSubclassedWindows() {
    return TheState().subclassedWindows != nullptr;
}

bool HasActiveHotkeys() {
    return TheState().activeHotkeys != nullptr;
}

int ActiveHotkeyCount() {
    const State& s = TheState();
    return s.activeHotkeys ? static_cast<int>(s.activeHotkeys->size()) : 0;
}

} // namespace Pelorin::HotkeySubclass

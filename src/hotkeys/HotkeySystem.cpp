#include "hotkeys/HotkeySystem.h"

#include <QCoreApplication>
#include <QMetaObject>

namespace Pelorin {

namespace {

std::unique_ptr<HotkeySystem>& Slot() {
    static std::unique_ptr<HotkeySystem> system;
    return system;
}

} // namespace

HotkeySystem::~HotkeySystem() = default;

QString HotkeySystem::ErrorText(int number) const {
    switch (number) {
    case AlreadyRegistered:
        return QStringLiteral("Hot key is already registered");
    case NotRegistered:
        return QStringLiteral("Hot key is not registered");
    case NotSupported:
        return QStringLiteral("Global hotkeys are not supported on this display");
    default:
        return QString();
    }
}

HotkeySystem& HotkeySystem::Current() {
    std::unique_ptr<HotkeySystem>& system = Slot();
    if (!system)
        system = CreateHotkeySystem();
    return *system;
}

std::unique_ptr<HotkeySystem> HotkeySystem::Replace(std::unique_ptr<HotkeySystem> system) {
    std::unique_ptr<HotkeySystem> previous = std::move(Slot());
    Slot() = std::move(system);
    return previous;
}

void HotkeySystem::Deliver(WindowHandle hwnd, int id, int modifiers, int vkey) {
    QCoreApplication* app = QCoreApplication::instance();
    if (app == nullptr)
        return;
    QMetaObject::invokeMethod(
        app,
        [hwnd, id, modifiers, vkey] {
            WindowProcedures::SendMessage(hwnd, WindowProcedures::WM_HOTKEY,
                                          static_cast<quintptr>(id),
                                          WindowProcedures::HotkeyLParam(modifiers, vkey));
        },
        Qt::QueuedConnection);
}

} // namespace Pelorin

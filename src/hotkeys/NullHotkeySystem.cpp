#include "hotkeys/NullHotkeySystem.h"

#include "base/Log.h"

namespace Pelorin {

NullHotkeySystem::NullHotkeySystem(QString platformName)
    : m_platformName(std::move(platformName)) {}

bool NullHotkeySystem::RegisterHotKey(WindowHandle, int, int, int) {
    SetLastError(NotSupported);
    if (!m_told) {
        m_told = true;
        qCWarning(lcHotkeys).noquote() << QStringLiteral("Pelorin: ") + ErrorText(NotSupported);
    }
    return false;
}

bool NullHotkeySystem::UnregisterHotKey(WindowHandle, int) {
    SetLastError(NotRegistered);
    return false;
}

QString NullHotkeySystem::ErrorText(int number) const {
    if (number == NotSupported)
        return QStringLiteral("Keyboard shortcuts are off: global hotkeys need an X11 display, "
                              "and this one is \"%1\".")
            .arg(m_platformName);
    return HotkeySystem::ErrorText(number);
}

} // namespace Pelorin

#include "hotkeys/HotkeySystem.h"
#include "hotkeys/NullHotkeySystem.h"

#include <QGuiApplication>

#ifdef PELORIN_HAVE_X11_HOTKEYS
#include "hotkeys/X11HotkeySystem.h"
#endif

namespace Pelorin {

std::unique_ptr<HotkeySystem> CreateHotkeySystem() {
#ifdef PELORIN_HAVE_X11_HOTKEYS
    if (auto x11 = X11HotkeySystem::FromApplication())
        return x11;
#endif
    return std::make_unique<NullHotkeySystem>(QGuiApplication::platformName());
}

} // namespace Pelorin

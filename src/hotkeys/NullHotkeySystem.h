#pragma once

#include "hotkeys/HotkeySystem.h"

namespace Pelorin {

// Displays without global keys (the offscreen platform, Wayland without XWayland): every
// registration fails, and the first failure says so once on stderr.
class NullHotkeySystem final : public HotkeySystem {
public:
    explicit NullHotkeySystem(QString platformName);

    bool RegisterHotKey(WindowHandle hwnd, int id, int modifiers, int vkey) override;
    bool UnregisterHotKey(WindowHandle hwnd, int id) override;
    QString ErrorText(int number) const override;

private:
    QString m_platformName;
    bool m_told = false;
};

} // namespace Pelorin

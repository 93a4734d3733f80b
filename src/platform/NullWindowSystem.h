#pragma once

#include "WindowSystem.h"

namespace Pelorin {

// For platforms without X11 (offscreen, Wayland): every operation fails and reports that the
// window system cannot do it.
class NullWindowSystem final : public WindowSystem {
public:
    bool IsAvailable() const override { return false; }
    QString Name() const override { return QStringLiteral("not available"); }
    bool SetOpacityProperty(WId, quint32) override { return false; }
    WId FindDesktopWindow() override { return 0; }
    bool ReparentInto(QWidget*, WId) override { return false; }
    bool KeepBelowOnAllDesktops(WId) override { return false; }
};

} // namespace Pelorin

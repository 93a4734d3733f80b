#pragma once

#include "skin/window/effects/EffectWindow.h"

namespace Pelorin {

class frmMain;

// The window effects' view of a skin window: the fades and the slide act on the window through
// this object, which the window owns.
class SkinWindowEffects final : public EffectWindow {
public:
    explicit SkinWindowEffects(frmMain& window) : m_window(window) {}

    QObject* LifetimeObject() override;
    bool IsUnloaded() const override;
    std::int16_t Transparency() const override;
    void SetTransparency(std::int16_t alpha) override;
    bool Glassify() const override;
    bool OnDesktop() const override;
    InteractionFlag& Interaction() override;
    void SetLayeredAlpha(int alpha) override;
    void HideWindow() override;
    void ShowWithoutActivating() override;
    void GlassifyMe() override;
    void PutOnDesktop() override;
    void Unload() override;
    int WindowTop() const override;
    int WindowHeight() const override;
    void SetWindowTopAndHeight(int top, int height) override;

private:
    frmMain& m_window;
};

} // namespace Pelorin

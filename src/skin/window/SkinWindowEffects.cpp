#include "skin/window/SkinWindowEffects.h"

#include "skin/window/frmMain.h"

namespace Pelorin {

QObject* SkinWindowEffects::LifetimeObject() {
    return &m_window;
}

bool SkinWindowEffects::IsUnloaded() const {
    return m_window.IsUnloaded();
}

std::int16_t SkinWindowEffects::Transparency() const {
    return m_window.Model().Transparency;
}

void SkinWindowEffects::SetTransparency(std::int16_t alpha) {
    m_window.Model().Transparency = alpha;
}

bool SkinWindowEffects::Glassify() const {
    return m_window.Model().Glassify;
}

bool SkinWindowEffects::OnDesktop() const {
    return m_window.Model().OnDesktop;
}

InteractionFlag& SkinWindowEffects::Interaction() {
    return m_window.Interaction();
}

void SkinWindowEffects::SetLayeredAlpha(int alpha) {
    m_window.SetLayeredAlpha(alpha);
}

void SkinWindowEffects::HideWindow() {
    m_window.hide();
}

void SkinWindowEffects::ShowWithoutActivating() {
    m_window.ShowWithoutActivating();
}

void SkinWindowEffects::GlassifyMe() {
    m_window.GlassifyMe();
}

void SkinWindowEffects::PutOnDesktop() {
    m_window.PutOnDesktop();
}

void SkinWindowEffects::Unload() {
    m_window.Unload();
}

int SkinWindowEffects::WindowTop() const {
    return m_window.WindowTop();
}

int SkinWindowEffects::WindowHeight() const {
    return m_window.height();
}

void SkinWindowEffects::SetWindowTopAndHeight(int top, int height) {
    m_window.SetWindowTopAndHeight(top, height);
}

} // namespace Pelorin

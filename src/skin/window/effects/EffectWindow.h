#pragma once

#include <QObject>
#include <cstdint>

namespace Pelorin {

class InteractionFlag;

// What the window effects need of a skin window. Coordinates are pixels.
class EffectWindow {
public:
    virtual ~EffectWindow() = default;

    // The object whose destruction means the window is gone; the effects watch it across every
    // pump of pending events, since a handler that runs there may close the window.
    virtual QObject* LifetimeObject() = 0;
    // True once the window has started unloading: it is gone for the effects even before it is
    // deleted.
    virtual bool IsUnloaded() const = 0;

    // The skin's "transparency" value.
    virtual std::int16_t Transparency() const = 0;
    virtual void SetTransparency(std::int16_t alpha) = 0;
    virtual bool Glassify() const = 0;
    virtual bool OnDesktop() const = 0;
    virtual InteractionFlag& Interaction() = 0;

    // Makes the window layered with this alpha (0 clear .. 255 opaque).
    virtual void SetLayeredAlpha(int alpha) = 0;
    virtual void HideWindow() = 0;
    virtual void ShowWithoutActivating() = 0;
    virtual void GlassifyMe() = 0;
    virtual void PutOnDesktop() = 0;
    virtual void Unload() = 0;

    virtual int WindowTop() const = 0;
    virtual int WindowHeight() const = 0;
    virtual void SetWindowTopAndHeight(int top, int height) = 0;
};

} // namespace Pelorin

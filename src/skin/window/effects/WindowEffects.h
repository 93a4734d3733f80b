#pragma once

namespace Pelorin {

class EffectPacing;
class EffectWindow;

// The pause between two steps of a fade or a slide.
inline constexpr int EffectStepPauseMs = 3;

// How an effect ended.
enum class EffectOutcome {
    Completed,
    // A user interaction stopped the fade; the window keeps the alpha it had reached.
    StoppedByInteraction,
    // The window was closed by something that ran while the effect let events run.
    WindowGone,
};

// Hides the window, shows it again without activating it and fades its alpha from 0 up to the
// skin's transparency value, one step at a time; then glass and the desktop, when the skin asks
// for them. With transparency 0 the fade makes a single step at alpha 0 and the window stays
// clear: skins that fade in set a transparency.
EffectOutcome FadeIn(EffectWindow& window, EffectPacing& pacing);

// Fades the alpha from the transparency value (255 when it is 0; the window keeps that change)
// down to 0, then hides and unloads the window.
EffectOutcome FadeClose(EffectWindow& window, EffectPacing& pacing);

// Shows the window without activating it and grows it upwards from a line at its bottom edge to
// its full height, one pixel a step. Input does not stop it.
EffectOutcome SlideUp(EffectWindow& window, EffectPacing& pacing);

// Puts the alpha back to the skin's transparency value (undoes a stopped fade).
void NormalTransparency(EffectWindow& window);

} // namespace Pelorin

#include "WindowEffects.h"

#include "EffectPacing.h"
#include "EffectWindow.h"
#include "InteractionFlag.h"

#include <QPointer>
#include <algorithm>

namespace Pelorin {

namespace {

// Lets events run and tells whether the window survived them: a handler that ran there may have
// closed it (and a closed window may already be deleted).
class StepGuard {
public:
    explicit StepGuard(EffectWindow& window) : m_lifetime(window.LifetimeObject()) {}

    bool LetMessagesRun(EffectWindow& window, EffectPacing& pacing) {
        pacing.LetMessagesRun();
        return !m_lifetime.isNull() && !window.IsUnloaded();
    }

private:
    QPointer<QObject> m_lifetime;
};

} // namespace

EffectOutcome FadeIn(EffectWindow& window, EffectPacing& pacing) {
    StepGuard guard(window);
    window.HideWindow();
    window.ShowWithoutActivating();
    // A skin may write any 16-bit number; an alpha goes up to 255, and so does the fade (a
    // "transparency=30000" would otherwise fade for a minute and a half). A negative value
    // still makes no step at all.
    const int transparency = std::min<int>(window.Transparency(), 255);
    for (int alpha = 0; alpha <= transparency; ++alpha) {
        window.SetLayeredAlpha(alpha);
        if (!guard.LetMessagesRun(window, pacing))
            return EffectOutcome::WindowGone;
        if (window.Interaction().Take())
            return EffectOutcome::StoppedByInteraction;
        pacing.Sleep(EffectStepPauseMs);
    }
    if (window.Glassify())
        window.GlassifyMe();
    window.ShowWithoutActivating();
    if (window.OnDesktop())
        window.PutOnDesktop();
    return EffectOutcome::Completed;
}

EffectOutcome FadeClose(EffectWindow& window, EffectPacing& pacing) {
    StepGuard guard(window);
    if (window.Transparency() == 0)
        window.SetTransparency(255);
    for (int alpha = std::min<int>(window.Transparency(), 255); alpha >= 0; --alpha) {
        window.SetLayeredAlpha(alpha);
        if (!guard.LetMessagesRun(window, pacing))
            return EffectOutcome::WindowGone;
        if (window.Interaction().Take())
            return EffectOutcome::StoppedByInteraction;
        pacing.Sleep(EffectStepPauseMs);
    }
    window.HideWindow();
    window.Unload();
    return EffectOutcome::Completed;
}

EffectOutcome SlideUp(EffectWindow& window, EffectPacing& pacing) {
    StepGuard guard(window);
    window.ShowWithoutActivating();
    const int finalTop = window.WindowTop();
    const int fullHeight = window.WindowHeight();
    // The loop keeps its own count: a window manager that moves the window meanwhile cannot make
    // it run forever.
    int top = finalTop + fullHeight;
    int height = 0;
    window.SetWindowTopAndHeight(top, height);
    while (top != finalTop) {
        top += top > finalTop ? -1 : 1;
        ++height;
        window.SetWindowTopAndHeight(top, height);
        if (!guard.LetMessagesRun(window, pacing))
            return EffectOutcome::WindowGone;
        pacing.Sleep(EffectStepPauseMs);
    }
    return EffectOutcome::Completed;
}

void NormalTransparency(EffectWindow& window) {
    window.SetLayeredAlpha(window.Transparency());
}

} // namespace Pelorin

// The steps of the window effects, on a recording window: which alphas, in which order, with
// which pauses, and how a raised interaction flag or a window closed meanwhile ends them. The
// same effects on real X11 windows are tested with the skin window.
#include "skin/window/effects/WindowEffects.h"

#include "skin/window/effects/EffectPacing.h"
#include "skin/window/effects/EffectWindow.h"
#include "skin/window/effects/InteractionFlag.h"

#include <QObject>
#include <QString>
#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

using namespace Pelorin;

namespace {

class RecordingWindow final : public EffectWindow {
public:
    QObject* LifetimeObject() override { return lifetime.get(); }
    bool IsUnloaded() const override { return unloaded; }
    std::int16_t Transparency() const override { return transparency; }
    void SetTransparency(std::int16_t alpha) override { transparency = alpha; }
    bool Glassify() const override { return glassify; }
    bool OnDesktop() const override { return onDesktop; }
    InteractionFlag& Interaction() override { return interaction; }
    void SetLayeredAlpha(int alpha) override {
        alphas.push_back(alpha);
        calls.push_back(QStringLiteral("alpha"));
    }
    void HideWindow() override {
        visible = false;
        calls.push_back(QStringLiteral("hide"));
    }
    void ShowWithoutActivating() override {
        visible = true;
        calls.push_back(QStringLiteral("show"));
    }
    void GlassifyMe() override { calls.push_back(QStringLiteral("glass")); }
    void PutOnDesktop() override { calls.push_back(QStringLiteral("desktop")); }
    void Unload() override {
        unloaded = true;
        calls.push_back(QStringLiteral("unload"));
    }
    int WindowTop() const override { return top; }
    int WindowHeight() const override { return height; }
    void SetWindowTopAndHeight(int newTop, int newHeight) override {
        top = newTop;
        height = newHeight;
        geometries.emplace_back(newTop, newHeight);
    }

    std::unique_ptr<QObject> lifetime = std::make_unique<QObject>();
    bool unloaded = false;
    std::int16_t transparency = 0;
    bool glassify = false;
    bool onDesktop = false;
    bool visible = false;
    InteractionFlag interaction;
    int top = 0;
    int height = 0;
    std::vector<int> alphas;
    std::vector<QString> calls;
    std::vector<std::pair<int, int>> geometries;
};

// Counts pumps and sleeps; `onPump` stands for whatever a pending event does meanwhile.
class CountingPacing final : public EffectPacing {
public:
    void LetMessagesRun() override {
        ++pumps;
        if (onPump)
            onPump(pumps);
    }
    void Sleep(int milliseconds) override { sleeps.push_back(milliseconds); }

    int pumps = 0;
    std::vector<int> sleeps;
    std::function<void(int)> onPump;
};

std::vector<int> Range(int from, int to) {
    std::vector<int> values;
    for (int v = from; from <= to ? v <= to : v >= to; v += from <= to ? 1 : -1)
        values.push_back(v);
    return values;
}

} // namespace

TEST(FadeIn, WithTransparency200EndsAtAlpha200) {
    RecordingWindow window;
    window.transparency = 200;
    CountingPacing pacing;
    EXPECT_EQ(FadeIn(window, pacing), EffectOutcome::Completed);
    EXPECT_EQ(window.alphas, Range(0, 200));
    EXPECT_EQ(pacing.pumps, 201);
    EXPECT_TRUE(window.visible);
}

TEST(FadeIn, ATransparencyBeyond255FadesOnlyUpTo255) {
    RecordingWindow window;
    window.transparency = 30000;
    CountingPacing pacing;
    EXPECT_EQ(FadeIn(window, pacing), EffectOutcome::Completed);
    EXPECT_EQ(window.alphas, Range(0, 255));
    EXPECT_EQ(pacing.pumps, 256);
}

TEST(FadeClose, ATransparencyBeyond255FadesDownFrom255AndANegativeOneMakesNoStep) {
    RecordingWindow wide;
    wide.transparency = 30000;
    CountingPacing pacing;
    EXPECT_EQ(FadeClose(wide, pacing), EffectOutcome::Completed);
    EXPECT_EQ(wide.alphas.front(), 255);
    EXPECT_EQ(wide.alphas.size(), 256u);
    RecordingWindow negative;
    negative.transparency = -40;
    EXPECT_EQ(FadeClose(negative, pacing), EffectOutcome::Completed);
    EXPECT_TRUE(negative.alphas.empty());
}

TEST(FadeIn, HidesThenShowsWithoutActivatingBeforeTheFirstStep) {
    RecordingWindow window;
    window.transparency = 1;
    CountingPacing pacing;
    FadeIn(window, pacing);
    ASSERT_GE(window.calls.size(), 3u);
    EXPECT_EQ(window.calls[0], QStringLiteral("hide"));
    EXPECT_EQ(window.calls[1], QStringLiteral("show"));
    EXPECT_EQ(window.calls[2], QStringLiteral("alpha"));
    EXPECT_EQ(window.calls.back(), QStringLiteral("show"));
}

TEST(FadeIn, WithTransparencyZeroMakesOneStepAtAlphaZero) {
    RecordingWindow window;
    CountingPacing pacing;
    EXPECT_EQ(FadeIn(window, pacing), EffectOutcome::Completed);
    EXPECT_EQ(window.alphas, std::vector<int>{0});
}

TEST(FadeIn, WithNegativeTransparencyMakesNoStepButStillShows) {
    RecordingWindow window;
    window.transparency = -5;
    CountingPacing pacing;
    EXPECT_EQ(FadeIn(window, pacing), EffectOutcome::Completed);
    EXPECT_TRUE(window.alphas.empty());
    EXPECT_TRUE(window.visible);
}

TEST(FadeIn, PausesThreeMillisecondsBetweenSteps) {
    RecordingWindow window;
    window.transparency = 10;
    CountingPacing pacing;
    FadeIn(window, pacing);
    EXPECT_EQ(pacing.sleeps, std::vector<int>(11, 3));
}

TEST(FadeIn, AppliesGlassAndTheDesktopAfterTheFade) {
    RecordingWindow window;
    window.transparency = 2;
    window.glassify = true;
    window.onDesktop = true;
    CountingPacing pacing;
    FadeIn(window, pacing);
    const std::vector<QString> tail(window.calls.end() - 3, window.calls.end());
    EXPECT_EQ(tail, (std::vector<QString>{QStringLiteral("glass"), QStringLiteral("show"),
                                          QStringLiteral("desktop")}));
}

TEST(FadeIn, AnInteractionDuringTheFadeStopsItAtOnceAndLeavesThePartialAlpha) {
    RecordingWindow window;
    window.transparency = 255;
    window.glassify = true;
    window.onDesktop = true;
    CountingPacing pacing;
    pacing.onPump = [&](int pump) {
        if (pump == 40)
            window.interaction.Raise();
    };
    EXPECT_EQ(FadeIn(window, pacing), EffectOutcome::StoppedByInteraction);
    EXPECT_EQ(window.alphas.back(), 39);
    EXPECT_FALSE(window.interaction.IsRaised()) << "the fade consumes the flag";
    EXPECT_EQ(window.calls.back(), QStringLiteral("alpha")) << "no glass, show or desktop after";
}

TEST(FadeIn, AfterAnEarlierClickStopsAtItsFirstStep) {
    RecordingWindow window;
    window.transparency = 200;
    window.interaction.Raise(); // a click while no fade ran
    CountingPacing pacing;
    EXPECT_EQ(FadeIn(window, pacing), EffectOutcome::StoppedByInteraction);
    EXPECT_EQ(window.alphas, std::vector<int>{0});
}

TEST(FadeIn, StopsWhenTheWindowUnloadsWhileEventsRun) {
    RecordingWindow window;
    window.transparency = 100;
    CountingPacing pacing;
    pacing.onPump = [&](int pump) {
        if (pump == 5)
            window.Unload();
    };
    EXPECT_EQ(FadeIn(window, pacing), EffectOutcome::WindowGone);
    EXPECT_EQ(window.alphas.size(), 5u);
}

TEST(FadeIn, StopsWhenTheWindowIsDeletedWhileEventsRun) {
    RecordingWindow window;
    window.transparency = 100;
    CountingPacing pacing;
    pacing.onPump = [&](int pump) {
        if (pump == 3)
            window.lifetime.reset();
    };
    EXPECT_EQ(FadeIn(window, pacing), EffectOutcome::WindowGone);
    EXPECT_EQ(pacing.pumps, 3);
}

TEST(FadeClose, WithTransparencyZeroFadesFrom255AndClosesKeeping255) {
    RecordingWindow window;
    CountingPacing pacing;
    EXPECT_EQ(FadeClose(window, pacing), EffectOutcome::Completed);
    EXPECT_EQ(window.alphas, Range(255, 0));
    EXPECT_EQ(window.transparency, 255);
    EXPECT_TRUE(window.unloaded);
    EXPECT_FALSE(window.visible);
}

TEST(FadeClose, FromTheSkinsTransparencyDownToZero) {
    RecordingWindow window;
    window.transparency = 120;
    CountingPacing pacing;
    FadeClose(window, pacing);
    EXPECT_EQ(window.alphas, Range(120, 0));
    EXPECT_EQ(pacing.sleeps, std::vector<int>(121, 3));
}

TEST(FadeClose, AClickStopsItAndTheWindowStaysOpenAtThatAlpha) {
    RecordingWindow window;
    window.transparency = 200;
    CountingPacing pacing;
    pacing.onPump = [&](int pump) {
        if (pump == 10)
            window.interaction.Raise();
    };
    EXPECT_EQ(FadeClose(window, pacing), EffectOutcome::StoppedByInteraction);
    EXPECT_EQ(window.alphas.back(), 191);
    EXPECT_FALSE(window.unloaded);
}

TEST(FadeClose, ClosedByAnotherHandlerMeanwhileDoesNotUnloadTwice) {
    RecordingWindow window;
    window.transparency = 50;
    CountingPacing pacing;
    pacing.onPump = [&](int pump) {
        if (pump == 2)
            window.Unload();
    };
    EXPECT_EQ(FadeClose(window, pacing), EffectOutcome::WindowGone);
    EXPECT_EQ(std::count(window.calls.begin(), window.calls.end(), QStringLiteral("unload")), 1);
}

TEST(SlideUp, GrowsFromALineAtTheBottomEdgeOnePixelAStep) {
    RecordingWindow window;
    window.top = 300;
    window.height = 40;
    CountingPacing pacing;
    EXPECT_EQ(SlideUp(window, pacing), EffectOutcome::Completed);
    ASSERT_EQ(window.geometries.size(), 41u);
    EXPECT_EQ(window.geometries.front(), std::make_pair(340, 0));
    for (int step = 1; step <= 40; ++step)
        EXPECT_EQ(window.geometries[step], std::make_pair(340 - step, step));
    EXPECT_EQ(window.top, 300);
    EXPECT_EQ(window.height, 40);
    EXPECT_EQ(pacing.sleeps, std::vector<int>(40, 3));
    EXPECT_EQ(window.calls.front(), QStringLiteral("show"));
}

TEST(SlideUp, IsNotStoppedByInput) {
    RecordingWindow window;
    window.top = 10;
    window.height = 20;
    window.interaction.Raise();
    CountingPacing pacing;
    pacing.onPump = [&](int) { window.interaction.Raise(); };
    EXPECT_EQ(SlideUp(window, pacing), EffectOutcome::Completed);
    EXPECT_EQ(window.height, 20);
}

TEST(SlideUp, StopsWhenTheWindowIsClosedMeanwhile) {
    RecordingWindow window;
    window.top = 10;
    window.height = 200;
    CountingPacing pacing;
    pacing.onPump = [&](int pump) {
        if (pump == 7)
            window.Unload();
    };
    EXPECT_EQ(SlideUp(window, pacing), EffectOutcome::WindowGone);
    EXPECT_EQ(pacing.pumps, 7);
}

TEST(NormalTransparency, PutsTheSkinsAlphaBack) {
    RecordingWindow window;
    window.transparency = 180;
    NormalTransparency(window);
    EXPECT_EQ(window.alphas, std::vector<int>{180});
}

TEST(InteractionFlag, StaysRaisedUntilAFadeTakesIt) {
    InteractionFlag flag;
    EXPECT_FALSE(flag.IsRaised());
    flag.Raise();
    flag.Raise();
    EXPECT_TRUE(flag.IsRaised());
    EXPECT_TRUE(flag.Take());
    EXPECT_FALSE(flag.Take());
}

// The command language on a real skin window (offscreen): element timers made by "timerevent"
// lines and restarted by "reloadtimer", the interaction flag a click leaves for the next fade.
// The host here forwards the window commands to frmMain the way the program's host does.
#include "RecordingRunCodeHost.h"
#include "app/FormsRegistry.h"
#include "runcode/CommandInterpreter.h"
#include "skin/window/VbTimer.h"
#include "skin/window/effects/EffectPacing.h"
#include "skin/window/effects/WindowEffects.h"
#include "skin/window/frmMain.h"
#include "support/player/memory/MemoryPlayer.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QPointer>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <gtest/gtest.h>

namespace Pelorin::Testing {
namespace {

// Counts the steps of an effect without sleeping.
class CountingPacing final : public EffectPacing {
public:
    void LetMessagesRun() override {
        ++steps;
        QCoreApplication::processEvents();
    }
    void Sleep(int) override {}
    int steps = 0;
};

class WindowHost final : public RecordingRunCodeHost {
public:
    using RecordingRunCodeHost::RecordingRunCodeHost;
    bool WindowGone() const override { return window.isNull() || window->IsUnloaded(); }
    bool ReloadTimer(int index) override {
        VbTimer* timer = window ? window->tmr(index) : nullptr;
        if (timer == nullptr)
            return false;
        timer->SetEnabled(false);
        timer->SetEnabled(true);
        return true;
    }
    void FadeIn() override { fadeOutcomes.append(window->FadeIn()); }
    QPointer<frmMain> window;
    QList<EffectOutcome> fadeOutcomes;
};

class RunCodeWindow : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dir.isValid());
        player.addLibraryTrack(MemoryTrackData{});
    }

    void TearDown() override {
        delete window.data();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    void Open(const QStringList& lines) {
        const QString folder = dir.path() + QStringLiteral("/Skins/Test/");
        QDir().mkpath(folder);
        QFile file(folder + QStringLiteral("skin.ini"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        for (const QString& line : lines)
            file.write(line.toUtf8() + "\r\n");
        file.close();

        frmMain::Links links;
        links.forms.Forms = [this] { return forms.Forms(); };
        links.forms.Add = [this](Form* form) { forms.Add(form); };
        links.forms.Remove = [this](Form* form) { forms.Remove(form); };
        links.pacing = &pacing;
        links.services.RunCode = [this](frmMain&, const QString& code) {
            ran.append(code);
            interpreter.RunCodeText(code);
        };
        window = new frmMain(links);
        host.window = window;
        window->LoadSkin(folder + QStringLiteral("skin.ini"), folder);
        window->RunAfter();
    }

    // Pumps events until `done` or the time is up.
    static bool PumpUntil(const std::function<bool()>& done, int ms) {
        QElapsedTimer clock;
        clock.start();
        while (!done() && clock.elapsed() < ms) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
            QThread::msleep(2);
        }
        return done();
    }

    QTemporaryDir dir;
    MemoryPlayer player;
    WindowHost host{&player};
    CommandInterpreter interpreter{host, host};
    FormsRegistry forms;
    CountingPacing pacing;
    QPointer<frmMain> window;
    QStringList ran;
};

TEST_F(RunCodeWindow, ThreeTimerEventLinesMakeTimersOneToThreeAndReloadTimerTwoRestartsTheSecond) {
    Open({QStringLiteral("timerevent=600000;volumeup"), QStringLiteral("timerevent=1500;2nd"),
          QStringLiteral("timerevent=600000;volumedown")});
    ASSERT_FALSE(window.isNull());
    EXPECT_NE(window->tmr(1), nullptr);
    EXPECT_NE(window->tmr(2), nullptr);
    EXPECT_NE(window->tmr(3), nullptr);
    EXPECT_EQ(window->tmr(4), nullptr);
    EXPECT_EQ(window->tmr(2)->Interval(), 1500);

    QElapsedTimer clock;
    clock.start();
    PumpUntil([] { return false; }, 1000);
    const qint64 reloadedAt = clock.elapsed();
    interpreter.RunCodeText(QStringLiteral("reloadtimer=2"));
    EXPECT_TRUE(host.messages.isEmpty());

    // Past the first tick the timer would have made without the restart, and none came.
    PumpUntil([&] { return ran.contains(QStringLiteral("2nd")); },
              1700 - static_cast<int>(reloadedAt));
    if (clock.elapsed() < reloadedAt + 1400) {
        EXPECT_FALSE(ran.contains(QStringLiteral("2nd")));
    }
    // The tick comes a whole interval after the restart.
    ASSERT_TRUE(PumpUntil([&] { return ran.contains(QStringLiteral("2nd")); }, 5000));
    EXPECT_GE(clock.elapsed(), reloadedAt + 1400);
    EXPECT_FALSE(ran.contains(QStringLiteral("volumeup")));
}

TEST_F(RunCodeWindow, ReloadTimerOfATimerTheSkinDoesNotHaveShowsTheError) {
    Open({QStringLiteral("timerevent=600000;volumeup")});
    // Something plays, so the failure is shown rather than beeped.
    player.enqueue(1);
    player.Play();
    interpreter.RunCodeText(QStringLiteral("reloadtimer=2"));
    ASSERT_EQ(host.messages.size(), 1);
    EXPECT_TRUE(
        host.messages[0].text.endsWith(QStringLiteral("Control array element '2' doesn't exist")));
}

TEST_F(RunCodeWindow, ATimerWithIntervalZeroNeverTicks) {
    Open({QStringLiteral("timerevent=0;volumeup"), QStringLiteral("timerevent=20;tick")});
    ASSERT_FALSE(window.isNull());
    ASSERT_TRUE(PumpUntil([&] { return ran.count(QStringLiteral("tick")) >= 5; }, 5000));
    EXPECT_FALSE(ran.contains(QStringLiteral("volumeup")));
    EXPECT_FALSE(window->tmr(1)->IsTicking());
}

TEST_F(RunCodeWindow, AfterAnyClickOnTheWindowTheNextFadeInStopsAtItsFirstStep) {
    Open({QStringLiteral("width=200"), QStringLiteral("height=100"),
          QStringLiteral("transparency=200")});
    ASSERT_FALSE(window.isNull());
    QTest::mouseClick(window, Qt::LeftButton, Qt::NoModifier, QPoint(5, 5));
    pacing.steps = 0;
    interpreter.RunCodeText(QStringLiteral("fadein"));
    ASSERT_EQ(host.fadeOutcomes.size(), 1);
    EXPECT_EQ(host.fadeOutcomes[0], EffectOutcome::StoppedByInteraction);
    EXPECT_EQ(pacing.steps, 1);
    // The press was used up: a second fade runs to its end.
    interpreter.RunCodeText(QStringLiteral("fadein"));
    ASSERT_EQ(host.fadeOutcomes.size(), 2);
    EXPECT_EQ(host.fadeOutcomes[1], EffectOutcome::Completed);
}

TEST_F(RunCodeWindow, TimerCodeRunsThroughRunCodeAndDrivesThePlayer) {
    player.enqueue(1);
    player.Play();
    player.SetSoundVolume(10);
    Open({QStringLiteral("timerevent=20;volumeup")});
    EXPECT_TRUE(PumpUntil([&] { return player.SoundVolume() >= 13; }, 5000));
}

} // namespace
} // namespace Pelorin::Testing

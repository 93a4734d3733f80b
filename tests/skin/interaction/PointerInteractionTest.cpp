// Image buttons, seek and move images, window presses and the pop-up menu on a real skin window
// (offscreen), driven with simulated input. The window is bound to the in-memory player as the
// program binds it, so the codes that presses run are real commands: the image's code turns the
// volume up, the interaction code switches shuffle and the window-click code switches repeat.
#include "skin/interaction/PointerInteraction.h"

#include "BoundWindowRig.h"
#include "skin/window/VbTimer.h"

#include <QCursor>
#include <QMenu>

using namespace Pelorin;
using namespace Pelorin::Testing;

namespace {

const QColor Normal(Qt::red);
const QColor Hover(Qt::green);
const QColor Pressed(Qt::blue);

class PointerInteractionTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(rig.dir.isValid());
        rig.PlayTrack(BoundWindowRig::Track(QStringLiteral("Four Minutes"), 240));
        rig.Player().SetSoundVolume(50);
        startShuffle = rig.Player().CurrentPlaylist()->Shuffle();
        startRepeat = rig.Player().CurrentPlaylist()->SongRepeat();
    }

    // A skin with one button (img(1)) at (20, 10), 40 x 20, whose pictures are `pictures`
    // ("n.png|h.png|p.png" and the like) and whose code is `code`.
    frmMain* OpenButton(const QString& pictures, const QString& code = QStringLiteral("volumeup")) {
        const QString folder =
            rig.WriteSkin(QStringLiteral("Buttons"),
                          {QStringLiteral("width=200"), QStringLiteral("height=60"),
                           QStringLiteral("formclick=repeat=switch"),
                           QStringLiteral("anyinteraction=shuffle=switch"),
                           QStringLiteral("image=20;10;40;20;") + code + u';' + pictures});
        BoundWindowRig::WritePicture(folder + QStringLiteral("n.png"), Normal);
        BoundWindowRig::WritePicture(folder + QStringLiteral("h.png"), Hover);
        BoundWindowRig::WritePicture(folder + QStringLiteral("p.png"), Pressed);
        binding = rig.Open(folder);
        window = binding->Window();
        return window;
    }

    PictureBox* Button() const { return window->img(1); }
    int Volume() { return rig.Player().SoundVolume(); }
    bool ShuffleSwitched() { return rig.Player().CurrentPlaylist()->Shuffle() != startShuffle; }
    bool RepeatSwitched() { return rig.Player().CurrentPlaylist()->SongRepeat() != startRepeat; }
    // Whether the program was asked for the pop-up menu with this window as its caller.
    bool MenuAsked() const { return rig.menuCallers.contains(window.data()); }

    BoundWindowRig rig;
    SkinWindowBinding* binding = nullptr;
    QPointer<frmMain> window;
    bool startShuffle = false;
    int startRepeat = 0;
};

TEST_F(PointerInteractionTest,
       RightClickOnAnImageRunsTheInteractionCodesAndOpensTheMenuButNotItsCode) {
    OpenButton(QStringLiteral("n.png|h.png|p.png"));
    QTest::mousePress(Button(), Qt::RightButton, {}, QPoint(10, 10));
    EXPECT_TRUE(ShuffleSwitched()) << "the press ran the interaction codes";
    EXPECT_FALSE(MenuAsked());
    QTest::mouseRelease(Button(), Qt::RightButton, {}, QPoint(10, 10));
    EXPECT_TRUE(MenuAsked()) << "the release opened the menu";
    EXPECT_EQ(Volume(), 50) << "the image's code did not run";
    EXPECT_FALSE(RepeatSwitched()) << "a press on an image is no press on the window";
}

TEST_F(PointerInteractionTest,
       RightClickOnTheBackgroundRunsInteractionAndWindowClickCodesBeforeTheMenu) {
    OpenButton(QStringLiteral("n.png"));
    QTest::mousePress(window, Qt::RightButton, {}, QPoint(150, 40));
    EXPECT_TRUE(ShuffleSwitched());
    EXPECT_TRUE(RepeatSwitched());
    EXPECT_FALSE(MenuAsked()) << "the menu waits for the release";
    QTest::mouseRelease(window, Qt::RightButton, {}, QPoint(150, 40));
    ASSERT_EQ(rig.menuCallers.size(), 1);
    EXPECT_EQ(rig.menuCallers.first(), window.data());
}

TEST_F(PointerInteractionTest, ALeftPressOnALabelCountsAsAPressOnTheWindow) {
    const QString folder = rig.WriteSkin(QStringLiteral("Label"),
                                         {QStringLiteral("width=200"), QStringLiteral("height=60"),
                                          QStringLiteral("formclick=repeat=switch"),
                                          QStringLiteral("anyinteraction=shuffle=switch"),
                                          QStringLiteral("label=10;10;150;20;[Title]")});
    window = rig.Open(folder)->Window();
    QTest::mousePress(window->lblInfo(1), Qt::LeftButton, {}, QPoint(5, 5));
    EXPECT_TRUE(ShuffleSwitched());
    EXPECT_TRUE(RepeatSwitched());
    QTest::mouseRelease(window->lblInfo(1), Qt::LeftButton, {}, QPoint(5, 5));
    EXPECT_FALSE(MenuAsked()) << "only the right release opens the menu";
}

TEST_F(PointerInteractionTest,
       PressingAnImageAndReleasingOutsideStillRunsItsCodeAndClearsTheHover) {
    OpenButton(QStringLiteral("n.png|h.png|p.png"));
    QTest::mouseMove(Button(), QPoint(10, 10));
    ASSERT_EQ(binding->Pointer().HoveredIndex(), 1);
    QTest::mousePress(Button(), Qt::LeftButton, {}, QPoint(10, 10));
    EXPECT_EQ(BoundWindowRig::Shown(Button()), Pressed);
    EXPECT_EQ(binding->Pointer().HoveredIndex(), -1);
    // The button keeps the pointer while held, so the release outside still reaches it.
    QTest::mouseRelease(Button(), Qt::LeftButton, {}, QPoint(100, 35));
    EXPECT_EQ(Volume(), 51) << "the code runs wherever the button was released";
    EXPECT_EQ(BoundWindowRig::Shown(Button()), Normal);
    EXPECT_EQ(binding->Pointer().HoveredIndex(), -1);
}

TEST_F(PointerInteractionTest, ReleasingInsideShowsTheHoverPictureAndRunsTheCode) {
    OpenButton(QStringLiteral("n.png|h.png|p.png"));
    QTest::mousePress(Button(), Qt::LeftButton, {}, QPoint(10, 10));
    QTest::mouseRelease(Button(), Qt::LeftButton, {}, QPoint(10, 10));
    EXPECT_EQ(Volume(), 51);
    EXPECT_EQ(BoundWindowRig::Shown(Button()), Hover);
    EXPECT_EQ(binding->Pointer().HoveredIndex(), 1);
    EXPECT_TRUE(window->tmrTrackImage()->Enabled());
}

TEST_F(PointerInteractionTest, ShiftPressOnAnImageMovesTheWindowAndRunsNoCode) {
    OpenButton(QStringLiteral("n.png|h.png|p.png"));
    QTest::mousePress(Button(), Qt::LeftButton, Qt::ShiftModifier, QPoint(10, 10));
    EXPECT_EQ(QWidget::mouseGrabber(), window.data()) << "the window follows the pointer";
    EXPECT_FALSE(window->lblMove()->isVisible());
    EXPECT_FALSE(ShuffleSwitched()) << "no interaction code on a Shift press";
    EXPECT_EQ(Volume(), 50);
    EXPECT_EQ(BoundWindowRig::Shown(Button()), Normal) << "no pressed picture";
    QTest::mouseRelease(window, Qt::LeftButton, {}, QPoint(30, 20));
    EXPECT_EQ(QWidget::mouseGrabber(), nullptr);
    EXPECT_EQ(Volume(), 50);
}

TEST_F(PointerInteractionTest,
       ALeftPressAtTheMiddleOfAPositionImageOfAFourMinuteTrackSeeksTo120Seconds) {
    OpenButton(QStringLiteral("NONE"), QStringLiteral("position"));
    QTest::mousePress(Button(), Qt::LeftButton, {}, QPoint(20, 10));
    EXPECT_EQ(rig.Player().PlayerPosition(), 120);
    QTest::mouseRelease(Button(), Qt::LeftButton, {}, QPoint(20, 10));
}

TEST_F(PointerInteractionTest, DraggingOverAPositionImageFollowsThePointer) {
    OpenButton(QStringLiteral("NONE"), QStringLiteral("Position"));
    QTest::mousePress(Button(), Qt::LeftButton, {}, QPoint(0, 10));
    EXPECT_EQ(rig.Player().PlayerPosition(), 0);
    QMouseEvent move(QEvent::MouseMove, QPointF(30, 10), Button()->mapToGlobal(QPointF(30, 10)),
                     Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(Button(), &move);
    EXPECT_EQ(rig.Player().PlayerPosition(), 180);
    QTest::mouseRelease(Button(), Qt::LeftButton, {}, QPoint(30, 10));
}

TEST_F(PointerInteractionTest, AnImageWithHoverNoneShowsItsPressedPictureAndNeverAHoverPicture) {
    OpenButton(QStringLiteral("n.png|NONE|p.png"));
    QTest::mouseMove(Button(), QPoint(10, 10));
    EXPECT_EQ(BoundWindowRig::Shown(Button()), Normal);
    EXPECT_EQ(binding->Pointer().HoveredIndex(), -1) << "nothing is tracked";
    QTest::mousePress(Button(), Qt::LeftButton, {}, QPoint(10, 10));
    EXPECT_EQ(BoundWindowRig::Shown(Button()), Pressed);
    QTest::mouseRelease(Button(), Qt::LeftButton, {}, QPoint(10, 10));
    EXPECT_EQ(BoundWindowRig::Shown(Button()), Normal);
    EXPECT_EQ(binding->Pointer().HoveredIndex(), -1);
    EXPECT_FALSE(window->tmrTrackImage()->Enabled());
}

TEST_F(PointerInteractionTest, TheHoverPictureGoesOnceThePointerHasLeftTheImage) {
    OpenButton(QStringLiteral("n.png|h.png|p.png"));
    QCursor::setPos(Button()->mapToGlobal(QPoint(10, 10)));
    QTest::mouseMove(Button(), QPoint(10, 10));
    ASSERT_EQ(BoundWindowRig::Shown(Button()), Hover);
    ASSERT_TRUE(window->tmrTrackImage()->Enabled());
    QTest::qWait(150);
    EXPECT_EQ(BoundWindowRig::Shown(Button()), Hover) << "the pointer is still over it";
    QCursor::setPos(window->mapToGlobal(QPoint(150, 50)));
    EXPECT_TRUE(BoundWindowRig::WaitFor([&] { return !window->tmrTrackImage()->Enabled(); }));
    EXPECT_EQ(BoundWindowRig::Shown(Button()), Normal);
    EXPECT_EQ(binding->Pointer().HoveredIndex(), -1);
}

TEST_F(PointerInteractionTest, NoneAsTheNormalPictureClearsTheImageOnRelease) {
    OpenButton(QStringLiteral("none|h.png|p.png"));
    EXPECT_FALSE(BoundWindowRig::Shown(Button()).isValid());
    QTest::mousePress(Button(), Qt::LeftButton, {}, QPoint(10, 10));
    EXPECT_EQ(BoundWindowRig::Shown(Button()), Pressed);
    QTest::mouseRelease(Button(), Qt::LeftButton, {}, QPoint(100, 40));
    EXPECT_FALSE(BoundWindowRig::Shown(Button()).isValid());
}

TEST_F(PointerInteractionTest, AMissingHoverPictureIsReportedAndTheButtonStillWorks) {
    OpenButton(QStringLiteral("n.png|gone.png|p.png"));
    QTest::mouseMove(Button(), QPoint(10, 10));
    QTest::mousePress(Button(), Qt::LeftButton, {}, QPoint(10, 10));
    QTest::mouseRelease(Button(), Qt::LeftButton, {}, QPoint(10, 10));
    EXPECT_EQ(Volume(), 51);
    EXPECT_EQ(BoundWindowRig::Shown(Button()), Normal);
}

TEST_F(PointerInteractionTest, APressOnAMoveWindowImageMovesTheWindow) {
    OpenButton(QStringLiteral("n.png"), QStringLiteral("movewindow"));
    QTest::mousePress(Button(), Qt::LeftButton, {}, QPoint(10, 10));
    EXPECT_EQ(QWidget::mouseGrabber(), window.data());
    QTest::mouseRelease(window, Qt::LeftButton, {}, QPoint(30, 20));
    EXPECT_EQ(QWidget::mouseGrabber(), nullptr);
}

TEST_F(PointerInteractionTest, AnImageThatClosesItsWindowOnReleaseLeavesNothingBehind) {
    OpenButton(QStringLiteral("n.png|h.png|p.png"), QStringLiteral("closeskin"));
    QPointer<SkinWindowBinding> bound = binding;
    QTest::mousePress(Button(), Qt::LeftButton, {}, QPoint(10, 10));
    QTest::mouseRelease(Button(), Qt::LeftButton, {}, QPoint(10, 10));
    EXPECT_TRUE(window->IsUnloaded());
    BoundWindowRig::FlushDeletes();
    EXPECT_TRUE(window.isNull());
    EXPECT_TRUE(bound.isNull()) << "the binding goes with its window";
}

} // namespace

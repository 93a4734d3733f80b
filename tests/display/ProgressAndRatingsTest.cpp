#include "DisplayRig.h"
#include "display/ProgressBar.h"
#include "display/RatingStars.h"

using namespace Pelorin;
using Pelorin::Testing::ColourOf;
using Pelorin::Testing::DisplayRig;
using Pelorin::Testing::StderrCapture;
using Pelorin::Testing::WritePictureFile;

namespace {

// The in-memory player, reporting a position some seconds beyond the real one (as a player
// whose length text is shorter than what it plays).
class AheadPlayer final : public IiTunes {
public:
    AheadPlayer(IiTunes& inner, int ahead) : m_inner(inner), m_ahead(ahead) {}
    void PlayPause() override { m_inner.PlayPause(); }
    void Play() override { m_inner.Play(); }
    void Pause() override { m_inner.Pause(); }
    void Stop() override { m_inner.Stop(); }
    void PreviousTrack() override { m_inner.PreviousTrack(); }
    void NextTrack() override { m_inner.NextTrack(); }
    void Quit() override { m_inner.Quit(); }
    void UpdateIPod() override { m_inner.UpdateIPod(); }
    int SoundVolume() const override { return m_inner.SoundVolume(); }
    void SetSoundVolume(int volume) override { m_inner.SetSoundVolume(volume); }
    int PlayerPosition() const override { return m_inner.PlayerPosition() + m_ahead; }
    void SetPlayerPosition(int seconds) override { m_inner.SetPlayerPosition(seconds); }
    std::shared_ptr<IITTrack> CurrentTrack() const override { return m_inner.CurrentTrack(); }
    std::shared_ptr<IITPlaylist> CurrentPlaylist() const override {
        return m_inner.CurrentPlaylist();
    }
    std::shared_ptr<IITPlaylist> LibraryPlaylist() const override {
        return m_inner.LibraryPlaylist();
    }
    std::shared_ptr<IITSourceCollection> Sources() const override { return m_inner.Sources(); }

private:
    IiTunes& m_inner;
    int m_ahead;
};

class ProgressBarTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(WritePictureFile(rig.folder + u"bar.png"_qs, Qt::green));
        rig.Line(u"progresscontrol=10;90;200;6;bar.png"_qs);
    }
    DisplayRig rig;
};

class RatingStarsTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(WritePictureFile(rig.folder + u"off.png"_qs, Qt::gray));
        ASSERT_TRUE(WritePictureFile(rig.folder + u"on.png"_qs, Qt::yellow));
    }
    int LitStars() {
        int lit = 0;
        for (int k = 0; k < RatingStars::StarCount; ++k)
            lit += ColourOf(rig.host.star(k).picture) == QColor(Qt::yellow) ? 1 : 0;
        return lit;
    }
    void ShowRating(int rating) {
        MemoryTrackData data = DisplayRig::Track(u"A"_qs, u"B"_qs);
        data.rating = rating;
        rig.PlayTrack(data);
        rig.display.LoadSong();
    }
    DisplayRig rig;
};

} // namespace

TEST_F(ProgressBarTest, BarWidthFollowsThePosition) {
    rig.PlayTrack(DisplayRig::Track(u"A"_qs, u"B"_qs, 180));
    rig.player.SetPlayerPosition(45);
    rig.display.tmrProgress_Timer();
    EXPECT_FLOAT_EQ(rig.host.progressWidth(), 50.0f);
    rig.player.SetPlayerPosition(100);
    rig.display.tmrProgress_Timer();
    EXPECT_FLOAT_EQ(rig.host.progressWidth(), 100.0f / 180.0f * 200.0f);
}

TEST_F(ProgressBarTest, StreamWithZeroLengthKeepsTheBarAtZero) {
    rig.PlayTrack(DisplayRig::Track(u"A"_qs, u"B"_qs, 120));
    rig.player.SetPlayerPosition(60);
    rig.display.tmrProgress_Timer();
    ASSERT_GT(rig.host.progressWidth(), 0.0f);
    MemoryTrackData stream = DisplayRig::Track(u"Radio"_qs, u"Live"_qs, 0);
    stream.isFile = false;
    rig.PlayTrack(stream);
    rig.display.tmrProgress_Timer();
    EXPECT_FLOAT_EQ(rig.host.progressWidth(), 0.0f);
}

TEST_F(ProgressBarTest, PositionBeyondTheLengthDrawsTheBarBeyondItsFullWidth) {
    AheadPlayer ahead(rig.player, 20);
    rig.host.setPlayer(&ahead);
    rig.PlayTrack(DisplayRig::Track(u"A"_qs, u"B"_qs, 100));
    rig.player.SetPlayerPosition(100);
    rig.display.tmrProgress_Timer();
    EXPECT_FLOAT_EQ(rig.host.progressWidth(), 240.0f);
}

TEST_F(ProgressBarTest, TickWithoutATrackLeavesTheBarAsItWas) {
    rig.PlayTrack(DisplayRig::Track(u"A"_qs, u"B"_qs, 100));
    rig.player.SetPlayerPosition(50);
    rig.display.tmrProgress_Timer();
    rig.player.Stop();
    rig.display.tmrProgress_Timer();
    EXPECT_FLOAT_EQ(rig.host.progressWidth(), 100.0f);
}

TEST_F(ProgressBarTest, TickThatFailsEndsQuietly) {
    const int i = rig.Label(5000, u"[CurrentPosition]"_qs);
    rig.PlayTrack(DisplayRig::Track(u"A"_qs, u"B"_qs, 100));
    rig.player.SetPlayerPosition(50);
    rig.display.LoadSong();
    rig.player.failOperation(u"IITTrack.Time"_qs, VbError::Player(u"gone"_qs));
    rig.player.SetPlayerPosition(60);
    StderrCapture errors;
    rig.display.tmrProgress_Timer();
    EXPECT_EQ(errors.Text(), QString());
    EXPECT_EQ(rig.Caption(i), u"1:00"_qs);
    EXPECT_FLOAT_EQ(rig.host.progressWidth(), 100.0f);
}

TEST_F(ProgressBarTest, TickOfAClosingWindowFinishesTheClose) {
    rig.PlayTrack(DisplayRig::Track(u"A"_qs, u"B"_qs, 100));
    rig.player.SetPlayerPosition(50);
    rig.host.Model().Closing = true;
    rig.display.tmrProgress_Timer();
    EXPECT_EQ(rig.host.unloads(), 1);
    EXPECT_FLOAT_EQ(rig.host.progressWidth(), 0.0f);
}

TEST_F(ProgressBarTest, ClickAtTheLeftEdgeSeeksToZero) {
    rig.PlayTrack(DisplayRig::Track(u"A"_qs, u"B"_qs, 180));
    rig.player.SetPlayerPosition(90);
    rig.display.imgProgress_MouseDown(Qt::LeftButton, 0);
    EXPECT_EQ(rig.player.PlayerPosition(), 0);
    EXPECT_EQ(rig.host.interactions(), 1);
}

TEST_F(ProgressBarTest, ClickAtPixelPSeeksToLengthTimesPOverTheFullWidth) {
    rig.PlayTrack(DisplayRig::Track(u"A"_qs, u"B"_qs, 180));
    rig.display.imgProgress_MouseDown(Qt::LeftButton, 50);
    EXPECT_EQ(rig.player.PlayerPosition(), 45);
    // 1 px of 200 is 0.9 s; halves of pixels and of seconds round to even.
    rig.display.imgProgress_MouseDown(Qt::LeftButton, 2.5);
    EXPECT_EQ(rig.player.PlayerPosition(), 2);
}

TEST_F(ProgressBarTest, DraggingWithTheLeftButtonSeeksContinuously) {
    rig.PlayTrack(DisplayRig::Track(u"A"_qs, u"B"_qs, 200));
    rig.display.imgProgress_MouseDown(Qt::LeftButton, 10);
    EXPECT_EQ(rig.player.PlayerPosition(), 10);
    rig.display.imgProgress_MouseMove(Qt::LeftButton, 60);
    EXPECT_EQ(rig.player.PlayerPosition(), 60);
    rig.display.imgProgress_MouseMove(Qt::LeftButton, 120);
    EXPECT_EQ(rig.player.PlayerPosition(), 120);
}

TEST_F(ProgressBarTest, HoveringWithoutAButtonNeverSeeks) {
    rig.PlayTrack(DisplayRig::Track(u"A"_qs, u"B"_qs, 200));
    rig.player.SetPlayerPosition(30);
    rig.display.imgProgress_MouseMove(Qt::NoButton, 150);
    rig.display.imgProgress_MouseMove(Qt::RightButton, 150);
    rig.display.imgProgress_MouseMove(Qt::LeftButton | Qt::RightButton, 150);
    rig.display.imgProgress_MouseDown(Qt::MiddleButton, 150);
    EXPECT_EQ(rig.player.PlayerPosition(), 30);
    // The press still counts as an interaction.
    EXPECT_EQ(rig.host.interactions(), 1);
}

TEST_F(ProgressBarTest, DragBeyondTheBarSeeksNoFurtherThanTheTrack) {
    rig.PlayTrack(DisplayRig::Track(u"A"_qs, u"B"_qs, 200));
    rig.player.SetPlayerPosition(30);
    StderrCapture errors;
    rig.display.imgProgress_MouseMove(Qt::LeftButton, -40);
    EXPECT_EQ(rig.player.PlayerPosition(), 0);
    rig.display.imgProgress_MouseMove(Qt::LeftButton, 900);
    EXPECT_EQ(rig.player.PlayerPosition(), 200);
    EXPECT_EQ(errors.Text(), QString());
}

TEST_F(ProgressBarTest, SeekThatThePlayerRefusesIsReported) {
    rig.PlayTrack(DisplayRig::Track(u"A"_qs, u"B"_qs, 200));
    rig.player.failOperation(u"IiTunes.SetPlayerPosition"_qs, VbError::Player(u"Seek refused"_qs));
    StderrCapture errors;
    rig.display.imgProgress_MouseDown(Qt::LeftButton, 10);
    EXPECT_TRUE(errors.Text().contains(u"Error!: Seek refused"_qs)) << errors.Text().toStdString();
}

TEST_F(ProgressBarTest, NoSeekWithoutATrack) {
    rig.PlayTrack(DisplayRig::Track(u"A"_qs, u"B"_qs, 200));
    rig.player.Stop();
    StderrCapture errors;
    rig.display.imgProgress_MouseDown(Qt::LeftButton, 10);
    EXPECT_EQ(rig.player.PlayerPosition(), 0);
    EXPECT_EQ(errors.Text(), QString());
}

TEST_F(RatingStarsTest, StarsStandAtTheSpacingTheSkinGives) {
    rig.Line(u"ratingscontrol=10;5;12;12;2;off.png;on.png"_qs);
    ShowRating(0);
    const int lefts[] = {10, 24, 38, 52, 66};
    for (int k = 0; k < 5; ++k) {
        EXPECT_EQ(rig.host.star(k).geometry, QRect(lefts[k], 5, 12, 12)) << "star " << k;
        EXPECT_TRUE(rig.host.star(k).visible);
    }
}

TEST_F(RatingStarsTest, NumbersAreReadByTheirLeadingPart) {
    rig.Line(u"ratingscontrol=10px;5;12px;12;2 ;off.png;on.png"_qs);
    ShowRating(0);
    EXPECT_EQ(rig.host.star(1).geometry, QRect(24, 5, 12, 12));
}

TEST_F(RatingStarsTest, StarsAreLitByAStrictLessThanTest) {
    rig.Line(u"ratingscontrol=10;5;12;12;2;off.png;on.png"_qs);
    ShowRating(60);
    EXPECT_EQ(LitStars(), 3);
    ShowRating(50);
    EXPECT_EQ(LitStars(), 3);
    ShowRating(0);
    EXPECT_EQ(LitStars(), 0);
    ShowRating(100);
    EXPECT_EQ(LitStars(), 5);
    ShowRating(1);
    EXPECT_EQ(LitStars(), 1);
}

TEST_F(RatingStarsTest, NoneStarsAreEmptyVisibleClickAreas) {
    rig.Line(u"ratingscontrol=10;5;12;12;2;NONE;on.png"_qs);
    ShowRating(100);
    for (int k = 0; k < 5; ++k) {
        EXPECT_TRUE(rig.host.star(k).visible);
        EXPECT_TRUE(rig.host.star(k).picture.isNull());
    }
}

TEST_F(RatingStarsTest, LowerCaseNoneIsAFileNameNotTheKeyword) {
    ASSERT_TRUE(WritePictureFile(rig.folder + u"none"_qs, Qt::magenta));
    rig.Line(u"ratingscontrol=10;5;12;12;2;none;on.png"_qs);
    ShowRating(40);
    EXPECT_EQ(ColourOf(rig.host.star(4).picture), QColor(Qt::magenta));
    EXPECT_EQ(LitStars(), 2);
}

TEST_F(RatingStarsTest, MissingLowerCaseNoneFileIsReportedByTheRefresh) {
    rig.Line(u"ratingscontrol=10;5;12;12;2;none;on.png"_qs);
    StderrCapture errors;
    ShowRating(40);
    EXPECT_TRUE(errors.Text().contains(u"Pelorin: Error in RefreshInfo: Cannot load file"_qs))
        << errors.Text().toStdString();
}

TEST_F(RatingStarsTest, SkinWithoutRatingsControlHasNoStars) {
    ShowRating(80);
    EXPECT_FALSE(rig.host.star(0).visible);
}

TEST_F(RatingStarsTest, ClickOnAStarRatesTwentyToOneHundred) {
    rig.Line(u"ratingscontrol=10;5;12;12;2;off.png;on.png"_qs);
    const int id = rig.PlayTrack(DisplayRig::Track(u"A"_qs, u"B"_qs));
    for (int index = 0; index < 5; ++index) {
        rig.display.imgRatings_Click(index);
        EXPECT_EQ(rig.player.trackData(id).rating, (index + 1) * 20);
    }
    // The click does not redraw; the player's change event brings the refresh.
    EXPECT_FALSE(rig.host.star(0).visible);
}

TEST_F(RatingStarsTest, ClickOutsideTheFiveStarsDoesNothing) {
    MemoryTrackData data = DisplayRig::Track(u"A"_qs, u"B"_qs);
    data.rating = 40;
    const int id = rig.PlayTrack(data);
    rig.display.imgRatings_Click(-1);
    rig.display.imgRatings_Click(5);
    EXPECT_EQ(rig.player.trackData(id).rating, 40);
    EXPECT_EQ(rig.host.guards(), 0);
}

TEST_F(RatingStarsTest, ClickWithoutATrackDoesNothing) {
    MemoryTrackData data = DisplayRig::Track(u"A"_qs, u"B"_qs);
    data.rating = 40;
    const int id = rig.PlayTrack(data);
    rig.player.Stop();
    rig.display.imgRatings_Click(4);
    EXPECT_EQ(rig.player.trackData(id).rating, 40);
}

TEST_F(RatingStarsTest, PressOnAStarCountsAsAnInteraction) {
    rig.display.imgRatings_MouseDown(2);
    EXPECT_EQ(rig.host.interactions(), 1);
}

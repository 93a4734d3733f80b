#include "DisplayRig.h"
#include "base/VbError.h"
#include "display/TagTemplate.h"

#include <QLocale>

using namespace Pelorin;
using Pelorin::Testing::DisplayRig;
using Pelorin::Testing::StderrCapture;

namespace {

// A label wide enough for anything the tests put in it.
constexpr int Wide = 5000;

class RefreshInfo : public ::testing::Test {
protected:
    void TearDown() override { QLocale::setDefault(QLocale::system()); }

    MemoryTrackData FullTrack() {
        MemoryTrackData data = DisplayRig::Track(u"Aurora Quartet"_qs, u"Morning Light"_qs, 187);
        data.album = u"Sunrise Sessions"_qs;
        data.playedCount = 12;
        data.bitRate = 320;
        data.bpm = 96;
        data.comment = u"Recorded at dawn"_qs;
        data.compilation = true;
        data.composer = u"Ada Lind"_qs;
        data.genre = u"Jazz"_qs;
        data.rating = 80;
        data.trackNumber = 3;
        data.year = 2001;
        return data;
    }

    DisplayRig rig;
};

} // namespace

TEST_F(RefreshInfo, EveryPlaceholderIsFilledFromTheCurrentTrack) {
    const int i = rig.Label(Wide, u"[Artist]|[Title]|[Album]|[Time]|[PlayCount]|[BitRate]|[BPM]|"
                                  u"[Comment]|[Compilation]|[Composer]|[Genre]|[TrackNumber]|"
                                  u"[Year]|[CurrentPlaylistName]|[CurrentPlaylistTracks]"_qs);
    rig.PlayTrack(FullTrack());
    rig.display.LoadSong();
    EXPECT_EQ(rig.Caption(i), u"Aurora Quartet|Morning Light|Sunrise Sessions|3:07|12|320|96|"
                              u"Recorded at dawn|True|Ada Lind|Jazz|3|2001|Play Queue|1"_qs);
    EXPECT_EQ(rig.display.ScrollTag(i), u"noscroll"_qs);
    EXPECT_EQ(rig.LabelText(i), rig.Caption(i));
}

TEST_F(RefreshInfo, EveryOccurrenceIsReplaced) {
    const int i = rig.Label(Wide, u"[Artist] and [Artist] and [ARTIST]"_qs);
    rig.PlayTrack(DisplayRig::Track(u"Cedar Lane"_qs, u"Lanterns"_qs));
    rig.display.LoadSong();
    EXPECT_EQ(rig.Caption(i), u"Cedar Lane and Cedar Lane and Cedar Lane"_qs);
}

TEST_F(RefreshInfo, TemplateWithoutPlaceholdersIsShownUnchangedAndStillScrollsWhenTooWide) {
    const int fits = rig.Label(Wide, u"Now playing"_qs);
    const int tooWide = rig.Label(10, u"Now playing"_qs);
    rig.PlayTrack(DisplayRig::Track(u"A"_qs, u"B"_qs));
    rig.display.LoadSong();
    EXPECT_EQ(rig.Caption(fits), u"Now playing"_qs);
    EXPECT_EQ(rig.display.ScrollTag(fits), u"noscroll"_qs);
    EXPECT_EQ(rig.LabelText(tooWide), u"     Now playing"_qs.mid(1) + u' ');
    EXPECT_NE(rig.display.ScrollTag(tooWide), u"noscroll"_qs);
}

TEST_F(RefreshInfo, LowerCasePlaceholderIsFilledLikeTheCapitalisedOne) {
    const int i = rig.Label(Wide, u"[artist] / [TITLE] / [yEaR]"_qs);
    MemoryTrackData data = DisplayRig::Track(u"Neon Harbor"_qs, u"Headlights"_qs);
    data.year = 2015;
    rig.PlayTrack(data);
    rig.display.LoadSong();
    EXPECT_EQ(rig.Caption(i), u"Neon Harbor / Headlights / 2015"_qs);
}

TEST_F(RefreshInfo, WithoutCurrentPlaylistThePlaylistPlaceholdersStayLiteral) {
    const int i = rig.Label(
        Wide,
        u"[CurrentPlaylistName] [CurrentPlaylistTracks] [CurrentPlaylistDuration] [Artist]"_qs);
    rig.PlayTrack(DisplayRig::Track(u"Someone"_qs, u"Something"_qs));
    rig.player.setCurrentPlaylistAbsent(true);
    rig.display.LoadSong();
    EXPECT_EQ(
        rig.Caption(i),
        u"[CurrentPlaylistName] [CurrentPlaylistTracks] [CurrentPlaylistDuration] Someone"_qs);
}

TEST_F(RefreshInfo, RatingShowsStarsWithAFractionForHalfSteps) {
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    const int i = rig.Label(Wide, u"[Rating]"_qs);
    MemoryTrackData data = DisplayRig::Track(u"A"_qs, u"B"_qs);
    for (const auto& [rating, text] :
         {std::pair{60, u"3"_qs}, std::pair{0, u"0"_qs}, std::pair{50, u"2.5"_qs},
          std::pair{100, u"5"_qs}, std::pair{1, u"0.05"_qs}}) {
        data.rating = rating;
        rig.PlayTrack(data);
        rig.display.LoadSong();
        EXPECT_EQ(rig.Caption(i), text) << "rating " << rating;
    }
}

TEST_F(RefreshInfo, RatingUsesTheDecimalCommaOfTheUsersLocale) {
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    const int i = rig.Label(Wide, u"[Rating]"_qs);
    MemoryTrackData data = DisplayRig::Track(u"A"_qs, u"B"_qs);
    data.rating = 50;
    rig.PlayTrack(data);
    rig.display.LoadSong();
    EXPECT_EQ(rig.Caption(i), u"2,5"_qs);
}

TEST_F(RefreshInfo, PlaylistDurationIsWholeSecondsNotATime) {
    const int i = rig.Label(Wide, u"[CurrentPlaylistDuration]"_qs);
    rig.PlayTrack(DisplayRig::Track(u"A"_qs, u"Long"_qs, 3723));
    rig.display.LoadSong();
    EXPECT_EQ(rig.Caption(i), u"3723"_qs);
}

TEST_F(RefreshInfo, CurrentPositionShowsStandByTextUntilTheProgressTimerWritesTheTime) {
    // Too narrow, so the scroll step at the end of the refresh shows the refreshed text after
    // the refresh's own progress tick wrote the time.
    const int i = rig.Label(60, u"[CurrentPosition] of [Time]"_qs);
    rig.PlayTrack(DisplayRig::Track(u"A"_qs, u"B"_qs, 200));
    rig.player.SetPlayerPosition(65);
    rig.display.LoadSong();
    EXPECT_TRUE(rig.display.HasTimeLabels());
    EXPECT_EQ(rig.LabelText(i), u"    xx:xx of 3:20 "_qs);
    EXPECT_TRUE(rig.Caption(i).startsWith(u"    xx"_qs)) << rig.Caption(i).toStdString();
    rig.display.tmrProgress_Timer();
    EXPECT_EQ(rig.Caption(i), u"1:05 of [Time]"_qs);
}

TEST_F(RefreshInfo, RemainingTimeIsFilledFromTheRawTemplateOnEveryTick) {
    const int i = rig.Label(Wide, u"-[CurrentRemaining]"_qs);
    rig.PlayTrack(DisplayRig::Track(u"A"_qs, u"B"_qs, 200));
    rig.player.SetPlayerPosition(65);
    rig.display.LoadSong();
    EXPECT_EQ(rig.LabelText(i), u"-xx:xx"_qs);
    EXPECT_EQ(rig.Caption(i), u"-2:15"_qs);
    rig.player.SetPlayerPosition(70);
    rig.display.tmrProgress_Timer();
    EXPECT_EQ(rig.Caption(i), u"-2:10"_qs);
}

TEST_F(RefreshInfo, RunningTimeLabelShowsOtherPlaceholdersLiterally) {
    const int i = rig.Label(Wide, u"[Artist] [CurrentPosition]"_qs);
    rig.PlayTrack(DisplayRig::Track(u"Ada"_qs, u"B"_qs, 200));
    rig.player.SetPlayerPosition(5);
    rig.display.LoadSong();
    EXPECT_EQ(rig.Caption(i), u"[Artist] 0:05"_qs);
}

TEST_F(RefreshInfo, LabelWithBothRunningTimesEndsEachTickWithOnlyTheRemainingTime) {
    const int i = rig.Label(Wide, u"[CurrentPosition]/[CurrentRemaining]"_qs);
    rig.PlayTrack(DisplayRig::Track(u"A"_qs, u"B"_qs, 200));
    rig.player.SetPlayerPosition(5);
    rig.display.LoadSong();
    EXPECT_EQ(rig.Caption(i), u"[CurrentPosition]/3:15"_qs);
}

TEST_F(RefreshInfo, LowerCaseRunningTimeMarksATimeLabelButIsNeverReplaced) {
    const int i = rig.Label(Wide, u"[currentposition]"_qs);
    rig.PlayTrack(DisplayRig::Track(u"A"_qs, u"B"_qs, 200));
    rig.player.SetPlayerPosition(5);
    rig.display.LoadSong();
    EXPECT_TRUE(rig.display.HasTimeLabels());
    EXPECT_EQ(rig.LabelText(i), u"xx:xx"_qs);
    EXPECT_EQ(rig.Caption(i), u"[currentposition]"_qs);
}

TEST_F(RefreshInfo, HasTimeLabelsIsRecomputedOnEveryRefresh) {
    const int i = rig.Label(Wide, u"[CurrentRemaining]"_qs);
    rig.PlayTrack(DisplayRig::Track(u"A"_qs, u"B"_qs, 200));
    rig.display.LoadSong();
    EXPECT_TRUE(rig.display.HasTimeLabels());
    rig.host.Model().lblInfo[static_cast<std::size_t>(i)].Tag = u"[Artist]"_qs;
    rig.display.LoadSong();
    EXPECT_FALSE(rig.display.HasTimeLabels());
}

TEST_F(RefreshInfo, ValueHoldingALaterPlaceholderIsReplacedAgain) {
    const int i = rig.Label(Wide, u"[Artist]"_qs);
    MemoryTrackData data = DisplayRig::Track(u"[Year]"_qs, u"B"_qs);
    data.year = 1998;
    rig.PlayTrack(data);
    rig.display.LoadSong();
    EXPECT_EQ(rig.Caption(i), u"1998"_qs);
}

TEST_F(RefreshInfo, CaptionExactlyAsWideAsItsLabelDoesNotScroll) {
    const QString text = u"Paper Boats"_qs;
    const int i = rig.Label(Wide, u"[Title]"_qs);
    rig.SetLabelWidth(i, rig.TextWidth(i, text));
    rig.PlayTrack(DisplayRig::Track(u"A"_qs, text));
    rig.display.LoadSong();
    EXPECT_EQ(rig.display.ScrollTag(i), u"noscroll"_qs);
    EXPECT_EQ(rig.Caption(i), text);
    EXPECT_EQ(rig.LabelText(i), text);
}

TEST_F(RefreshInfo, CaptionOneUnitWiderThanItsLabelGetsTheLeadAndAFitLength) {
    const QString text = u"Paper Boats"_qs;
    const int i = rig.Label(Wide, u"[Title]"_qs);
    rig.SetLabelWidth(i, rig.TextWidth(i, text) - 1);
    rig.PlayTrack(DisplayRig::Track(u"A"_qs, text));
    rig.display.LoadSong();
    // The last character dropped makes it fit (it is strictly narrower).
    EXPECT_EQ(rig.display.ScrollTag(i), QString::number(text.size() - 1));
    // The refresh ends with one scroll step: four of the five spaces remain in front.
    EXPECT_EQ(rig.LabelText(i), u"    "_qs + text + u' ');
    EXPECT_TRUE(rig.Caption(i).startsWith(u"    P"_qs));
}

TEST_F(RefreshInfo, FitLengthIsTheLongestBeginningStrictlyNarrowerThanTheLabel) {
    const QString text = u"Morning Light on the Water"_qs;
    const int i = rig.Label(Wide, u"[Title]"_qs);
    const int width = rig.TextWidth(i, text.left(10));
    rig.SetLabelWidth(i, width);
    rig.PlayTrack(DisplayRig::Track(u"A"_qs, text));
    rig.display.LoadSong();
    qsizetype expected = 0;
    for (qsizetype n = text.size(); n >= 1; --n) {
        if (rig.TextWidth(i, text.left(n)) < width) {
            expected = n;
            break;
        }
    }
    EXPECT_EQ(rig.display.ScrollTag(i), QString::number(expected));
}

TEST_F(RefreshInfo, LabelTooNarrowForItsFirstCharacterKeepsThePreviousFitLength) {
    const QString text = u"Wide Open Water"_qs;
    const int i = rig.Label(Wide, u"[Title]"_qs);
    rig.SetLabelWidth(i, rig.TextWidth(i, text.left(5)) + 1);
    rig.PlayTrack(DisplayRig::Track(u"A"_qs, text));
    rig.display.LoadSong();
    const QString previous = rig.display.ScrollTag(i);
    EXPECT_EQ(previous, u"5"_qs);

    rig.SetLabelWidth(i, 1);
    rig.display.LoadSong();
    EXPECT_EQ(rig.display.ScrollTag(i), previous);
    EXPECT_EQ(rig.LabelText(i), u"    "_qs + text + u' ');
}

TEST_F(RefreshInfo, NothingHappensWithoutACurrentTrack) {
    const int i = rig.Label(Wide, u"[Artist]"_qs);
    rig.PlayTrack(DisplayRig::Track(u"Kept"_qs, u"B"_qs));
    rig.display.LoadSong();
    rig.player.Stop();
    const int repaints = rig.host.repaints();
    rig.display.LoadSong();
    EXPECT_EQ(rig.Caption(i), u"Kept"_qs);
    EXPECT_EQ(rig.host.repaints(), repaints + 1);
}

TEST_F(RefreshInfo, NothingHappensWithoutAPlayer) {
    const int i = rig.Label(Wide, u"[Artist]"_qs);
    rig.host.setPlayer(nullptr);
    rig.display.LoadSong();
    EXPECT_EQ(rig.Caption(i), QString());
    EXPECT_EQ(rig.LabelText(i), QString());
}

TEST_F(RefreshInfo, FailureEndsTheRefreshWithTheErrorBoxAndKeepsThePartlyFilledCaption) {
    const int first = rig.Label(Wide, u"[Artist] - [Album] - [Title]"_qs);
    const int second = rig.Label(Wide, u"[Artist]"_qs);
    rig.PlayTrack(DisplayRig::Track(u"Old"_qs, u"Song"_qs));
    rig.display.LoadSong();
    ASSERT_EQ(rig.Caption(second), u"Old"_qs);
    rig.Line(u"ratingscontrol=10;5;12;12;2;NONE;lit.png"_qs);

    MemoryTrackData data = DisplayRig::Track(u"New"_qs, u"Tune"_qs);
    rig.PlayTrack(data);
    rig.player.failOperation(u"IITTrack.Album"_qs, VbError::Player(u"The track went away"_qs));
    StderrCapture errors;
    rig.display.LoadSong();
    EXPECT_TRUE(errors.Text().contains(u"Pelorin: Error in RefreshInfo: The track went away"_qs))
        << errors.Text().toStdString();
    // [Artist] and [Title] come before [Album] in the table, [Year] after it.
    EXPECT_EQ(rig.Caption(first), u"New - [Album] - Tune"_qs);
    EXPECT_EQ(rig.Caption(second), u"Old"_qs);
    // The steps after the labels were skipped: no stars were placed.
    EXPECT_FALSE(rig.host.star(0).visible);

    rig.player.clearFailures();
    rig.display.LoadSong();
    EXPECT_EQ(rig.Caption(second), u"New"_qs);
    EXPECT_TRUE(rig.host.star(0).visible);
}

TEST_F(RefreshInfo, RefreshEndsWithOneProgressTickOneScrollStepAndTheStars) {
    rig.Label(Wide, u"[Artist]"_qs);
    ASSERT_TRUE(Testing::WritePictureFile(rig.folder + u"bar.png"_qs, Qt::blue));
    rig.Line(u"progresscontrol=0;0;200;4;bar.png"_qs);
    rig.Line(u"ratingscontrol=10;5;12;12;2;NONE;x"_qs);
    rig.PlayTrack(DisplayRig::Track(u"A"_qs, u"B"_qs, 100));
    rig.player.SetPlayerPosition(50);
    const int repaints = rig.host.repaints();
    rig.display.LoadSong();
    EXPECT_FLOAT_EQ(rig.host.progressWidth(), 100.0f);
    // LoadSong's repaint and the scroll step's.
    EXPECT_EQ(rig.host.repaints(), repaints + 2);
    EXPECT_TRUE(rig.host.star(4).visible);
}

TEST_F(RefreshInfo, ARefreshReadsTheCurrentTrackOnceForTheLabelsTheBarAndTheStars) {
    ASSERT_TRUE(Testing::WritePictureFile(rig.folder + u"bar.png"_qs, Qt::green));
    ASSERT_TRUE(Testing::WritePictureFile(rig.folder + u"off.png"_qs, Qt::gray));
    ASSERT_TRUE(Testing::WritePictureFile(rig.folder + u"on.png"_qs, Qt::yellow));
    rig.Line(u"progresscontrol=10;90;200;6;bar.png"_qs);
    rig.Line(u"ratingscontrol=10;5;12;12;2;off.png;on.png"_qs);
    rig.Label(300, u"[Artist] - [Title] ([Time])"_qs);
    rig.Label(300, u"[Album] [Rating] [CurrentRemaining]"_qs);
    rig.PlayTrack(FullTrack());
    const int before = rig.player.operationCount(u"IiTunes.CurrentTrack"_qs);
    const int guardsBefore = rig.host.guards();
    rig.display.LoadSong();
    const int reads = rig.player.operationCount(u"IiTunes.CurrentTrack"_qs) - before;
    const int guards = rig.host.guards() - guardsBefore;
    // Each guard asks for the track as the player link's guard does; the refresh itself reads it
    // once and hands it on.
    EXPECT_EQ(reads, guards + 1);
    EXPECT_EQ(rig.Caption(1), u"Aurora Quartet - Morning Light (3:07)"_qs);
    EXPECT_TRUE(rig.host.star(3).visible);
}

TEST_F(RefreshInfo, TagsThatHoldPlaceholdersAreCutAt4096CharactersAndLaterStepsStillRun) {
    const int label = rig.Label(300, u"[Artist]"_qs);
    MemoryTrackData data =
        DisplayRig::Track(u"[Title]"_qs.repeated(1000), u"[Album]"_qs.repeated(10));
    data.album = u"ab"_qs;
    rig.PlayTrack(data);
    StderrCapture errors;
    rig.display.LoadSong();
    const QString shown = rig.LabelText(label).trimmed();
    EXPECT_LE(rig.LabelText(label).size(), TagTemplate::MaxCaption + 5) << "the scroll lead";
    EXPECT_TRUE(shown.startsWith(u"abababab"_qs)) << shown.left(40).toStdString();
    EXPECT_FALSE(shown.contains(u"[Album]"_qs)) << "the album step ran on the cut text";
    EXPECT_FALSE(shown.contains(u"[Title]"_qs));
    EXPECT_TRUE(errors.Text().isEmpty()) << errors.Text().toStdString();
}

TEST_F(RefreshInfo, ACaptionWithinTheLimitIsFilledAsBefore) {
    const int label = rig.Label(5000, u"[Artist] / [artist] / [Title]"_qs);
    rig.PlayTrack(DisplayRig::Track(u"A[Title]"_qs, u"T"_qs));
    rig.display.LoadSong();
    EXPECT_EQ(rig.Caption(label), u"AT / AT / T"_qs);
}

// The lyrics control walking a real sync file while the in-memory player plays: the position is
// set by hand and the clock stepped by hand, one pass of the loop at a time.
#include "lyrics/LyricsControl.h"

#include "support/player/memory/MemoryPlayer.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>

using namespace Pelorin;

namespace {

const QByteArray Song = "[CantomSyncFile]1\r\n[Timing] Normal\r\n[Creator]Me\r\n"
                        "[DefaultLyrics]~ intro ~\r\n[TimeOffset]0\r\n[Lyrics]\r\n"
                        "[2]first\r\n[4]second\r\n[6]third\r\n[EndLyrics]\r\n";

class LyricsControlTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dir.isValid());
        programFolder = dir.path() + u'/';
        ASSERT_TRUE(QDir().mkpath(programFolder + QStringLiteral("Lyrics/Band")));
        MemoryTrackData data;
        data.name = QStringLiteral("Song");
        data.artist = QStringLiteral("Band");
        data.duration = 300;
        trackId = player.addLibraryTrack(data);
        player.enqueue(trackId);
        lyrics = std::make_unique<LyricsControl>(programFolder, [this] { return clock; });
    }

    void WriteLyrics(const QByteArray& bytes) {
        QFile file(programFolder + QStringLiteral("Lyrics/Band/Song.lyr"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    void Start() {
        player.Play();
        LetEventsRun();
        Control().StartLyrics(&player, QStringLiteral("APPPATH\\Lyrics\\"));
        Control().Pass(); // the first pass takes the player's position
    }

    static void LetEventsRun() {
        for (int i = 0; i < 3; ++i)
            QCoreApplication::processEvents();
    }

    // The player at `seconds`, then one pass.
    void At(int seconds) {
        player.SetPlayerPosition(seconds);
        clock += 50;
        Control().Pass();
    }
    // A tenth of a second of the clock, then one pass.
    void Tenth() {
        clock += 100;
        Control().Pass();
    }

    QTemporaryDir dir;
    QString programFolder;
    MemoryPlayer player;
    int trackId = 0;
    qint64 clock = 1000;
    std::unique_ptr<LyricsControl> lyrics;
    LyricsControl& Control() { return *lyrics; }
};

using LyricsControlInFolder = LyricsControlTest;

TEST_F(LyricsControlInFolder, StartingShowsTheDefaultTextAndHoldsTheFirstLine) {
    WriteLyrics(Song);
    QSignalSpy shown(&Control(), &LyricsControl::textChanged);
    Start();
    EXPECT_TRUE(Control().Running());
    EXPECT_EQ(Control().CurText(), QStringLiteral("~ intro ~"));
    EXPECT_EQ(Control().NextText(), QStringLiteral("first"));
    EXPECT_DOUBLE_EQ(Control().NextTime(), 2);
    EXPECT_EQ(shown.count(), 1);
    EXPECT_EQ(LyricsControl::getVersion(), QStringLiteral("1"));
}

TEST_F(LyricsControlInFolder, EachTimedLineIsShownOnTwoStepsInTurn) {
    WriteLyrics(Song);
    Start();
    QStringList shown;
    QObject::connect(&Control(), &LyricsControl::textChanged, &Control(),
                     [&](const QString& t) { shown.append(t); });
    for (int second = 1; second <= 7; ++second)
        At(second);
    EXPECT_EQ(shown, QStringList({QStringLiteral("first"), QStringLiteral("first"),
                                  QStringLiteral("second"), QStringLiteral("third"),
                                  QStringLiteral("~ intro ~")}))
        << "the first line twice, then one step per line as the seconds go, then the default";
}

TEST_F(LyricsControlInFolder, StoppingPlaybackShowsNoSongPlayingAndEmptiesTheLines) {
    WriteLyrics(Song);
    Start();
    At(2);
    player.Stop();
    LetEventsRun();
    EXPECT_EQ(Control().CurText(), QStringLiteral("No Song Playing!"));
    EXPECT_EQ(Control().File().Lines(), QStringList{QString()});
    for (int i = 0; i < 20; ++i)
        Tenth();
    EXPECT_EQ(Control().CurText(), QStringLiteral("No Song Playing!")) << "it stays until play";
    player.Play();
    LetEventsRun();
    EXPECT_EQ(Control().CurText(), QStringLiteral("~ intro ~")) << "play loads the lyrics again";
}

TEST_F(LyricsControlInFolder, SeekingBackBeforeTheLineLastTakenRestartsAtTheDefaultText) {
    WriteLyrics(Song);
    Start();
    for (int second = 2; second <= 5; ++second)
        At(second);
    ASSERT_GT(Control().LineStart(), 1);
    QStringList shown;
    QObject::connect(&Control(), &LyricsControl::textChanged, &Control(),
                     [&](const QString& t) { shown.append(t); });
    At(1);
    ASSERT_FALSE(shown.isEmpty());
    EXPECT_EQ(shown.first(), QStringLiteral("~ intro ~"));
    EXPECT_EQ(Control().NextText(), QStringLiteral("first"));
    EXPECT_DOUBLE_EQ(Control().NextTime(), 2);
}

TEST_F(LyricsControlInFolder, APausedPositionLetsTheTenthsGrowPastOneSecond) {
    WriteLyrics(
        "[CantomSyncFile]1\r\n[DefaultLyrics]d\r\n[Lyrics]\r\n[3.5]early\r\n[EndLyrics]\r\n");
    Start();
    At(2);
    player.Pause();
    for (int i = 0; i < 16; ++i)
        Tenth();
    EXPECT_GT(Control().Fraction(), 1.0) << "only a new whole second resets the tenths";
    EXPECT_EQ(Control().LastPos(), 2);
    EXPECT_EQ(Control().CurText(), QStringLiteral("early")) << "due at 3.5 while paused at 2";
    EXPECT_DOUBLE_EQ(Control().Position(), Control().LastPos() + Control().Fraction());
}

TEST_F(LyricsControlInFolder, TheLineAfterAnEmptyLineIsNeverShown) {
    WriteLyrics("[CantomSyncFile]1\r\n[DefaultLyrics]d\r\n[Lyrics]\r\n[1]one\r\n\r\n[3]lost\r\n"
                "[5]five\r\n[EndLyrics]\r\n");
    Start();
    QStringList shown;
    QObject::connect(&Control(), &LyricsControl::textChanged, &Control(),
                     [&](const QString& t) { shown.append(t); });
    for (int second = 1; second <= 8; ++second)
        At(second);
    EXPECT_FALSE(shown.contains(QStringLiteral("lost")));
    EXPECT_TRUE(shown.contains(QStringLiteral("five")));
}

TEST_F(LyricsControlInFolder, AfterTheEndTheDefaultTextShowsAndTheNextHeaderIsReportedOnce) {
    WriteLyrics(Song);
    Start();
    testing::internal::CaptureStderr();
    for (int second = 1; second <= 12; ++second)
        At(second);
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_EQ(Control().CurText(), QStringLiteral("~ intro ~"));
    EXPECT_NE(err.find("the lyrics stop at line 5 (\"[TimeOffset]0\"): Type mismatch"),
              std::string::npos)
        << err;
    EXPECT_EQ(err.find("stop at", err.find("stop at") + 1), std::string::npos) << "once";
    EXPECT_TRUE(Control().Running()) << "the next track starts afresh";
}

TEST_F(LyricsControlInFolder, ATrackChangeLoadsTheNewTracksLyrics) {
    WriteLyrics(Song);
    Start();
    MemoryTrackData other;
    other.name = QStringLiteral("Other");
    other.artist = QStringLiteral("Band");
    other.duration = 100;
    player.enqueue(player.addLibraryTrack(other));
    QFile file(programFolder + QStringLiteral("Lyrics/Band/Other.lyr"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("[CantomSyncFile]1\r\n[DefaultLyrics]other intro\r\n[Lyrics]\r\n[1]x\r\n"
               "[EndLyrics]\r\n");
    file.close();
    player.NextTrack();
    LetEventsRun();
    EXPECT_EQ(Control().CurText(), QStringLiteral("other intro"));
}

TEST_F(LyricsControlInFolder, ATrackWithoutAFileShowsOnlyTheHeldEmptyText) {
    Start();
    EXPECT_EQ(Control().CurText(), QString());
    QSignalSpy shown(&Control(), &LyricsControl::textChanged);
    for (int second = 1; second <= 5; ++second)
        At(second);
    for (const QList<QVariant>& call : shown)
        EXPECT_EQ(call.at(0).toString(), QString()) << "nothing but the held values is due";
    EXPECT_EQ(Control().CurText(), QString());
}

TEST_F(LyricsControlInFolder, ALineThatIsNoTimeIsReportedAndTheWindowKeepsRunning) {
    WriteLyrics("[CantomSyncFile]1\r\n[DefaultLyrics]d\r\n[Lyrics]\r\n[1]one\r\n[abc]bad\r\n"
                "[EndLyrics]\r\n");
    Start();
    testing::internal::CaptureStderr();
    for (int second = 1; second <= 4; ++second)
        At(second);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("Type mismatch"), std::string::npos);
    EXPECT_TRUE(Control().Running());
}

TEST_F(LyricsControlInFolder, ClosingEndsTheLoopOnce) {
    WriteLyrics(Song);
    Start();
    QSignalSpy ended(&Control(), &LyricsControl::loopEnded);
    Control().CloseLyrics();
    Control().CloseLyrics();
    EXPECT_EQ(ended.count(), 1);
    EXPECT_FALSE(Control().Running());
    EXPECT_TRUE(Control().Closing());
}

TEST_F(LyricsControlTest, AControlThatNeverStartedEndsNothingWhenClosed) {
    QSignalSpy ended(&Control(), &LyricsControl::loopEnded);
    Control().CloseLyrics();
    EXPECT_EQ(ended.count(), 0);
}

} // namespace

// What the binding wires together on a real skin window (offscreen) with the in-memory player:
// player events to skin events and the display, the window's timers and presses to the display
// and the command language, window commands to the window and the shell.
#include "BoundWindowRig.h"
#include "StderrCapture.h"
#include "display/TrackDisplay.h"
#include "lyrics/LyricsControl.h"
#include "runcode/CommandInterpreter.h"
#include "skin/window/VbTimer.h"

#include <QBuffer>
#include <QDropEvent>
#include <QMenu>
#include <QMimeData>
#include <QTest>
#include <QUrl>

using namespace Pelorin;
using namespace Pelorin::Testing;

namespace {

class SkinWindowBindingTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(rig.dir.isValid()); }

    frmMain* Open(const QStringList& lines) {
        binding = rig.OpenSkin(QStringLiteral("Bound"), lines);
        window = binding->Window();
        return window;
    }

    // Delivers the player's queued events.
    static void LetEventsRun() {
        for (int i = 0; i < 5; ++i)
            QCoreApplication::processEvents();
    }

    QString Caption(int index) const { return window->lblInfo(index)->text(); }

    BoundWindowRig rig;
    SkinWindowBinding* binding = nullptr;
    QPointer<frmMain> window;
};

TEST_F(SkinWindowBindingTest, AWindowConnectsToThePlayerWhenItIsCreated) {
    rig.Player();
    Open({QStringLiteral("width=100"), QStringLiteral("height=40")});
    EXPECT_EQ(binding->Link().iTunesR(), rig.application.iTunesApp());
}

TEST_F(SkinWindowBindingTest, WithoutAPlayerTheWindowOpensAndConnectsWhenTheFirstGuardFindsOne) {
    rig.playerRunning = false;
    Open({QStringLiteral("width=100"), QStringLiteral("height=40"),
          QStringLiteral("label=0;0;100;20;[Title]")});
    EXPECT_EQ(binding->Link().iTunesR(), nullptr);
    rig.playerRunning = true;
    rig.PlayTrack(BoundWindowRig::Track(QStringLiteral("Late"), 100));
    EXPECT_FALSE(binding->Link().iTunesIsNothing(true));
    LetEventsRun();
    binding->LoadSong();
    EXPECT_EQ(Caption(1), QStringLiteral("Late"));
}

TEST_F(SkinWindowBindingTest, LoadingTheSkinFillsTheLabelsFromThePlayingTrack) {
    rig.PlayTrack(BoundWindowRig::Track(QStringLiteral("First"), 100));
    Open({QStringLiteral("width=300"), QStringLiteral("height=40"),
          QStringLiteral("label=0;0;300;20;[Title] by [Artist]")});
    EXPECT_EQ(Caption(1), QStringLiteral("First by Artist of First"));
}

TEST_F(SkinWindowBindingTest, ATrackChangeRunsTheNewsongCodesThenRefreshesTheLabels) {
    const int first = rig.PlayTrack(BoundWindowRig::Track(QStringLiteral("First"), 100));
    const int second = rig.Player().addLibraryTrack(BoundWindowRig::Track(u"Second"_qs, 100));
    rig.Player().enqueue(second);
    rig.Player().SetSoundVolume(40);
    Open({QStringLiteral("width=300"), QStringLiteral("height=40"),
          QStringLiteral("label=0;0;300;20;[Title]"), QStringLiteral("event=newsong;volumeup"),
          QStringLiteral("event=NewSong;volumeup"), QStringLiteral("event=pause;volumeup")});
    LetEventsRun();
    const int volume = rig.Player().SoundVolume();
    ASSERT_EQ(Caption(1), QStringLiteral("First"));
    rig.Player().NextTrack();
    LetEventsRun();
    EXPECT_EQ(Caption(1), QStringLiteral("Second"));
    EXPECT_EQ(rig.Player().SoundVolume(), volume + 2) << "both newsong records ran";
    Q_UNUSED(first);
}

TEST_F(SkinWindowBindingTest, StoppingRunsTheStopsongCodesAndKeepsTheLabels) {
    rig.PlayTrack(BoundWindowRig::Track(QStringLiteral("Kept"), 100));
    rig.Player().SetSoundVolume(40);
    Open({QStringLiteral("width=300"), QStringLiteral("height=40"),
          QStringLiteral("label=0;0;300;20;[Title]"), QStringLiteral("event=Stopsong;volumeup")});
    LetEventsRun();
    const int volume = rig.Player().SoundVolume();
    rig.Player().Stop();
    LetEventsRun();
    EXPECT_EQ(rig.Player().SoundVolume(), volume + 1);
    EXPECT_EQ(Caption(1), QStringLiteral("Kept"));
}

TEST_F(SkinWindowBindingTest, ThePlayerQuittingClosesEveryWindow) {
    rig.PlayTrack(BoundWindowRig::Track(QStringLiteral("Last"), 100));
    Open({QStringLiteral("width=100"), QStringLiteral("height=40")});
    rig.Player().fireQuittingEvent();
    EXPECT_EQ(rig.closeAllCalls, 1);
    EXPECT_TRUE(window->IsUnloaded());
}

TEST_F(SkinWindowBindingTest, RunCodeLinesRunThroughTheCommandLanguageWhileTheSkinLoads) {
    rig.PlayTrack(BoundWindowRig::Track(QStringLiteral("Any"), 100));
    rig.Player().SetSoundVolume(30);
    Open({QStringLiteral("width=100"), QStringLiteral("height=40"),
          QStringLiteral("runcode={volumeup}{volumeup}")});
    // The compound code also runs its whole text, which matches nothing more.
    EXPECT_EQ(rig.Player().SoundVolume(), 32);
}

TEST_F(SkinWindowBindingTest, ElementTimersRunTheirCodeThroughRunCode) {
    rig.PlayTrack(BoundWindowRig::Track(QStringLiteral("Any"), 100));
    rig.Player().SetSoundVolume(30);
    Open({QStringLiteral("width=100"), QStringLiteral("height=40"),
          QStringLiteral("timerevent=30;volumeup")});
    EXPECT_TRUE(BoundWindowRig::WaitFor([&] { return rig.Player().SoundVolume() >= 33; }));
}

TEST_F(SkinWindowBindingTest, AnInteractionCodeWithAnOpenBraceRunsTwiceOnceThenOnceAfterwards) {
    rig.PlayTrack(BoundWindowRig::Track(QStringLiteral("Any"), 100));
    rig.Player().SetSoundVolume(50);
    Open({QStringLiteral("width=100"), QStringLiteral("height=40"),
          QStringLiteral("anyinteraction={volumeup")});
    window->RunInterActionCode();
    const int afterFirst = rig.Player().SoundVolume();
    // The interpreter removed the "{" from the list's own entry: from now on it runs once.
    EXPECT_EQ(window->Model().Interactions.value(0), QStringLiteral("volumeup"));
    window->RunInterActionCode();
    const int afterSecond = rig.Player().SoundVolume();
    EXPECT_GT(afterFirst, 50);
    EXPECT_EQ(afterFirst - 50, 2 * (afterSecond - afterFirst));
}

TEST_F(SkinWindowBindingTest, TheWindowClickCodeKeepsWhatTheInterpreterLeftInIt) {
    rig.PlayTrack(BoundWindowRig::Track(QStringLiteral("Any"), 100));
    Open({QStringLiteral("width=100"), QStringLiteral("height=40"),
          QStringLiteral("formclick={volumeup}{volumedown}")});
    QTest::mousePress(window, Qt::LeftButton, {}, QPoint(5, 5));
    QTest::mouseRelease(window, Qt::LeftButton, {}, QPoint(5, 5));
    EXPECT_EQ(window->Model().FormClickCode, QStringLiteral("volumeup}volumedown}"));
}

TEST_F(SkinWindowBindingTest,
       ATimerTickWhileTheWindowClosesFinishesTheClosingInsteadOfRunningCode) {
    rig.PlayTrack(BoundWindowRig::Track(QStringLiteral("Any"), 100));
    rig.Player().SetSoundVolume(30);
    Open({QStringLiteral("width=100"), QStringLiteral("height=40"),
          QStringLiteral("timerevent=20;volumeup")});
    window->Model().Closing = true;
    EXPECT_TRUE(BoundWindowRig::WaitFor([&] { return window.isNull() || window->IsUnloaded(); }));
    EXPECT_EQ(rig.Player().SoundVolume(), 30);
}

TEST_F(SkinWindowBindingTest, TheProgressTimerSetsTheBarsWidthFromThePosition) {
    rig.PlayTrack(BoundWindowRig::Track(QStringLiteral("Half"), 100));
    rig.Player().SetPlayerPosition(50);
    const QString folder = rig.WriteSkin(QStringLiteral("Bar"),
                                         {QStringLiteral("width=300"), QStringLiteral("height=40"),
                                          QStringLiteral("progresscontrol=10;30;200;4;bar.png")});
    BoundWindowRig::WritePicture(folder + QStringLiteral("bar.png"), Qt::white);
    binding = rig.Open(folder);
    window = binding->Window();
    EXPECT_EQ(window->imgProgress()->width(), 100);
    rig.Player().SetPlayerPosition(75);
    EXPECT_TRUE(BoundWindowRig::WaitFor([&] { return window->imgProgress()->width() == 150; }));
}

TEST_F(SkinWindowBindingTest, WithoutAPlayingTrackTheProgressBarIsEmpty) {
    rig.Player();
    const QString folder = rig.WriteSkin(QStringLiteral("Bar"),
                                         {QStringLiteral("width=300"), QStringLiteral("height=40"),
                                          QStringLiteral("progresscontrol=10;30;200;4;bar.png")});
    BoundWindowRig::WritePicture(folder + QStringLiteral("bar.png"), Qt::white);
    window = rig.Open(folder)->Window();
    QTest::qWait(600);
    EXPECT_EQ(window->imgProgress()->width(), 0);
}

TEST_F(SkinWindowBindingTest, APressOnTheProgressBarSeeks) {
    rig.PlayTrack(BoundWindowRig::Track(QStringLiteral("Seek"), 200));
    rig.Player().SetPlayerPosition(150);
    const QString folder = rig.WriteSkin(QStringLiteral("Bar"),
                                         {QStringLiteral("width=300"), QStringLiteral("height=40"),
                                          QStringLiteral("progresscontrol=10;30;200;4;bar.png")});
    BoundWindowRig::WritePicture(folder + QStringLiteral("bar.png"), Qt::white);
    window = rig.Open(folder)->Window();
    QTest::mousePress(window->imgProgress(), Qt::LeftButton, {}, QPoint(50, 2));
    EXPECT_EQ(rig.Player().PlayerPosition(), 50);
    QTest::mouseRelease(window->imgProgress(), Qt::LeftButton, {}, QPoint(50, 2));
}

TEST_F(SkinWindowBindingTest, ClickingTheThirdStarRatesTheTrackSixty) {
    const int id = rig.PlayTrack(BoundWindowRig::Track(QStringLiteral("Rate"), 100));
    const QString folder = rig.WriteSkin(
        QStringLiteral("Stars"), {QStringLiteral("width=300"), QStringLiteral("height=40"),
                                  QStringLiteral("ratingscontrol=10;10;12;12;2;off.png;on.png")});
    BoundWindowRig::WritePicture(folder + QStringLiteral("off.png"), Qt::gray);
    BoundWindowRig::WritePicture(folder + QStringLiteral("on.png"), Qt::yellow);
    window = rig.Open(folder)->Window();
    ASSERT_TRUE(window->imgRatings(2)->isVisible());
    QTest::mouseClick(window->imgRatings(2), Qt::LeftButton, {}, QPoint(5, 5));
    EXPECT_EQ(rig.Player().trackData(id).rating, 60);
    LetEventsRun();
    EXPECT_EQ(BoundWindowRig::Shown(window->imgRatings(2)), QColor(Qt::yellow))
        << "the player's library change redrew the stars";
    EXPECT_EQ(BoundWindowRig::Shown(window->imgRatings(3)), QColor(Qt::gray));
}

TEST_F(SkinWindowBindingTest, TheStarCommandRatesLikeAClickOnTheStar) {
    const int id = rig.PlayTrack(BoundWindowRig::Track(QStringLiteral("Rate"), 100));
    Open({QStringLiteral("width=100"), QStringLiteral("height=40")});
    window->RunCode(QStringLiteral("4star"));
    EXPECT_EQ(rig.Player().trackData(id).rating, 80);
}

TEST_F(SkinWindowBindingTest, AFailingStarCommandIsReportedByTheCommandLanguageNotAsABareError) {
    rig.PlayTrack(BoundWindowRig::Track(QStringLiteral("Rate"), 100));
    rig.Player().failOperation(QStringLiteral("IITTrack.SetRating"),
                               VbError::Player(QStringLiteral("Ratings are switched off")));
    Open({QStringLiteral("width=100"), QStringLiteral("height=40")});
    StderrCapture capture;
    window->RunCode(QStringLiteral("4star"));
    const QStringList messages = capture.Messages(QStringLiteral("Error!"));
    ASSERT_EQ(messages.size(), 1);
    EXPECT_TRUE(messages.first().startsWith(QStringLiteral("There was an error in the RunCode")))
        << messages.first().toStdString();
    EXPECT_TRUE(messages.first().contains(QStringLiteral("Ratings are switched off")));
}

TEST_F(SkinWindowBindingTest, ShowSkinOpensTheOtherSkinBesideThisWindow) {
    rig.Player();
    Open({QStringLiteral("left=100"), QStringLiteral("top=50"), QStringLiteral("width=100"),
          QStringLiteral("height=40")});
    window->RunCode(QStringLiteral("showskin=Other|10|20"));
    ASSERT_EQ(rig.opened.size(), 1);
    EXPECT_EQ(rig.opened.first(), rig.dir.path() + QStringLiteral("/Skins/Other/|1650|1050"));
}

TEST_F(SkinWindowBindingTest, CloseProgramUnloadsTheWindowAndEndsTheProgram) {
    rig.Player();
    Open({QStringLiteral("width=100"), QStringLiteral("height=40")});
    window->RunCode(QStringLiteral("closeprogram"));
    EXPECT_TRUE(window->IsUnloaded());
    EXPECT_EQ(rig.endProgramCalls, 1);
}

TEST_F(SkinWindowBindingTest, ReloadTimerRestartsTheNamedElementTimer) {
    rig.Player();
    Open({QStringLiteral("width=100"), QStringLiteral("height=40"),
          QStringLiteral("timerevent=100000;volumeup"), QStringLiteral("timerevent=100000;stop")});
    window->tmr(2)->SetEnabled(false);
    window->RunCode(QStringLiteral("reloadtimer=2"));
    EXPECT_TRUE(window->tmr(2)->Enabled());
    EXPECT_TRUE(window->tmr(2)->IsTicking());
}

TEST_F(SkinWindowBindingTest, MoveWindowWithoutTheLeftButtonHeldStartsNoMove) {
    rig.Player();
    Open({QStringLiteral("width=100"), QStringLiteral("height=40")});
    window->RunCode(QStringLiteral("movewindow"));
    EXPECT_EQ(QWidget::mouseGrabber(), nullptr);
}

TEST_F(SkinWindowBindingTest, ARightReleaseOnTheWindowAsksForTheMenuWithThisWindowAsCaller) {
    rig.Player();
    Open({QStringLiteral("width=100"), QStringLiteral("height=40")});
    SkinWindowBinding* other = rig.OpenSkin(
        QStringLiteral("Other"), {QStringLiteral("width=80"), QStringLiteral("height=30")});
    QTest::mouseClick(window, Qt::RightButton, {}, QPoint(50, 20));
    ASSERT_EQ(rig.menuCallers.size(), 1);
    EXPECT_EQ(rig.menuCallers.at(0), window.data());
    QTest::mouseClick(other->Window(), Qt::RightButton, {}, QPoint(40, 15));
    ASSERT_EQ(rig.menuCallers.size(), 2);
    EXPECT_EQ(rig.menuCallers.at(1), other->Window());
}

class ArtworkBindingTest : public SkinWindowBindingTest {
protected:
    // A skin whose img(1) shows the artwork, and a playing track with a red cover.
    void OpenArtworkSkin() {
        MemoryTrackData data = BoundWindowRig::Track(QStringLiteral("Covered"), 100);
        data.artwork.append(PictureBytes(Qt::red));
        trackId = rig.PlayTrack(data);
        Open({QStringLiteral("width=200"), QStringLiteral("height=100"),
              QStringLiteral("image=10;10;64;64;;ARTWORK")});
    }

    static QByteArray PictureBytes(QColor colour) {
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        BoundWindowRig::Picture(colour, QSize(16, 16)).save(&buffer, "PNG");
        return bytes;
    }

    void Drop(const QList<QUrl>& urls) {
        QMimeData data;
        data.setUrls(urls);
        PictureBox* image = window->img(1);
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(image, &enter);
        ASSERT_TRUE(enter.isAccepted());
        QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(image, &drop);
    }

    int trackId = 0;
};

TEST_F(ArtworkBindingTest, AnArtworkImageShowsThePlayingTracksCover) {
    OpenArtworkSkin();
    EXPECT_EQ(BoundWindowRig::Shown(window->img(1)), QColor(Qt::red));
    EXPECT_TRUE(window->img(1)->acceptDrops());
}

TEST_F(ArtworkBindingTest, AFileDroppedOnTheArtworkImageBecomesTheTracksArtwork) {
    OpenArtworkSkin();
    const QString file = rig.dir.path() + QStringLiteral("/blue.png");
    QFile out(file);
    ASSERT_TRUE(out.open(QIODevice::WriteOnly));
    out.write(PictureBytes(Qt::blue));
    out.close();
    Drop({QUrl::fromLocalFile(file)});
    ASSERT_EQ(rig.Player().trackData(trackId).artwork.size(), 1);
    EXPECT_EQ(rig.Player().trackData(trackId).artwork.first(), PictureBytes(Qt::blue));
}

TEST_F(ArtworkBindingTest, ADropThatCannotBeAddedSaysSoAndKeepsTheArtwork) {
    OpenArtworkSkin();
    StderrCapture capture;
    Drop({QUrl::fromLocalFile(rig.dir.path() + QStringLiteral("/missing.png"))});
    const QStringList messages = capture.Messages(QStringLiteral("Pelorin"));
    ASSERT_EQ(messages.size(), 1) << capture.Lines().join(u'\n').toStdString();
    EXPECT_TRUE(messages.first().startsWith(QStringLiteral("Error on add artwork on OLE Drop: ")));
    EXPECT_EQ(rig.Player().trackData(trackId).artwork.first(), PictureBytes(Qt::red));
}

TEST_F(ArtworkBindingTest, ADropWhileNothingPlaysDoesNothing) {
    OpenArtworkSkin();
    rig.Player().Stop();
    const QString file = rig.dir.path() + QStringLiteral("/blue.png");
    QFile out(file);
    ASSERT_TRUE(out.open(QIODevice::WriteOnly));
    out.write(PictureBytes(Qt::blue));
    out.close();
    StderrCapture capture;
    Drop({QUrl::fromLocalFile(file)});
    EXPECT_TRUE(capture.Messages(QStringLiteral("Pelorin")).isEmpty());
    EXPECT_EQ(rig.Player().trackData(trackId).artwork.first(), PictureBytes(Qt::red));
}

} // namespace

namespace {

class LyricsBindingTest : public SkinWindowBindingTest {
protected:
    // A skin with a lyrics display, and a playing track whose sync file is in the lyrics folder.
    void SetUp() override {
        SkinWindowBindingTest::SetUp();
        QDir().mkpath(rig.dir.path() + QStringLiteral("/Lyrics/Artist of Sung"));
        QFile file(rig.dir.path() + QStringLiteral("/Lyrics/Artist of Sung/Sung.lyr"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("[CantomSyncFile]1\r\n[DefaultLyrics]~ before ~\r\n[Lyrics]\r\n[1]one\r\n"
                   "[EndLyrics]\r\n");
        file.close();
        rig.PlayTrack(BoundWindowRig::Track(QStringLiteral("Sung"), 100));
    }
};

TEST_F(LyricsBindingTest, OnlyTheFirstActivationOfTheRunStartsTheLyricsAndTheDisplayShowsThem) {
    SkinWindowBinding* first = rig.OpenSkin(
        QStringLiteral("One"), {QStringLiteral("width=200"), QStringLiteral("height=60"),
                                QStringLiteral("lyrics=0;0;200;20")});
    SkinWindowBinding* second = rig.OpenSkin(
        QStringLiteral("Two"), {QStringLiteral("width=200"), QStringLiteral("height=60"),
                                QStringLiteral("lyrics=0;0;200;20")});
    Q_EMIT first->Window()->firstActivated();
    Q_EMIT second->Window()->firstActivated();
    EXPECT_TRUE(first->Lyrics().Running());
    EXPECT_FALSE(second->Lyrics().Running()) << "one hand-off in the whole run";
    EXPECT_EQ(first->Window()->Cantom()->text(), QStringLiteral("~ before ~"));
}

TEST_F(LyricsBindingTest, AFirstActivationOfASkinWithoutLyricsMeansNoLyricsForTheRun) {
    SkinWindowBinding* plain = rig.OpenSkin(
        QStringLiteral("Plain"), {QStringLiteral("width=100"), QStringLiteral("height=40")});
    SkinWindowBinding* withLyrics = rig.OpenSkin(
        QStringLiteral("Lyr"), {QStringLiteral("width=200"), QStringLiteral("height=60"),
                                QStringLiteral("lyrics=0;0;200;20")});
    Q_EMIT plain->Window()->firstActivated();
    Q_EMIT withLyrics->Window()->firstActivated();
    EXPECT_FALSE(plain->Lyrics().Running());
    EXPECT_FALSE(withLyrics->Lyrics().Running());
}

TEST_F(LyricsBindingTest, ClosingTheWindowWhoseLyricsRunEndsTheProgram) {
    SkinWindowBinding* lyrics = rig.OpenSkin(
        QStringLiteral("One"), {QStringLiteral("width=200"), QStringLiteral("height=60"),
                                QStringLiteral("lyrics=0;0;200;20")});
    SkinWindowBinding* other = rig.OpenSkin(
        QStringLiteral("Two"), {QStringLiteral("width=100"), QStringLiteral("height=40")});
    Q_EMIT lyrics->Window()->firstActivated();
    ASSERT_TRUE(lyrics->Lyrics().Running());
    other->Window()->Unload();
    EXPECT_EQ(rig.endProgramCalls, 0);
    lyrics->Window()->Unload();
    EXPECT_EQ(rig.endProgramCalls, 1);
}

TEST_F(LyricsBindingTest, ASkinSwitchClosingTheLyricsWindowDoesNotEndTheProgram) {
    rig.switching = true;
    SkinWindowBinding* lyrics = rig.OpenSkin(
        QStringLiteral("One"), {QStringLiteral("width=200"), QStringLiteral("height=60"),
                                QStringLiteral("lyrics=0;0;200;20")});
    Q_EMIT lyrics->Window()->firstActivated();
    lyrics->Window()->Unload();
    EXPECT_EQ(rig.endProgramCalls, 0);
}

} // namespace

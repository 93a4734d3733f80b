#include "DisplayRig.h"
#include "display/ArtworkDisplay.h"

#include <QFileInfo>

using namespace Pelorin;
using Pelorin::Testing::ColourOf;
using Pelorin::Testing::DisplayRig;
using Pelorin::Testing::PictureBytes;
using Pelorin::Testing::StderrCapture;

namespace {

class Artwork : public ::testing::Test {
protected:
    void SetUp() override {
        rig.Line(u"image=10;10;64;64;;ARTWORK"_qs);
        rig.Line(u"image=80;10;32;32;;ARTWORK|hover.png"_qs);
        ASSERT_TRUE(rig.host.Model().HasArtwork);
    }

    static MemoryTrackData WithCovers(const QString& name, const QList<QByteArray>& covers) {
        MemoryTrackData data = DisplayRig::Track(u"Artist"_qs, name);
        data.artwork = covers;
        return data;
    }

    DisplayRig rig;
};

} // namespace

TEST_F(Artwork, CoverOfTheTrackIsShownInEveryArtworkImage) {
    rig.PlayTrack(WithCovers(u"One"_qs, {PictureBytes(Qt::red, "JPEG")}));
    rig.display.LoadSong();
    for (int j : {1, 2}) {
        const QColor shown = ColourOf(rig.host.artwork(j));
        EXPECT_NEAR(shown.red(), 255, 8) << "image " << j;
        EXPECT_NEAR(shown.green(), 0, 8) << "image " << j;
    }
    EXPECT_TRUE(QFileInfo::exists(rig.ArtworkFile()));
}

TEST_F(Artwork, TrackWithoutArtworkClearsEveryArtworkImage) {
    rig.PlayTrack(WithCovers(u"One"_qs, {PictureBytes(Qt::red)}));
    rig.display.LoadSong();
    ASSERT_FALSE(rig.host.artwork(1).isNull());
    rig.PlayTrack(WithCovers(u"Two"_qs, {}));
    rig.display.LoadSong();
    EXPECT_TRUE(rig.host.artwork(1).isNull());
    EXPECT_TRUE(rig.host.artwork(2).isNull());
    EXPECT_EQ(rig.host.artworkSets(1), 2);
}

TEST_F(Artwork, TwoRefreshesForTheSameTrackSaveTheFileOnceAndLoadItTwice) {
    const int id = rig.PlayTrack(WithCovers(u"One"_qs, {PictureBytes(Qt::red)}));
    rig.display.LoadSong();
    EXPECT_EQ(rig.display.LastArtworkTrack(), id);
    // Another picture in the file: a second save would put red back.
    QFile file(rig.ArtworkFile());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(PictureBytes(Qt::blue));
    file.close();
    rig.display.LoadSong();
    EXPECT_EQ(ColourOf(rig.host.artwork(1)), QColor(Qt::blue));
    EXPECT_EQ(rig.host.artworkSets(1), 2);
}

TEST_F(Artwork, NewTrackRewritesTheFile) {
    rig.PlayTrack(WithCovers(u"One"_qs, {PictureBytes(Qt::red)}));
    rig.display.LoadSong();
    const int second = rig.PlayTrack(WithCovers(u"Two"_qs, {PictureBytes(Qt::blue)}));
    rig.display.LoadSong();
    EXPECT_EQ(ColourOf(rig.host.artwork(1)), QColor(Qt::blue));
    EXPECT_EQ(rig.display.LastArtworkTrack(), second);
}

TEST_F(Artwork, OnlyTheFirstOfSeveralArtworksIsShown) {
    rig.PlayTrack(WithCovers(u"One"_qs, {PictureBytes(Qt::green), PictureBytes(Qt::red)}));
    rig.display.LoadSong();
    EXPECT_EQ(ColourOf(rig.host.artwork(1)), QColor(Qt::green));
}

TEST_F(Artwork, PictureInAnotherFormatThanJpegIsShown) {
    for (const char* format : {"PNG", "BMP", "GIF"}) {
        rig.PlayTrack(WithCovers(QString::fromLatin1(format), {PictureBytes(Qt::cyan, format)}));
        rig.display.LoadSong();
        EXPECT_EQ(ColourOf(rig.host.artwork(1)), QColor(Qt::cyan)) << format;
    }
}

TEST_F(Artwork, ArtworkFileLivesInTheUsersTemporaryFolder) {
    EXPECT_EQ(ArtworkDisplay::ArtworkFile(), rig.ArtworkFile());
    EXPECT_TRUE(ArtworkDisplay::ArtworkFile().endsWith(u"/tempart.jpg"_qs));
}

TEST_F(Artwork, ImageMarkedArtworkInLowerCaseIsNotFilled) {
    rig.Line(u"image=80;80;32;32;;artwork"_qs);
    rig.PlayTrack(WithCovers(u"One"_qs, {PictureBytes(Qt::red)}));
    rig.display.LoadSong();
    EXPECT_FALSE(rig.host.artwork(1).isNull());
    EXPECT_EQ(rig.host.artworkSets(3), 0);
}

TEST_F(Artwork, CoverThatCannotBeSavedIsReportedByTheRefresh) {
    rig.PlayTrack(WithCovers(u"One"_qs, {PictureBytes(Qt::red)}));
    rig.player.failOperation(u"IITArtwork.SaveArtworkToFile"_qs,
                             VbError::Player(u"No picture today"_qs));
    StderrCapture errors;
    rig.display.LoadSong();
    EXPECT_TRUE(errors.Text().contains(u"Pelorin: Error in RefreshInfo: No picture today"_qs))
        << errors.Text().toStdString();
    EXPECT_EQ(rig.display.LastArtworkTrack(), 0);
}

TEST_F(Artwork, ShowingOneImageAgainAfterAPointerEffectReloadsTheCover) {
    rig.PlayTrack(WithCovers(u"One"_qs, {PictureBytes(Qt::red)}));
    rig.display.LoadSong();
    rig.display.ShowArtworkIn(2);
    EXPECT_EQ(rig.host.artworkSets(2), 2);
    EXPECT_EQ(rig.host.artworkSets(1), 1);
}

TEST_F(Artwork, TheTracksPicturesAreAskedForOncePerTrackNotOncePerRefresh) {
    rig.PlayTrack(WithCovers(u"One"_qs, {PictureBytes(Qt::red)}));
    rig.display.LoadSong();
    rig.display.LoadSong();
    rig.display.LoadSong();
    EXPECT_EQ(rig.player.operationCount(u"IITTrack.Artwork"_qs), 1);
    EXPECT_EQ(rig.host.artworkSets(1), 3) << "the file is still loaded at every refresh";
    rig.PlayTrack(WithCovers(u"Two"_qs, {PictureBytes(Qt::blue)}));
    rig.display.LoadSong();
    EXPECT_EQ(rig.player.operationCount(u"IITTrack.Artwork"_qs), 2);
    EXPECT_EQ(ColourOf(rig.host.artwork(1)), QColor(Qt::blue));
}

TEST_F(Artwork, ATrackWithoutPicturesIsAlsoAskedOnce) {
    rig.PlayTrack(WithCovers(u"Bare"_qs, {}));
    rig.display.LoadSong();
    rig.display.LoadSong();
    EXPECT_EQ(rig.player.operationCount(u"IITTrack.Artwork"_qs), 1);
    EXPECT_TRUE(rig.host.artwork(1).isNull());
    EXPECT_TRUE(rig.host.artwork(2).isNull());
}

TEST_F(Artwork, AfterThePicturesChangedTheNextCoverShownAsksAgain) {
    rig.PlayTrack(WithCovers(u"One"_qs, {PictureBytes(Qt::red)}));
    rig.display.LoadSong();
    rig.display.ArtworkChanged();
    rig.display.ShowArtworkIn(1);
    EXPECT_EQ(rig.player.operationCount(u"IITTrack.Artwork"_qs), 2);
}

TEST_F(Artwork, TheLabelsArePaintedBeforeTheCoverIsRead) {
    const int label = rig.Label(200, u"[Title]"_qs);
    rig.PlayTrack(WithCovers(u"One"_qs, {PictureBytes(Qt::red)}));
    rig.player.failOperation(u"IITTrack.Artwork"_qs, VbError::Player(u"Slow disk"_qs));
    StderrCapture errors;
    rig.display.LoadSong();
    // The cover failed, and the title was on screen before it was asked for.
    EXPECT_TRUE(errors.Text().contains(u"Slow disk"_qs)) << errors.Text().toStdString();
    EXPECT_EQ(rig.host.labelPaints(), 1);
    EXPECT_EQ(rig.Caption(label), u"One"_qs);
}

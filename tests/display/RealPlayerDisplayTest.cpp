// The track display against the real player daemon: placeholders filled from real tags, covers
// taken from real files, rating and seeking that the player carries out.
#include "DisplayRig.h"
#include "PlayerDaemonFixture.h"
#include "base/TextRules.h"
#include "base/VbError.h"
#include "display/TrackDisplay.h"
#include "player/daemon/DaemonPlayer.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QThread>
#include <functional>
#include <memory>

using namespace Pelorin;
using Pelorin::Testing::DisplayRig;
using Pelorin::Testing::StderrCapture;
using Pelorin::Testing::WritePictureFile;

namespace {

const LibraryCatalog& Catalog() {
    static const LibraryCatalog catalog = PlayerDaemonFixture::Catalog();
    return catalog;
}

bool WaitFor(const std::function<bool()>& condition, int timeoutMs = 5000) {
    QDeadlineTimer deadline(timeoutMs);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        QThread::msleep(10);
    }
    return true;
}

class RealPlayerDisplay : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(daemon.Start(), QString());
        DaemonPlayer::Options options;
        options.address.host = daemon.SocketPath();
        options.isPlayerRunning = [this] { return daemon.IsRunning(); };
        player = std::make_unique<DaemonPlayer>(options);
        rig.host.setPlayer(player.get());
    }

    void TearDown() override {
        rig.host.setPlayer(nullptr);
        player.reset();
    }

    // Plays only this track, over and over, and waits until the player says so.
    void Play(const QString& uri) {
        daemon.Mpc({u"clear"_qs});
        daemon.Mpc({u"repeat"_qs, u"on"_qs});
        daemon.Mpc({u"add"_qs, uri});
        daemon.Mpc({u"play"_qs});
        const TrackSpec* spec = Catalog().Find(uri);
        ASSERT_NE(spec, nullptr) << uri.toStdString();
        const QString title = spec->tagged ? spec->title : QString();
        ASSERT_TRUE(WaitFor([&] {
            const auto track = player->CurrentTrack();
            return track && (title.isEmpty() || track->Name() == title);
        })) << "the player did not start "
            << uri.toStdString();
    }

    static QString UriOf(const QString& title) {
        for (const TrackSpec& track : Catalog().tracks) {
            if (track.title == title)
                return track.uri;
        }
        return QString();
    }

    QByteArray ArtworkFileStart() {
        QFile file(rig.ArtworkFile());
        return file.open(QIODevice::ReadOnly) ? file.read(8) : QByteArray();
    }

    PlayerDaemonFixture daemon;
    DisplayRig rig;
    std::unique_ptr<DaemonPlayer> player;
};

} // namespace

TEST_F(RealPlayerDisplay, PlaceholdersAreFilledFromTheTrackThePlayerPlays) {
    const QString uri = UriOf(u"Headlights"_qs);
    const TrackSpec* spec = Catalog().Find(uri);
    ASSERT_NE(spec, nullptr);
    const int i = rig.Label(5000, u"[Artist]|[title]|[Album]|[Genre]|[Year]|[TrackNumber]|"
                                  u"[Composer]|[Comment]|[BPM]|[Compilation]|"
                                  u"[CurrentPlaylistName]|[CurrentPlaylistTracks]"_qs);
    const int time = rig.Label(5000, u"[Time]"_qs);
    Play(uri);
    rig.display.LoadSong();
    const QString expected = QStringList{spec->artist,
                                         spec->title,
                                         spec->album,
                                         spec->genre,
                                         QString::number(spec->year),
                                         spec->trackNumber,
                                         spec->composer,
                                         spec->comment,
                                         QString::number(spec->bpm),
                                         u"False"_qs,
                                         u"Play Queue"_qs,
                                         u"1"_qs}
                                 .join(u'|');
    EXPECT_EQ(rig.Caption(i).toStdString(), expected.toStdString());
    EXPECT_TRUE(rig.Caption(time) == u"0:06"_qs || rig.Caption(time) == u"0:05"_qs)
        << rig.Caption(time).toStdString();
}

TEST_F(RealPlayerDisplay, CoverIsSavedFromTheTrackFileInWhateverFormatItHas) {
    rig.Line(u"image=0;0;64;64;;ARTWORK"_qs);
    // An Ogg Vorbis file holding a PNG cover.
    Play(UriOf(u"Morning Light"_qs));
    rig.display.LoadSong();
    EXPECT_TRUE(ArtworkFileStart().startsWith("\x89PNG"));
    EXPECT_FALSE(rig.host.artwork(1).isNull());
    const int first = rig.display.LastArtworkTrack();
    EXPECT_NE(first, 0);

    // A FLAC file holding a JPEG cover.
    Play(UriOf(u"Headlights"_qs));
    rig.display.LoadSong();
    EXPECT_TRUE(ArtworkFileStart().startsWith("\xFF\xD8"));
    EXPECT_FALSE(rig.host.artwork(1).isNull());
    EXPECT_NE(rig.display.LastArtworkTrack(), first);
}

TEST_F(RealPlayerDisplay, CoverFileBesideTheTrackIsShown) {
    rig.Line(u"image=0;0;64;64;;ARTWORK"_qs);
    Play(UriOf(u"Sea Breeze"_qs));
    rig.display.LoadSong();
    EXPECT_FALSE(rig.host.artwork(1).isNull());
}

TEST_F(RealPlayerDisplay, TrackWithoutAnyCoverClearsTheArtwork) {
    rig.Line(u"image=0;0;64;64;;ARTWORK"_qs);
    Play(UriOf(u"Morning Light"_qs));
    rig.display.LoadSong();
    ASSERT_FALSE(rig.host.artwork(1).isNull());
    Play(u"Unsorted/untagged.ogg"_qs);
    rig.display.LoadSong();
    EXPECT_TRUE(rig.host.artwork(1).isNull());
}

TEST_F(RealPlayerDisplay, StarClickRatesTheTrackInThePlayerAndTheRefreshShowsIt) {
    ASSERT_TRUE(Testing::WritePictureFile(rig.folder + u"off.png"_qs, Qt::gray));
    ASSERT_TRUE(Testing::WritePictureFile(rig.folder + u"on.png"_qs, Qt::yellow));
    rig.Line(u"ratingscontrol=0;0;10;10;1;off.png;on.png"_qs);
    const int rating = rig.Label(5000, u"[Rating]"_qs);
    Play(UriOf(u"Lanterns"_qs));
    rig.display.imgRatings_Click(3);
    ASSERT_TRUE(WaitFor([&] { return player->CurrentTrack()->Rating() == 80; }));
    rig.display.LoadSong();
    EXPECT_EQ(rig.Caption(rating), u"4"_qs);
    EXPECT_EQ(Testing::ColourOf(rig.host.star(3).picture), QColor(Qt::yellow));
    EXPECT_EQ(Testing::ColourOf(rig.host.star(4).picture), QColor(Qt::gray));
}

TEST_F(RealPlayerDisplay, PressOnTheBarSeeksThePlayer) {
    ASSERT_TRUE(Testing::WritePictureFile(rig.folder + u"bar.png"_qs, Qt::green));
    rig.Line(u"progresscontrol=0;0;60;4;bar.png"_qs);
    Play(UriOf(u"Blue Hour"_qs));
    const int length = Rules::Seconds(player->CurrentTrack()->Time());
    ASSERT_GT(length, 0);
    daemon.Mpc({u"pause"_qs});
    ASSERT_TRUE(WaitFor([&] { return daemon.Mpc({u"status"_qs}).contains(u"[paused]"_qs); }));
    rig.display.imgProgress_MouseDown(Qt::LeftButton, 50);
    const int expected = Rules::ToInt32(length * 50 / 60.0);
    EXPECT_TRUE(WaitFor([&] { return player->PlayerPosition() == expected; }))
        << player->PlayerPosition() << " instead of " << expected;
}

TEST_F(RealPlayerDisplay, BarGrowsWhilePlaying) {
    ASSERT_TRUE(Testing::WritePictureFile(rig.folder + u"bar.png"_qs, Qt::green));
    rig.Line(u"progresscontrol=0;0;600;4;bar.png"_qs);
    const int position = rig.Label(5000, u"[CurrentPosition]"_qs);
    Play(UriOf(u"Liftoff"_qs));
    rig.display.LoadSong();
    const float before = rig.host.progressWidth();
    const QString shownBefore = rig.Caption(position);
    ASSERT_TRUE(WaitFor([&] {
        rig.display.tmrProgress_Timer();
        return rig.host.progressWidth() > before && rig.Caption(position) != shownBefore;
    }));
    EXPECT_TRUE(rig.Caption(position).startsWith(u"0:0"_qs)) << rig.Caption(position).toStdString();
}

TEST(RealPlayerWithoutStickers, ATrackChangeShowsTheTitleAndNoErrorAgainstADaemonWithoutStickers) {
    PlayerDaemonFixture::Options without;
    without.stickers = false;
    PlayerDaemonFixture daemon(without);
    ASSERT_EQ(daemon.Start(), QString());
    DaemonPlayer::Options options;
    options.address.host = daemon.SocketPath();
    options.isPlayerRunning = [&daemon] { return daemon.IsRunning(); };
    auto player = std::make_unique<DaemonPlayer>(options);
    DisplayRig rig;
    rig.host.setPlayer(player.get());
    ASSERT_TRUE(WritePictureFile(rig.folder + u"off.png"_qs, Qt::gray));
    ASSERT_TRUE(WritePictureFile(rig.folder + u"on.png"_qs, Qt::yellow));
    rig.Line(u"ratingscontrol=10;5;12;12;2;off.png;on.png"_qs);
    const int label = rig.Label(5000, u"[Artist] - [Title] ([Rating], [PlayCount])"_qs);
    const LibraryCatalog catalog = PlayerDaemonFixture::Catalog();
    const TrackSpec& spec = catalog.tracks[0];
    daemon.Mpc({u"clear"_qs});
    daemon.Mpc({u"add"_qs, spec.uri});
    daemon.Mpc({u"play"_qs});
    ASSERT_TRUE(WaitFor([&] { return player->CurrentTrack() != nullptr; }));
    StderrCapture errors;
    rig.display.LoadSong();
    EXPECT_EQ(rig.Caption(label), spec.artist + u" - "_qs + spec.title + u" (0, 0)"_qs);
    EXPECT_TRUE(rig.host.star(0).visible);
    EXPECT_FALSE(errors.Text().contains(TrackDisplay::RefreshErrorPrefix()))
        << errors.Text().toStdString();
    // Setting what only a sticker database holds is what fails, through the caller's path.
    try {
        player->CurrentTrack()->SetRating(60);
        ADD_FAILURE() << "a rating was taken without a sticker database";
    } catch (const VbError& error) {
        EXPECT_EQ(error.description(),
                  u"The player does not support ratings without a sticker database"_qs);
    }
    rig.host.setPlayer(nullptr);
}

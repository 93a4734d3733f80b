// Tracks, playlists, sources, search, stickers and artwork of the daemon backend, each checked
// with the daemon itself (through mpc) or the files.
#include "DaemonTestSupport.h"
#include "player/IITFileOrCDTrack.h"
#include "player/daemon/SongInfo.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QTemporaryDir>
#include <sys/stat.h>

namespace Pelorin {
namespace {

QByteArray ReadAll(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

class DaemonTracks : public DaemonTest {
protected:
    void SetUp() override {
        DaemonTest::SetUp();
        QueueCatalogue();
    }

    // Plays catalogue track `index` and returns it as the current track.
    std::shared_ptr<IITTrack> Playing(int index) {
        Mpc({QStringLiteral("play"), QString::number(index + 1)});
        std::shared_ptr<IITTrack> track = player->CurrentTrack();
        EXPECT_NE(track, nullptr);
        return track;
    }

    // Waits until the daemon lists `format` of `uri` as `expected` (a tag write is rescanned
    // after the call returns).
    ::testing::AssertionResult TagBecomes(const QString& uri, const QString& format,
                                          const QString& expected) {
        if (WaitUntil([&] { return TagOf(uri, format) == expected; })) {
            return ::testing::AssertionSuccess();
        }
        return ::testing::AssertionFailure()
               << "the daemon lists " << TagOf(uri, format).toStdString();
    }

    const LibraryCatalog catalog = PlayerDaemonFixture::Catalog();
};

TEST_F(DaemonTracks, CurrentTrackShowsTheDaemonsTags) {
    const std::shared_ptr<IITTrack> track = Playing(0);
    const TrackSpec& spec = catalog.tracks[0];
    EXPECT_EQ(track->Name(), spec.title);
    EXPECT_EQ(track->Artist(), spec.artist);
    EXPECT_EQ(track->Album(), spec.album);
    EXPECT_EQ(track->AlbumArtist(), spec.albumArtist);
    EXPECT_EQ(track->Composer(), spec.composer);
    EXPECT_EQ(track->Genre(), spec.genre);
    EXPECT_EQ(track->Comment(), spec.comment);
    EXPECT_EQ(track->Year(), spec.year);
    EXPECT_EQ(track->TrackNumber(), 1);
    EXPECT_EQ(track->Time(), QStringLiteral("0:06"));
    EXPECT_EQ(track->Duration(), 6);
}

TEST_F(DaemonTracks, TrackNumberOfNOfTotalIsItsLeadingNumber) {
    EXPECT_EQ(Playing(7)->TrackNumber(), 2);
}

TEST_F(DaemonTracks, BpmBitRateAndCompilationComeFromTheFile) {
    const std::shared_ptr<IITTrack> track = Playing(0);
    EXPECT_EQ(track->BPM(), catalog.tracks[0].bpm);
    EXPECT_GT(track->BitRate(), 0);
    EXPECT_FALSE(track->Compilation());
    EXPECT_TRUE(Playing(9)->Compilation());
}

TEST_F(DaemonTracks, TrackWithoutTagsIsKnownByItsFileName) {
    const std::shared_ptr<IITTrack> track = Playing(static_cast<int>(catalog.tracks.size()) - 1);
    EXPECT_EQ(track->Name(), QStringLiteral("untagged"));
    EXPECT_EQ(track->Artist(), QString());
    EXPECT_EQ(track->TrackNumber(), 0);
    EXPECT_EQ(track->Year(), 0);
    EXPECT_EQ(track->BPM(), 0);
    EXPECT_EQ(track->Rating(), 0);
    EXPECT_EQ(track->PlayedCount(), 0);
}

TEST_F(DaemonTracks, SettingATextTagWritesTheFileAndTheDaemonRescansIt) {
    const std::shared_ptr<IITTrack> track = Playing(1);
    track->SetComment(QStringLiteral("Written by a test"));
    EXPECT_EQ(track->Comment(), QStringLiteral("Written by a test"));
    EXPECT_TRUE(TagBecomes(catalog.tracks[1].uri, QStringLiteral("%comment%"),
                           QStringLiteral("Written by a test")));
    // The queue entry takes the new tag only once the daemon has finished its rescan.
    EXPECT_TRUE(WaitUntil(
        [&] { return player->CurrentTrack()->Comment() == QStringLiteral("Written by a test"); }));
}

TEST_F(DaemonTracks, PropertySetByNameReachesEveryWritableTag) {
    const QString uri = catalog.tracks[3].uri;
    const std::shared_ptr<IITTrack> track = Playing(3);
    track->SetPropertyByName(QStringLiteral("name"), QStringLiteral("New Title"));
    track->SetPropertyByName(QStringLiteral("Artist"), QStringLiteral("New Artist"));
    track->SetPropertyByName(QStringLiteral("Album"), QStringLiteral("New Album"));
    track->SetPropertyByName(QStringLiteral("Genre"), QStringLiteral("Ambient"));
    track->SetPropertyByName(QStringLiteral("Composer"), QStringLiteral("Someone"));
    track->SetPropertyByName(QStringLiteral("Year"), QStringLiteral("1999"));
    track->SetPropertyByName(QStringLiteral("TrackNumber"), QStringLiteral("7"));
    track->SetPropertyByName(QStringLiteral("BPM"), QStringLiteral("133"));
    track->SetPropertyByName(QStringLiteral("Compilation"), QStringLiteral("True"));
    track->SetPropertyByName(QStringLiteral("Grouping"), QStringLiteral("Set A"));
    EXPECT_TRUE(TagBecomes(
        uri, QStringLiteral("%title%;%artist%;%album%;%genre%;%composer%;%date%;%track%"),
        QStringLiteral("New Title;New Artist;New Album;Ambient;Someone;1999;7")));
    const std::shared_ptr<IITTrack> again = player->CurrentTrack();
    EXPECT_EQ(again->BPM(), 133);
    EXPECT_TRUE(again->Compilation());
    // The grouping was written last; the daemon may still be reading the file.
    EXPECT_TRUE(
        WaitUntil([&] { return player->CurrentTrack()->Grouping() == QStringLiteral("Set A"); }));
    EXPECT_THROW(track->SetPropertyByName(QStringLiteral("Colour"), QStringLiteral("red")),
                 VbError);
}

TEST_F(DaemonTracks, SwappingArtistAndTitleOnAnMp3KeepsItsCover) {
    const QString uri = catalog.tracks[6].uri;
    const std::shared_ptr<IITTrack> track = Playing(6);
    const QString artist = track->Artist();
    const QString name = track->Name();
    track->SetArtist(name);
    track->SetName(artist);
    EXPECT_TRUE(TagBecomes(uri, QStringLiteral("%artist%;%title%"), name + u';' + artist));
    EXPECT_EQ(player->CurrentTrack()->Artwork()->Count(), 1);
}

TEST_F(DaemonTracks, RatingIsTheRatingStickerTimesTen) {
    const QString uri = catalog.tracks[0].uri;
    const std::shared_ptr<IITTrack> track = Playing(0);
    track->SetRating(60);
    EXPECT_EQ(StickerOf(uri, QStringLiteral("rating")), QStringLiteral("rating=6"));
    EXPECT_EQ(track->Rating(), 60);
    track->SetRating(55);
    EXPECT_EQ(StickerOf(uri, QStringLiteral("rating")), QStringLiteral("rating=6"));
    track->SetRating(0);
    EXPECT_FALSE(StickerOf(uri, QStringLiteral("rating")).contains(QLatin1String("rating=")));
    EXPECT_EQ(track->Rating(), 0);
    EXPECT_THROW(track->SetRating(101), VbError);
}

TEST_F(DaemonTracks, PlayedCountIsThePlayCountSticker) {
    const QString uri = catalog.tracks[0].uri;
    const std::shared_ptr<IITTrack> track = Playing(0);
    track->SetPlayedCount(12);
    EXPECT_EQ(StickerOf(uri, QStringLiteral("playCount")), QStringLiteral("playCount=12"));
    EXPECT_EQ(track->PlayedCount(), 12);
}

TEST_F(DaemonTracks, StartAndFinishAreStickersAppliedToQueuedEntriesWithRangeid) {
    const QString uri = catalog.tracks[2].uri;
    Playing(0);
    const std::shared_ptr<IITTrack> third = player->CurrentPlaylist()->Tracks()->Item(3);
    ASSERT_NE(third, nullptr);
    third->SetStart(1);
    third->SetFinish(4);
    EXPECT_EQ(StickerOf(uri, QStringLiteral("start")), QStringLiteral("start=1"));
    EXPECT_EQ(StickerOf(uri, QStringLiteral("finish")), QStringLiteral("finish=4"));
    EXPECT_EQ(third->Start(), 1);
    EXPECT_EQ(third->Finish(), 4);
    const QString ranges =
        Mpc({QStringLiteral("-f"), QStringLiteral("%file% %time%"), QStringLiteral("playlist")});
    // The queue's entry now plays three seconds.
    EXPECT_TRUE(ranges.contains(uri + QStringLiteral(" 0:03"))) << ranges.toStdString();
}

TEST_F(DaemonTracks, StartAndFinishKeepTheBoundsEveryPlayerKeeps) {
    const QString uri = catalog.tracks[1].uri;
    const std::shared_ptr<IITTrack> track = Playing(1);
    track->SetFinish(4);
    try {
        track->SetStart(5);
        ADD_FAILURE() << "a start after the finish was taken";
    } catch (const VbError& error) {
        EXPECT_EQ(error.description(), QStringLiteral("Start must lie between 0 and 4"));
    }
    track->SetStart(2);
    EXPECT_THROW(track->SetFinish(1), VbError);
    EXPECT_THROW(track->SetFinish(track->Duration() + 1), VbError);
    EXPECT_THROW(track->SetRating(101), VbError);
    EXPECT_EQ(StickerOf(uri, QStringLiteral("start")), QStringLiteral("start=2"));
    EXPECT_EQ(track->Finish(), 4);
}

TEST_F(DaemonTracks, StartPointIsAppliedToAnEntryQueuedLater) {
    const QString uri = catalog.tracks[4].uri;
    const std::shared_ptr<IITTrack> track = Playing(4);
    track->SetStart(2);
    Mpc({QStringLiteral("add"), uri});
    EXPECT_TRUE(WaitUntil([&] {
        return Mpc({QStringLiteral("-f"), QStringLiteral("%time%"), QStringLiteral("playlist")})
                   .split(u'\n')
                   .last()
                   .trimmed() == QStringLiteral("0:04");
    }));
}

TEST_F(DaemonTracks, VolumeAdjustmentIsNotSupported) {
    const std::shared_ptr<IITTrack> track = Playing(0);
    try {
        track->SetVolumeAdjustment(10);
        FAIL() << "no error";
    } catch (const VbError& error) {
        EXPECT_EQ(error.description(),
                  QStringLiteral("The player does not support VolumeAdjustment"));
    }
    EXPECT_THROW(track->VolumeAdjustment(), VbError);
}

TEST_F(DaemonTracks, TrackDatabaseIdIsAStableNonZeroHashOfTheUri) {
    const std::shared_ptr<IITTrack> track = Playing(0);
    EXPECT_EQ(track->TrackDatabaseID(), SongDatabaseId(catalog.tracks[0].uri));
    EXPECT_GT(track->TrackDatabaseID(), 0);
    EXPECT_EQ(
        player->LibraryPlaylist()->Search(catalog.tracks[0].title, 0)->Item(1)->TrackDatabaseID(),
        track->TrackDatabaseID());
    // Fixed by definition, so every run agrees.
    EXPECT_EQ(SongDatabaseId(QStringLiteral("a.ogg")), SongDatabaseId(QStringLiteral("a.ogg")));
    EXPECT_NE(SongDatabaseId(QStringLiteral("a.ogg")), SongDatabaseId(QStringLiteral("b.ogg")));
}

TEST_F(DaemonTracks, LocationIsTheMusicFolderAndTheUri) {
    const auto track = std::dynamic_pointer_cast<IITFileOrCDTrack>(Playing(0));
    ASSERT_NE(track, nullptr);
    EXPECT_EQ(track->Location(), daemon.MusicDirectory() + u'/' + catalog.tracks[0].uri);
    EXPECT_TRUE(QFile::exists(track->Location()));
}

TEST_F(DaemonTracks, DeletingTheCurrentTrackRemovesItsQueueEntry) {
    const std::shared_ptr<IITTrack> track = Playing(0);
    track->Delete();
    const QString queue =
        Mpc({QStringLiteral("-f"), QStringLiteral("%file%"), QStringLiteral("playlist")});
    EXPECT_FALSE(queue.contains(catalog.tracks[0].uri));
    EXPECT_EQ(queue.split(u'\n').size(), catalog.tracks.size() - 1);
}

TEST_F(DaemonTracks, DeletingALibraryTrackRemovesItFromTheQueueAndStoredPlaylists) {
    const QString uri = catalog.tracks[0].uri; // in "Favourites"
    const std::shared_ptr<IITTrackCollection> found =
        player->LibraryPlaylist()->Search(catalog.tracks[0].title, ITPlaylistSearchFieldAll);
    ASSERT_NE(found, nullptr);
    ASSERT_EQ(found->Count(), 1);
    found->Item(1)->Delete();
    EXPECT_FALSE(Mpc({QStringLiteral("-f"), QStringLiteral("%file%"), QStringLiteral("playlist")})
                     .contains(uri));
    EXPECT_FALSE(Mpc({QStringLiteral("playlist"), QStringLiteral("Favourites")})
                     .contains(catalog.tracks[0].title));
    EXPECT_TRUE(QFile::exists(daemon.MusicDirectory() + u'/' + uri));
}

TEST_F(DaemonTracks, LibrarySearchNeedsEveryWordInSomeTagOrTheFileName) {
    const std::shared_ptr<IITTrackCollection> both =
        player->LibraryPlaylist()->Search(QStringLiteral("velvet orbit"), ITPlaylistSearchFieldAll);
    ASSERT_NE(both, nullptr);
    EXPECT_EQ(both->Count(), 2);
    const std::shared_ptr<IITTrackCollection> byFile = player->LibraryPlaylist()->Search(
        QStringLiteral("Unsorted untagged"), ITPlaylistSearchFieldAll);
    ASSERT_NE(byFile, nullptr);
    EXPECT_EQ(byFile->Count(), 1);
    const TrackSpec& spec = catalog.tracks[3];
    const std::shared_ptr<IITTrackCollection> exact = player->LibraryPlaylist()->Search(
        spec.artist + u' ' + spec.title + u' ' + spec.album, ITPlaylistSearchFieldAll);
    ASSERT_NE(exact, nullptr);
    EXPECT_EQ(exact->Count(), 1);
    EXPECT_EQ(player->LibraryPlaylist()->Search(QStringLiteral("velvet nowhere"), 0), nullptr);
    EXPECT_EQ(player->LibraryPlaylist()->Search(QStringLiteral("it's \"quoted\""), 0), nullptr);
}

TEST_F(DaemonTracks, SourcesHoldTheLibraryTheQueueAndEveryStoredPlaylist) {
    const std::shared_ptr<IITSourceCollection> sources = player->Sources();
    ASSERT_EQ(sources->Count(), 1);
    EXPECT_EQ(sources->Item(1)->Name(), QStringLiteral("Library"));
    const std::shared_ptr<IITPlaylistCollection> playlists = sources->Item(1)->Playlists();
    ASSERT_EQ(playlists->Count(), 4);
    EXPECT_EQ(playlists->Item(1)->Name(), QStringLiteral("Library"));
    EXPECT_EQ(playlists->Item(2)->Name(), QStringLiteral("Play Queue"));
    EXPECT_EQ(playlists->Item(3)->Name(), QStringLiteral("Favourites"));
    EXPECT_EQ(playlists->Item(4)->Name(), QStringLiteral("Road Trip"));
    EXPECT_EQ(playlists->Item(1)->Tracks()->Count(), catalog.tracks.size());
    EXPECT_EQ(playlists->Item(4)->Tracks()->Count(), 4);
    EXPECT_EQ(playlists->Item(3)->Duration(), 18);
    EXPECT_EQ(playlists->Item(5), nullptr);
}

TEST_F(DaemonTracks, PlayingAStoredPlaylistLoadsItAndNamesTheQueueAfterIt) {
    const std::shared_ptr<IITPlaylist> roadTrip = player->Sources()->Item(1)->Playlists()->Item(4);
    roadTrip->PlayFirstTrack();
    EXPECT_EQ(Mpc({QStringLiteral("-f"), QStringLiteral("%file%"), QStringLiteral("current")}),
              catalog.playlists[1].uris[0]);
    EXPECT_EQ(player->CurrentPlaylist()->Name(), QStringLiteral("Road Trip"));
    EXPECT_EQ(player->CurrentPlaylist()->Tracks()->Count(), 4);
    player->LibraryPlaylist()->PlayFirstTrack();
    EXPECT_EQ(player->CurrentPlaylist()->Name(), QStringLiteral("Play Queue"));
    EXPECT_EQ(player->CurrentPlaylist()->Tracks()->Count(), catalog.tracks.size());
}

TEST_F(DaemonTracks, AddTrackAppendsToAStoredPlaylistOnly) {
    const std::shared_ptr<IITTrack> track = Playing(10);
    const std::shared_ptr<IITPlaylist> favourites =
        player->Sources()->Item(1)->Playlists()->Item(3);
    favourites->AddTrack(*track);
    EXPECT_TRUE(Mpc({QStringLiteral("-f"), QStringLiteral("%file%"), QStringLiteral("playlist"),
                     QStringLiteral("Favourites")})
                    .endsWith(catalog.tracks[10].uri));
    EXPECT_THROW(player->LibraryPlaylist()->AddTrack(*track), VbError);
    EXPECT_THROW(player->CurrentPlaylist()->AddTrack(*track), VbError);
}

TEST_F(DaemonTracks, EmbeddedArtworkIsSavedInEveryFormat) {
    QTemporaryDir folder;
    for (const int index : {0, 3, 6}) {
        const std::shared_ptr<IITArtworkCollection> artwork = Playing(index)->Artwork();
        ASSERT_EQ(artwork->Count(), 1) << index;
        const QString file = folder.filePath(QStringLiteral("art%1.jpg").arg(index));
        artwork->Item(1)->SaveArtworkToFile(file);
        EXPECT_FALSE(QImage(file).isNull()) << index;
    }
}

TEST_F(DaemonTracks, FolderCoverIsTheArtworkOfTracksWithoutPictures) {
    const std::shared_ptr<IITArtworkCollection> artwork = Playing(9)->Artwork();
    ASSERT_EQ(artwork->Count(), 1);
    QTemporaryDir folder;
    artwork->Item(1)->SaveArtworkToFile(folder.filePath(QStringLiteral("cover.jpg")));
    EXPECT_FALSE(QImage(folder.filePath(QStringLiteral("cover.jpg"))).isNull());
    EXPECT_EQ(Playing(static_cast<int>(catalog.tracks.size()) - 1)->Artwork()->Count(), 0);
}

TEST_F(DaemonTracks, AnEditReplacesTheFileWholeKeepingItsModeAndLeavesNoCopyBehind) {
    const QString uri = catalog.tracks[2].uri;
    const QString path = daemon.MusicDirectory() + u'/' + uri;
    ASSERT_EQ(::chmod(QFile::encodeName(path).constData(), 0640), 0);
    struct stat before {};
    ASSERT_EQ(::stat(QFile::encodeName(path).constData(), &before), 0);
    const std::shared_ptr<IITTrack> track = Playing(2);
    track->SetComment(QStringLiteral("Copied, edited, renamed"));
    EXPECT_TRUE(
        TagBecomes(uri, QStringLiteral("%comment%"), QStringLiteral("Copied, edited, renamed")));
    struct stat after {};
    ASSERT_EQ(::stat(QFile::encodeName(path).constData(), &after), 0);
    EXPECT_NE(after.st_ino, before.st_ino) << "a new file took the old one's place";
    EXPECT_EQ(after.st_mode & 07777, 0640u);
    const QStringList left = QFileInfo(path).dir().entryList({QStringLiteral("*.pelorin-*")},
                                                             QDir::Files | QDir::Hidden);
    EXPECT_TRUE(left.isEmpty()) << left.join(u' ').toStdString();
}

TEST_F(DaemonTracks, ATagValueOfMoreThan1024CharactersIsRefusedAndTheFileIsUntouched) {
    const QString path = daemon.MusicDirectory() + u'/' + catalog.tracks[3].uri;
    const QByteArray before = ReadAll(path);
    const std::shared_ptr<IITTrack> track = Playing(3);
    EXPECT_THROW(track->SetComment(QString(1025, u'x')), VbError);
    EXPECT_EQ(ReadAll(path), before);
    track->SetComment(QString(1024, u'x'));
    EXPECT_NE(ReadAll(path), before);
}

TEST_F(DaemonTracks, ADroppedFileThatIsNotAPngOrJpegIsRefusedAndTheTrackIsUntouched) {
    const QString path = daemon.MusicDirectory() + u'/' + catalog.tracks[0].uri;
    QTemporaryDir folder;
    const QString fake = folder.filePath(QStringLiteral("cover.png"));
    QFile file(fake);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("<svg onload=alert(1)/>");
    file.close();
    const QByteArray before = ReadAll(path);
    const std::shared_ptr<IITTrack> track = Playing(0);
    try {
        track->AddArtworkFromFile(fake);
        ADD_FAILURE() << "a picture that is neither PNG nor JPEG was embedded";
    } catch (const VbError& error) {
        EXPECT_TRUE(error.description().contains(QStringLiteral("not a PNG or JPEG")));
    }
    EXPECT_EQ(ReadAll(path), before);
}

TEST_F(DaemonTracks, AddArtworkFromFileEmbedsAFrontCover) {
    QTemporaryDir folder;
    const QString picture = folder.filePath(QStringLiteral("new.png"));
    QImage image(8, 8, QImage::Format_RGB32);
    image.fill(Qt::red);
    ASSERT_TRUE(image.save(picture));
    const std::shared_ptr<IITTrack> track = Playing(static_cast<int>(catalog.tracks.size()) - 1);
    track->AddArtworkFromFile(picture);
    const std::shared_ptr<IITArtworkCollection> artwork = player->CurrentTrack()->Artwork();
    ASSERT_EQ(artwork->Count(), 1);
    artwork->Item(1)->SaveArtworkToFile(folder.filePath(QStringLiteral("back.png")));
    EXPECT_EQ(QImage(folder.filePath(QStringLiteral("back.png"))).pixelColor(2, 2),
              QColor(Qt::red));
    EXPECT_THROW(track->AddArtworkFromFile(folder.filePath(QStringLiteral("missing.png"))),
                 VbError);
}

} // namespace
} // namespace Pelorin

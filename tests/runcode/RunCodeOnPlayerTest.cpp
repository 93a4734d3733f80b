// The command language against the real player daemon: every command that reaches the player,
// checked through the daemon itself (mpc) and through the music files.
#include "DaemonTestSupport.h"
#include "RecordingRunCodeHost.h"
#include "platform/Trash.h"
#include "runcode/CommandInterpreter.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>

namespace Pelorin::Testing {
namespace {

class RunCodeOnPlayer : public DaemonTest {
protected:
    void SetUp() override {
        DaemonTest::SetUp();
        if (HasFatalFailure())
            return;
        QueueCatalogue();
        host = std::make_unique<RecordingRunCodeHost>(player.get());
        interpreter = std::make_unique<CommandInterpreter>(*host, *host);
    }

    void Run(const QString& code) { interpreter->RunCodeText(code); }

    // Plays catalogue track `index` and waits until the backend sees it.
    void Play(int index) {
        Mpc({QStringLiteral("play"), QString::number(index + 1)});
        ASSERT_TRUE(WaitUntil([&] {
            const std::shared_ptr<IITTrack> track = player->CurrentTrack();
            return track && track->Name() == catalog.tracks[index].title;
        }));
    }

    QString Current() {
        return Mpc({QStringLiteral("current"), QStringLiteral("-f"), QStringLiteral("%title%")});
    }

    // One flag of the status line ("repeat", "random", "single") as "on" or "off".
    QString Flag(const QString& name) {
        const QRegularExpression pattern(name + QStringLiteral(":\\s*(on|off)"));
        return pattern.match(Mpc({QStringLiteral("status")})).captured(1);
    }

    QString Messages() const {
        QStringList texts;
        for (const RecordingRunCodeHost::Message& message : host->messages)
            texts.append(message.text);
        return texts.join(QStringLiteral(" | "));
    }

    ::testing::AssertionResult TagBecomes(const QString& uri, const QString& format,
                                          const QString& expected) {
        if (WaitUntil([&] { return TagOf(uri, format) == expected; }))
            return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure()
               << "the daemon lists " << TagOf(uri, format).toStdString();
    }

    const LibraryCatalog catalog = PlayerDaemonFixture::Catalog();
    std::unique_ptr<RecordingRunCodeHost> host;
    std::unique_ptr<CommandInterpreter> interpreter;
};

TEST_F(RunCodeOnPlayer, TransportCommandsDriveTheDaemon) {
    Run(QStringLiteral("play"));
    EXPECT_TRUE(WaitUntil([&] { return Current() == catalog.tracks[0].title; }));
    Run(QStringLiteral("NextTrack"));
    EXPECT_TRUE(WaitUntil([&] { return Current() == catalog.tracks[1].title; }));
    Run(QStringLiteral("previoustrack"));
    EXPECT_TRUE(WaitUntil([&] { return Current() == catalog.tracks[0].title; }));
    Run(QStringLiteral("playpause"));
    EXPECT_EQ(Mpc({QStringLiteral("status"), QStringLiteral("%state%")}), QStringLiteral("paused"));
    Run(QStringLiteral("stop"));
    EXPECT_TRUE(WaitUntil([&] { return Current().isEmpty(); }));
    EXPECT_TRUE(host->messages.isEmpty()) << Messages().toStdString();
}

TEST_F(RunCodeOnPlayer, VolumeCommandsChangeTheDaemonsVolumeAndVolumeDownStopsAtOne) {
    Mpc({QStringLiteral("volume"), QStringLiteral("2")});
    Run(QStringLiteral("volumeup"));
    EXPECT_EQ(Mpc({QStringLiteral("volume")}).trimmed(), QStringLiteral("volume:  3%"));
    Run(QStringLiteral("{volumedown}{volumedown}{volumedown}"));
    EXPECT_EQ(player->SoundVolume(), 1);
    EXPECT_EQ(Mpc({QStringLiteral("volume")}).trimmed(), QStringLiteral("volume:  1%"));
}

TEST_F(RunCodeOnPlayer, RepeatSwitchCyclesOneAllOff) {
    Play(0);
    Run(QStringLiteral("repeat=switch"));
    EXPECT_EQ(Flag(QStringLiteral("repeat")), QStringLiteral("on"));
    EXPECT_EQ(Flag(QStringLiteral("single")), QStringLiteral("on"));
    Run(QStringLiteral("repeat=switch"));
    EXPECT_EQ(Flag(QStringLiteral("repeat")), QStringLiteral("on"));
    EXPECT_EQ(Flag(QStringLiteral("single")), QStringLiteral("off"));
    Run(QStringLiteral("repeat=switch"));
    EXPECT_EQ(Flag(QStringLiteral("repeat")), QStringLiteral("off"));
}

TEST_F(RunCodeOnPlayer, ShuffleSwitchTogglesRandom) {
    Play(0);
    Run(QStringLiteral("shuffle=switch"));
    EXPECT_EQ(Flag(QStringLiteral("random")), QStringLiteral("on"));
    Run(QStringLiteral("shuffle=off"));
    EXPECT_EQ(Flag(QStringLiteral("random")), QStringLiteral("off"));
}

TEST_F(RunCodeOnPlayer, SkipSeeksInThePlayingTrack) {
    Play(0);
    Mpc({QStringLiteral("pause")});
    Mpc({QStringLiteral("seek"), QStringLiteral("0")});
    Run(QStringLiteral("skip=3"));
    EXPECT_TRUE(WaitUntil([&] {
        return Mpc({QStringLiteral("status"), QStringLiteral("%currenttime%")}) ==
               QStringLiteral("0:03");
    }));
    EXPECT_TRUE(host->messages.isEmpty()) << Messages().toStdString();
}

TEST_F(RunCodeOnPlayer, EditTagWritesTheFileAndTheDaemonListsIt) {
    Play(1);
    Run(QStringLiteral("edittag=Comment=Written by a skin"));
    EXPECT_TRUE(host->messages.isEmpty()) << Messages().toStdString();
    EXPECT_TRUE(TagBecomes(catalog.tracks[1].uri, QStringLiteral("%comment%"),
                           QStringLiteral("Written by a skin")));
}

TEST_F(RunCodeOnPlayer, EditTagOfARatingStoresTheSticker) {
    Play(0);
    Run(QStringLiteral("edittag=Rating=60"));
    EXPECT_TRUE(host->messages.isEmpty()) << Messages().toStdString();
    EXPECT_EQ(StickerOf(catalog.tracks[0].uri, QStringLiteral("rating")),
              QStringLiteral("rating=6"));
}

TEST_F(RunCodeOnPlayer, EditTagOfAnUnknownPropertyShowsTheEditTagMessage) {
    Play(0);
    Run(QStringLiteral("edittag=Colour=red"));
    ASSERT_EQ(host->messages.size(), 1);
    EXPECT_TRUE(host->messages[0].text.startsWith(
        QStringLiteral("There was an error in the runcode, Edit Tag.")));
}

TEST_F(RunCodeOnPlayer, SwapArtistAndTitleRewritesTheFile) {
    Play(3);
    Run(QStringLiteral("swapartistandtitle"));
    EXPECT_TRUE(host->messages.isEmpty()) << Messages().toStdString();
    EXPECT_TRUE(
        TagBecomes(catalog.tracks[3].uri, QStringLiteral("%artist% / %title%"),
                   catalog.tracks[3].title + QStringLiteral(" / ") + catalog.tracks[3].artist));
}

TEST_F(RunCodeOnPlayer, SetAsStartStoresTheStartPointOfTheTrack) {
    Play(0);
    Mpc({QStringLiteral("pause")});
    Mpc({QStringLiteral("seek"), QStringLiteral("2")});
    ASSERT_TRUE(WaitUntil([&] { return player->PlayerPosition() == 2; }));
    Run(QStringLiteral("setasstart"));
    EXPECT_TRUE(host->messages.isEmpty()) << Messages().toStdString();
    EXPECT_EQ(StickerOf(catalog.tracks[0].uri, QStringLiteral("start")), QStringLiteral("start=2"));
}

TEST_F(RunCodeOnPlayer, AddToVolumeShowsThatThePlayerDoesNotSupportIt) {
    Play(0);
    Run(QStringLiteral("addtovolume=10"));
    ASSERT_EQ(host->messages.size(), 1);
    EXPECT_EQ(host->messages[0].title, QStringLiteral("Error!"));
    EXPECT_TRUE(host->messages[0].text.endsWith(
        QStringLiteral("The player does not support VolumeAdjustment")))
        << Messages().toStdString();
}

TEST_F(RunCodeOnPlayer, PlayPlaylistLoadsAndPlaysTheStoredPlaylistInAnyCase) {
    Run(QStringLiteral("playplaylist=ROAD trip"));
    EXPECT_TRUE(host->messages.isEmpty()) << Messages().toStdString();
    EXPECT_TRUE(WaitUntil([&] { return Current() == catalog.tracks[3].title; }));
    EXPECT_EQ(Mpc({QStringLiteral("playlist"), QStringLiteral("-f"), QStringLiteral("%file%")})
                  .split(u'\n'),
              (QStringList{catalog.tracks[3].uri, catalog.tracks[9].uri, catalog.tracks[12].uri,
                           catalog.tracks[5].uri}));
}

TEST_F(RunCodeOnPlayer, PlayPlaylistOfANameThatMatchesNothingShowsTheError) {
    Play(0);
    Run(QStringLiteral("playplaylist=Nowhere"));
    ASSERT_EQ(host->messages.size(), 1);
    EXPECT_EQ(Current(), catalog.tracks[0].title);
}

TEST_F(RunCodeOnPlayer, AddToPlaylistAppendsTheCurrentTrackToTheStoredPlaylist) {
    Play(2);
    Run(QStringLiteral("addtoplaylist=favourites"));
    EXPECT_TRUE(host->messages.isEmpty()) << Messages().toStdString();
    const QStringList files = Mpc({QStringLiteral("playlist"), QStringLiteral("-f"),
                                   QStringLiteral("%file%"), QStringLiteral("Favourites")})
                                  .split(u'\n');
    EXPECT_EQ(files.size(), 4);
    EXPECT_EQ(files.last(), catalog.tracks[2].uri);
}

TEST_F(RunCodeOnPlayer, DeleteTakesTheCurrentEntryOutOfTheQueue) {
    Play(0);
    const int before = Mpc({QStringLiteral("playlist")}).split(u'\n').size();
    Run(QStringLiteral("delete"));
    EXPECT_EQ(Mpc({QStringLiteral("playlist")}).split(u'\n').size(), before - 1);
    EXPECT_FALSE(Mpc({QStringLiteral("playlist"), QStringLiteral("-f"), QStringLiteral("%file%")})
                     .split(u'\n')
                     .contains(catalog.tracks[0].uri));
}

TEST_F(RunCodeOnPlayer, UpdateIPodRescansTheMusicFolder) {
    const QString copy = daemon.MusicDirectory() + QStringLiteral("/Unsorted/copy.ogg");
    ASSERT_TRUE(QFile::copy(daemon.MusicDirectory() + u'/' + catalog.tracks.last().uri, copy));
    Run(QStringLiteral("updateipod"));
    EXPECT_TRUE(WaitUntil([&] {
        return Mpc({QStringLiteral("listall")})
            .split(u'\n')
            .contains(QStringLiteral("Unsorted/copy.ogg"));
    }));
}

TEST_F(RunCodeOnPlayer, QuitEndsTheDaemon) {
    EventRecorder recorder(*player);
    Run(QStringLiteral("quit"));
    EXPECT_TRUE(recorder.WaitFor(QStringLiteral("quitting")));
    EXPECT_TRUE(WaitUntil([&] { return !daemon.IsRunning(); }));
}

TEST_F(RunCodeOnPlayer, DeleteCompletelyMovesOnlyTheCurrentTracksFileToTheTrash) {
    QTemporaryDir data;
    ASSERT_TRUE(data.isValid());
    const QByteArray oldDataHome = qgetenv("XDG_DATA_HOME");
    qputenv("XDG_DATA_HOME", QFile::encodeName(data.path()));
    host->trash = [](const QString& path, QString* error) { return MoveToTrash(path, error); };
    const QStringList before = Mpc({QStringLiteral("listall")}).split(u'\n');
    // The first track of "Favourites", so its playlist entry must go as well.
    Play(0);
    Run(QStringLiteral("deletecompletely"));
    qputenv("XDG_DATA_HOME", oldDataHome);
    EXPECT_TRUE(host->messages.isEmpty()) << Messages().toStdString();

    const QString file = daemon.MusicDirectory() + u'/' + catalog.tracks[0].uri;
    EXPECT_FALSE(QFileInfo::exists(file));
    EXPECT_EQ(QDir(data.filePath(QStringLiteral("Trash/files"))).entryList(QDir::Files),
              QStringList{QFileInfo(file).fileName()});
    // Every other file is where it was.
    for (const TrackSpec& track : catalog.tracks.mid(1))
        EXPECT_TRUE(QFileInfo::exists(daemon.MusicDirectory() + u'/' + track.uri))
            << track.uri.toStdString();
    EXPECT_FALSE(Mpc({QStringLiteral("playlist"), QStringLiteral("-f"), QStringLiteral("%file%"),
                      QStringLiteral("Favourites")})
                     .split(u'\n')
                     .contains(catalog.tracks[0].uri));
    EXPECT_FALSE(Mpc({QStringLiteral("playlist"), QStringLiteral("-f"), QStringLiteral("%file%")})
                     .split(u'\n')
                     .contains(catalog.tracks[0].uri));
    EXPECT_EQ(before.size(), catalog.tracks.size());
}

TEST_F(RunCodeOnPlayer, CommandsWhileNothingPlaysBeepInsteadOfShowingAMessage) {
    Mpc({QStringLiteral("stop")});
    Run(QStringLiteral("swapartistandalbum"));
    Run(QStringLiteral("deletecompletely"));
    EXPECT_EQ(host->beeps, 2);
    EXPECT_TRUE(host->messages.isEmpty()) << Messages().toStdString();
}

TEST_F(RunCodeOnPlayer, AnUntrustedSkinLeavesTheTagsTheFilesAndThePlaylistsAsTheyWere) {
    // What a hostile skin tried: every new song rewrites the tags, then trashes the file.
    QTemporaryDir data;
    ASSERT_TRUE(data.isValid());
    const QByteArray oldDataHome = qgetenv("XDG_DATA_HOME");
    qputenv("XDG_DATA_HOME", QFile::encodeName(data.path()));
    host->trash = [](const QString& path, QString* error) { return MoveToTrash(path, error); };
    host->trusted = false;
    Play(1);
    const QString uri = catalog.tracks[1].uri;
    const QString before = TagOf(uri, QStringLiteral("%artist%;%title%;%comment%"));
    const QStringList favourites = {QStringLiteral("playlist"), QStringLiteral("-f"),
                                    QStringLiteral("%file%"), QStringLiteral("Favourites")};
    const QString favouritesBefore = Mpc(favourites);
    Run(QStringLiteral("edittag=Comment=wiped"));
    Run(QStringLiteral("{swapartistandtitle}{deletecompletely}"));
    Run(QStringLiteral("addtoplaylist=Favourites"));
    qputenv("XDG_DATA_HOME", oldDataHome);

    EXPECT_TRUE(QFileInfo::exists(daemon.MusicDirectory() + u'/' + uri));
    EXPECT_TRUE(QDir(data.filePath(QStringLiteral("Trash/files"))).isEmpty());
    EXPECT_EQ(TagOf(uri, QStringLiteral("%artist%;%title%;%comment%")), before);
    EXPECT_EQ(Mpc(favourites), favouritesBefore);
    // Each refusal is that command's own failure, in its own words.
    EXPECT_TRUE(Messages().contains(RunCodeHost::LibraryChangeRefusedText()))
        << Messages().toStdString();
    EXPECT_EQ(
        host->CallsOf(QStringLiteral("trust")),
        (QStringList{QStringLiteral("trust:edittag"), QStringLiteral("trust:swapartistandtitle"),
                     QStringLiteral("trust:deletecompletely"),
                     QStringLiteral("trust:addtoplaylist")}));
}

} // namespace
} // namespace Pelorin::Testing

// Transport, volume, position, repeat and shuffle on a real daemon, and the events the backend
// raises for what the daemon reports.
#include "DaemonTestSupport.h"

namespace Pelorin {
namespace {

QString State(PlayerDaemonFixture& daemon) {
    const QString status = daemon.Mpc({QStringLiteral("status")});
    if (status.contains(QLatin1String("[playing]"))) {
        return QStringLiteral("playing");
    }
    if (status.contains(QLatin1String("[paused]"))) {
        return QStringLiteral("paused");
    }
    return QStringLiteral("stopped");
}

class DaemonTransport : public DaemonTest {
protected:
    void SetUp() override {
        DaemonTest::SetUp();
        QueueCatalogue();
    }
    QString StateNow() { return State(daemon); }
    QString CurrentUri() {
        return Mpc({QStringLiteral("-f"), QStringLiteral("%file%"), QStringLiteral("current")});
    }
};

TEST_F(DaemonTransport, PlayStartsThePlayerAndRaisesThePlayEvent) {
    EventRecorder recorder(*player);
    player->Play();
    EXPECT_EQ(StateNow(), QStringLiteral("playing"));
    ASSERT_TRUE(recorder.WaitFor(QStringLiteral("play")));
    EXPECT_EQ(recorder.events.count(QStringLiteral("play")), 1);
}

TEST_F(DaemonTransport, PauseRaisesStopAndResumingRaisesPlay) {
    player->Play();
    EventRecorder recorder(*player);
    PumpFor(300);
    recorder.events.clear();
    player->Pause();
    ASSERT_TRUE(recorder.WaitFor(QStringLiteral("stop")));
    EXPECT_EQ(StateNow(), QStringLiteral("paused"));
    player->Play();
    ASSERT_TRUE(recorder.WaitFor(QStringLiteral("play")));
    EXPECT_EQ(recorder.events, (QStringList{QStringLiteral("stop"), QStringLiteral("play")}));
}

TEST_F(DaemonTransport, PlayPauseTogglesBetweenPlayingAndPaused) {
    player->PlayPause();
    EXPECT_EQ(StateNow(), QStringLiteral("playing"));
    player->PlayPause();
    EXPECT_EQ(StateNow(), QStringLiteral("paused"));
    player->PlayPause();
    EXPECT_EQ(StateNow(), QStringLiteral("playing"));
}

TEST_F(DaemonTransport, NextTrackRaisesTheTrackChangedEvent) {
    player->Play();
    EventRecorder recorder(*player);
    PumpFor(300);
    recorder.events.clear();
    player->NextTrack();
    ASSERT_TRUE(recorder.WaitFor(QStringLiteral("track")));
    EXPECT_FALSE(recorder.events.contains(QStringLiteral("play")));
    EXPECT_EQ(CurrentUri(), PlayerDaemonFixture::Catalog().tracks[1].uri);
    player->PreviousTrack();
    EXPECT_TRUE(
        WaitUntil([&] { return CurrentUri() == PlayerDaemonFixture::Catalog().tracks[0].uri; }));
}

TEST_F(DaemonTransport, StopRaisesTheStopEventAndLeavesNoCurrentTrack) {
    player->Play();
    ASSERT_NE(player->CurrentTrack(), nullptr);
    EventRecorder recorder(*player);
    PumpFor(300);
    recorder.events.clear();
    player->Stop();
    ASSERT_TRUE(recorder.WaitFor(QStringLiteral("stop")));
    EXPECT_EQ(StateNow(), QStringLiteral("stopped"));
    EXPECT_EQ(player->CurrentTrack(), nullptr);
}

TEST_F(DaemonTransport, ChangesMadeByAnotherClientRaiseTheSameEvents) {
    EventRecorder recorder(*player);
    Mpc({QStringLiteral("play")});
    ASSERT_TRUE(recorder.WaitFor(QStringLiteral("play")));
    Mpc({QStringLiteral("next")});
    ASSERT_TRUE(recorder.WaitFor(QStringLiteral("track")));
    Mpc({QStringLiteral("stop")});
    ASSERT_TRUE(recorder.WaitFor(QStringLiteral("stop")));
}

TEST_F(DaemonTransport, CurrentTrackIsThePausedSongToo) {
    player->Play();
    player->Pause();
    const std::shared_ptr<IITTrack> track = player->CurrentTrack();
    ASSERT_NE(track, nullptr);
    EXPECT_EQ(track->Name(), PlayerDaemonFixture::Catalog().tracks[0].title);
}

TEST_F(DaemonTransport, NextTrackWhileStoppedFailsWithThePlayersMessage) {
    try {
        player->NextTrack();
        FAIL() << "no error";
    } catch (const VbError& error) {
        EXPECT_EQ(error.number(), VbError::PlayerErrorNumber);
        EXPECT_FALSE(error.description().isEmpty());
    }
    // The connection is still good after the daemon's refusal.
    player->Play();
    EXPECT_EQ(StateNow(), QStringLiteral("playing"));
}

TEST_F(DaemonTransport, SoundVolumeIsReadAndSetInPercent) {
    player->Play();
    player->SetSoundVolume(37);
    EXPECT_EQ(player->SoundVolume(), 37);
    EXPECT_TRUE(Mpc({QStringLiteral("volume")}).contains(QLatin1String("37%")));
    EXPECT_THROW(player->SetSoundVolume(101), VbError);
}

TEST_F(DaemonTransport, PlayerPositionFollowsTheClockWithoutAskingAndSeeks) {
    player->Play();
    player->SetPlayerPosition(3);
    EXPECT_EQ(player->PlayerPosition(), 3);
    PumpFor(1100);
    EXPECT_EQ(player->PlayerPosition(), 4);
    const QString status = Mpc({QStringLiteral("status"), QStringLiteral("%currenttime%")});
    EXPECT_EQ(status.trimmed(), QStringLiteral("0:04"));
}

TEST_F(DaemonTransport, PlayWithNothingQueuedQueuesTheLibraryInAlbumOrderAndPlaysIt) {
    Mpc({QStringLiteral("clear")});
    player->Play();
    ASSERT_TRUE(WaitUntil([&] { return StateNow() == QStringLiteral("playing"); }));
    const QStringList library = Mpc({QStringLiteral("listall")}).split(u'\n', Qt::SkipEmptyParts);
    const QStringList queue =
        Mpc({QStringLiteral("-f"), QStringLiteral("[%albumartist%|%artist%]\t%album%\t%track%"),
             QStringLiteral("playlist")})
            .split(u'\n', Qt::SkipEmptyParts);
    EXPECT_EQ(queue.size(), library.size());
    // Album artist, then album, then track: never backwards.
    for (qsizetype i = 1; i < queue.size(); ++i) {
        const QStringList a = queue[i - 1].split(u'\t');
        const QStringList b = queue[i].split(u'\t');
        const int byArtist = QString::compare(a.value(0), b.value(0), Qt::CaseInsensitive);
        const int byAlbum = QString::compare(a.value(1), b.value(1), Qt::CaseInsensitive);
        EXPECT_TRUE(byArtist < 0 || (byArtist == 0 && byAlbum <= 0))
            << queue[i - 1].toStdString() << " before " << queue[i].toStdString();
    }
    EXPECT_EQ(Mpc({QStringLiteral("-f"), QStringLiteral("%file%"), QStringLiteral("current")}),
              Mpc({QStringLiteral("-f"), QStringLiteral("%file%"), QStringLiteral("playlist")})
                  .split(u'\n')
                  .first())
        << "the first of the queued library plays";
}

TEST_F(DaemonTransport, PlayPauseWithNothingQueuedPlaysTooAndAFilledQueueIsLeftAsItIs) {
    Mpc({QStringLiteral("clear")});
    player->PlayPause();
    ASSERT_TRUE(WaitUntil([&] { return StateNow() == QStringLiteral("playing"); }));
    Mpc({QStringLiteral("stop")});
    const QString queued = Mpc({QStringLiteral("playlist")});
    player->Play();
    EXPECT_EQ(Mpc({QStringLiteral("playlist")}), queued);
}

TEST_F(DaemonTransport, PlayerPositionStandsStillWhilePaused) {
    player->Play();
    // A busy machine may not have opened the song yet: the daemon refuses a seek until it has.
    ASSERT_TRUE(WaitUntil([&] {
        try {
            player->SetPlayerPosition(2);
            return true;
        } catch (const std::exception&) {
            return false;
        }
    }));
    player->Pause();
    ASSERT_TRUE(WaitUntil([&] { return StateNow() == QStringLiteral("paused"); }));
    PumpFor(300);
    const int paused = player->PlayerPosition();
    PumpFor(1100);
    EXPECT_EQ(player->PlayerPosition(), paused);
}

TEST_F(DaemonTransport, SongRepeatMapsToRepeatAndSingle) {
    const std::shared_ptr<IITPlaylist> playlist = player->CurrentPlaylist();
    ASSERT_NE(playlist, nullptr);
    playlist->SetSongRepeat(ITPlaylistRepeatModeOne);
    QString options = Mpc({QStringLiteral("status")});
    EXPECT_TRUE(options.contains(QLatin1String("repeat: on"))) << options.toStdString();
    EXPECT_TRUE(options.contains(QLatin1String("single: on")));
    EXPECT_EQ(playlist->SongRepeat(), ITPlaylistRepeatModeOne);
    playlist->SetSongRepeat(ITPlaylistRepeatModeAll);
    options = Mpc({QStringLiteral("status")});
    EXPECT_TRUE(options.contains(QLatin1String("single: off")));
    EXPECT_EQ(playlist->SongRepeat(), ITPlaylistRepeatModeAll);
    playlist->SetSongRepeat(ITPlaylistRepeatModeOff);
    EXPECT_TRUE(Mpc({QStringLiteral("status")}).contains(QLatin1String("repeat: off")));
    EXPECT_EQ(playlist->SongRepeat(), ITPlaylistRepeatModeOff);
    EXPECT_THROW(playlist->SetSongRepeat(3), VbError);
}

TEST_F(DaemonTransport, SingleWithoutRepeatReadsAsOff) {
    Mpc({QStringLiteral("repeat"), QStringLiteral("off")});
    Mpc({QStringLiteral("single"), QStringLiteral("on")});
    EXPECT_EQ(player->CurrentPlaylist()->SongRepeat(), ITPlaylistRepeatModeOff);
}

TEST_F(DaemonTransport, ShuffleIsTheDaemonsRandomMode) {
    const std::shared_ptr<IITPlaylist> playlist = player->CurrentPlaylist();
    playlist->SetShuffle(true);
    EXPECT_TRUE(Mpc({QStringLiteral("status")}).contains(QLatin1String("random: on")));
    EXPECT_TRUE(playlist->Shuffle());
    playlist->SetShuffle(false);
    EXPECT_FALSE(playlist->Shuffle());
}

TEST_F(DaemonTransport, UpdateIPodRescansAndRaisesTheDatabaseEvent) {
    QFile::copy(daemon.MusicDirectory() + u'/' + PlayerDaemonFixture::Catalog().tracks[0].uri,
                daemon.MusicDirectory() + QStringLiteral("/Unsorted/copy.ogg"));
    EventRecorder recorder(*player);
    player->UpdateIPod();
    ASSERT_TRUE(recorder.WaitFor(QStringLiteral("database")));
    EXPECT_TRUE(WaitUntil([&] {
        return Mpc({QStringLiteral("listall"), QStringLiteral("Unsorted")})
            .contains(QLatin1String("copy.ogg"));
    }));
}

TEST_F(DaemonTransport, StickerChangesRaiseTheDatabaseEvent) {
    EventRecorder recorder(*player);
    Mpc({QStringLiteral("sticker"), PlayerDaemonFixture::Catalog().tracks[2].uri,
         QStringLiteral("set"), QStringLiteral("rating"), QStringLiteral("4")});
    EXPECT_TRUE(recorder.WaitFor(QStringLiteral("database")));
}

TEST_F(DaemonTransport, StoredPlaylistChangesRaiseTheDatabaseEvent) {
    EventRecorder recorder(*player);
    Mpc({QStringLiteral("save"), QStringLiteral("Everything")});
    EXPECT_TRUE(recorder.WaitFor(QStringLiteral("database")));
}

TEST_F(DaemonTransport, ASongLeftAfterHalfItsLengthCountsAsPlayed) {
    const QString uri = PlayerDaemonFixture::Catalog().tracks[0].uri;
    player->Play();
    player->SetPlayerPosition(4);
    PumpFor(300);
    player->NextTrack();
    EXPECT_TRUE(WaitUntil([&] {
        return StickerOf(uri, QStringLiteral("playCount")).contains(QLatin1String("playCount=1"));
    })) << StickerOf(uri, QStringLiteral("playCount")).toStdString();
}

TEST_F(DaemonTransport, ASongLeftEarlyDoesNotCount) {
    const QString uri = PlayerDaemonFixture::Catalog().tracks[0].uri;
    player->Play();
    PumpFor(300);
    player->NextTrack();
    PumpFor(500);
    EXPECT_FALSE(StickerOf(uri, QStringLiteral("playCount")).contains(QLatin1String("playCount=")));
}

} // namespace
} // namespace Pelorin

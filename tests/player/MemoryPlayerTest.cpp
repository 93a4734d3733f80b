#include "support/player/memory/MemoryPlayer.h"

#include "player/IITFileOrCDTrack.h"

#include <QCoreApplication>
#include <QFile>
#include <QStringList>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace Pelorin;

namespace {

// Writes down every event the player reports, as "play:<title>", "changed:<title>",
// "stop:<title>", "database", "quitting", "disabled:<reason>", "enabled".
class EventLog {
public:
    explicit EventLog(IiTunes& player) {
        QObject::connect(&player, &IiTunes::OnPlayerPlayEvent, &m_context,
                         [this](const std::shared_ptr<IITTrack>& track) { Add(u"play", track); });
        QObject::connect(
            &player, &IiTunes::OnPlayerPlayingTrackChangedEvent, &m_context,
            [this](const std::shared_ptr<IITTrack>& track) { Add(u"changed", track); });
        QObject::connect(&player, &IiTunes::OnPlayerStopEvent, &m_context,
                         [this](const std::shared_ptr<IITTrack>& track) { Add(u"stop", track); });
        QObject::connect(&player, &IiTunes::OnDatabaseChangedEvent, &m_context,
                         [this] { m_events.append(QStringLiteral("database")); });
        QObject::connect(&player, &IiTunes::OnQuittingEvent, &m_context,
                         [this] { m_events.append(QStringLiteral("quitting")); });
        QObject::connect(
            &player, &IiTunes::OnCOMCallsDisabledEvent, &m_context,
            [this](int reason) { m_events.append(QStringLiteral("disabled:%1").arg(reason)); });
        QObject::connect(&player, &IiTunes::OnCOMCallsEnabledEvent, &m_context,
                         [this] { m_events.append(QStringLiteral("enabled")); });
    }

    // The events delivered so far, after letting queued ones arrive; the log starts afresh.
    QStringList Take() {
        QCoreApplication::processEvents();
        QStringList events;
        events.swap(m_events);
        return events;
    }

private:
    void Add(QStringView kind, const std::shared_ptr<IITTrack>& track) {
        m_events.append(kind.toString() + QLatin1Char(':') +
                        (track ? track->Name() : QStringLiteral("-")));
    }

    QObject m_context;
    QStringList m_events;
};

MemoryTrackData Song(const QString& name, int duration = 200) {
    MemoryTrackData data;
    data.name = name;
    data.artist = QStringLiteral("Artist of ") + name;
    data.album = QStringLiteral("Album");
    data.duration = duration;
    data.location = QStringLiteral("/music/") + name + QStringLiteral(".ogg");
    return data;
}

// A player with three songs A, B, C in the library and in the queue, stopped.
class MemoryPlayerTest : public ::testing::Test {
protected:
    MemoryPlayerTest() : log(player) {
        a = player.addLibraryTrack(Song(QStringLiteral("A")));
        b = player.addLibraryTrack(Song(QStringLiteral("B")));
        c = player.addLibraryTrack(Song(QStringLiteral("C")));
        for (int id : {a, b, c})
            player.enqueue(id);
    }

    QString CurrentName() const {
        const std::shared_ptr<IITTrack> track = player.CurrentTrack();
        return track ? track->Name() : QStringLiteral("-");
    }

    // Expects `call` to throw a VbError with that description.
    template <typename Call> static void ExpectError(Call call, const QString& description) {
        try {
            call();
            ADD_FAILURE() << "no error, expected " << description.toStdString();
        } catch (const VbError& error) {
            EXPECT_EQ(error.description(), description);
        }
    }

    MemoryPlayer player;
    EventLog log;
    int a = 0;
    int b = 0;
    int c = 0;
};

} // namespace

TEST_F(MemoryPlayerTest, PlayFromStoppedFiresThePlayEvent) {
    player.Play();
    EXPECT_EQ(player.playState(), MemoryPlayState::Playing);
    EXPECT_EQ(log.Take(), QStringList{QStringLiteral("play:A")});
}

TEST_F(MemoryPlayerTest, EventsArriveThroughTheEventLoopNotDuringTheCommand) {
    bool seen = false;
    QObject context;
    QObject::connect(&player, &IiTunes::OnPlayerPlayEvent, &context, [&] { seen = true; });
    player.Play();
    EXPECT_FALSE(seen);
    QCoreApplication::processEvents();
    EXPECT_TRUE(seen);
}

TEST_F(MemoryPlayerTest, PausingFiresTheStopEvent) {
    player.Play();
    log.Take();
    player.Pause();
    EXPECT_EQ(player.playState(), MemoryPlayState::Paused);
    EXPECT_EQ(log.Take(), QStringList{QStringLiteral("stop:A")});
}

TEST_F(MemoryPlayerTest, ResumingFiresThePlayEvent) {
    player.Play();
    player.Pause();
    log.Take();
    player.Play();
    EXPECT_EQ(log.Take(), QStringList{QStringLiteral("play:A")});
}

TEST_F(MemoryPlayerTest, PlayPauseTogglesBetweenPlayingAndPaused) {
    player.PlayPause();
    EXPECT_EQ(player.playState(), MemoryPlayState::Playing);
    player.PlayPause();
    EXPECT_EQ(player.playState(), MemoryPlayState::Paused);
    player.PlayPause();
    EXPECT_EQ(player.playState(), MemoryPlayState::Playing);
    EXPECT_EQ(log.Take(), (QStringList{QStringLiteral("play:A"), QStringLiteral("stop:A"),
                                       QStringLiteral("play:A")}));
}

TEST_F(MemoryPlayerTest, CurrentTrackIsTheSongWhilePlayingOrPausedAndNoneWhenStopped) {
    EXPECT_EQ(player.CurrentTrack(), nullptr);
    player.Play();
    EXPECT_EQ(CurrentName(), QStringLiteral("A"));
    player.Pause();
    EXPECT_EQ(CurrentName(), QStringLiteral("A"));
    player.Stop();
    EXPECT_EQ(player.CurrentTrack(), nullptr);
    EXPECT_EQ(log.Take().last(), QStringLiteral("stop:A"));
}

TEST_F(MemoryPlayerTest, StopWhileStoppedReportsNothing) {
    player.Stop();
    player.Pause();
    EXPECT_TRUE(log.Take().isEmpty());
}

TEST_F(MemoryPlayerTest, NextTrackWhilePlayingFiresTheTrackChangedEvent) {
    player.Play();
    log.Take();
    player.NextTrack();
    EXPECT_EQ(CurrentName(), QStringLiteral("B"));
    EXPECT_EQ(log.Take(), QStringList{QStringLiteral("changed:B")});
}

TEST_F(MemoryPlayerTest, NextTrackWhilePausedPlaysTheNextTrack) {
    player.Play();
    player.Pause();
    log.Take();
    player.NextTrack();
    EXPECT_EQ(player.playState(), MemoryPlayState::Playing);
    EXPECT_EQ(log.Take(), QStringList{QStringLiteral("play:B")});
}

TEST_F(MemoryPlayerTest, NextTrackAfterTheLastStopsUnlessRepeatingAll) {
    player.Play();
    player.NextTrack();
    player.NextTrack();
    log.Take();
    player.NextTrack();
    EXPECT_EQ(player.playState(), MemoryPlayState::Stopped);
    EXPECT_EQ(log.Take(), QStringList{QStringLiteral("stop:C")});

    player.CurrentPlaylist()->SetSongRepeat(ITPlaylistRepeatModeAll);
    player.Play();
    player.NextTrack();
    player.NextTrack();
    player.NextTrack();
    EXPECT_EQ(CurrentName(), QStringLiteral("A"));
}

TEST_F(MemoryPlayerTest, PreviousTrackOnTheFirstRestartsIt) {
    player.Play();
    player.SetPlayerPosition(50);
    log.Take();
    player.PreviousTrack();
    EXPECT_EQ(CurrentName(), QStringLiteral("A"));
    EXPECT_EQ(player.PlayerPosition(), 0);
    EXPECT_TRUE(log.Take().isEmpty());
}

TEST_F(MemoryPlayerTest, TrackCommandsWhileStoppedFailWithNotPlaying) {
    ExpectError([&] { player.NextTrack(); }, QStringLiteral("Not playing"));
    ExpectError([&] { player.PreviousTrack(); }, QStringLiteral("Not playing"));
    ExpectError([&] { player.SetPlayerPosition(10); }, QStringLiteral("Not playing"));
}

TEST_F(MemoryPlayerTest, PositionIsZeroWhenStoppedAndStaysWithinTheTrack) {
    EXPECT_EQ(player.PlayerPosition(), 0);
    player.Play();
    player.SetPlayerPosition(42);
    EXPECT_EQ(player.PlayerPosition(), 42);
    player.SetPlayerPosition(-5);
    EXPECT_EQ(player.PlayerPosition(), 0);
    player.SetPlayerPosition(999);
    EXPECT_EQ(player.PlayerPosition(), 200);
    player.Stop();
    EXPECT_EQ(player.PlayerPosition(), 0);
}

TEST_F(MemoryPlayerTest, VolumeIsKeptWithinZeroToHundred) {
    player.SetSoundVolume(100);
    EXPECT_EQ(player.SoundVolume(), 100);
    ExpectError([&] { player.SetSoundVolume(101); }, QStringLiteral("Invalid volume value"));
    EXPECT_EQ(player.SoundVolume(), 100);
}

TEST_F(MemoryPlayerTest, InjectedErrorIsThrownWithItsDescription) {
    player.failOperation(QStringLiteral("IiTunes.CurrentTrack"),
                         VbError::Player(QStringLiteral("Connection reset by peer")));
    ExpectError([&] { player.CurrentTrack(); }, QStringLiteral("Connection reset by peer"));
    player.Play(); // other operations still work
    player.clearFailures();
    EXPECT_EQ(CurrentName(), QStringLiteral("A"));
}

TEST_F(MemoryPlayerTest, InjectedErrorReachesTrackAndCollectionOperations) {
    player.Play();
    const std::shared_ptr<IITTrack> track = player.CurrentTrack();
    player.failOperation(QStringLiteral("IITTrack.SetComment"), VbError::TypeMismatch());
    ExpectError([&] { track->SetComment(QStringLiteral("x")); }, QStringLiteral("Type mismatch"));
    EXPECT_EQ(player.trackData(a).comment, QString());

    const auto tracks = player.CurrentPlaylist()->Tracks();
    player.failOperation(QStringLiteral("IITTrack.Count"), VbError::Overflow());
    ExpectError([&] { tracks->Count(); }, QStringLiteral("Overflow"));
}

TEST_F(MemoryPlayerTest, UnsupportedOperationSaysThePlayerDoesNotSupportIt) {
    player.Play();
    player.makeUnsupported(QStringLiteral("IITTrack.SetVolumeAdjustment"));
    try {
        player.CurrentTrack()->SetVolumeAdjustment(10);
        ADD_FAILURE() << "no error";
    } catch (const VbError& error) {
        EXPECT_EQ(error.number(), VbError::PlayerErrorNumber);
        EXPECT_EQ(error.description(),
                  QStringLiteral("The player does not support SetVolumeAdjustment"));
    }
}

TEST_F(MemoryPlayerTest, CommandsAreRefusedWhileCOMCallsAreDisabled) {
    player.fireCOMCallsDisabledEvent(ITCOMDisabledReasonDialog);
    EXPECT_EQ(log.Take(), QStringList{QStringLiteral("disabled:1")});
    ExpectError([&] { player.Play(); }, QStringLiteral("The player is not accepting commands"));
    player.fireCOMCallsEnabledEvent();
    EXPECT_EQ(log.Take(), QStringList{QStringLiteral("enabled")});
    player.Play();
    EXPECT_EQ(player.playState(), MemoryPlayState::Playing);
}

TEST_F(MemoryPlayerTest, EveryEventCanBeFiredByHand) {
    player.Play();
    log.Take();
    player.firePlayEvent();
    player.firePlayingTrackChangedEvent();
    player.fireStopEvent();
    player.fireDatabaseChangedEvent({1}, {2});
    player.fireQuittingEvent();
    EXPECT_EQ(log.Take(), (QStringList{QStringLiteral("play:A"), QStringLiteral("changed:A"),
                                       QStringLiteral("stop:A"), QStringLiteral("database"),
                                       QStringLiteral("quitting")}));
}

TEST_F(MemoryPlayerTest, QuitAnnouncesQuittingAndLaterCallsFailUntilRestarted) {
    player.Play();
    const std::shared_ptr<IITTrack> track = player.CurrentTrack();
    log.Take();
    player.Quit();
    EXPECT_TRUE(player.hasQuit());
    EXPECT_EQ(log.Take(), QStringList{QStringLiteral("quitting")});
    ExpectError([&] { player.CurrentTrack(); }, QStringLiteral("The player is not running"));
    ExpectError([&] { track->Name(); }, QStringLiteral("The player is not running"));
    player.restart();
    EXPECT_EQ(player.CurrentTrack(), nullptr);
    EXPECT_EQ(track->Name(), QStringLiteral("A"));
}

TEST(MemoryPlayer, ObjectsThatOutliveThePlayerFailTheirCalls) {
    std::shared_ptr<IITPlaylist> library;
    {
        MemoryPlayer player;
        player.addLibraryTrack(Song(QStringLiteral("A")));
        library = player.LibraryPlaylist();
    }
    EXPECT_THROW(library->Tracks(), VbError);
}

TEST_F(MemoryPlayerTest, WritingATrackReportsALibraryChange) {
    player.Play();
    log.Take();
    player.CurrentTrack()->SetRating(60);
    EXPECT_EQ(player.trackData(a).rating, 60);
    EXPECT_EQ(log.Take(), QStringList{QStringLiteral("database")});
}

TEST_F(MemoryPlayerTest, TrackValuesOutOfRangeFailAndChangeNothing) {
    player.Play();
    const std::shared_ptr<IITTrack> track = player.CurrentTrack();
    EXPECT_THROW(track->SetRating(101), VbError);
    EXPECT_THROW(track->SetVolumeAdjustment(-101), VbError);
    EXPECT_THROW(track->SetFinish(201), VbError);
    track->SetStart(30);
    EXPECT_THROW(track->SetFinish(20), VbError);
    EXPECT_EQ(track->Rating(), 0);
    EXPECT_EQ(track->Finish(), 200);
    EXPECT_EQ(track->Start(), 30);
}

TEST_F(MemoryPlayerTest, AStartAfterTheFinishIsRefusedWithTheSameWordsAsOnTheDaemon) {
    player.Play();
    const std::shared_ptr<IITTrack> track = player.CurrentTrack();
    track->SetFinish(4);
    try {
        track->SetStart(5);
        ADD_FAILURE() << "a start after the finish was taken";
    } catch (const VbError& error) {
        EXPECT_EQ(error.description(), QStringLiteral("Start must lie between 0 and 4"));
    }
    EXPECT_EQ(track->Start(), 0);
}

TEST_F(MemoryPlayerTest, TimeIsMinutesAndTwoDigitSeconds) {
    const int longOne = player.addLibraryTrack(Song(QStringLiteral("Long"), 3723));
    player.enqueue(longOne);
    player.Play();
    EXPECT_EQ(player.CurrentTrack()->Time(), QStringLiteral("3:20"));
    EXPECT_EQ(player.CurrentTrack()->Duration(), 200);
    player.NextTrack();
    player.NextTrack();
    player.NextTrack();
    EXPECT_EQ(player.CurrentTrack()->Time(), QStringLiteral("62:03"));
}

TEST_F(MemoryPlayerTest, CurrentPlaylistIsTheQueueNamedAfterTheLastStartedPlaylist) {
    const std::shared_ptr<IITPlaylist> queue = player.CurrentPlaylist();
    EXPECT_EQ(queue->Name(), QStringLiteral("Play Queue"));
    EXPECT_EQ(queue->Tracks()->Count(), 3);
    EXPECT_EQ(queue->Duration(), 600);
    player.addUserPlaylist(QStringLiteral("Evening"), {c, a});
    player.Sources()->Item(1)->Playlists()->Item(3)->PlayFirstTrack();
    EXPECT_EQ(player.CurrentPlaylist()->Name(), QStringLiteral("Evening"));
    EXPECT_EQ(player.queueTrackIds(), (QList<int>{c, a}));
    EXPECT_EQ(CurrentName(), QStringLiteral("C"));
}

TEST_F(MemoryPlayerTest, PlaylistDurationIsWholeSeconds) {
    MemoryPlayer other;
    other.enqueue(other.addLibraryTrack(Song(QStringLiteral("Hour"), 3600)));
    other.enqueue(other.addLibraryTrack(Song(QStringLiteral("Rest"), 123)));
    EXPECT_EQ(other.CurrentPlaylist()->Duration(), 3723);
}

TEST_F(MemoryPlayerTest, NoCurrentPlaylistWhileATrackPlays) {
    player.Play();
    player.setCurrentPlaylistAbsent(true);
    EXPECT_EQ(player.CurrentPlaylist(), nullptr);
    EXPECT_EQ(CurrentName(), QStringLiteral("A"));
}

TEST_F(MemoryPlayerTest, TheLibrarySourceListsLibraryQueueThenUserPlaylists) {
    player.addUserPlaylist(QStringLiteral("Mine"), {b});
    const auto sources = player.Sources();
    ASSERT_EQ(sources->Count(), 1);
    EXPECT_EQ(sources->Item(1)->Name(), QStringLiteral("Library"));
    const auto playlists = sources->Item(1)->Playlists();
    ASSERT_EQ(playlists->Count(), 3);
    EXPECT_EQ(playlists->Item(1)->Name(), QStringLiteral("Library"));
    EXPECT_EQ(playlists->Item(2)->Name(), QStringLiteral("Play Queue"));
    EXPECT_EQ(playlists->Item(3)->Name(), QStringLiteral("Mine"));
    EXPECT_EQ(playlists->Item(0), nullptr);
    EXPECT_EQ(playlists->Item(4), nullptr);
}

TEST_F(MemoryPlayerTest, TwoPlaylistsOfOneNameLiveInTwoSources) {
    const int shared = player.addSource(QStringLiteral("Shared Library"));
    player.addUserPlaylist(QStringLiteral("Party"), {a});
    player.addUserPlaylist(QStringLiteral("Party"), {b, c}, shared);
    const auto sources = player.Sources();
    ASSERT_EQ(sources->Count(), 2);
    EXPECT_EQ(sources->Item(2)->Name(), QStringLiteral("Shared Library"));
    EXPECT_EQ(sources->Item(2)->Playlists()->Item(1)->Name(), QStringLiteral("Party"));
    EXPECT_EQ(sources->Item(2)->Playlists()->Item(1)->Tracks()->Count(), 2);
    EXPECT_EQ(player.userPlaylistTrackIds(QStringLiteral("Party"), 1), QList<int>{a});
}

TEST_F(MemoryPlayerTest, PlayingTheLibraryQueuesItWhole) {
    const int extra = player.addLibraryTrack(Song(QStringLiteral("D")));
    player.LibraryPlaylist()->PlayFirstTrack();
    EXPECT_EQ(player.queueTrackIds(), (QList<int>{a, b, c, extra}));
    EXPECT_EQ(player.CurrentPlaylist()->Name(), QStringLiteral("Play Queue"));
    EXPECT_EQ(log.Take(), QStringList{QStringLiteral("play:A")});
}

TEST_F(MemoryPlayerTest, PlayingAnEmptyPlaylistFails) {
    player.addUserPlaylist(QStringLiteral("Empty"), {});
    EXPECT_THROW(player.Sources()->Item(1)->Playlists()->Item(3)->PlayFirstTrack(), VbError);
}

TEST_F(MemoryPlayerTest, AddTrackAppendsToAUserPlaylistOnly) {
    player.addUserPlaylist(QStringLiteral("Mine"), {b});
    player.Play();
    const auto playlists = player.Sources()->Item(1)->Playlists();
    playlists->Item(3)->AddTrack(*player.CurrentTrack());
    EXPECT_EQ(player.userPlaylistTrackIds(QStringLiteral("Mine")), (QList<int>{b, a}));
    EXPECT_THROW(playlists->Item(1)->AddTrack(*player.CurrentTrack()), VbError);
    EXPECT_THROW(playlists->Item(2)->AddTrack(*player.CurrentTrack()), VbError);
}

TEST_F(MemoryPlayerTest, LibrarySearchNeedsEveryWordInSomeField) {
    const auto found = player.LibraryPlaylist()->Search(QStringLiteral("artist of c album"),
                                                        ITPlaylistSearchFieldAll);
    ASSERT_NE(found, nullptr);
    ASSERT_EQ(found->Count(), 1);
    EXPECT_EQ(found->Item(1)->TrackDatabaseID(), c);
    EXPECT_EQ(player.LibraryPlaylist()
                  ->Search(QStringLiteral("ALBUM"), ITPlaylistSearchFieldAll)
                  ->Count(),
              3);
}

TEST_F(MemoryPlayerTest, SearchWithoutMatchGivesNothing) {
    EXPECT_EQ(player.LibraryPlaylist()->Search(QStringLiteral("Album Z"), ITPlaylistSearchFieldAll),
              nullptr);
    EXPECT_EQ(
        player.LibraryPlaylist()->Search(QStringLiteral("Album"), ITPlaylistSearchFieldSongNames),
        nullptr);
}

TEST_F(MemoryPlayerTest, DeletingThePlayingTrackRemovesItsQueueEntryAndPlaysTheNext) {
    player.Play();
    log.Take();
    player.CurrentTrack()->Delete();
    EXPECT_EQ(player.queueTrackIds(), (QList<int>{b, c}));
    EXPECT_EQ(CurrentName(), QStringLiteral("B"));
    EXPECT_EQ(log.Take(), QStringList{QStringLiteral("changed:B")});
    EXPECT_TRUE(player.trackData(a).name == QStringLiteral("A"));
}

TEST_F(MemoryPlayerTest, DeletingThePausedTrackStops) {
    player.Play();
    player.Pause();
    log.Take();
    player.CurrentTrack()->Delete();
    EXPECT_EQ(player.playState(), MemoryPlayState::Stopped);
    EXPECT_EQ(log.Take(), QStringList{QStringLiteral("stop:A")});
}

TEST_F(MemoryPlayerTest, DeletingALibraryTrackRemovesItsQueueAndPlaylistEntries) {
    player.enqueue(c);
    player.addUserPlaylist(QStringLiteral("Mine"), {c, a, c});
    const auto found =
        player.LibraryPlaylist()->Search(QStringLiteral("Artist of C"), ITPlaylistSearchFieldAll);
    ASSERT_EQ(found->Count(), 1);
    found->Item(1)->Delete();
    EXPECT_EQ(player.queueTrackIds(), (QList<int>{a, b}));
    EXPECT_EQ(player.userPlaylistTrackIds(QStringLiteral("Mine")), QList<int>{a});
    EXPECT_EQ(log.Take(), QStringList{QStringLiteral("database")});
}

TEST_F(MemoryPlayerTest, DeletingAPlaylistTrackRemovesItFromThatPlaylistOnly) {
    player.addUserPlaylist(QStringLiteral("Mine"), {b, c});
    player.Sources()->Item(1)->Playlists()->Item(3)->Tracks()->Item(1)->Delete();
    EXPECT_EQ(player.userPlaylistTrackIds(QStringLiteral("Mine")), QList<int>{c});
    EXPECT_EQ(player.queueTrackIds(), (QList<int>{a, b, c}));
}

TEST_F(MemoryPlayerTest, ArtworkIsSavedAsTheStoredBytes) {
    MemoryTrackData data = Song(QStringLiteral("Covered"));
    data.artwork = {QByteArray("first picture"), QByteArray("second picture")};
    player.enqueue(player.addLibraryTrack(data));
    player.Play();
    player.NextTrack();
    player.NextTrack();
    player.NextTrack();
    const auto artwork = player.CurrentTrack()->Artwork();
    ASSERT_EQ(artwork->Count(), 2);
    QTemporaryDir dir;
    const QString file = dir.filePath(QStringLiteral("tempart.jpg"));
    artwork->Item(1)->SaveArtworkToFile(file);
    QFile saved(file);
    ASSERT_TRUE(saved.open(QIODevice::ReadOnly));
    EXPECT_EQ(saved.readAll(), QByteArray("first picture"));
}

TEST_F(MemoryPlayerTest, TrackWithoutArtworkCountsNone) {
    player.Play();
    EXPECT_EQ(player.CurrentTrack()->Artwork()->Count(), 0);
}

TEST_F(MemoryPlayerTest, AddedArtworkBecomesTheFrontCover) {
    QTemporaryDir dir;
    const QString picture = dir.filePath(QStringLiteral("cover.png"));
    QFile file(picture);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("png bytes");
    file.close();
    player.Play();
    player.CurrentTrack()->AddArtworkFromFile(picture);
    player.CurrentTrack()->AddArtworkFromFile(picture);
    EXPECT_EQ(player.trackData(a).artwork, QList<QByteArray>{QByteArray("png bytes")});
    EXPECT_THROW(player.CurrentTrack()->AddArtworkFromFile(dir.filePath(QStringLiteral("none"))),
                 VbError);
}

TEST_F(MemoryPlayerTest, FileTrackHasALocationAndAStreamIsNoFileTrack) {
    MemoryTrackData stream = Song(QStringLiteral("Radio"));
    stream.isFile = false;
    player.enqueue(player.addLibraryTrack(stream));
    player.Play();
    const auto file = std::dynamic_pointer_cast<IITFileOrCDTrack>(player.CurrentTrack());
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(file->Location(), QStringLiteral("/music/A.ogg"));
    player.NextTrack();
    player.NextTrack();
    player.NextTrack();
    EXPECT_EQ(CurrentName(), QStringLiteral("Radio"));
    EXPECT_EQ(std::dynamic_pointer_cast<IITFileOrCDTrack>(player.CurrentTrack()), nullptr);
}

TEST_F(MemoryPlayerTest, SongRepeatAndShuffleAreReadBack) {
    const auto playlist = player.CurrentPlaylist();
    EXPECT_EQ(playlist->SongRepeat(), ITPlaylistRepeatModeOff);
    playlist->SetSongRepeat((playlist->SongRepeat() + 1) % 3);
    EXPECT_EQ(playlist->SongRepeat(), ITPlaylistRepeatModeOne);
    EXPECT_THROW(playlist->SetSongRepeat(3), VbError);
    EXPECT_FALSE(playlist->Shuffle());
    playlist->SetShuffle(!playlist->Shuffle());
    EXPECT_TRUE(player.CurrentPlaylist()->Shuffle());
}

TEST_F(MemoryPlayerTest, UpdateIPodRescansTheLibrary) {
    player.UpdateIPod();
    EXPECT_EQ(player.updateCount(), 1);
}

TEST_F(MemoryPlayerTest, TrackDatabaseIDIsTheSameWhereverTheTrackIsListed) {
    player.Play();
    const int id = player.CurrentTrack()->TrackDatabaseID();
    EXPECT_NE(id, 0);
    EXPECT_EQ(player.LibraryPlaylist()->Tracks()->Item(1)->TrackDatabaseID(), id);
}

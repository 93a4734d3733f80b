// The command language against the in-memory player: every command of both tables, compound
// codes with their double run, arguments, failures and the messages they give.
#include "runcode/CommandInterpreter.h"

#include "RecordingRunCodeHost.h"
#include "platform/Trash.h"
#include "player/IITPlaylist.h"
#include "support/player/memory/MemoryPlayer.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <gtest/gtest.h>

inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

namespace Pelorin::Testing {
namespace {

MemoryTrackData Song(const QString& name, int duration = 200) {
    MemoryTrackData data;
    data.name = name;
    data.artist = QStringLiteral("Artist ") + name;
    data.album = QStringLiteral("Album ") + name;
    data.duration = duration;
    data.location = QStringLiteral("/nonexistent/") + name + QStringLiteral(".ogg");
    return data;
}

// A player with songs A, B, C queued and A playing; the host is the window.
class RunCodeTest : public ::testing::Test {
protected:
    RunCodeTest() : host(&player), interpreter(host, host) {
        a = player.addLibraryTrack(Song(QStringLiteral("A")));
        b = player.addLibraryTrack(Song(QStringLiteral("B")));
        c = player.addLibraryTrack(Song(QStringLiteral("C")));
        for (int id : {a, b, c})
            player.enqueue(id);
        player.Play();
    }

    void Run(const QString& code) { interpreter.RunCodeText(code); }

    QString CurrentName() const {
        const std::shared_ptr<IITTrack> track = player.CurrentTrack();
        return track ? track->Name() : QStringLiteral("-");
    }

    QString LastMessage() const {
        return host.messages.isEmpty() ? QString() : host.messages.last().text;
    }

    MemoryPlayer player;
    RecordingRunCodeHost host;
    CommandInterpreter interpreter;
    int a = 0, b = 0, c = 0;
};

// The message RunCode's handler shows.
QString RunCodeError(const QString& code, const QString& description) {
    return QStringLiteral("There was an error in the RunCode procedure: \nRunCode: ") + code +
           u'\n' + description;
}

TEST(RunCodeSeams, CommandsReachThePlayerThroughTheWindowsPlayerAlone) {
    MemoryPlayer player;
    player.enqueue(player.addLibraryTrack(Song(QStringLiteral("A"))));
    // The host knows no player; the window's player is a separate object.
    RecordingRunCodeHost host(nullptr);
    FixedWindowPlayer window(&player);
    CommandInterpreter interpreter(host, window);
    interpreter.RunCodeText(QStringLiteral("play"));
    EXPECT_EQ(player.playState(), MemoryPlayState::Playing);
    EXPECT_EQ(host.beeps, 0);
    window.comCallsEnabled = false;
    interpreter.RunCodeText(QStringLiteral("stop"));
    EXPECT_EQ(host.beeps, 1);
    EXPECT_EQ(player.playState(), MemoryPlayState::Playing);
}

TEST_F(RunCodeTest, EmptyCodeDoesNothing) {
    Run(QString());
    EXPECT_TRUE(host.calls.isEmpty());
    EXPECT_EQ(player.playState(), MemoryPlayState::Playing);
}

TEST_F(RunCodeTest, PlayPauseInCapitalsTogglesPlay) {
    Run(QStringLiteral("PLAYPAUSE"));
    EXPECT_EQ(player.playState(), MemoryPlayState::Paused);
    Run(QStringLiteral("PlayPause"));
    EXPECT_EQ(player.playState(), MemoryPlayState::Playing);
}

TEST_F(RunCodeTest, TransportWordsDriveThePlayer) {
    Run(QStringLiteral("pause"));
    EXPECT_EQ(player.playState(), MemoryPlayState::Paused);
    Run(QStringLiteral("play"));
    EXPECT_EQ(player.playState(), MemoryPlayState::Playing);
    Run(QStringLiteral("nexttrack"));
    EXPECT_EQ(CurrentName(), QStringLiteral("B"));
    Run(QStringLiteral("previoustrack"));
    EXPECT_EQ(CurrentName(), QStringLiteral("A"));
    Run(QStringLiteral("stop"));
    EXPECT_EQ(player.playState(), MemoryPlayState::Stopped);
    EXPECT_TRUE(host.messages.isEmpty());
}

TEST_F(RunCodeTest, QuitEndsThePlayer) {
    Run(QStringLiteral("quit"));
    EXPECT_TRUE(player.hasQuit());
}

TEST_F(RunCodeTest, UpdateIPodRescansTheLibrary) {
    const int before = player.updateCount();
    Run(QStringLiteral("updateipod"));
    EXPECT_EQ(player.updateCount(), before + 1);
}

TEST_F(RunCodeTest, VolumeDownAtOneDoesNothing) {
    player.SetSoundVolume(1);
    Run(QStringLiteral("volumedown"));
    EXPECT_EQ(player.SoundVolume(), 1);
    player.SetSoundVolume(2);
    Run(QStringLiteral("volumedown"));
    Run(QStringLiteral("volumedown"));
    EXPECT_EQ(player.SoundVolume(), 1);
}

TEST_F(RunCodeTest, VolumeUpAtHundredDoesNothing) {
    player.SetSoundVolume(99);
    Run(QStringLiteral("volumeup"));
    EXPECT_EQ(player.SoundVolume(), 100);
    Run(QStringLiteral("volumeup"));
    EXPECT_EQ(player.SoundVolume(), 100);
}

TEST_F(RunCodeTest, RepeatSwitchThreeTimesReturnsToTheFirstMode) {
    const std::shared_ptr<IITPlaylist> playlist = player.CurrentPlaylist();
    playlist->SetSongRepeat(ITPlaylistRepeatModeOne);
    QList<int> modes;
    for (int i = 0; i < 3; ++i) {
        Run(QStringLiteral("repeat=switch"));
        modes.append(player.CurrentPlaylist()->SongRepeat());
    }
    EXPECT_EQ(modes, (QList<int>{2, 0, 1}));
}

TEST_F(RunCodeTest, RepeatAndShuffleTakeTheirWordsInAnyCase) {
    Run(QStringLiteral("repeat=ALL"));
    EXPECT_EQ(player.CurrentPlaylist()->SongRepeat(), 2);
    Run(QStringLiteral("repeat=One"));
    EXPECT_EQ(player.CurrentPlaylist()->SongRepeat(), 1);
    Run(QStringLiteral("repeat=off"));
    EXPECT_EQ(player.CurrentPlaylist()->SongRepeat(), 0);
    Run(QStringLiteral("repeat=sometimes"));
    EXPECT_EQ(player.CurrentPlaylist()->SongRepeat(), 0);
    Run(QStringLiteral("shuffle=On"));
    EXPECT_TRUE(player.CurrentPlaylist()->Shuffle());
    Run(QStringLiteral("shuffle=switch"));
    EXPECT_FALSE(player.CurrentPlaylist()->Shuffle());
    Run(QStringLiteral("shuffle=switch"));
    EXPECT_TRUE(player.CurrentPlaylist()->Shuffle());
    Run(QStringLiteral("shuffle=off"));
    EXPECT_FALSE(player.CurrentPlaylist()->Shuffle());
    Run(QStringLiteral("shuffle=maybe"));
    EXPECT_FALSE(player.CurrentPlaylist()->Shuffle());
    EXPECT_TRUE(host.messages.isEmpty());
}

TEST_F(RunCodeTest, RepeatWithoutEqualsShowsTheErrorMessage) {
    Run(QStringLiteral("repeat"));
    ASSERT_EQ(host.messages.size(), 1);
    EXPECT_EQ(host.messages[0].title, QStringLiteral("Error!"));
    EXPECT_EQ(host.messages[0].icon, RunCodeHost::MessageIcon::Critical);
    EXPECT_EQ(host.messages[0].text,
              RunCodeError(QStringLiteral("repeat"), QStringLiteral("Subscript out of range")));
    EXPECT_EQ(host.beeps, 0);
}

TEST_F(RunCodeTest, RepeatWithoutEqualsBeepsWhenThePlayerIsMissing) {
    host.player = nullptr;
    Run(QStringLiteral("repeat"));
    EXPECT_EQ(host.beeps, 1);
    EXPECT_TRUE(host.messages.isEmpty());
}

TEST_F(RunCodeTest, AFailureWithoutACurrentTrackBeeps) {
    player.Stop();
    Run(QStringLiteral("swapartistandalbum"));
    EXPECT_EQ(host.beeps, 1);
    EXPECT_TRUE(host.messages.isEmpty());
}

TEST_F(RunCodeTest, CompoundCodeWithEditTagFirstRunsTheTagEditTwiceAndMovesToTheNextTrackOnce) {
    QString code = QStringLiteral("{edittag=Comment=x}{nexttrack}");
    interpreter.RunCode(code);
    // The caller's text has lost its opening braces.
    EXPECT_EQ(code, QStringLiteral("edittag=Comment=x}nexttrack}"));
    EXPECT_EQ(CurrentName(), QStringLiteral("B"));
    // Once as its piece, on A; once more with the whole text, on the track that plays by then.
    EXPECT_EQ(player.trackData(a).comment, QStringLiteral("x"));
    EXPECT_EQ(player.trackData(b).comment, QStringLiteral("x}nexttrack}"));
    EXPECT_TRUE(host.messages.isEmpty());
}

TEST_F(RunCodeTest, OpeningBraceWithoutClosingBraceSkipsTwoTracks) {
    Run(QStringLiteral("{nexttrack"));
    EXPECT_EQ(CurrentName(), QStringLiteral("C"));
}

TEST_F(RunCodeTest, CompoundCodeRunsEveryPieceInOrder) {
    player.SetSoundVolume(10);
    Run(QStringLiteral("{volumeup}{volumeup}{nexttrack}"));
    EXPECT_EQ(player.SoundVolume(), 12);
    EXPECT_EQ(CurrentName(), QStringLiteral("B"));
}

TEST_F(RunCodeTest, AFailingPieceIsReportedAndTheFollowingPiecesStillRun) {
    Run(QStringLiteral("{repeat}{nexttrack}"));
    EXPECT_EQ(CurrentName(), QStringLiteral("B"));
    // The piece fails, and so does the whole text, which begins with "repeat" as well.
    ASSERT_EQ(host.messages.size(), 2);
    EXPECT_EQ(host.messages[0].text,
              RunCodeError(QStringLiteral("repeat"), QStringLiteral("Subscript out of range")));
    EXPECT_EQ(host.messages[1].text, RunCodeError(QStringLiteral("repeat}nexttrack}"),
                                                  QStringLiteral("Subscript out of range")));
}

TEST_F(RunCodeTest, BracesDoNotNest) {
    player.SetSoundVolume(10);
    Run(QStringLiteral("{{volumeup}}}{volumeup"));
    // Pieces: "volumeup", "", "", "volumeup"; the whole text matches no word.
    EXPECT_EQ(player.SoundVolume(), 12);
    EXPECT_TRUE(host.messages.isEmpty());
}

TEST_F(RunCodeTest, CodeEndingInStarIsAlsoCheckedAgainstEveryPrefixCommand) {
    player.SetPlayerPosition(10);
    Run(QStringLiteral("skip=1star"));
    EXPECT_EQ(player.PlayerPosition(), 11);
    // "s" reads as 0, so the ratings index is -1.
    EXPECT_EQ(host.CallsOf(QStringLiteral("rating")), QStringList{QStringLiteral("rating:-1")});
}

TEST_F(RunCodeTest, ThreeStarClicksTheThirdStar) {
    Run(QStringLiteral("3star"));
    EXPECT_EQ(host.CallsOf(QStringLiteral("rating")), QStringList{QStringLiteral("rating:2")});
    Run(QStringLiteral("5STAR"));
    EXPECT_EQ(host.CallsOf(QStringLiteral("rating")).last(), QStringLiteral("rating:4"));
}

TEST_F(RunCodeTest, WithCommandsRefusedEveryCodeBeepsOncePerCall) {
    host.comCallsEnabled = false;
    Run(QStringLiteral("nexttrack"));
    Run(QStringLiteral("closeskin"));
    Run(QString());
    EXPECT_EQ(host.beeps, 3);
    EXPECT_EQ(CurrentName(), QStringLiteral("A"));
    EXPECT_EQ(host.calls, (QStringList{QStringLiteral("beep"), QStringLiteral("beep"),
                                       QStringLiteral("beep")}));
}

TEST_F(RunCodeTest, WithCommandsRefusedACompoundCodeBeepsOnce) {
    host.comCallsEnabled = false;
    QString code = QStringLiteral("{nexttrack}{volumeup}{closeskin}");
    interpreter.RunCode(code);
    EXPECT_EQ(host.beeps, 1);
    EXPECT_EQ(code, QStringLiteral("{nexttrack}{volumeup}{closeskin}"));
}

TEST_F(RunCodeTest, AnUnknownWordDoesNothingAndReportsNothing) {
    Run(QStringLiteral("dance"));
    Run(QStringLiteral("x=1"));
    EXPECT_TRUE(host.calls.isEmpty());
}

TEST_F(RunCodeTest, ALongerWordBeginningWithACommandWordIsThatCommand) {
    player.SetPlayerPosition(50);
    Run(QStringLiteral("SKIPPER=-20=ignored"));
    EXPECT_EQ(player.PlayerPosition(), 30);
}

TEST_F(RunCodeTest, SkipRoundsHalvesToEven) {
    player.SetPlayerPosition(10);
    Run(QStringLiteral("skip=2.5"));
    EXPECT_EQ(player.PlayerPosition(), 12);
    Run(QStringLiteral("skip= 3.5 seconds"));
    EXPECT_EQ(player.PlayerPosition(), 16);
}

TEST_F(RunCodeTest, SkipWithAnArgumentThatIsNoNumberStaysPut) {
    player.SetPlayerPosition(10);
    Run(QStringLiteral("skip=abc"));
    EXPECT_EQ(player.PlayerPosition(), 10);
    EXPECT_TRUE(host.messages.isEmpty());
}

TEST_F(RunCodeTest, DeleteTakesTheCurrentTrackOutOfTheQueue) {
    Run(QStringLiteral("delete"));
    EXPECT_EQ(player.queueTrackIds(), (QList<int>{b, c}));
    // Still in the library.
    EXPECT_EQ(player.trackData(a).name, QStringLiteral("A"));
}

TEST_F(RunCodeTest, SwapArtistAndAlbumSwapsTheTags) {
    Run(QStringLiteral("swapartistandalbum"));
    EXPECT_EQ(player.trackData(a).artist, QStringLiteral("Album A"));
    EXPECT_EQ(player.trackData(a).album, QStringLiteral("Artist A"));
}

TEST_F(RunCodeTest, SwapArtistAndTitleSwapsTheTags) {
    Run(QStringLiteral("swapartistandtitle"));
    EXPECT_EQ(player.trackData(a).artist, QStringLiteral("A"));
    EXPECT_EQ(player.trackData(a).name, QStringLiteral("Artist A"));
}

TEST_F(RunCodeTest, AHalfDoneSwapStaysHalfDone) {
    player.failOperation(QStringLiteral("IITTrack.SetAlbum"),
                         VbError::Player(QStringLiteral("Read-only file")));
    Run(QStringLiteral("swapartistandalbum"));
    EXPECT_EQ(player.trackData(a).artist, QStringLiteral("Album A"));
    EXPECT_EQ(player.trackData(a).album, QStringLiteral("Album A"));
    ASSERT_EQ(host.messages.size(), 1);
    EXPECT_TRUE(host.messages[0].text.endsWith(QStringLiteral("\nRead-only file")));
}

TEST_F(RunCodeTest, SetAsStartAndSetAsEndTakeThePlayerPosition) {
    player.SetPlayerPosition(42);
    Run(QStringLiteral("setasstart"));
    player.SetPlayerPosition(150);
    Run(QStringLiteral("SetAsEnd"));
    EXPECT_EQ(player.trackData(a).start, 42);
    EXPECT_EQ(player.trackData(a).finish, 150);
}

TEST_F(RunCodeTest, SetAsStartWithoutTheSharedPlayerBeeps) {
    host.app = nullptr;
    host.player = nullptr;
    Run(QStringLiteral("setasstart"));
    EXPECT_EQ(host.beeps, 1);
}

TEST_F(RunCodeTest, AddToVolumeChangesTheTracksOwnAdjustment) {
    player.SetSoundVolume(30);
    Run(QStringLiteral("addtovolume=15"));
    Run(QStringLiteral("addtovolume=-5.5"));
    EXPECT_EQ(player.trackData(a).volumeAdjustment, 10);
    EXPECT_EQ(player.SoundVolume(), 30);
}

TEST_F(RunCodeTest, AddToVolumeOnAPlayerWithoutItShowsTheNotSupportedError) {
    player.makeUnsupported(QStringLiteral("IITTrack.VolumeAdjustment"));
    Run(QStringLiteral("addtovolume=5"));
    ASSERT_EQ(host.messages.size(), 1);
    EXPECT_TRUE(host.messages[0].text.contains(QStringLiteral("The player does not support")))
        << host.messages[0].text.toStdString();
}

TEST_F(RunCodeTest, ReloadTimerRestartsThatTimer) {
    host.timerCount = 3;
    Run(QStringLiteral("reloadtimer=2"));
    EXPECT_EQ(host.CallsOf(QStringLiteral("reloadtimer")),
              QStringList{QStringLiteral("reloadtimer:2")});
}

TEST_F(RunCodeTest, ReloadTimerOfATimerThatDoesNotExistShowsTheError) {
    host.timerCount = 3;
    Run(QStringLiteral("reloadtimer=9"));
    ASSERT_EQ(host.messages.size(), 1);
    EXPECT_EQ(host.messages[0].text, RunCodeError(QStringLiteral("reloadtimer=9"),
                                                  QStringLiteral("Control array element '9' "
                                                                 "doesn't exist")));
    Run(QStringLiteral("reloadtimer=99999"));
    ASSERT_EQ(host.messages.size(), 2);
    EXPECT_TRUE(host.messages[1].text.endsWith(QStringLiteral("Overflow")));
}

TEST_F(RunCodeTest, ReloadTimerZeroIsTheTemplateAndDoesNothing) {
    Run(QStringLiteral("reloadtimer=0"));
    Run(QStringLiteral("reloadtimer=abc"));
    EXPECT_TRUE(host.calls.isEmpty());
}

TEST_F(RunCodeTest, WindowWordsActOnTheWindow) {
    for (const char* word :
         {"show", "normaltransparency", "movewindow", "fadein", "closeskin", "fadeclose"})
        Run(QString::fromLatin1(word).toUpper());
    EXPECT_EQ(host.calls, (QStringList{QStringLiteral("show"), QStringLiteral("normaltransparency"),
                                       QStringLiteral("movewindow"), QStringLiteral("fadein"),
                                       QStringLiteral("unload"), QStringLiteral("fadeclose")}));
}

TEST_F(RunCodeTest, CloseProgramUnloadsTheWindowAndEndsTheProgram) {
    Run(QStringLiteral("closeprogram"));
    EXPECT_EQ(host.calls, (QStringList{QStringLiteral("unload"), QStringLiteral("end")}));
    EXPECT_FALSE(player.hasQuit());
}

TEST_F(RunCodeTest, EjectIPodStartsTheProgramFoldersToolUnderTheHourglass) {
    Run(QStringLiteral("ejectipod"));
    EXPECT_EQ(host.calls, (QStringList{QStringLiteral("pointer:busy"),
                                       QStringLiteral("shell:/opt/pelorin/Ostrelli:"),
                                       QStringLiteral("pump"), QStringLiteral("pointer:default")}));
}

TEST_F(RunCodeTest, EjectIPodLeavesTheWindowAloneWhenItClosedMeanwhile) {
    host.onPump = [this] { host.windowGone = true; };
    Run(QStringLiteral("ejectipod"));
    EXPECT_EQ(host.CallsOf(QStringLiteral("pointer")), QStringList{QStringLiteral("pointer:busy")});
}

TEST_F(RunCodeTest, ShowITunesStartsThePlayerApp) {
    host.playerApp = QStringLiteral("cantata");
    Run(QStringLiteral("showitunes"));
    EXPECT_EQ(host.CallsOf(QStringLiteral("shell")), QStringList{QStringLiteral("shell:cantata:")});
}

TEST_F(RunCodeTest, ShowITunesWithoutAPlayerAppShowsTheNotSupportedError) {
    Run(QStringLiteral("showitunes"));
    ASSERT_EQ(host.messages.size(), 1);
    EXPECT_TRUE(host.messages[0].text.contains(QStringLiteral("The player does not support")));
    EXPECT_TRUE(host.CallsOf(QStringLiteral("shell")).isEmpty());
}

TEST_F(RunCodeTest, ShowSkinWithoutOffsetsOpensTheSkinWhereWindowsOpen) {
    Run(QStringLiteral("showskin=Mini"));
    EXPECT_EQ(host.CallsOf(QStringLiteral("open")),
              QStringList{QStringLiteral("open:/opt/pelorin/Skins/Mini/:-99:-99")});
}

TEST_F(RunCodeTest, ShowSkinOffsetsArePixelsFromThisWindow) {
    host.leftTwips = 1500;
    host.topTwips = 300;
    Run(QStringLiteral("ShowSkin=Mini|10|-4"));
    EXPECT_EQ(host.CallsOf(QStringLiteral("open")),
              QStringList{QStringLiteral("open:/opt/pelorin/Skins/Mini/:1650:240")});
}

TEST_F(RunCodeTest, ShowSkinWithTooManyFieldsIgnoresTheRest) {
    Run(QStringLiteral("showskin=Mini|1|2|3|4"));
    EXPECT_EQ(host.CallsOf(QStringLiteral("open")),
              QStringList{QStringLiteral("open:/opt/pelorin/Skins/Mini/:15:30")});
}

TEST_F(RunCodeTest, ShowSkinWithOneOffsetShowsTheError) {
    Run(QStringLiteral("showskin=Mini|10"));
    EXPECT_TRUE(host.CallsOf(QStringLiteral("open")).isEmpty());
    ASSERT_EQ(host.messages.size(), 1);
    EXPECT_TRUE(host.messages[0].text.endsWith(QStringLiteral("Subscript out of range")));
}

TEST_F(RunCodeTest, ShowSkinBeyondTheWindowPositionRangeShowsOverflow) {
    Run(QStringLiteral("showskin=Mini|3000|0"));
    EXPECT_TRUE(host.CallsOf(QStringLiteral("open")).isEmpty());
    ASSERT_EQ(host.messages.size(), 1);
    EXPECT_TRUE(host.messages[0].text.endsWith(QStringLiteral("Overflow")));
}

TEST_F(RunCodeTest, ShowSkinWithoutANameShowsTheError) {
    Run(QStringLiteral("showskin="));
    Run(QStringLiteral("showskin"));
    EXPECT_TRUE(host.CallsOf(QStringLiteral("open")).isEmpty());
    EXPECT_EQ(host.messages.size(), 2);
}

TEST_F(RunCodeTest, AFailingPlayerCommandShowsThePlayersDescription) {
    player.failOperation(QStringLiteral("IiTunes.NextTrack"),
                         VbError::Player(QStringLiteral("Connection refused")));
    Run(QStringLiteral("NextTrack"));
    ASSERT_EQ(host.messages.size(), 1);
    EXPECT_EQ(host.messages[0].text,
              RunCodeError(QStringLiteral("NextTrack"), QStringLiteral("Connection refused")));
}

TEST_F(RunCodeTest, TheCurrentPlaylistMissingIsReportedNotCrashed) {
    player.setCurrentPlaylistAbsent(true);
    Run(QStringLiteral("shuffle=switch"));
    ASSERT_EQ(host.messages.size(), 1);
    EXPECT_TRUE(host.messages[0].text.endsWith(
        QStringLiteral("Object variable or With block variable not set")));
}

TEST_F(RunCodeTest, AMegabyteOfBracesAndWordsRunsWithoutTrouble) {
    player.SetSoundVolume(10);
    QString code;
    for (int i = 0; i < 100000; ++i)
        code += QStringLiteral("{x}");
    code += QStringLiteral("{volumeup}");
    code += QString(700000, u'}');
    Run(code);
    EXPECT_EQ(player.SoundVolume(), 11);
    EXPECT_TRUE(host.messages.isEmpty());
}

// deletecompletely: the library entry goes, then the file to the trash, and nothing else.
class DeleteCompletelyTest : public RunCodeTest {
protected:
    void SetUp() override {
        ASSERT_TRUE(folder.isValid());
        // The user's trash lives in a temporary data folder.
        qputenv("XDG_DATA_HOME", QFile::encodeName(folder.filePath(QStringLiteral("data"))));
        QDir().mkpath(folder.filePath(QStringLiteral("data")));
        music = folder.filePath(QStringLiteral("music"));
        QDir().mkpath(music);
        for (const QString& name : {QStringLiteral("D"), QStringLiteral("E")}) {
            QFile file(music + u'/' + name + QStringLiteral(".ogg"));
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            file.write("not really audio");
        }
        MemoryTrackData data = Song(QStringLiteral("D"));
        data.location = music + QStringLiteral("/D.ogg");
        d = player.addLibraryTrack(data);
        data = Song(QStringLiteral("E"));
        data.location = music + QStringLiteral("/E.ogg");
        e = player.addLibraryTrack(data);
        player.addUserPlaylist(QStringLiteral("Mine"), {d, e});
        player.enqueue(d);
        player.enqueue(e);
        while (CurrentName() != QStringLiteral("D"))
            player.NextTrack();
        host.trash = [](const QString& path, QString* error) { return MoveToTrash(path, error); };
    }

    QStringList TrashedFiles() const {
        return QDir(folder.filePath(QStringLiteral("data/Trash/files"))).entryList(QDir::Files);
    }

    QTemporaryDir folder;
    QString music;
    int d = 0, e = 0;
};

TEST_F(DeleteCompletelyTest, RemovesTheTrackFromTheLibraryAndMovesOnlyItsFileToTheTrash) {
    Run(QStringLiteral("deletecompletely"));
    EXPECT_TRUE(host.messages.isEmpty()) << LastMessage().toStdString();
    EXPECT_FALSE(QFileInfo::exists(music + QStringLiteral("/D.ogg")));
    EXPECT_TRUE(QFileInfo::exists(music + QStringLiteral("/E.ogg")));
    EXPECT_EQ(TrashedFiles(), QStringList{QStringLiteral("D.ogg")});
    EXPECT_FALSE(player.queueTrackIds().contains(d));
    EXPECT_EQ(player.userPlaylistTrackIds(QStringLiteral("Mine")), QList<int>{e});
    ASSERT_TRUE(host.currentFileTrack);
    EXPECT_EQ(host.CallsOf(QStringLiteral("trash")),
              QStringList{QStringLiteral("trash:") + music + QStringLiteral("/D.ogg")});
    // The messages ran between the library removal and the trash.
    EXPECT_EQ(host.calls.indexOf(QStringLiteral("pump")) + 1,
              host.calls.indexOf(QStringLiteral("trash:") + music + QStringLiteral("/D.ogg")));
}

TEST_F(DeleteCompletelyTest, AWindowClosedWhileMessagesRunTrashesNothing) {
    host.onPump = [this] { host.windowGone = true; };
    Run(QStringLiteral("deletecompletely"));
    EXPECT_TRUE(QFileInfo::exists(music + QStringLiteral("/D.ogg")));
    EXPECT_TRUE(TrashedFiles().isEmpty());
}

TEST_F(DeleteCompletelyTest, ATrackDeletedWhileTheCommandRunsStillTrashesOnlyItsOwnFile) {
    // Something that runs while messages are let through takes the next track away as well.
    host.onPump = [this] { player.NextTrack(); };
    Run(QStringLiteral("deletecompletely"));
    EXPECT_FALSE(QFileInfo::exists(music + QStringLiteral("/D.ogg")));
    EXPECT_TRUE(QFileInfo::exists(music + QStringLiteral("/E.ogg")));
    EXPECT_EQ(TrashedFiles(), QStringList{QStringLiteral("D.ogg")});
}

TEST_F(DeleteCompletelyTest, AFileThatCannotBeTrashedIsReportedAndStays) {
    host.trash = [](const QString&, QString* error) {
        *error = QStringLiteral("no trash here");
        return false;
    };
    Run(QStringLiteral("deletecompletely"));
    EXPECT_TRUE(QFileInfo::exists(music + QStringLiteral("/D.ogg")));
    ASSERT_EQ(host.messages.size(), 1);
    EXPECT_TRUE(host.messages[0].text.contains(QStringLiteral("no trash here")));
}

TEST_F(DeleteCompletelyTest, ALocationThatIsAFolderIsNeverTrashed) {
    MemoryTrackData data = Song(QStringLiteral("F"));
    data.location = music;
    const int f = player.addLibraryTrack(data);
    player.enqueue(f);
    // Something plays after it, so the handler finds a current track and shows the message.
    player.enqueue(e);
    while (CurrentName() != QStringLiteral("F"))
        player.NextTrack();
    Run(QStringLiteral("deletecompletely"));
    EXPECT_TRUE(QFileInfo(music).isDir());
    EXPECT_TRUE(host.CallsOf(QStringLiteral("trash")).isEmpty());
    ASSERT_EQ(host.messages.size(), 1);
    EXPECT_TRUE(host.messages[0].text.contains(QStringLiteral("is not a file")));
}

TEST_F(DeleteCompletelyTest, AStreamIsNoFileAndNothingIsDeleted) {
    MemoryTrackData data = Song(QStringLiteral("Radio"));
    data.isFile = false;
    const int radio = player.addLibraryTrack(data);
    player.enqueue(radio);
    while (CurrentName() != QStringLiteral("Radio"))
        player.NextTrack();
    Run(QStringLiteral("deletecompletely"));
    ASSERT_EQ(host.messages.size(), 1);
    EXPECT_TRUE(host.messages[0].text.endsWith(QStringLiteral("Type mismatch")));
    EXPECT_TRUE(player.queueTrackIds().contains(radio));
    EXPECT_TRUE(TrashedFiles().isEmpty());
}

TEST_F(RunCodeTest, ShowskinWithANameThatLeavesTheSkinsFolderOpensNothing) {
    for (const char* code : {"showskin=../../.config", "showskin=..", "showskin=a/b"}) {
        host.messages.clear();
        Run(QString::fromLatin1(code));
        EXPECT_EQ(host.messages.size(), 1) << code;
    }
    EXPECT_TRUE(host.CallsOf(QStringLiteral("open")).isEmpty());
    EXPECT_TRUE(host.messages.first().text.contains(VbError::FileNotFound().description()));
}

TEST_F(RunCodeTest, AnUntrustedSkinsLibraryCommandsFailAsThemselvesAndChangeNothing) {
    host.trusted = false;
    for (const char* code : {"delete", "deletecompletely", "swapartistandalbum",
                             "swapartistandtitle", "setasstart", "setasend"}) {
        host.messages.clear();
        Run(QString::fromLatin1(code));
        ASSERT_EQ(host.messages.size(), 1) << code;
        EXPECT_TRUE(host.messages.first().text.contains(RunCodeHost::LibraryChangeRefusedText()))
            << code;
        EXPECT_TRUE(host.messages.first().text.contains(QString::fromLatin1(code))) << code;
    }
    EXPECT_EQ(CurrentName(), QStringLiteral("A"));
    EXPECT_EQ(player.trackData(a).artist, QStringLiteral("Artist A"));
    EXPECT_EQ(player.trackData(a).start, 0);
}

TEST_F(RunCodeTest, CommandsThatLeaveTheLibraryAloneNeedNoTrust) {
    host.trusted = false;
    Run(QStringLiteral("{pause}{volumeup}{repeat=all}"));
    EXPECT_TRUE(host.CallsOf(QStringLiteral("trust")).isEmpty());
    EXPECT_EQ(player.playState(), MemoryPlayState::Paused);
}

} // namespace
} // namespace Pelorin::Testing

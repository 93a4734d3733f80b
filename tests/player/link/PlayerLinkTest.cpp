// Each window's player link: the guard, the flags and the event handlers, on the in-memory
// player (for situations a real player cannot be brought into) and on a real daemon.
#include "player/link/PlayerLink.h"

#include "PlayerDaemonFixture.h"
#include "player/daemon/DaemonPlayer.h"
#include "player/link/PlayerApplication.h"
#include "player/link/PlayerLauncher.h"
#include "player/link/PlayerLinkClient.h"
#include "support/player/memory/MemoryPlayer.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QThread>
#include <csignal>
#include <gtest/gtest.h>
#include <sys/socket.h>

namespace Pelorin {
namespace {

bool WaitUntil(const std::function<bool()>& done, int timeoutMs = 5000) {
    QDeadlineTimer deadline(timeoutMs);
    while (!done()) {
        if (deadline.hasExpired()) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        QThread::msleep(5);
    }
    return true;
}

void PumpFor(int ms) {
    WaitUntil([] { return false; }, ms);
}

class RecordingClient final : public PlayerLinkClient {
public:
    void CheckEvent(const QString& eventName) override { calls << eventName; }
    void LoadSong() override { calls << QStringLiteral("LoadSong"); }
    bool IsDeskbar() const override { return deskbar; }
    void UnloadAllForms() override { calls << QStringLiteral("UnloadAllForms"); }

    bool deskbar = false;
    QStringList calls;
};

// The process-wide player on the in-memory player, with a process check the test controls.
class MemoryLink : public ::testing::Test {
protected:
    MemoryLink()
        : application(
              [this]() -> std::unique_ptr<IiTunes> {
                  ++made;
                  auto player = std::make_unique<MemoryPlayer>();
                  const int id = player->addLibraryTrack(MemoryTrackData{});
                  player->enqueue(id);
                  lastMade = player.get();
                  return player;
              },
              [this] { return running; }) {}

    MemoryPlayer& Player() { return *static_cast<MemoryPlayer*>(application.iTunesApp()); }

    bool running = true;
    int made = 0;
    MemoryPlayer* lastMade = nullptr;
    PlayerApplication application;
    RecordingClient client;
};

TEST_F(MemoryLink, TheSharedPlayerIsMadeOnlyWhileThePlayerRuns) {
    PlayerLink link(application, client);
    WindowPlayer& window = link;
    running = false;
    EXPECT_EQ(window.iTunesApp(), nullptr);
    EXPECT_EQ(made, 0);
    running = true;
    IiTunes* shared = window.iTunesApp();
    ASSERT_NE(shared, nullptr);
    EXPECT_EQ(shared, application.iTunesApp());
    // Once made, the one object serves even when the process check would say otherwise.
    running = false;
    EXPECT_EQ(window.iTunesApp(), shared);
    EXPECT_EQ(made, 1);
}

TEST_F(MemoryLink, TheWindowsPlayerIsTheLinksReferenceGuardAndFlags) {
    PlayerLink link(application, client);
    link.FormLoad();
    Player().Play();
    WindowPlayer& window = link;
    EXPECT_EQ(window.iTunesR(), link.iTunesR());
    EXPECT_FALSE(window.iTunesIsNothing(true));
    EXPECT_TRUE(window.COMCallsEnabled());
    link.iTunesR_OnCOMCallsDisabledEvent(0);
    EXPECT_FALSE(window.COMCallsEnabled());
    auto track = std::dynamic_pointer_cast<IITFileOrCDTrack>(Player().CurrentTrack());
    ASSERT_NE(track, nullptr);
    window.SetCurrentFileTrack(track);
    EXPECT_EQ(link.CurrentFileTrack(), track);
}

TEST_F(MemoryLink, StartingWithThePlayerClosedMakesNoPlayerAndTheGuardReportsNothing) {
    running = false;
    PlayerLink link(application, client);
    link.FormLoad();
    EXPECT_EQ(link.iTunesR(), nullptr);
    EXPECT_TRUE(link.iTunesIsNothing(false));
    EXPECT_TRUE(link.iTunesIsNothing(true));
    EXPECT_EQ(made, 0);
}

TEST_F(MemoryLink, PlayerStartedAfterTheProgramConnectsOnTheFirstGuardedAction) {
    running = false;
    PlayerLink link(application, client);
    link.FormLoad();
    running = true;
    EXPECT_FALSE(link.iTunesIsNothing(false));
    EXPECT_NE(link.iTunesR(), nullptr);
    EXPECT_EQ(made, 1);
}

TEST_F(MemoryLink, WindowLoadConnectsToTheOnePlayerObjectSharedByEveryWindow) {
    PlayerLink first(application, client);
    RecordingClient otherClient;
    PlayerLink second(application, otherClient);
    first.FormLoad();
    second.FormLoad();
    EXPECT_EQ(first.iTunesR(), second.iTunesR());
    EXPECT_EQ(made, 1);
}

TEST_F(MemoryLink, QuittingWithANormalWindowOpenUnloadsEveryForm) {
    PlayerLink link(application, client);
    link.FormLoad();
    Player().fireQuittingEvent();
    EXPECT_EQ(client.calls, QStringList{QStringLiteral("UnloadAllForms")});
}

TEST_F(MemoryLink, QuittingInDeskbandModeKeepsTheWindowAndSuppressesReconnectionUntilLetDie) {
    client.deskbar = true;
    PlayerLink link(application, client);
    link.FormLoad();
    link.tmrDeskbarLetDie_Timer();
    Player().fireQuittingEvent();
    EXPECT_TRUE(client.calls.isEmpty());
    EXPECT_EQ(link.iTunesR(), nullptr);
    EXPECT_TRUE(link.iTunesQuitting());
    EXPECT_TRUE(link.tmrDeskbarLetDie().isActive());
    // The process is still visible while it shuts down; it still counts as dead.
    EXPECT_TRUE(link.IsiTunesDead());
    EXPECT_TRUE(link.iTunesIsNothing(false));
    EXPECT_EQ(link.iTunesR(), nullptr);
    link.tmrDeskbarLetDie_Timer();
    EXPECT_FALSE(link.iTunesQuitting());
    EXPECT_FALSE(link.tmrDeskbarLetDie().isActive());
    PumpFor(50); // the quit player object is let go
    EXPECT_FALSE(link.iTunesIsNothing(false));
    EXPECT_NE(link.iTunesR(), nullptr);
    EXPECT_EQ(made, 2);
}

TEST_F(MemoryLink, LetDieTimerRunsOnceFiveSecondsAfterTheWindowIsCreated) {
    PlayerLink link(application, client);
    EXPECT_TRUE(link.tmrDeskbarLetDie().isActive());
    EXPECT_EQ(link.tmrDeskbarLetDie().interval(), 5000);
    link.tmrDeskbarLetDie_Timer();
    EXPECT_FALSE(link.tmrDeskbarLetDie().isActive());
    EXPECT_FALSE(link.iTunesQuitting());
}

TEST_F(MemoryLink, WithoutACurrentTrackTheGuardDependsOnCareForTrack) {
    PlayerLink link(application, client);
    link.FormLoad();
    ASSERT_EQ(Player().CurrentTrack(), nullptr);
    EXPECT_FALSE(link.iTunesIsNothing(false));
    EXPECT_TRUE(link.iTunesIsNothing(true));
    Player().Play();
    EXPECT_FALSE(link.iTunesIsNothing(true));
}

TEST_F(MemoryLink, AnyFailureInsideTheGuardMakesItReportAUsablePlayer) {
    PlayerLink link(application, client);
    link.FormLoad();
    Player().failOperation(QStringLiteral("IiTunes.CurrentTrack"),
                           VbError::Player(QStringLiteral("shutting down")));
    EXPECT_FALSE(link.iTunesIsNothing(true));
}

TEST_F(MemoryLink, DeadPlayerWithTheReferenceStillSetIsNotMissing) {
    PlayerLink link(application, client);
    link.FormLoad();
    running = false;
    EXPECT_TRUE(link.IsiTunesDead());
    EXPECT_FALSE(link.iTunesIsNothing(false));
}

TEST_F(MemoryLink, StopEventRunsStopsongButKeepsTheDisplayedTrack) {
    PlayerLink link(application, client);
    link.FormLoad();
    Player().fireStopEvent();
    EXPECT_EQ(client.calls, QStringList{QStringLiteral("stopsong")});
}

TEST_F(MemoryLink, PlayTrackChangeAndDatabaseEventsRunTheirEventThenLoadSong) {
    PlayerLink link(application, client);
    link.FormLoad();
    Player().firePlayEvent();
    Player().firePlayingTrackChangedEvent();
    Player().fireDatabaseChangedEvent({}, {});
    EXPECT_EQ(client.calls,
              (QStringList{QStringLiteral("newsong"), QStringLiteral("LoadSong"),
                           QStringLiteral("newsong"), QStringLiteral("LoadSong"),
                           QStringLiteral("databasechanged"), QStringLiteral("LoadSong")}));
}

TEST_F(MemoryLink, EveryWindowReceivesEveryEvent) {
    PlayerLink first(application, client);
    RecordingClient otherClient;
    PlayerLink second(application, otherClient);
    first.FormLoad();
    second.FormLoad();
    Player().fireStopEvent();
    EXPECT_EQ(client.calls, QStringList{QStringLiteral("stopsong")});
    EXPECT_EQ(otherClient.calls, QStringList{QStringLiteral("stopsong")});
}

TEST_F(MemoryLink, ComCallsFlagFollowsTheDisabledAndEnabledEvents) {
    PlayerLink link(application, client);
    link.FormLoad();
    EXPECT_TRUE(link.COMCallsEnabled());
    Player().fireCOMCallsDisabledEvent(ITCOMDisabledReasonDialog);
    EXPECT_FALSE(link.COMCallsEnabled());
    Player().fireCOMCallsEnabledEvent();
    EXPECT_TRUE(link.COMCallsEnabled());
    Player().fireCOMCallsDisabledEvent(ITCOMDisabledReasonOther);
    link.FormLoad();
    EXPECT_TRUE(link.COMCallsEnabled());
}

TEST_F(MemoryLink, QuitPlayerAsksThePlayerToQuit) {
    EXPECT_FALSE(application.QuitPlayer());
    PlayerLink link(application, client);
    link.FormLoad();
    EXPECT_TRUE(application.QuitPlayer());
    EXPECT_TRUE(Player().hasQuit());
}

TEST_F(MemoryLink, AClosedWindowNoLongerReceivesEvents) {
    auto link = std::make_unique<PlayerLink>(application, client);
    link->FormLoad();
    link.reset();
    Player().fireStopEvent();
    EXPECT_TRUE(client.calls.isEmpty());
}

// The link on a real daemon, through the launcher start-up uses.
class DaemonLink : public ::testing::Test {
protected:
    void SetUp() override {
        const QString error = daemon.Start();
        ASSERT_TRUE(error.isEmpty()) << error.toStdString();
        qputenv("MPD_HOST", daemon.SocketPath().toUtf8());
        launcher = std::make_unique<PlayerLauncher>();
        for (const TrackSpec& track : PlayerDaemonFixture::Catalog().tracks) {
            daemon.Mpc({QStringLiteral("add"), track.uri});
        }
    }
    void TearDown() override {
        launcher.reset();
        qunsetenv("MPD_HOST");
    }

    PlayerDaemonFixture daemon;
    std::unique_ptr<PlayerLauncher> launcher;
    RecordingClient client;
};

TEST_F(DaemonLink, LauncherUsesTheDaemonNamedByMpdHost) {
    EXPECT_FALSE(launcher->UsesEmbeddedPlayer());
    EXPECT_EQ(launcher->Address().host, daemon.SocketPath());
    launcher->StartPlayer();
    EXPECT_TRUE(launcher->LastError().isEmpty());
}

TEST_F(DaemonLink, PlayOnTheDaemonRunsNewsongAndLoadSongInTheWindow) {
    PlayerLink link(launcher->Application(), client);
    link.FormLoad();
    ASSERT_NE(link.iTunesR(), nullptr);
    daemon.Mpc({QStringLiteral("play")});
    ASSERT_TRUE(WaitUntil([&] { return client.calls.contains(QStringLiteral("LoadSong")); }));
    EXPECT_EQ(client.calls.first(), QStringLiteral("newsong"));
    EXPECT_FALSE(link.iTunesIsNothing(true));
    daemon.Mpc({QStringLiteral("pause")});
    EXPECT_TRUE(WaitUntil([&] { return client.calls.contains(QStringLiteral("stopsong")); }));
}

TEST_F(DaemonLink, DaemonKilledWhileANormalWindowIsOpenUnloadsEveryForm) {
    PlayerLink link(launcher->Application(), client);
    link.FormLoad();
    ASSERT_NE(link.iTunesR(), nullptr);
    daemon.Kill(SIGKILL);
    EXPECT_TRUE(WaitUntil([&] { return client.calls.contains(QStringLiteral("UnloadAllForms")); }));
}

TEST_F(DaemonLink, QuitPlayerEndsTheDaemonAndADeskbandWindowWaitsForIt) {
    client.deskbar = true;
    PlayerLink link(launcher->Application(), client);
    link.FormLoad();
    ASSERT_NE(link.iTunesR(), nullptr);
    launcher->QuitPlayer();
    EXPECT_TRUE(launcher->LastError().isEmpty()) << launcher->LastError().toStdString();
    ASSERT_TRUE(WaitUntil([&] { return link.iTunesQuitting(); }));
    EXPECT_TRUE(WaitUntil([&] { return !daemon.IsRunning(); }));
    EXPECT_FALSE(client.calls.contains(QStringLiteral("UnloadAllForms")));
    EXPECT_EQ(link.iTunesR(), nullptr);
    // A daemon back at once is not reconnected to while the window lets the old one die.
    ASSERT_TRUE(daemon.Start().isEmpty());
    EXPECT_TRUE(link.iTunesIsNothing(false));
    EXPECT_EQ(link.iTunesR(), nullptr);
    link.tmrDeskbarLetDie_Timer();
    PumpFor(50);
    EXPECT_FALSE(link.iTunesIsNothing(false));
    ASSERT_NE(link.iTunesR(), nullptr);
    client.calls.clear();
    daemon.Mpc({QStringLiteral("play")});
    EXPECT_TRUE(WaitUntil([&] { return client.calls.contains(QStringLiteral("newsong")); }));
}

TEST_F(DaemonLink, ConnectionDroppedWhileTheDaemonRunsIsRebuiltWithoutEvents) {
    PlayerLink link(launcher->Application(), client);
    link.FormLoad();
    auto* player = qobject_cast<DaemonPlayer*>(link.iTunesR());
    ASSERT_NE(player, nullptr);
    ::shutdown(player->IdleSocketDescriptor(), SHUT_RDWR);
    PumpFor(800);
    EXPECT_TRUE(client.calls.isEmpty());
    EXPECT_TRUE(player->IsWatching());
    EXPECT_EQ(link.iTunesR(), player);
}

} // namespace
} // namespace Pelorin

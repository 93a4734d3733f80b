// The daemon absent, refusing, answering garbage, killed, stopped or dropping the connection;
// streams and files removed under it: an error with a clear text or the quitting event, never a
// crash or a hang.
#include "DaemonTestSupport.h"
#include "player/IITFileOrCDTrack.h"
#include "player/daemon/DaemonAddress.h"
#include "player/daemon/DaemonSession.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <atomic>
#include <csignal>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

namespace Pelorin {
namespace {

// A server on a Unix socket that greets (or not) and answers every line with `answer`.
class FakeServer {
public:
    FakeServer(QByteArray greeting, QByteArray answer)
        : m_greeting(std::move(greeting)), m_answer(std::move(answer)) {
        m_path = m_folder.filePath(QStringLiteral("fake"));
        m_fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        const QByteArray name = QFile::encodeName(m_path);
        std::memcpy(address.sun_path, name.constData(), static_cast<size_t>(name.size()));
        ::bind(m_fd, reinterpret_cast<const sockaddr*>(&address), sizeof(address));
        ::listen(m_fd, 8);
        m_thread = std::thread([this] { Serve(); });
    }
    ~FakeServer() {
        m_stop = true;
        ::shutdown(m_fd, SHUT_RDWR);
        ::close(m_fd);
        m_thread.join();
    }
    QString Path() const { return m_path; }

private:
    void Serve() {
        while (!m_stop) {
            const int client = ::accept(m_fd, nullptr, nullptr);
            if (client < 0) {
                return;
            }
            if (!m_greeting.isEmpty()) {
                (void)::write(client, m_greeting.constData(),
                              static_cast<size_t>(m_greeting.size()));
            }
            char buffer[4096];
            while (::read(client, buffer, sizeof(buffer)) > 0) {
                (void)::write(client, m_answer.constData(), static_cast<size_t>(m_answer.size()));
            }
            ::close(client);
        }
    }

    QTemporaryDir m_folder;
    QString m_path;
    QByteArray m_greeting;
    QByteArray m_answer;
    int m_fd = -1;
    std::atomic<bool> m_stop{false};
    std::thread m_thread;
};

std::unique_ptr<DaemonPlayer> PlayerAt(const QString& host, bool running = true,
                                       const QString& password = QString(), int timeoutMs = 500) {
    DaemonPlayer::Options options;
    options.address.host = host;
    options.address.password = password;
    options.timeoutMs = timeoutMs;
    options.isPlayerRunning = [running] { return running; };
    return std::make_unique<DaemonPlayer>(options);
}

// Runs `call`, which must throw a player error with a text, within the time allowed.
// Waits until "play" goes through again (the daemon first works through what piled up while it
// was stopped).
bool PlaysAgain(IiTunes& player) {
    return WaitUntil([&] {
        try {
            player.Play();
            return true;
        } catch (const VbError&) {
            return false;
        }
    });
}

template <typename Call> void ExpectPlayerError(Call call, int withinMs = 3000) {
    QElapsedTimer clock;
    clock.start();
    try {
        call();
        ADD_FAILURE() << "no error";
    } catch (const VbError& error) {
        EXPECT_EQ(error.number(), VbError::PlayerErrorNumber);
        EXPECT_FALSE(error.description().isEmpty());
    }
    EXPECT_LT(clock.elapsed(), withinMs);
}

TEST(DaemonAbsent, CommandsFailWithAMessageAndNoDaemonIsStarted) {
    QTemporaryDir folder;
    auto player = PlayerAt(folder.filePath(QStringLiteral("nothing.socket")));
    EXPECT_FALSE(player->IsWatching());
    ExpectPlayerError([&] { player->Play(); });
    ExpectPlayerError([&] { player->CurrentTrack(); });
    EXPECT_FALSE(QFile::exists(folder.filePath(QStringLiteral("nothing.socket"))));
}

TEST(DaemonAbsent, WithNoProcessLeftTheBackendAnnouncesQuitting) {
    QTemporaryDir folder;
    auto player = PlayerAt(folder.filePath(QStringLiteral("nothing.socket")), false);
    EXPECT_TRUE(player->HasQuit());
}

TEST(DaemonGarbage, GarbageInsteadOfAGreetingIsAnError) {
    FakeServer server("HTTP/1.0 400 Bad Request\r\n\r\n", "garbage\n");
    auto player = PlayerAt(server.Path());
    ExpectPlayerError([&] { player->Play(); });
    ExpectPlayerError([&] { player->SoundVolume(); });
}

TEST(DaemonGarbage, GarbageAnswersAfterAGoodGreetingAreAnError) {
    FakeServer server("OK MPD 0.23.5\n", "\x01\x02 nonsense without end");
    auto player = PlayerAt(server.Path());
    ExpectPlayerError([&] { player->Stop(); });
    ExpectPlayerError([&] { player->CurrentTrack(); });
}

TEST(DaemonGarbage, SilentServerTimesOut) {
    FakeServer server{QByteArray(), QByteArray()};
    auto player = PlayerAt(server.Path());
    ExpectPlayerError([&] { player->Play(); }, 2500);
}

TEST(DaemonPassword, WrongPasswordIsRefusedWithTheDaemonsMessage) {
    PlayerDaemonFixture::Options options;
    // Clients without a password may do everything (so the fixture can fill the database), but
    // a wrong password is still refused.
    options.extraConfig = QStringLiteral("password \"secret@read,add,control,admin\"\n"
                                         "default_permissions \"read,add,control,admin\"\n");
    PlayerDaemonFixture daemon(options);
    const QString started = daemon.Start();
    ASSERT_TRUE(started.isEmpty()) << started.toStdString();
    auto wrong = PlayerAt(daemon.SocketPath(), true, QStringLiteral("wrong"), 2000);
    try {
        wrong->Play();
        FAIL() << "no error";
    } catch (const VbError& error) {
        EXPECT_TRUE(error.description().contains(QLatin1String("password")))
            << error.description().toStdString();
    }
    auto right = PlayerAt(daemon.SocketPath(), true, QStringLiteral("secret"), 2000);
    EXPECT_NO_THROW(right->SoundVolume());
}

TEST(DaemonAddressFromEnvironment, ReadsPasswordHostAndPortAsMpcDoes) {
    qputenv("MPD_HOST", "pw@music.lan");
    qputenv("MPD_PORT", "6601");
    DaemonAddress address = DaemonAddress::FromEnvironment(QStringLiteral("/fallback"));
    EXPECT_EQ(address.host, QStringLiteral("music.lan"));
    EXPECT_EQ(address.port, 6601u);
    EXPECT_EQ(address.password, QStringLiteral("pw"));
    EXPECT_FALSE(address.IsLocal());
    qputenv("MPD_HOST", "/run/a.socket");
    address = DaemonAddress::FromEnvironment(QStringLiteral("/fallback"));
    EXPECT_EQ(address.host, QStringLiteral("/run/a.socket"));
    EXPECT_TRUE(address.IsLocal());
    qunsetenv("MPD_HOST");
    qunsetenv("MPD_PORT");
    address = DaemonAddress::FromEnvironment(QStringLiteral("/fallback"));
    EXPECT_EQ(address.host, QStringLiteral("/fallback"));
    EXPECT_TRUE(address.password.isEmpty());
}

using DaemonFaults = DaemonTest;

TEST_F(DaemonFaults, QuitKillsTheDaemonAndAnnouncesQuitting) {
    EventRecorder recorder(*player);
    player->Quit();
    ASSERT_TRUE(recorder.WaitFor(QStringLiteral("quitting")));
    EXPECT_TRUE(WaitUntil([&] { return !daemon.IsRunning(); }));
    EXPECT_TRUE(player->HasQuit());
}

TEST_F(DaemonFaults, SigkillWithNoDaemonProcessLeftAnnouncesQuitting) {
    EventRecorder recorder(*player);
    daemon.Kill(SIGKILL);
    ASSERT_TRUE(recorder.WaitFor(QStringLiteral("quitting")));
    EXPECT_EQ(recorder.events, QStringList{QStringLiteral("quitting")});
    ExpectPlayerError([&] { player->Play(); });
}

TEST_F(DaemonFaults, DroppedConnectionWhileTheDaemonRunsReconnectsWithoutAnEvent) {
    EventRecorder recorder(*player);
    const int before = player->IdleSocketDescriptor();
    ASSERT_GE(before, 0);
    ::shutdown(before, SHUT_RDWR);
    PumpFor(800);
    EXPECT_TRUE(recorder.events.isEmpty()) << recorder.events.join(u' ').toStdString();
    EXPECT_TRUE(player->IsWatching());
    EXPECT_FALSE(player->HasQuit());
    // Events flow again on the new connection.
    QueueCatalogue();
    Mpc({QStringLiteral("play")});
    EXPECT_TRUE(recorder.WaitFor(QStringLiteral("play")));
}

TEST_F(DaemonFaults, StoppedDaemonTimesOutAndTheLinkRecoversAfterwards) {
    QueueCatalogue();
    player = MakePlayer(500);
    EventRecorder recorder(*player);
    daemon.Kill(SIGSTOP);
    ExpectPlayerError([&] { player->Play(); }, 2000);
    daemon.Kill(SIGCONT);
    // The daemon first works through what piled up while it was stopped.
    EXPECT_TRUE(PlaysAgain(*player));
    EXPECT_TRUE(recorder.WaitFor(QStringLiteral("play")));
    EXPECT_FALSE(recorder.events.contains(QStringLiteral("quitting")));
}

TEST_F(DaemonFaults, AfterATimeoutCallsFailAtOnceUntilTheIdleConnectionHearsTheDaemonAgain) {
    QueueCatalogue();
    player = MakePlayer(500);
    EventRecorder recorder(*player);
    daemon.Kill(SIGSTOP);
    ExpectPlayerError([&] { player->Play(); }, 2000);
    // The next calls do not wait for the stopped daemon again: they fail with their own words.
    for (int call = 0; call < 3; ++call) {
        try {
            player->Stop();
            ADD_FAILURE() << "a call to the stopped daemon succeeded";
        } catch (const VbError& error) {
            EXPECT_EQ(error.description(), DaemonSession::NotAnsweringText());
        }
    }
    EXPECT_THROW(player->CurrentTrack(), VbError);
    daemon.Kill(SIGCONT);
    EXPECT_TRUE(PlaysAgain(*player));
    EXPECT_TRUE(recorder.WaitFor(QStringLiteral("play")));
    EXPECT_FALSE(recorder.events.contains(QStringLiteral("quitting")));
}

TEST_F(DaemonFaults, StreamIsATrackButNotAFile) {
    Mpc({QStringLiteral("clear")});
    Mpc({QStringLiteral("add"), QStringLiteral("http://127.0.0.1:9/stream.ogg")});
    const std::shared_ptr<IITTrack> stream = player->CurrentPlaylist()->Tracks()->Item(1);
    ASSERT_NE(stream, nullptr);
    EXPECT_EQ(std::dynamic_pointer_cast<IITFileOrCDTrack>(stream), nullptr);
    EXPECT_EQ(stream->Name(), QStringLiteral("http://127.0.0.1:9/stream.ogg"));
    EXPECT_EQ(stream->BPM(), 0);
    EXPECT_EQ(stream->Rating(), 0);
    EXPECT_EQ(stream->Artwork()->Count(), 0);
    ExpectPlayerError([&] { stream->SetComment(QStringLiteral("x")); });
    ExpectPlayerError([&] { stream->SetRating(40); });
}

TEST_F(DaemonFaults, FileRemovedUnderTheDaemonGivesAnErrorNotACrash) {
    QueueCatalogue();
    const QString uri = PlayerDaemonFixture::Catalog().tracks[1].uri;
    Mpc({QStringLiteral("play"), QStringLiteral("2")});
    const auto track = std::dynamic_pointer_cast<IITFileOrCDTrack>(player->CurrentTrack());
    ASSERT_NE(track, nullptr);
    ASSERT_TRUE(QFile::remove(track->Location()));
    ExpectPlayerError([&] { track->SetComment(QStringLiteral("gone")); });
    EXPECT_EQ(track->BPM(), 0);
    EXPECT_EQ(track->Location(), daemon.MusicDirectory() + u'/' + uri);
    EXPECT_NO_THROW(track->Artwork());
}

} // namespace
} // namespace Pelorin

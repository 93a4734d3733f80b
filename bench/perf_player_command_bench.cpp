// One player command against a running player daemon, four ways: Pelorin's daemon backend
// (DaemonPlayer, one kept connection), the command language on a window's player link (RunCode
// "volumeup" / "nexttrack", as a skin button runs it), mpc started once per command (as a shell
// script or a key binding would), and libmpdclient on a kept connection (the floor).
// bench/perf/run-all.sh prints the ratios.
//
// Needs MPD_HOST naming a daemon that plays (bench/perf/run-all.sh starts the demo player):
// volume commands need an open output, and "next" changes the daemon's current song.
#include "RecordingRunCodeHost.h"
#include "player/daemon/DaemonAddress.h"
#include "player/daemon/DaemonPlayer.h"
#include "player/link/PlayerApplication.h"
#include "player/link/PlayerLink.h"
#include "player/link/PlayerLinkClient.h"
#include "runcode/CommandInterpreter.h"

#include <QCoreApplication>
#include <benchmark/benchmark.h>
#include <memory>
#include <mpd/client.h>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <vector>

extern char** environ;

namespace {

using namespace Pelorin;

DaemonAddress Address() {
    return DaemonAddress::FromEnvironment(QString());
}

bool HaveDaemon(benchmark::State& state) {
    if (qEnvironmentVariableIsEmpty("MPD_HOST")) {
        state.SkipWithError("MPD_HOST must name a playing daemon (see bench/perf/run-all.sh)");
        return false;
    }
    return true;
}

DaemonPlayer::Options OptionsFromEnvironment() {
    DaemonPlayer::Options options;
    options.address = Address();
    return options;
}

// The player's idle answers reach the backend between commands, as they would in the program,
// outside the timed part. Every variant pauses alike: on a virtual machine a round trip of
// microseconds depends on whether the processor had time to go idle between two commands.
void LetEventsIn(benchmark::State& state) {
    state.PauseTiming();
    QCoreApplication::processEvents();
    state.ResumeTiming();
}

void DaemonPlayerSetVolume(benchmark::State& state) {
    if (!HaveDaemon(state))
        return;
    DaemonPlayer player(OptionsFromEnvironment());
    int volume = 40;
    for (auto _ : state) {
        player.SetSoundVolume(volume);
        volume = volume == 40 ? 41 : 40;
        LetEventsIn(state);
    }
}
BENCHMARK(DaemonPlayerSetVolume)->UseRealTime()->Unit(benchmark::kMicrosecond);

void DaemonPlayerNextTrack(benchmark::State& state) {
    if (!HaveDaemon(state))
        return;
    DaemonPlayer player(OptionsFromEnvironment());
    for (auto _ : state) {
        player.NextTrack();
        LetEventsIn(state);
    }
}
BENCHMARK(DaemonPlayerNextTrack)->UseRealTime()->Unit(benchmark::kMicrosecond);

class SilentClient final : public PlayerLinkClient {
public:
    void CheckEvent(const QString&) override {}
    void LoadSong() override {}
    bool IsDeskbar() const override { return false; }
    void UnloadAllForms() override {}
};

void RunCodeOnLink(benchmark::State& state, const QString& first, const QString& second) {
    if (!HaveDaemon(state))
        return;
    const DaemonAddress address = Address();
    PlayerApplication application(
        [] { return std::make_unique<DaemonPlayer>(OptionsFromEnvironment()); },
        [address] { return DaemonPlayer::IsRunning(address); });
    SilentClient client;
    PlayerLink link(application, client);
    link.FormLoad();
    if (link.iTunesR() == nullptr) {
        state.SkipWithError("the player link did not connect");
        return;
    }
    // The window's player is its player link (connected at load, with the program's own process
    // check); everything else is recorded.
    Testing::RecordingRunCodeHost host;
    CommandInterpreter interpreter(host, link);
    bool odd = true;
    for (auto _ : state) {
        interpreter.RunCodeText(odd ? first : second);
        odd = !odd;
        LetEventsIn(state);
    }
    if (!host.messages.isEmpty() || host.beeps > 0)
        state.SkipWithError("a command failed");
}

void RunCodeVolumeUpDown(benchmark::State& state) {
    RunCodeOnLink(state, QStringLiteral("volumeup"), QStringLiteral("volumedown"));
}
BENCHMARK(RunCodeVolumeUpDown)->UseRealTime()->Unit(benchmark::kMicrosecond);

void RunCodeNextTrack(benchmark::State& state) {
    RunCodeOnLink(state, QStringLiteral("nexttrack"), QStringLiteral("nexttrack"));
}
BENCHMARK(RunCodeNextTrack)->UseRealTime()->Unit(benchmark::kMicrosecond);

// One mpc process per command, waited for.
bool RunMpc(const std::vector<std::string>& arguments) {
    std::vector<std::string> command{"mpc", "-q"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    std::vector<char*> argv;
    for (std::string& part : command)
        argv.push_back(part.data());
    argv.push_back(nullptr);
    pid_t child = 0;
    if (posix_spawnp(&child, "mpc", nullptr, nullptr, argv.data(), environ) != 0)
        return false;
    int status = 0;
    return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

void MpcSetVolume(benchmark::State& state) {
    if (!HaveDaemon(state))
        return;
    bool ok = true;
    int volume = 40;
    for (auto _ : state) {
        ok = RunMpc({"volume", std::to_string(volume)}) && ok;
        volume = volume == 40 ? 41 : 40;
        LetEventsIn(state);
    }
    if (!ok)
        state.SkipWithError("mpc failed");
}
BENCHMARK(MpcSetVolume)->UseRealTime()->Unit(benchmark::kMicrosecond);

void MpcNext(benchmark::State& state) {
    if (!HaveDaemon(state))
        return;
    bool ok = true;
    for (auto _ : state) {
        ok = RunMpc({"next"}) && ok;
        LetEventsIn(state);
    }
    if (!ok)
        state.SkipWithError("mpc failed");
}
BENCHMARK(MpcNext)->UseRealTime()->Unit(benchmark::kMicrosecond);

// libmpdclient on one kept connection: the protocol round trip and nothing else.
struct RawConnection {
    RawConnection() {
        const DaemonAddress address = Address();
        const QByteArray host = address.host.toLocal8Bit();
        connection =
            mpd_connection_new(host.isEmpty() ? nullptr : host.constData(), address.port, 2000);
        if (connection != nullptr && !address.password.isEmpty())
            mpd_run_password(connection, address.password.toLocal8Bit().constData());
    }
    ~RawConnection() {
        if (connection != nullptr)
            mpd_connection_free(connection);
    }
    bool Usable() const {
        return connection != nullptr && mpd_connection_get_error(connection) == MPD_ERROR_SUCCESS;
    }
    mpd_connection* connection = nullptr;
};

void LibmpdclientSetVolume(benchmark::State& state) {
    if (!HaveDaemon(state))
        return;
    RawConnection raw;
    if (!raw.Usable()) {
        state.SkipWithError("cannot connect");
        return;
    }
    bool ok = true;
    unsigned volume = 40;
    for (auto _ : state) {
        ok = mpd_run_set_volume(raw.connection, volume) && ok;
        volume = volume == 40 ? 41 : 40;
        LetEventsIn(state);
    }
    if (!ok)
        state.SkipWithError(mpd_connection_get_error_message(raw.connection));
}
BENCHMARK(LibmpdclientSetVolume)->UseRealTime()->Unit(benchmark::kMicrosecond);

void LibmpdclientNext(benchmark::State& state) {
    if (!HaveDaemon(state))
        return;
    RawConnection raw;
    if (!raw.Usable()) {
        state.SkipWithError("cannot connect");
        return;
    }
    bool ok = true;
    for (auto _ : state) {
        ok = mpd_run_next(raw.connection) && ok;
        LetEventsIn(state);
    }
    if (!ok)
        state.SkipWithError(mpd_connection_get_error_message(raw.connection));
}
BENCHMARK(LibmpdclientNext)->UseRealTime()->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

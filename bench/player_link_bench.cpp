// The player link's costs: how much later than mpc's own idle wake-up a daemon change reaches
// the window's event handler (as a ratio), and one guard call with some 300 processes running.
#include "PlayerDaemonFixture.h"
#include "player/ProcessChecker.h"
#include "player/daemon/DaemonPlayer.h"
#include "player/link/PlayerApplication.h"
#include "player/link/PlayerLink.h"
#include "player/link/PlayerLinkClient.h"
#include "support/player/memory/MemoryPlayer.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProcess>
#include <QThread>
#include <benchmark/benchmark.h>
#include <csignal>
#include <sys/types.h>
#include <unistd.h>
#include <vector>

namespace Pelorin {
namespace {

class SilentClient final : public PlayerLinkClient {
public:
    void CheckEvent(const QString&) override { ++events; }
    void LoadSong() override {}
    bool IsDeskbar() const override { return false; }
    void UnloadAllForms() override {}
    int events = 0;
};

DaemonPlayer::Options OptionsFor(const PlayerDaemonFixture& daemon) {
    DaemonPlayer::Options options;
    options.address.host = daemon.SocketPath();
    return options;
}

// Each iteration toggles pause once; the window's handler and a waiting "mpc idle player" see
// the same change. Reported: both delays and their ratio (handler / mpc).
void BM_EventDelayAgainstMpcIdle(benchmark::State& state) {
    PlayerDaemonFixture daemon;
    if (!daemon.Start().isEmpty()) {
        state.SkipWithError("the daemon did not start");
        return;
    }
    daemon.Mpc({QStringLiteral("add"), QStringLiteral("/")});
    daemon.Mpc({QStringLiteral("repeat"), QStringLiteral("on")});
    daemon.Mpc({QStringLiteral("play")});
    PlayerApplication application(
        [&] { return std::make_unique<DaemonPlayer>(OptionsFor(daemon)); }, [] { return true; });
    SilentClient client;
    PlayerLink link(application, client);
    link.FormLoad();
    DaemonPlayer trigger(OptionsFor(daemon));
    double handlerTotal = 0;
    double mpcTotal = 0;
    for (auto _ : state) {
        state.PauseTiming();
        QProcess idle;
        idle.start(QStringLiteral("mpc"), {QStringLiteral("-h"), daemon.SocketPath(),
                                           QStringLiteral("idle"), QStringLiteral("player")});
        idle.waitForStarted();
        QThread::msleep(150); // connected and waiting
        const int before = client.events;
        state.ResumeTiming();
        QElapsedTimer clock;
        clock.start();
        trigger.PlayPause();
        qint64 handlerNs = -1;
        qint64 mpcNs = -1;
        while ((handlerNs < 0 || mpcNs < 0) && clock.elapsed() < 5000) {
            QCoreApplication::processEvents(QEventLoop::AllEvents);
            if (handlerNs < 0 && client.events > before) {
                handlerNs = clock.nsecsElapsed();
            }
            if (mpcNs < 0 && idle.state() == QProcess::NotRunning) {
                mpcNs = clock.nsecsElapsed();
            }
            if (mpcNs < 0 && idle.waitForFinished(0)) {
                mpcNs = clock.nsecsElapsed();
            }
        }
        handlerTotal += static_cast<double>(handlerNs);
        mpcTotal += static_cast<double>(mpcNs);
    }
    state.counters["handler_ms"] =
        benchmark::Counter(handlerTotal / 1e6, benchmark::Counter::kAvgIterations);
    state.counters["mpc_idle_ms"] =
        benchmark::Counter(mpcTotal / 1e6, benchmark::Counter::kAvgIterations);
    state.counters["ratio"] = mpcTotal > 0 ? handlerTotal / mpcTotal : 0;
}
BENCHMARK(BM_EventDelayAgainstMpcIdle)->Iterations(20)->Unit(benchmark::kMillisecond);

// One iTunesIsNothing(True) on a connected window with about 300 processes in the system: two
// walks of the process list plus one CurrentTrack.
void BM_iTunesIsNothingWith300Processes(benchmark::State& state) {
    std::vector<pid_t> sleepers;
    for (int i = 0; i < 300; ++i) {
        const pid_t pid = ::fork();
        if (pid == 0) {
            ::execlp("sleep", "sleep", "600", static_cast<char*>(nullptr));
            ::_exit(1);
        }
        if (pid > 0) {
            sleepers.push_back(pid);
        }
    }
    // The real process walk on every check; the answer is forced to "running" so the guard
    // takes its full path whether or not a daemon runs here.
    const ProcessChecker checker;
    PlayerApplication application([] { return std::make_unique<MemoryPlayer>(); },
                                  [&checker] {
                                      benchmark::DoNotOptimize(
                                          checker.IsProcessRunning(QStringLiteral("mpd")));
                                      return true;
                                  });
    SilentClient client;
    PlayerLink link(application, client);
    link.FormLoad();
    for (auto _ : state) {
        benchmark::DoNotOptimize(link.iTunesIsNothing(true));
    }
    for (const pid_t pid : sleepers) {
        ::kill(pid, SIGKILL);
    }
    state.counters["processes"] = static_cast<double>(sleepers.size());
}
BENCHMARK(BM_iTunesIsNothingWith300Processes)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace Pelorin

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

// How many ten-command compound codes RunCode gets through per second against the in-memory
// player (the interpreter's own cost: splitting, matching, the double run of the whole text).
#include "RecordingRunCodeHost.h"
#include "runcode/CommandInterpreter.h"
#include "support/player/memory/MemoryPlayer.h"

#include <QCoreApplication>
#include <benchmark/benchmark.h>

namespace {

using namespace Pelorin;

const QString kTenCommands = QStringLiteral(
    "{volumeup}{volumedown}{nexttrack}{previoustrack}{repeat=switch}{shuffle=switch}{skip=1}"
    "{edittag=Comment=bench}{3star}{reloadtimer=1}");

void RunCodeTenCommandCompound(benchmark::State& state) {
    MemoryPlayer player;
    for (int i = 0; i < 3; ++i) {
        MemoryTrackData data;
        data.name = QStringLiteral("Track %1").arg(i);
        data.artist = QStringLiteral("Artist");
        data.album = QStringLiteral("Album");
        data.duration = 300;
        player.enqueue(player.addLibraryTrack(data));
    }
    player.Play();
    Testing::RecordingRunCodeHost host(&player);
    host.timerCount = 1;
    CommandInterpreter interpreter(host, host);
    for (auto _ : state) {
        QString code = kTenCommands;
        interpreter.RunCode(code);
        benchmark::DoNotOptimize(code);
        // The player's events reach the loop as they would in the program.
        QCoreApplication::processEvents();
        host.calls.clear();
    }
    if (!host.messages.isEmpty())
        state.SkipWithError("a command failed");
    state.SetItemsProcessed(state.iterations());
    state.counters["codes_per_second"] =
        benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}
BENCHMARK(RunCodeTenCommandCompound);

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

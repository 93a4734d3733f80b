// One process check as the player link makes it before every guarded action (twice per guard):
// a full walk of /proc when nothing matches, which is the common case while the player is away.
#include "player/ProcessChecker.h"

#include <benchmark/benchmark.h>

namespace {

void IsProcessRunningForThePlayer(benchmark::State& state) {
    const Pelorin::ProcessChecker checker;
    const QString name = QStringLiteral("mpd");
    for (auto _ : state)
        benchmark::DoNotOptimize(checker.IsProcessRunning(name));
}
BENCHMARK(IsProcessRunningForThePlayer);

// A name no process has: always the whole walk.
void IsProcessRunningWithoutMatch(benchmark::State& state) {
    const Pelorin::ProcessChecker checker;
    const QString name = QStringLiteral("no-such-process-anywhere");
    for (auto _ : state)
        benchmark::DoNotOptimize(checker.IsProcessRunning(name));
}
BENCHMARK(IsProcessRunningWithoutMatch);

} // namespace

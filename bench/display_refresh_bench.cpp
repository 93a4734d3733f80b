// RefreshInfo of a 50-label skin against the in-memory player: every label rebuilt from its
// template, measured in its font, the scrolling ones given their lead; then one progress tick,
// one scroll step and the stars. Also one scroll step and one progress tick on their own, the
// work the two timers do between refreshes.
#include "display/TrackDisplay.h"
#include "support/display/MemoryDisplayHost.h"
#include "support/player/memory/MemoryPlayer.h"

#include <QGuiApplication>
#include <benchmark/benchmark.h>
#include <memory>

namespace {

using namespace Pelorin;

// Templates as skins write them: short ones that fit, long ones that scroll, running times.
const char16_t* const Templates[] = {
    u"[Artist]",
    u"[Title]",
    u"[Artist] - [Title] ([Album], [Year])",
    u"[CurrentPosition] / [Time]",
    u"-[CurrentRemaining]",
    u"Rated [Rating] - played [PlayCount] times",
    u"[Genre] | [BPM] bpm | [BitRate] kbit/s",
    u"[CurrentPlaylistName]: [CurrentPlaylistTracks] tracks, [CurrentPlaylistDuration] s",
    u"[Composer] - [Comment]",
    u"Track [TrackNumber] [Compilation]",
};

class DisplayFixture {
public:
    DisplayFixture() {
        MemoryTrackData data;
        data.artist = QStringLiteral("Aurora Quartet");
        data.name = QStringLiteral("Morning Light on the Water");
        data.album = QStringLiteral("Sunrise Sessions");
        data.composer = QStringLiteral("Ada Lind");
        data.genre = QStringLiteral("Jazz");
        data.comment = QStringLiteral("Recorded at dawn in one take");
        data.year = 2001;
        data.trackNumber = 3;
        data.bpm = 96;
        data.bitRate = 320;
        data.rating = 60;
        data.duration = 245;
        const int id = player.addLibraryTrack(data);
        player.enqueue(id);
        player.Play();
        player.SetPlayerPosition(61);

        SkinModel& model = host.Model();
        model.BeginLoad(QStringLiteral("/nonexistent/"));
        for (int i = 1; i <= 50; ++i) {
            SkinLabel label;
            label.Visible = true;
            // Every other label is narrow enough to scroll.
            label.Geometry = {0, i * 12, i % 2 == 0 ? 400 : 90, 12};
            label.Tag = QString::fromUtf16(Templates[(i - 1) % std::size(Templates)]);
            model.lblInfo.push_back(label);
            model.scrollWidth.emplace_back();
            model.LabelTexts.append(QString());
        }
        model.imgProgress.Tag = QStringLiteral("200");
        model.RatingsSpec = QStringLiteral("10;5;12;12;2;NONE;lit.png");
        host.setPlayer(&player);
    }

    MemoryPlayer player;
    MemoryDisplayHost host;
    TrackDisplay display{host, host};
};

void RefreshInfoOfFiftyLabels(benchmark::State& state) {
    DisplayFixture fixture;
    for (auto _ : state)
        fixture.display.RefreshInfo();
    state.SetItemsProcessed(state.iterations() * 50);
}
BENCHMARK(RefreshInfoOfFiftyLabels)->Unit(benchmark::kMicrosecond);

void ScrollStepOfFiftyLabels(benchmark::State& state) {
    DisplayFixture fixture;
    fixture.display.RefreshInfo();
    for (auto _ : state)
        fixture.display.tmrScroll_Timer();
}
BENCHMARK(ScrollStepOfFiftyLabels)->Unit(benchmark::kMicrosecond);

void ProgressTickOfFiftyLabels(benchmark::State& state) {
    DisplayFixture fixture;
    fixture.display.RefreshInfo();
    for (auto _ : state)
        fixture.display.tmrProgress_Timer();
}
BENCHMARK(ProgressTickOfFiftyLabels)->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv) {
    // Fonts need a GUI application; no window is shown.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

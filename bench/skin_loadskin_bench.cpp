// LoadSkin of a generated 10,000-line skin into a real skin window (offscreen platform): every
// kind of line, labels and images with pictures among them. Goal: at most 100 ms per load.
#include "skin/window/frmMain.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <memory>

using namespace Pelorin;

namespace {

// The skin's lines: a tenth each of labels, images, label fonts, label colours, timers and
// comments, the rest window settings, interaction codes and shortcuts.
QByteArray GeneratedSkin(int lineCount) {
    QByteArray skin = "skinname=Bench\r\nwidth=400\r\nheight=300\r\nbackgroundcolor=&H202020\r\n";
    int labels = 0;
    for (int i = 4; i < lineCount; ++i) {
        switch (i % 10) {
        case 0:
            skin += "label=" + QByteArray::number(i % 380) + ";" + QByteArray::number(i % 280) +
                    ";60;14;[Artist] - [Title]\r\n";
            ++labels;
            break;
        case 1:
            skin += "image=" + QByteArray::number(i % 380) + ";" + QByteArray::number(i % 280) +
                    ";16;16;playpause;play.png|hover.png|down.png\r\n";
            break;
        case 2:
            skin += labels > 0 ? "labelfont=" + QByteArray::number(labels) + ";DejaVu Sans;9\r\n"
                               : QByteArray("// no label yet\r\n");
            break;
        case 3:
            skin += labels > 0 ? "labelcolor=" + QByteArray::number(labels) + ";&HFFFFFF\r\n"
                               : QByteArray("// no label yet\r\n");
            break;
        case 4:
            skin += "timerevent=0;next\r\n";
            break;
        case 5:
            skin += "// a comment line that the loader skips\r\n";
            break;
        case 6:
            skin += "anyinteraction=normaltransparency\r\n";
            break;
        case 7:
            skin += "keyboardshortcut=CTRL+ALT+" + QByteArray::number(i % 10) + ";next\r\n";
            break;
        case 8:
            skin += "left=" + QByteArray::number(i % 500) + "\r\n";
            break;
        default:
            skin += "ontop=False\r\n";
            break;
        }
    }
    return skin;
}

class GeneratedSkinFolder {
public:
    explicit GeneratedSkinFolder(int lineCount) {
        folder = dir.path() + QLatin1String("/Bench/");
        QDir().mkpath(folder);
        QFile file(folder + QLatin1String("skin.ini"));
        if (file.open(QIODevice::WriteOnly))
            file.write(GeneratedSkin(lineCount));
        QImage picture(16, 16, QImage::Format_ARGB32);
        picture.fill(Qt::transparent);
        picture.save(folder + QLatin1String("play.png"));
    }
    QTemporaryDir dir;
    QString folder;
};

void BM_LoadSkin(benchmark::State& state) {
    const GeneratedSkinFolder skin(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        auto window = std::make_unique<frmMain>(frmMain::Links{});
        window->LoadSkin(skin.folder + QLatin1String("skin.ini"), skin.folder);
        benchmark::DoNotOptimize(window->Model().LabelCount());
        state.PauseTiming();
        window.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_LoadSkin)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

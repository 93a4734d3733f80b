// Feeds arbitrary text to RunCode on a window whose player is the in-memory player and whose
// window, shell and desktop are recorded rather than acted on (nothing sleeps, pumps, ends the
// process or touches a file). Any crash, hang, sanitizer report or broken invariant is a finding.
//
// The first byte chooses the situation: bit 0 no player, bit 1 commands refused, bit 2 nothing
// playing, bit 3 the track is deleted while the command lets messages run, bit 4 the window
// closes meanwhile. The rest is the code, as UTF-8.
#include "RecordingRunCodeHost.h"
#include "runcode/CommandInterpreter.h"
#include "runcode/SkinEvents.h"
#include "support/player/memory/MemoryPlayer.h"

#include <QCoreApplication>
#include <QtGlobal>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

namespace {

using namespace Pelorin;

void Check(bool condition) {
    if (!condition)
        std::abort();
}

MemoryTrackData Song(const QString& name, bool isFile = true) {
    MemoryTrackData data;
    data.name = name;
    data.artist = QStringLiteral("Artist");
    data.album = QStringLiteral("Album");
    data.duration = 120;
    data.isFile = isFile;
    // Never a real file: the host's trash only records.
    data.location = QStringLiteral("/nonexistent/pelorin-fuzz/") + name;
    return data;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    // The in-memory player posts its events to the event loop.
    static QCoreApplication app(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    const std::uint8_t situation = data[0];
    const QString code = QString::fromUtf8(reinterpret_cast<const char*>(data + 1),
                                           static_cast<qsizetype>(size - 1));

    MemoryPlayer player;
    const int a = player.addLibraryTrack(Song(QStringLiteral("A")));
    const int b = player.addLibraryTrack(Song(QStringLiteral("B")));
    const int radio = player.addLibraryTrack(Song(QStringLiteral("Radio"), false));
    for (int id : {a, b, radio})
        player.enqueue(id);
    player.addUserPlaylist(QStringLiteral("Mix"), {a, b});
    player.addUserPlaylist(QStringLiteral("Mix"), {b}, player.addSource(QStringLiteral("Device")));
    if ((situation & 4) == 0)
        player.Play();

    Testing::RecordingRunCodeHost host((situation & 1) != 0 ? nullptr : &player);
    host.comCallsEnabled = (situation & 2) == 0;
    host.timerCount = 3;
    host.onPump = [&] {
        if ((situation & 8) != 0 && player.CurrentTrack())
            player.CurrentTrack()->Delete();
        if ((situation & 16) != 0)
            host.windowGone = true;
    };
    CommandInterpreter interpreter(host, host);

    QString text = code;
    interpreter.RunCode(text);
    // Only opening braces ever leave the caller's text, and only when it has braces.
    Check(text.size() <= code.size());
    Check(!text.contains(u'{') || text == code);

    // The same code as a skin event's, run twice through the table.
    SkinEvents events;
    try {
        events.NewEvent(QStringLiteral("newsong;") + code);
    } catch (const std::exception&) {
    }
    const auto run = [&interpreter](QString& c) { interpreter.RunCode(c); };
    events.CheckEvent(QStringLiteral("NewSong"), run);
    events.CheckEvent(QStringLiteral("newsong"), run);

    // Commands refused: one beep per call and nothing else.
    if (!host.comCallsEnabled)
        Check(host.calls.size() == 3 && host.beeps == 3);
    // No file is ever moved except the file of the track that played.
    for (const QString& call : host.CallsOf(QStringLiteral("trash")))
        Check(call.startsWith(QStringLiteral("trash:/nonexistent/pelorin-fuzz/")));

    QCoreApplication::processEvents();
    return 0;
}

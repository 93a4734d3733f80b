// Label templates filled from tags that come from anywhere: the input is split into a template
// and the track's artist, title, album, comment and genre, all of which may hold placeholders
// themselves. The caption must never grow beyond the limit, however the steps expand each other.
#include "display/TagTemplate.h"
#include "display/TrackValues.h"
#include "support/player/memory/MemoryPlayer.h"

#include <QString>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace Pelorin;
    const QStringList parts =
        QString::fromUtf8(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size))
            .split(u'\x1f');
    MemoryTrackData track;
    track.artist = parts.value(1);
    track.name = parts.value(2);
    track.album = parts.value(3);
    track.comment = parts.value(4);
    track.genre = parts.value(5);
    track.duration = 200;
    MemoryPlayer player;
    player.enqueue(player.addLibraryTrack(track));
    player.Play();
    TrackValues values(&player);
    QString caption = parts.value(0);
    const qsizetype before = caption.size();
    TagTemplate::Fill(caption, values);
    if (caption.size() > std::max(before, TagTemplate::MaxCaption))
        std::abort();
    return 0;
}

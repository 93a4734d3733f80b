#pragma once

#include "base/VbError.h"
#include "display/DisplayHost.h"
#include "player/IiTunes.h"

#include <memory>

namespace Pelorin::DisplayPlayer {

// The window's player after the guard said it is usable. The guard also says so when it failed
// inside, so the reference may still be missing: then, as for a track that vanished after the
// guard, the caller's work fails with ObjectNotSet.
inline IiTunes& Player(DisplayHost& host) {
    IiTunes* player = host.iTunesR();
    if (player == nullptr)
        throw VbError::ObjectNotSet();
    return *player;
}

inline std::shared_ptr<IITTrack> CurrentTrack(IiTunes& player) {
    std::shared_ptr<IITTrack> track = player.CurrentTrack();
    if (!track)
        throw VbError::ObjectNotSet();
    return track;
}

} // namespace Pelorin::DisplayPlayer

#pragma once

#include "base/VbError.h"
#include "player/IiTunes.h"
#include "runcode/RunCodeHost.h"

#include <memory>

namespace Pelorin::PlayerAccess {

// A command that reaches for a player, a track or a playlist that is not there fails as the
// original runtime failed on Nothing: "Object variable or With block variable not set". The
// command interpreter's handler then beeps when the player is missing.

inline IiTunes& Required(IiTunes* player) {
    if (player == nullptr)
        throw VbError::ObjectNotSet();
    return *player;
}

// The window's iTunesR.
inline IiTunes& R(RunCodeHost& host) {
    return Required(host.iTunesR());
}

// The shared player object, created when it does not exist yet.
inline IiTunes& App(RunCodeHost& host) {
    return Required(host.iTunesApp());
}

template <typename T> std::shared_ptr<T> Required(std::shared_ptr<T> object) {
    if (!object)
        throw VbError::ObjectNotSet();
    return object;
}

// The current track, read afresh at every call.
inline std::shared_ptr<IITTrack> CurrentTrack(IiTunes& player) {
    return Required(player.CurrentTrack());
}

} // namespace Pelorin::PlayerAccess

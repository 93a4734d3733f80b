#pragma once

#include "base/VbError.h"
#include "player/IiTunes.h"
#include "player/link/WindowPlayer.h"

#include <memory>

namespace Pelorin::PlayerAccess {

// Work that reaches for a player, a track or a playlist that is not there fails as the original
// runtime failed on Nothing: "Object variable or With block variable not set". The guard may
// have said the player is usable when it failed inside, and a track may vanish after the guard,
// so every caller goes through these rather than trusting the guard's answer.

inline IiTunes& Required(IiTunes* player) {
    if (player == nullptr)
        throw VbError::ObjectNotSet();
    return *player;
}

// The window's iTunesR.
inline IiTunes& R(const WindowPlayer& window) {
    return Required(window.iTunesR());
}

// The shared player object, created when it does not exist yet.
inline IiTunes& App(WindowPlayer& window) {
    return Required(window.iTunesApp());
}

template <typename T> std::shared_ptr<T> Required(std::shared_ptr<T> object) {
    if (!object)
        throw VbError::ObjectNotSet();
    return object;
}

// The current track, read afresh at every call, or ObjectNotSet.
inline std::shared_ptr<IITTrack> CurrentTrack(IiTunes& player) {
    return Required(player.CurrentTrack());
}

} // namespace Pelorin::PlayerAccess

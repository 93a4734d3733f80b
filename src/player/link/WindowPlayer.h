#pragma once

#include <memory>

namespace Pelorin {

class IiTunes;
class IITFileOrCDTrack;

// One skin window's player, as the command language, the track display and the pointer code
// reach it: the window's reference `iTunesR`, the guard before player work, the process-wide
// player object, the COM-calls flag and the current file track. PlayerLink is the real one; the
// tests give one over the in-memory player.
class WindowPlayer {
public:
    virtual ~WindowPlayer() = default;

    // False while the player refuses commands (every command then only beeps).
    virtual bool COMCallsEnabled() const = 0;
    // The window's player reference; null while not connected.
    virtual IiTunes* iTunesR() const = 0;
    // The guard before player work: true when there is no usable player (or, with CareForTrack,
    // no current track). It connects when the window is not connected and the player runs. Never
    // throws: a failure inside answers false, as if the player were usable, so the caller's own
    // call then fails with its own error.
    virtual bool iTunesIsNothing(bool CareForTrack) = 0;
    // The one process-wide player object, made when the player runs and none exists yet; null
    // when it cannot be had.
    virtual IiTunes* iTunesApp() = 0;
    // Keeps the current track as a file in the window while "deletecompletely" works.
    virtual void SetCurrentFileTrack(std::shared_ptr<IITFileOrCDTrack> track) = 0;
};

} // namespace Pelorin

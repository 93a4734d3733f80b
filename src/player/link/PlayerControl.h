#pragma once

namespace Pelorin {

// What start-up and the closing sequence ask of the player: bring it up ("open iTunes") and
// tell it to quit. The player link provides the real one.
class PlayerControl {
public:
    virtual ~PlayerControl() = default;
    // Starts the player, or brings the running one forward. Never blocks the user interface for
    // longer than the player's connection timeout.
    virtual void StartPlayer() = 0;
    // Asks the player to quit (CloseiTunesOnExit).
    virtual void QuitPlayer() = 0;
};

} // namespace Pelorin

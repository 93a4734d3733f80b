#pragma once

#include "player/daemon/DaemonAddress.h"
#include "player/daemon/DaemonPlayer.h"
#include "player/embedded/EmbeddedPlayer.h"
#include "player/link/PlayerApplication.h"
#include "player/link/PlayerControl.h"

#include <QString>
#include <memory>

namespace Pelorin {

// Start-up's and the closing sequence's way to the player, and the owner of the process-wide
// player object. The player is the daemon MPD_HOST / MPD_PORT name, as mpc reads them; without
// MPD_HOST it is Pelorin's own instance (EmbeddedPlayer), which StartPlayer starts detached when
// it is not running.
class PlayerLauncher final : public PlayerControl {
public:
    struct Options {
        // Pelorin's own instance (configuration, music folder, program).
        EmbeddedPlayer::Options embedded;
        int timeoutMs = DaemonPlayer::kDefaultTimeoutMs;
    };

    PlayerLauncher();
    explicit PlayerLauncher(Options options);
    ~PlayerLauncher() override;

    // True when MPD_HOST names no player, so Pelorin's own instance is the player.
    bool UsesEmbeddedPlayer() const;
    // Where the player listens.
    DaemonAddress Address() const;
    // The owner of `iTunesApp`, to pass to every window's PlayerLink.
    PlayerApplication& Application() { return *m_application; }

    // "Open iTunes": starts Pelorin's own instance unless it runs (and waits up to its start
    // timeout for the socket); a player named by MPD_HOST is the user's to start. A failure is
    // kept in LastError and written to stderr.
    void StartPlayer() override;
    // "CloseiTunesOnExit": tells the player to quit ("kill"); when Pelorin has no player object,
    // stops its own instance if that is what runs. A failure is kept in LastError.
    void QuitPlayer() override;
    // Why the last StartPlayer or QuitPlayer failed; empty after a success.
    QString LastError() const { return m_lastError; }
    // After starting the private player: what the user should know about its music folder (it
    // holds no music); empty otherwise, and for a player of the user's own.
    QString MusicFolderNotice() const;

private:
    Options m_options;
    EmbeddedPlayer m_embedded;
    std::unique_ptr<PlayerApplication> m_application;
    QString m_lastError;
};

} // namespace Pelorin

#pragma once

#include <QString>

namespace Pelorin {

// Where the player daemon listens, read as mpc reads it: MPD_HOST ("host", "/socket", "@abstract",
// each optionally preceded by "password@") and MPD_PORT. Without MPD_HOST, Pelorin's own instance.
struct DaemonAddress {
    // Host name, IP address, Unix socket path or "@abstract" socket name.
    QString host;
    // TCP port; 0 for the default (6600, or MPD_PORT).
    unsigned port = 0;
    // Sent with "password" right after connecting; empty for none.
    QString password;

    // The address MPD_HOST and MPD_PORT name; `fallbackSocket` (the embedded instance's socket)
    // when MPD_HOST is not set.
    static DaemonAddress FromEnvironment(const QString& fallbackSocket);
    // True when MPD_HOST names a player of the user's own.
    static bool EnvironmentNamesAPlayer();

    // A Unix socket or a host of this computer, where the process check can see the daemon.
    bool IsLocal() const;
    // "/run/user/1000/pelorin/mpd.socket" or "music.lan:6600", for messages.
    QString Describe() const;
};

} // namespace Pelorin

#pragma once

#include "player/daemon/DaemonAddress.h"

#include <QString>
#include <memory>

struct mpd_connection;

namespace Pelorin {

struct DaemonConnectionFree {
    void operator()(mpd_connection* connection) const;
};

// One connection to the player daemon, freed when the pointer goes.
using DaemonConnectionPtr = std::unique_ptr<mpd_connection, DaemonConnectionFree>;

// Connects and sends the password. Throws VbError::Player with the client library's or the
// daemon's description when either fails; never waits longer than `timeoutMs` per step.
// `timedOut`, when given, tells whether the daemon let the connection time out (a hung or
// stopped daemon: its socket accepts, but no greeting comes).
DaemonConnectionPtr ConnectToDaemon(const DaemonAddress& address, int timeoutMs,
                                    bool* timedOut = nullptr);

// What went wrong on a connection.
enum class DaemonFault {
    None,
    // The daemon refused the command, or the command was malformed: the connection is still good
    // once the error has been cleared.
    Recoverable,
    // The connection closed before the command reached the daemon; repeating it on a new
    // connection cannot run it twice.
    ClosedBeforeCommand,
    // Timeout, a closed socket, garbage: the connection is useless.
    Broken,
};

// Classifies the connection's error; for a recoverable one it also clears it. `description`
// receives the error's text.
DaemonFault TakeDaemonFault(mpd_connection* connection, QString* description);

} // namespace Pelorin

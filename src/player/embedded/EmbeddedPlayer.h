#pragma once

#include <QString>

namespace Pelorin {

// Pelorin's own player daemon, used when the user names no player of their own: a private MPD
// instance with its configuration in $XDG_CONFIG_HOME/pelorin/mpd.conf (written on first use,
// never overwritten, so the user may edit it), its database, state, stickers, playlists, pid file
// and log under $XDG_STATE_HOME/pelorin/mpd/, and its Unix socket in the per-user runtime folder.
// Started daemonised, it outlives Pelorin; Stop ends only the instance its own pid file names.
class EmbeddedPlayer {
public:
    struct Options {
        // The music folder written into a new configuration; empty: the user's music folder.
        QString musicDirectory;
        // Appended to a new configuration (tests and the demo add a null audio output here).
        QString extraConfig;
        // The daemon's executable.
        QString program = QStringLiteral("mpd");
        // How long Start waits for the socket to answer.
        int startTimeoutMs = 2000;
    };

    EmbeddedPlayer();
    explicit EmbeddedPlayer(Options options);

    QString ConfigPath() const;
    QString StateDirectory() const;
    // The socket the configuration binds to (as written in it; the default for a new one).
    QString SocketPath() const;
    QString PidFilePath() const;
    QString LogFilePath() const;
    // The music folder a new configuration gets.
    QString DefaultMusicDirectory() const;
    // The music folder the configuration names (the default when it names none).
    QString MusicDirectory() const;
    // Empty when the music folder holds a file somewhere below it; else a message for the user:
    // which folder the player reads, and how to point it at another one.
    QString EmptyMusicFolderNotice() const;

    // Writes the configuration unless a file is already there, durably (flushed to the disk and
    // linked into place whole, so a crash never leaves an empty or cut file). Empty on success,
    // else why not.
    QString EnsureConfig() const;
    // Empty when the configuration lets the daemon listen only on local sockets (every
    // bind_to_address an absolute path); else why Pelorin will not start it. An empty or cut
    // file binds to every network interface on port 6600 with no password.
    QString NetworkExposure() const;
    // The pid file names a live daemon, or the socket accepts a connection.
    bool IsRunning() const;
    // The live daemon named by the pid file; 0 when there is none.
    qint64 ProcessId() const;
    // Starts the daemon unless it runs, then waits for its socket. Empty on success, else a
    // message for the user (with what the daemon logged).
    QString Start() const;
    // Ends the daemon named by the pid file (SIGTERM) and waits for it to leave. Empty when it
    // is gone or was not running.
    QString Stop() const;

private:
    // A top-level `name "value"` setting of the configuration file; empty when absent.
    QString ConfiguredValue(const QString& name) const;
    // Every top-level value of `name`, in the file's order.
    QStringList ConfiguredValues(const QString& name) const;
    QString ConfigText() const;
    QString StartFailure(const QString& reason, qint64 logOffset) const;

    Options m_options;
};

} // namespace Pelorin

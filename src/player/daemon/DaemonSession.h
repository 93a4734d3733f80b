#pragma once

#include "player/daemon/DaemonAddress.h"
#include "player/daemon/DaemonConnection.h"
#include "player/daemon/SongInfo.h"
#include "player/daemon/StatusCache.h"

#include <QString>
#include <functional>
#include <optional>
#include <utility>

namespace Pelorin {

// The command side of the link to the daemon, shared by the player and every object it hands out
// (they keep a weak reference, so an object that outlives the player fails its calls).
//
// Run() is the one way to talk to the daemon: it connects when there is no connection, runs the
// work, and sorts out what went wrong. A refusal by the daemon becomes VbError::Player with the
// daemon's text and leaves the connection usable; a broken connection is dropped (the next call
// connects afresh) and reported the same way. When the daemon had closed the connection before
// the command reached it (it drops clients that stay silent too long), the work runs once more on
// a new connection. Nothing waits longer than the timeout per step.
//
// A daemon that lets a step time out (it hangs, or is stopped) is not asked again until it has
// shown that it answers: until then every call fails at once with "The player does not answer",
// so a window waits at most one timeout in all. The player's idle connection tells when the
// daemon answers again (MarkAnswering).
class DaemonSession {
public:
    DaemonSession(DaemonAddress address, int timeoutMs);

    const DaemonAddress& Address() const { return m_address; }
    int TimeoutMs() const { return m_timeoutMs; }

    // `work` takes the mpd_connection* and returns a value; it must finish every response it
    // starts and free what the client library gave it, also when a call fails.
    template <typename Work> auto Run(Work&& work) {
        for (bool firstAttempt = true;; firstAttempt = false) {
            mpd_connection* connection = Connection();
            auto result = work(connection);
            if (Settle(connection, firstAttempt)) {
                return result;
            }
        }
    }

    bool IsConnected() const { return m_connection != nullptr; }
    // False from a timed-out step until MarkAnswering.
    bool IsAnswering() const { return m_answering; }
    void MarkAnswering() { m_answering = true; }
    // Called once when a step times out, so the player can find out when the daemon is back.
    void SetOnTimeout(std::function<void()> onTimeout) { m_onTimeout = std::move(onTimeout); }
    static QString NotAnsweringText() { return QStringLiteral("The player does not answer"); }
    // Sends "kill" and drops the connection: the daemon answers by leaving, which is success.
    // Throws only when the daemon refuses (no permission) or cannot be reached.
    void SendKill();
    void Disconnect();

    // Whether the daemon keeps stickers (ratings, play counts, start and finish points live
    // there); a daemon without a sticker_file has none. Asked once per connection.
    bool HasStickers();

    // "status"; also what PlayerPosition is answered from.
    DaemonStatus ReadStatus();
    // The song playing or paused, with the status read in the same exchange; none when stopped.
    std::pair<DaemonStatus, std::optional<SongInfo>> ReadCurrentSong();
    StatusCache& Position() { return m_position; }

    // The daemon's music folder ("config", which only local clients may ask); empty when the
    // daemon does not tell.
    QString MusicDirectory();
    // Where the file of `uri` lies on this computer (music folder + "/" + URI), whether or not it
    // is there; empty for streams and for a daemon that does not tell its music folder.
    QString FilePath(const QString& uri);
    // Rescans one song or folder after Pelorin changed its file.
    void UpdateUri(const QString& uri);

    // The stored playlist Pelorin loaded into the queue last; empty after the queue was refilled
    // otherwise by Pelorin.
    const QString& LoadedPlaylistName() const { return m_loadedPlaylist; }
    void SetLoadedPlaylistName(const QString& name) { m_loadedPlaylist = name; }

private:
    mpd_connection* Connection();
    void TimedOut();
    // True when the work succeeded; false to run it again; throws otherwise.
    bool Settle(mpd_connection* connection, bool firstAttempt);

    DaemonAddress m_address;
    int m_timeoutMs;
    DaemonConnectionPtr m_connection;
    StatusCache m_position;
    std::optional<QString> m_musicDirectory;
    QString m_loadedPlaylist;
    bool m_answering = true;
    std::optional<bool> m_hasStickers;
    std::function<void()> m_onTimeout;
};

} // namespace Pelorin

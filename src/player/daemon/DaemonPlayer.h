#pragma once

#include "player/IiTunes.h"
#include "player/daemon/DaemonAddress.h"
#include "player/daemon/IdleWatcher.h"
#include "player/daemon/StatusCache.h"

#include <QElapsedTimer>
#include <QTimer>
#include <functional>
#include <memory>

namespace Pelorin {

class DaemonSession;

// The player interface on the Music Player Daemon (MPD), through libmpdclient.
//
// Commands go over one connection (DaemonSession), events come from a second one waiting in
// "idle" (IdleWatcher), both on the user-interface thread. Player changes are turned into the
// interface's events by comparing each new status with the last one: playing after anything else
// is a play event, another song while playing a track change, stopping or pausing a stop event.
// Changes of the database, the stored playlists and the stickers are a database change. When the
// waiting connection closes, the player has quit if Quit was asked for or no daemon process is
// left; otherwise the link is rebuilt quietly (state read again, no event) and retried every
// reconnect interval until it succeeds or the process is gone.
//
// Pelorin counts plays itself: a song left (or ended) after half its length or four minutes adds
// one to its "playCount" sticker. Start and finish points live in stickers and are applied to the
// queue whenever it changes.
class DaemonPlayer final : public IiTunes {
    Q_OBJECT

public:
    static constexpr int kDefaultTimeoutMs = 2000;

    struct Options {
        DaemonAddress address;
        // Per step (connect, send, receive) of every exchange with the daemon.
        int timeoutMs = kDefaultTimeoutMs;
        // Whether the daemon still runs; asked when the waiting connection closes. Empty: the
        // process check for "mpd" (for a daemon on another host: whether it can be reached).
        std::function<bool()> isPlayerRunning;
        int reconnectIntervalMs = 500;
    };

    explicit DaemonPlayer(Options options, QObject* parent = nullptr);
    ~DaemonPlayer() override;

    void PlayPause() override;
    void Play() override;
    void Pause() override;
    void Stop() override;
    void PreviousTrack() override;
    void NextTrack() override;
    void Quit() override;
    void UpdateIPod() override;
    int SoundVolume() const override;
    void SetSoundVolume(int volume) override;
    int PlayerPosition() const override;
    void SetPlayerPosition(int seconds) override;
    std::shared_ptr<IITTrack> CurrentTrack() const override;
    std::shared_ptr<IITPlaylist> CurrentPlaylist() const override;
    std::shared_ptr<IITPlaylist> LibraryPlaylist() const override;
    std::shared_ptr<IITSourceCollection> Sources() const override;

    // Whether a daemon at `address` runs: the process check for "mpd" for a local one, a
    // connection for one on another host.
    static bool IsRunning(const DaemonAddress& address, int timeoutMs = kDefaultTimeoutMs);

    // State of the link, for diagnostics and tests.
    bool IsWatching() const { return m_watcher.IsWatching(); }
    int IdleSocketDescriptor() const { return m_watcher.SocketDescriptor(); }
    bool HasQuit() const { return m_quit; }

private:
    void OnChanged(unsigned mask);
    void OnLost();
    void TryReconnect();
    void Quitting();
    // Reads status and current song; with `report`, emits the events the change implies.
    void RetryPlayerState();
    void ReadPlayerState(bool report);
    void CountPlayOfLeftSong(const DaemonStatus& now);
    bool PlayerProcessRuns() const;
    template <typename Work> void Command(Work&& work);

    Options m_options;
    std::shared_ptr<DaemonSession> m_session;
    IdleWatcher m_watcher;
    QTimer m_reconnectTimer;
    // Reads the player's state again after a change that could not be read.
    QTimer m_stateRetryTimer;
    bool m_quitRequested = false;
    // Set once the first connection has read the player's state.
    bool m_connectedBefore = false;
    bool m_quit = false;

    // The state the last event was judged against, and how long its song has been heard.
    DaemonStatus m_baseline;
    QString m_baselineUri;
    unsigned m_baselineDurationMs = 0;
    QElapsedTimer m_sinceBaseline;
};

} // namespace Pelorin

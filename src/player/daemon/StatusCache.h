#pragma once

#include <QElapsedTimer>

struct mpd_status;

namespace Pelorin {

enum class DaemonPlayState { Unknown, Stopped, Playing, Paused };

// The part of the daemon's "status" answer the player link uses.
struct DaemonStatus {
    DaemonPlayState state = DaemonPlayState::Unknown;
    // Queue entry id and position of the current song; 0 and -1 when there is none.
    unsigned songId = 0;
    int songPosition = -1;
    unsigned elapsedMs = 0;
    unsigned durationMs = 0;
    // -1 when the daemon has no mixer.
    int volume = -1;
    bool repeat = false;
    bool single = false;
    bool random = false;
    unsigned queueLength = 0;

    static DaemonStatus From(const mpd_status* status);
};

// The last status the daemon reported, and the position it implies now: the reported elapsed
// time advanced by the clock while playing. The timers that show the position read this instead
// of asking the daemon twice a second.
class StatusCache {
public:
    void Update(const DaemonStatus& status);
    bool HasStatus() const { return m_clock.isValid(); }
    const DaemonStatus& Last() const { return m_status; }
    // Milliseconds into the current song now; 0 when stopped. Never beyond the song's end.
    qint64 PositionMs() const;
    void Clear();

private:
    DaemonStatus m_status;
    QElapsedTimer m_clock;
};

} // namespace Pelorin

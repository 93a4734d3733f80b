#include "player/daemon/StatusCache.h"

#include <algorithm>
#include <mpd/status.h>

namespace Pelorin {

DaemonStatus DaemonStatus::From(const mpd_status* status) {
    DaemonStatus result;
    switch (mpd_status_get_state(status)) {
    case MPD_STATE_PLAY:
        result.state = DaemonPlayState::Playing;
        break;
    case MPD_STATE_PAUSE:
        result.state = DaemonPlayState::Paused;
        break;
    case MPD_STATE_STOP:
        result.state = DaemonPlayState::Stopped;
        break;
    default:
        result.state = DaemonPlayState::Unknown;
        break;
    }
    const int songId = mpd_status_get_song_id(status);
    result.songId = songId > 0 ? static_cast<unsigned>(songId) : 0;
    result.songPosition = mpd_status_get_song_pos(status);
    result.elapsedMs = mpd_status_get_elapsed_ms(status);
    result.durationMs = mpd_status_get_total_time(status) * 1000;
    result.volume = mpd_status_get_volume(status);
    result.repeat = mpd_status_get_repeat(status);
    result.single = mpd_status_get_single(status);
    result.random = mpd_status_get_random(status);
    result.queueLength = mpd_status_get_queue_length(status);
    return result;
}

void StatusCache::Update(const DaemonStatus& status) {
    m_status = status;
    m_clock.start();
}

void StatusCache::Clear() {
    m_status = DaemonStatus{};
    m_clock.invalidate();
}

qint64 StatusCache::PositionMs() const {
    if (!HasStatus() || m_status.state == DaemonPlayState::Stopped ||
        m_status.state == DaemonPlayState::Unknown) {
        return 0;
    }
    qint64 position = m_status.elapsedMs;
    if (m_status.state == DaemonPlayState::Playing) {
        position += m_clock.elapsed();
    }
    if (m_status.durationMs > 0) {
        position = std::min<qint64>(position, m_status.durationMs);
    }
    return position;
}

} // namespace Pelorin

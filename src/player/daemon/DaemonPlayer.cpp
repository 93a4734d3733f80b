#include "player/daemon/DaemonPlayer.h"

#include "base/TextRules.h"
#include "base/VbError.h"
#include "player/ProcessChecker.h"
#include "player/daemon/DaemonCollection.h"
#include "player/daemon/DaemonConnection.h"
#include "player/daemon/DaemonPlaylist.h"
#include "player/daemon/DaemonQueries.h"
#include "player/daemon/DaemonSession.h"
#include "player/daemon/DaemonTrack.h"

#include <algorithm>
#include <mpd/client.h>

namespace Pelorin {

namespace {

// A song counts as played once this much of it was heard (or half of it, if that is less).
constexpr qint64 kPlayedAfterMs = 4 * 60 * 1000;

bool HasSong(const DaemonStatus& status) {
    return status.state == DaemonPlayState::Playing || status.state == DaemonPlayState::Paused;
}

} // namespace

DaemonPlayer::DaemonPlayer(Options options, QObject* parent)
    : IiTunes(parent), m_options(std::move(options)),
      m_session(std::make_shared<DaemonSession>(m_options.address, m_options.timeoutMs)),
      m_watcher(m_options.address, m_options.timeoutMs) {
    connect(&m_watcher, &IdleWatcher::Changed, this, &DaemonPlayer::OnChanged);
    connect(&m_watcher, &IdleWatcher::Lost, this, &DaemonPlayer::OnLost);
    // After a command timed out, calls fail at once until the idle connection hears the daemon.
    m_session->SetOnTimeout([this] { m_watcher.Probe(); });
    connect(&m_watcher, &IdleWatcher::Answered, this, [this] { m_session->MarkAnswering(); });
    m_reconnectTimer.setSingleShot(true);
    m_reconnectTimer.setInterval(m_options.reconnectIntervalMs);
    connect(&m_reconnectTimer, &QTimer::timeout, this, &DaemonPlayer::TryReconnect);
    m_stateRetryTimer.setSingleShot(true);
    m_stateRetryTimer.setInterval(m_options.reconnectIntervalMs);
    connect(&m_stateRetryTimer, &QTimer::timeout, this, &DaemonPlayer::RetryPlayerState);
    TryReconnect();
}

DaemonPlayer::~DaemonPlayer() {
    // Track objects may keep the session a moment longer; it must not call back into this.
    m_session->SetOnTimeout({});
}

bool DaemonPlayer::IsRunning(const DaemonAddress& address, int timeoutMs) {
    if (address.IsLocal()) {
        // One checker for the program, so that it remembers the daemon's process between calls.
        static const ProcessChecker checker;
        return checker.IsProcessRunning(QStringLiteral("mpd"));
    }
    try {
        ConnectToDaemon(address, timeoutMs);
        return true;
    } catch (const VbError&) {
        return false;
    }
}

bool DaemonPlayer::PlayerProcessRuns() const {
    if (m_options.isPlayerRunning) {
        return m_options.isPlayerRunning();
    }
    return IsRunning(m_options.address, m_options.timeoutMs);
}

void DaemonPlayer::TryReconnect() {
    if (m_quit) {
        return;
    }
    try {
        m_session->Disconnect();
        m_watcher.Start();
        m_session->MarkAnswering();
        // The first connection only sets the starting point. After a dropped connection, a change
        // that happened while the link was down (a play command that raced with the reconnection,
        // another client's next) is reported like any other; an unchanged player reports nothing.
        ReadPlayerState(m_connectedBefore);
        m_connectedBefore = true;
    } catch (const VbError&) {
        m_watcher.Stop();
        if (!PlayerProcessRuns()) {
            Quitting();
            return;
        }
        m_reconnectTimer.start();
    }
}

void DaemonPlayer::OnLost() {
    if (m_quitRequested || !PlayerProcessRuns()) {
        Quitting();
        return;
    }
    TryReconnect();
}

void DaemonPlayer::Quitting() {
    if (m_quit) {
        return;
    }
    m_quit = true;
    m_reconnectTimer.stop();
    m_stateRetryTimer.stop();
    m_watcher.Stop();
    m_session->Disconnect();
    Q_EMIT OnQuittingEvent();
}

void DaemonPlayer::OnChanged(unsigned mask) {
    try {
        if (mask & MPD_IDLE_PLAYER) {
            ReadPlayerState(true);
        }
        if (mask & (MPD_IDLE_QUEUE | MPD_IDLE_PLAYER)) {
            // A new entry of a song with a start or finish point, or the entry that just stopped
            // being the current one, gets its range.
            DaemonQueries::ApplyAllRanges(*m_session);
        }
    } catch (const VbError&) {
        // The command connection failed (a command that timed out leaves it broken); the waiting
        // connection tells whether the player left. The change itself is still unreported, and
        // the player will not announce it again: look once the command connection is rebuilt.
        if (mask & MPD_IDLE_PLAYER)
            m_stateRetryTimer.start();
    }
    if (mask & (MPD_IDLE_DATABASE | MPD_IDLE_STORED_PLAYLIST | MPD_IDLE_STICKER)) {
        Q_EMIT OnDatabaseChangedEvent({}, {});
    }
}

void DaemonPlayer::CountPlayOfLeftSong(const DaemonStatus& now) {
    if (!HasSong(m_baseline) || m_baselineUri.isEmpty() ||
        (HasSong(now) && now.songId == m_baseline.songId)) {
        return;
    }
    qint64 heard = m_baseline.elapsedMs;
    if (m_baseline.state == DaemonPlayState::Playing && m_sinceBaseline.isValid()) {
        heard += m_sinceBaseline.elapsed();
    }
    if (m_baselineDurationMs > 0) {
        heard = std::min<qint64>(heard, m_baselineDurationMs);
    }
    const qint64 needed = std::min<qint64>(kPlayedAfterMs, m_baselineDurationMs / 2);
    if (m_baselineDurationMs == 0 || heard < needed) {
        return;
    }
    const std::optional<QString> count =
        DaemonQueries::Sticker(*m_session, m_baselineUri, "playCount");
    const double before = count ? Rules::LeadingNumber(*count) : 0.0;
    DaemonQueries::SetSticker(*m_session, m_baselineUri, "playCount",
                              QString::number(static_cast<qint64>(std::max(before, 0.0)) + 1));
}

void DaemonPlayer::RetryPlayerState() {
    if (m_quit)
        return;
    try {
        ReadPlayerState(true);
    } catch (const VbError&) {
        m_stateRetryTimer.start();
    }
}

void DaemonPlayer::ReadPlayerState(bool report) {
    auto [status, song] = m_session->ReadCurrentSong();
    const DaemonStatus before = m_baseline;
    if (report) {
        try {
            CountPlayOfLeftSong(status);
        } catch (const VbError&) {
            // A daemon without stickers still plays; the count is simply not kept.
        }
    }
    m_baseline = status;
    m_baselineUri = song ? song->uri : QString();
    m_baselineDurationMs = song ? song->durationMs : 0;
    m_sinceBaseline.start();
    if (!report) {
        return;
    }
    std::shared_ptr<IITTrack> track;
    if (song) {
        track = MakeDaemonTrack(m_session, *song, {DaemonTrackPlace::Kind::QueueEntry, {}, -1});
    }
    if (status.state == DaemonPlayState::Playing && before.state != DaemonPlayState::Playing) {
        Q_EMIT OnPlayerPlayEvent(track);
    } else if (status.state == DaemonPlayState::Playing && status.songId != before.songId) {
        Q_EMIT OnPlayerPlayingTrackChangedEvent(track);
    }
    if ((status.state == DaemonPlayState::Stopped || status.state == DaemonPlayState::Paused) &&
        status.state != before.state) {
        Q_EMIT OnPlayerStopEvent(track);
    }
}

template <typename Work> void DaemonPlayer::Command(Work&& work) {
    m_session->Run(std::forward<Work>(work));
}

void DaemonPlayer::PlayPause() {
    // With nothing queued, play means the library, as a player does when nothing is selected.
    const DaemonStatus status = m_session->ReadStatus();
    DaemonQueries::QueueLibraryWhenEmpty(*m_session, status);
    Command([&status](mpd_connection* connection) {
        switch (status.state) {
        case DaemonPlayState::Playing:
            return mpd_run_pause(connection, true);
        case DaemonPlayState::Paused:
            return mpd_run_pause(connection, false);
        default:
            return mpd_run_play(connection);
        }
    });
}

void DaemonPlayer::Play() {
    DaemonQueries::QueueLibraryWhenEmpty(*m_session, m_session->ReadStatus());
    Command([](mpd_connection* connection) { return mpd_run_play(connection); });
}

void DaemonPlayer::Pause() {
    Command([](mpd_connection* connection) { return mpd_run_pause(connection, true); });
}

void DaemonPlayer::Stop() {
    Command([](mpd_connection* connection) { return mpd_run_stop(connection); });
}

void DaemonPlayer::PreviousTrack() {
    Command([](mpd_connection* connection) { return mpd_run_previous(connection); });
}

void DaemonPlayer::NextTrack() {
    Command([](mpd_connection* connection) { return mpd_run_next(connection); });
}

void DaemonPlayer::Quit() {
    m_quitRequested = true;
    try {
        m_session->SendKill();
    } catch (const VbError&) {
        m_quitRequested = false;
        throw;
    }
}

void DaemonPlayer::UpdateIPod() {
    Command([](mpd_connection* connection) { return mpd_run_update(connection, nullptr) != 0; });
}

int DaemonPlayer::SoundVolume() const {
    const int volume =
        m_session->Run([](mpd_connection* connection) { return mpd_run_get_volume(connection); });
    if (volume < 0) {
        throw VbError::Player(QStringLiteral("The player has no volume control"));
    }
    return volume;
}

void DaemonPlayer::SetSoundVolume(int volume) {
    if (volume < 0 || volume > 100) {
        throw VbError::Player(QStringLiteral("Invalid volume value"));
    }
    m_session->Run([volume](mpd_connection* connection) {
        return mpd_run_set_volume(connection, static_cast<unsigned>(volume));
    });
}

int DaemonPlayer::PlayerPosition() const {
    if (!m_session->Position().HasStatus()) {
        m_session->ReadStatus();
    }
    return static_cast<int>(m_session->Position().PositionMs() / 1000);
}

void DaemonPlayer::SetPlayerPosition(int seconds) {
    const float target = static_cast<float>(std::max(seconds, 0));
    m_session->Run([target](mpd_connection* connection) {
        return mpd_run_seek_current(connection, target, false);
    });
    m_session->ReadStatus();
}

std::shared_ptr<IITTrack> DaemonPlayer::CurrentTrack() const {
    auto [status, song] = m_session->ReadCurrentSong();
    if (!song) {
        return nullptr;
    }
    return MakeDaemonTrack(m_session, std::move(*song),
                           {DaemonTrackPlace::Kind::QueueEntry, {}, -1});
}

std::shared_ptr<IITPlaylist> DaemonPlayer::CurrentPlaylist() const {
    return std::make_shared<DaemonPlaylist>(m_session, DaemonPlaylist::Kind::Queue);
}

std::shared_ptr<IITPlaylist> DaemonPlayer::LibraryPlaylist() const {
    return std::make_shared<DaemonPlaylist>(m_session, DaemonPlaylist::Kind::Library);
}

std::shared_ptr<IITSourceCollection> DaemonPlayer::Sources() const {
    return std::make_shared<DaemonCollection<IITSource>>(
        QList<std::shared_ptr<IITSource>>{std::make_shared<DaemonSource>(m_session)});
}

} // namespace Pelorin

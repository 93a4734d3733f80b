#include "support/player/memory/MemoryPlayerState.h"

#include "player/PlayerError.h"
#include "support/player/memory/MemoryPlayer.h"
#include "support/player/memory/MemoryPlaylist.h"
#include "support/player/memory/MemorySource.h"
#include "support/player/memory/MemoryTrack.h"

#include <algorithm>

namespace Pelorin {

MemoryPlayerState::MemoryPlayerState(MemoryPlayer* owner) : m_owner(owner) {
    MemorySourceData library;
    library.name = QStringLiteral("Library");
    auto libraryPlaylist = std::make_shared<MemoryPlaylistData>();
    libraryPlaylist->kind = MemoryPlaylistData::Kind::Library;
    libraryPlaylist->name = QStringLiteral("Library");
    auto queuePlaylist = std::make_shared<MemoryPlaylistData>();
    queuePlaylist->kind = MemoryPlaylistData::Kind::Queue;
    library.playlists = {libraryPlaylist, queuePlaylist};
    m_sources.append(library);
}

void MemoryPlayerState::check(const QString& operation) const {
    ++m_operationCounts[operation];
    if (m_quit)
        throw VbError::Player(QStringLiteral("The player is not running"));
    if (m_refusingCommands)
        throw VbError::Player(QStringLiteral("The player is not accepting commands"));
    const auto failure = m_failures.constFind(operation);
    if (failure != m_failures.constEnd())
        throw *failure;
    if (m_unsupported.contains(operation))
        throw PlayerError::NotSupported(operation.mid(operation.indexOf(QLatin1Char('.')) + 1));
}

int MemoryPlayerState::addLibraryTrack(MemoryTrackData data) {
    const int id = m_nextTrackId++;
    if (data.finish < 0)
        data.finish = data.duration;
    m_library.emplace(id, std::move(data));
    m_libraryOrder.append(id);
    return id;
}

MemoryTrackData& MemoryPlayerState::data(int trackId) {
    const auto found = m_library.find(trackId);
    if (found == m_library.end())
        throw VbError::Player(QStringLiteral("The track is not in the library"));
    return found->second;
}

void MemoryPlayerState::trackChanged(int trackId) {
    if (m_owner)
        m_owner->postDatabaseChangedEvent({}, {trackId});
}

void MemoryPlayerState::enqueue(int trackId) {
    data(trackId);
    m_queue.append({m_nextEntryId++, trackId});
}

int MemoryPlayerState::currentEntryId() const {
    if (m_playState == MemoryPlayState::Stopped || m_current < 0 || m_current >= m_queue.size())
        return 0;
    return m_queue[m_current].entryId;
}

void MemoryPlayerState::startPlaying(int queueIndex) {
    m_current = queueIndex;
    m_position = 0;
    m_playState = MemoryPlayState::Playing;
}

MemoryPlayerState::Snapshot MemoryPlayerState::snapshot() const {
    const int entryId = currentEntryId();
    return {m_playState, entryId, entryId != 0 ? m_queue[m_current].trackId : 0};
}

// Reports a change of playback the way the MPD backend derives events from two status reads.
void MemoryPlayerState::finishTransition(const Snapshot& before) {
    if (!m_owner)
        return;
    if (m_playState == MemoryPlayState::Playing) {
        if (before.state != MemoryPlayState::Playing)
            m_owner->postPlayEvent(currentTrackObject());
        else if (currentEntryId() != before.entryId)
            m_owner->postPlayingTrackChangedEvent(currentTrackObject());
    } else if (m_playState != before.state) {
        std::shared_ptr<IITTrack> stopped;
        if (before.trackId != 0 && hasTrack(before.trackId)) {
            stopped = trackObject(before.trackId,
                                  {MemoryTrackContext::Kind::QueueEntry, before.entryId, nullptr});
        }
        m_owner->postStopEvent(stopped);
    }
}

void MemoryPlayerState::Play() {
    const Snapshot before = snapshot();
    if (m_playState == MemoryPlayState::Paused) {
        m_playState = MemoryPlayState::Playing;
    } else if (m_playState == MemoryPlayState::Stopped && !m_queue.isEmpty()) {
        startPlaying(m_current >= 0 && m_current < m_queue.size() ? m_current : 0);
    }
    finishTransition(before);
}

void MemoryPlayerState::Pause() {
    const Snapshot before = snapshot();
    if (m_playState == MemoryPlayState::Playing)
        m_playState = MemoryPlayState::Paused;
    finishTransition(before);
}

void MemoryPlayerState::PlayPause() {
    if (m_playState == MemoryPlayState::Playing)
        Pause();
    else
        Play();
}

void MemoryPlayerState::Stop() {
    const Snapshot before = snapshot();
    m_playState = MemoryPlayState::Stopped;
    m_position = 0;
    finishTransition(before);
}

void MemoryPlayerState::NextTrack() {
    if (m_playState == MemoryPlayState::Stopped)
        throw VbError::Player(QStringLiteral("Not playing"));
    const Snapshot before = snapshot();
    if (m_current + 1 < m_queue.size()) {
        startPlaying(m_current + 1);
    } else if (m_songRepeat == ITPlaylistRepeatModeAll) {
        startPlaying(0);
    } else {
        m_playState = MemoryPlayState::Stopped;
        m_position = 0;
        m_current = 0;
    }
    finishTransition(before);
}

void MemoryPlayerState::PreviousTrack() {
    if (m_playState == MemoryPlayState::Stopped)
        throw VbError::Player(QStringLiteral("Not playing"));
    const Snapshot before = snapshot();
    startPlaying(m_current > 0 ? m_current - 1 : 0);
    finishTransition(before);
}

void MemoryPlayerState::Quit() {
    m_quit = true;
    m_playState = MemoryPlayState::Stopped;
    m_position = 0;
    if (m_owner)
        m_owner->postQuittingEvent();
}

void MemoryPlayerState::restart() {
    m_quit = false;
    m_playState = MemoryPlayState::Stopped;
    m_position = 0;
}

void MemoryPlayerState::playFrom(const MemoryPlaylistData& playlist) {
    const QList<int> trackIds = playlistTrackIds(playlist);
    if (trackIds.isEmpty())
        throw VbError::Player(QStringLiteral("Bad song index"));
    const Snapshot before = snapshot();
    if (playlist.kind != MemoryPlaylistData::Kind::Queue) {
        m_queue.clear();
        for (int trackId : trackIds)
            m_queue.append({m_nextEntryId++, trackId});
        m_loadedPlaylistName =
            playlist.kind == MemoryPlaylistData::Kind::User ? playlist.name : QString();
    }
    startPlaying(0);
    finishTransition(before);
}

int MemoryPlayerState::position() const {
    return m_playState == MemoryPlayState::Stopped ? 0 : m_position;
}

void MemoryPlayerState::seek(int seconds) {
    if (m_playState == MemoryPlayState::Stopped)
        throw VbError::Player(QStringLiteral("Not playing"));
    const int length = data(m_queue[m_current].trackId).duration;
    m_position = std::clamp(seconds, 0, length);
}

void MemoryPlayerState::setVolume(int volume) {
    if (volume < 0 || volume > 100)
        throw VbError::Player(QStringLiteral("Invalid volume value"));
    m_volume = volume;
}

void MemoryPlayerState::SetSongRepeat(int mode) {
    if (mode < ITPlaylistRepeatModeOff || mode > ITPlaylistRepeatModeAll)
        throw VbError::Player(QStringLiteral("Invalid song repeat mode"));
    m_songRepeat = mode;
}

QString MemoryPlayerState::queueName() const {
    return m_loadedPlaylistName.isEmpty() ? QStringLiteral("Play Queue") : m_loadedPlaylistName;
}

int MemoryPlayerState::addSource(const QString& name) {
    m_sources.append({name, {}});
    return static_cast<int>(m_sources.size());
}

std::shared_ptr<MemoryPlaylistData>
MemoryPlayerState::addUserPlaylist(const QString& name, const QList<int>& trackIds, int source) {
    if (source < 1 || source > m_sources.size())
        throw VbError::SubscriptOutOfRange();
    for (int trackId : trackIds)
        data(trackId);
    auto playlist = std::make_shared<MemoryPlaylistData>();
    playlist->name = name;
    playlist->trackIds = trackIds;
    m_sources[source - 1].playlists.append(playlist);
    return playlist;
}

std::shared_ptr<MemoryPlaylistData> MemoryPlayerState::libraryPlaylistData() const {
    return m_sources.front().playlists.at(0);
}

std::shared_ptr<MemoryPlaylistData> MemoryPlayerState::queuePlaylistData() const {
    return m_sources.front().playlists.at(1);
}

QList<int> MemoryPlayerState::playlistTrackIds(const MemoryPlaylistData& playlist) const {
    switch (playlist.kind) {
    case MemoryPlaylistData::Kind::Library:
        return m_libraryOrder;
    case MemoryPlaylistData::Kind::Queue: {
        QList<int> ids;
        ids.reserve(m_queue.size());
        for (const QueueEntry& entry : m_queue)
            ids.append(entry.trackId);
        return ids;
    }
    case MemoryPlaylistData::Kind::User:
        break;
    }
    return playlist.trackIds;
}

// Removing the entry that plays moves on to the next entry, or stops when none follows or when
// playback was paused, as MPD does.
void MemoryPlayerState::removeQueueEntries(const QSet<int>& entryIds) {
    const Snapshot before = snapshot();
    bool currentRemoved = false;
    for (qsizetype i = m_queue.size() - 1; i >= 0; --i) {
        if (!entryIds.contains(m_queue[i].entryId))
            continue;
        if (i == m_current)
            currentRemoved = true;
        else if (i < m_current)
            --m_current;
        m_queue.removeAt(i);
    }
    if (currentRemoved && m_playState != MemoryPlayState::Stopped) {
        if (m_playState == MemoryPlayState::Playing && m_current < m_queue.size()) {
            startPlaying(m_current);
        } else {
            m_playState = MemoryPlayState::Stopped;
            m_position = 0;
        }
    }
    if (m_current >= m_queue.size())
        m_current = m_queue.isEmpty() ? -1 : 0;
    finishTransition(before);
}

void MemoryPlayerState::deleteQueueEntry(int entryId) {
    for (const QueueEntry& entry : std::as_const(m_queue)) {
        if (entry.entryId == entryId)
            return removeQueueEntries({entryId});
    }
    throw VbError::Player(QStringLiteral("No such song"));
}

void MemoryPlayerState::deleteFromPlaylist(MemoryPlaylistData& playlist, int trackId) {
    if (!playlist.trackIds.removeOne(trackId))
        throw VbError::Player(QStringLiteral("No such song"));
    if (m_owner)
        m_owner->postDatabaseChangedEvent({}, {});
}

// The library is the music folder: deleting a library track takes it out of the queue and every
// user playlist, while the track itself stays known until its file goes.
void MemoryPlayerState::deleteFromLibrary(int trackId) {
    data(trackId);
    QSet<int> entries;
    for (const QueueEntry& entry : std::as_const(m_queue)) {
        if (entry.trackId == trackId)
            entries.insert(entry.entryId);
    }
    removeQueueEntries(entries);
    for (MemorySourceData& source : m_sources) {
        for (const auto& playlist : std::as_const(source.playlists))
            playlist->trackIds.removeAll(trackId);
    }
    if (m_owner)
        m_owner->postDatabaseChangedEvent({trackId}, {});
}

std::shared_ptr<IITTrack> MemoryPlayerState::trackObject(int trackId, MemoryTrackContext context) {
    if (data(trackId).isFile)
        return std::make_shared<MemoryFileTrack>(weak_from_this(), trackId, std::move(context));
    return std::make_shared<MemoryStreamTrack>(weak_from_this(), trackId, std::move(context));
}

std::shared_ptr<IITTrack> MemoryPlayerState::currentTrackObject() {
    const int entryId = currentEntryId();
    if (entryId == 0)
        return nullptr;
    return trackObject(m_queue[m_current].trackId,
                       {MemoryTrackContext::Kind::QueueEntry, entryId, nullptr});
}

std::shared_ptr<IITPlaylist>
MemoryPlayerState::playlistObject(std::shared_ptr<MemoryPlaylistData> playlist) {
    return std::make_shared<MemoryPlaylist>(weak_from_this(), std::move(playlist));
}

std::shared_ptr<IITSource> MemoryPlayerState::sourceObject(int sourceIndex) {
    return std::make_shared<MemorySource>(weak_from_this(), sourceIndex);
}

void MemoryPlayerState::failOperation(const QString& operation, const VbError& error) {
    m_failures.insert(operation, error);
}

void MemoryPlayerState::makeUnsupported(const QString& operation) {
    m_unsupported.insert(operation);
}

void MemoryPlayerState::clearFailures() {
    m_failures.clear();
    m_unsupported.clear();
}

} // namespace Pelorin

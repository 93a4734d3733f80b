#include "support/player/memory/MemoryPlaylist.h"

#include "base/TextRules.h"
#include "support/player/memory/MemoryCollection.h"

#include <QFileInfo>

namespace Pelorin {

namespace {

// The fields of a track that a search in `searchField` looks at.
QStringList SearchedFields(const MemoryTrackData& data, int searchField) {
    switch (searchField) {
    case ITPlaylistSearchFieldArtists:
        return {data.artist, data.albumArtist};
    case ITPlaylistSearchFieldAlbums:
        return {data.album};
    case ITPlaylistSearchFieldComposers:
        return {data.composer};
    case ITPlaylistSearchFieldSongNames:
        return {data.name};
    case ITPlaylistSearchFieldVisible:
        return {data.name, data.artist, data.album, data.composer, data.genre};
    default:
        return {data.name,        data.artist,   data.album,
                data.albumArtist, data.composer, data.genre,
                data.comment,     data.grouping, QFileInfo(data.location).fileName()};
    }
}

bool Matches(const MemoryTrackData& data, const QStringList& words, int searchField) {
    const QStringList fields = SearchedFields(data, searchField);
    for (const QString& word : words) {
        bool found = false;
        for (const QString& field : fields) {
            if (Rules::ContainsIgnoringCase(field, word)) {
                found = true;
                break;
            }
        }
        if (!found)
            return false;
    }
    return true;
}

} // namespace

MemoryPlaylist::MemoryPlaylist(std::weak_ptr<MemoryPlayerState> state,
                               std::shared_ptr<MemoryPlaylistData> playlist)
    : m_state(std::move(state)), m_playlist(std::move(playlist)) {}

std::shared_ptr<MemoryPlayerState> MemoryPlaylist::use(const char* operation) const {
    std::shared_ptr<MemoryPlayerState> state = m_state.lock();
    if (!state)
        throw VbError::Player(QStringLiteral("The player is not running"));
    state->check(QStringLiteral("IITPlaylist.") + QLatin1String(operation));
    return state;
}

QList<MemoryPlaylist::Entry> MemoryPlaylist::entries(const MemoryPlayerState& state) const {
    QList<Entry> entries;
    switch (m_playlist->kind) {
    case MemoryPlaylistData::Kind::Library:
        for (int trackId : state.libraryOrder())
            entries.append(Entry{trackId, {}});
        break;
    case MemoryPlaylistData::Kind::Queue:
        for (const MemoryPlayerState::QueueEntry& entry : state.queue()) {
            entries.append(Entry{entry.trackId,
                                 {MemoryTrackContext::Kind::QueueEntry, entry.entryId, nullptr}});
        }
        break;
    case MemoryPlaylistData::Kind::User:
        for (int trackId : std::as_const(m_playlist->trackIds))
            entries.append(Entry{trackId, {MemoryTrackContext::Kind::Playlist, 0, m_playlist}});
        break;
    }
    return entries;
}

QString MemoryPlaylist::Name() const {
    const std::shared_ptr<MemoryPlayerState> state = use("Name");
    if (m_playlist->kind == MemoryPlaylistData::Kind::Queue)
        return state->queueName();
    return m_playlist->name;
}

std::shared_ptr<IITTrackCollection> MemoryPlaylist::Tracks() const {
    const std::shared_ptr<MemoryPlayerState> state = use("Tracks");
    QList<std::shared_ptr<IITTrack>> tracks;
    for (const Entry& entry : entries(*state))
        tracks.append(state->trackObject(entry.trackId, entry.context));
    return std::make_shared<MemoryCollection<IITTrack>>(m_state, QStringLiteral("IITTrack"),
                                                        std::move(tracks));
}

int MemoryPlaylist::Duration() const {
    const std::shared_ptr<MemoryPlayerState> state = use("Duration");
    int total = 0;
    for (int trackId : state->playlistTrackIds(*m_playlist))
        total += state->data(trackId).duration;
    return total;
}

int MemoryPlaylist::SongRepeat() const {
    return use("SongRepeat")->SongRepeat();
}

void MemoryPlaylist::SetSongRepeat(int mode) {
    use("SetSongRepeat")->SetSongRepeat(mode);
}

bool MemoryPlaylist::Shuffle() const {
    return use("Shuffle")->Shuffle();
}

void MemoryPlaylist::SetShuffle(bool value) {
    use("SetShuffle")->SetShuffle(value);
}

void MemoryPlaylist::PlayFirstTrack() {
    use("PlayFirstTrack")->playFrom(*m_playlist);
}

void MemoryPlaylist::AddTrack(const IITTrack& track) {
    const std::shared_ptr<MemoryPlayerState> state = use("AddTrack");
    if (m_playlist->kind != MemoryPlaylistData::Kind::User) {
        throw VbError::Player(
            QStringLiteral("Tracks cannot be added to \"%1\": it is not a user playlist")
                .arg(Name()));
    }
    const int trackId = track.TrackDatabaseID();
    if (!state->hasTrack(trackId))
        throw VbError::Player(QStringLiteral("The track is not in the library"));
    m_playlist->trackIds.append(trackId);
    state->trackChanged(trackId);
}

std::shared_ptr<IITTrackCollection> MemoryPlaylist::Search(const QString& text,
                                                           int searchField) const {
    const std::shared_ptr<MemoryPlayerState> state = use("Search");
    const QStringList words = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    QList<std::shared_ptr<IITTrack>> found;
    for (const Entry& entry : entries(*state)) {
        if (Matches(state->data(entry.trackId), words, searchField))
            found.append(state->trackObject(entry.trackId, entry.context));
    }
    if (found.isEmpty())
        return nullptr;
    return std::make_shared<MemoryCollection<IITTrack>>(m_state, QStringLiteral("IITTrack"),
                                                        std::move(found));
}

} // namespace Pelorin

#include "player/daemon/DaemonPlaylist.h"

#include "base/VbError.h"
#include "player/daemon/DaemonCollection.h"
#include "player/daemon/DaemonQueries.h"
#include "player/daemon/DaemonSession.h"
#include "player/daemon/DaemonTrack.h"

#include <QSet>
#include <mpd/client.h>

namespace Pelorin {

namespace {

DaemonQueries::SearchScope ScopeOf(int searchField) {
    switch (searchField) {
    case ITPlaylistSearchFieldArtists:
        return DaemonQueries::SearchScope::Artist;
    case ITPlaylistSearchFieldAlbums:
        return DaemonQueries::SearchScope::Album;
    case ITPlaylistSearchFieldComposers:
        return DaemonQueries::SearchScope::Composer;
    case ITPlaylistSearchFieldSongNames:
        return DaemonQueries::SearchScope::Title;
    default:
        return DaemonQueries::SearchScope::AnyTagOrFileName;
    }
}

} // namespace

DaemonPlaylist::DaemonPlaylist(std::weak_ptr<DaemonSession> session, Kind kind, QString storedName)
    : m_session(std::move(session)), m_kind(kind), m_storedName(std::move(storedName)) {}

std::shared_ptr<DaemonSession> DaemonPlaylist::Use() const {
    std::shared_ptr<DaemonSession> session = m_session.lock();
    if (!session) {
        throw VbError::Player(QStringLiteral("The player is not running"));
    }
    return session;
}

QString DaemonPlaylist::Name() const {
    const std::shared_ptr<DaemonSession> session = Use();
    switch (m_kind) {
    case Kind::Library:
        return QStringLiteral("Library");
    case Kind::Queue:
        return session->LoadedPlaylistName().isEmpty() ? QStringLiteral("Play Queue")
                                                       : session->LoadedPlaylistName();
    case Kind::Stored:
        break;
    }
    return m_storedName;
}

std::shared_ptr<IITTrackCollection> DaemonPlaylist::Tracks() const {
    const std::shared_ptr<DaemonSession> session = Use();
    QList<std::shared_ptr<IITTrack>> tracks;
    switch (m_kind) {
    case Kind::Library:
        for (SongInfo& song : DaemonQueries::Library(*session)) {
            tracks.append(MakeDaemonTrack(session, std::move(song), {}));
        }
        break;
    case Kind::Queue:
        for (SongInfo& song : DaemonQueries::Queue(*session)) {
            tracks.append(MakeDaemonTrack(session, std::move(song),
                                          {DaemonTrackPlace::Kind::QueueEntry, {}, -1}));
        }
        break;
    case Kind::Stored: {
        int position = 0;
        for (SongInfo& song : DaemonQueries::StoredPlaylist(*session, m_storedName)) {
            tracks.append(MakeDaemonTrack(
                session, std::move(song),
                {DaemonTrackPlace::Kind::StoredPlaylist, m_storedName, position++}));
        }
        break;
    }
    }
    return std::make_shared<DaemonCollection<IITTrack>>(std::move(tracks));
}

int DaemonPlaylist::Duration() const {
    const std::shared_ptr<IITTrackCollection> tracks = Tracks();
    int seconds = 0;
    for (int i = 1; i <= tracks->Count(); ++i) {
        seconds += tracks->Item(i)->Duration();
    }
    return seconds;
}

int DaemonPlaylist::SongRepeat() const {
    const DaemonStatus status = Use()->ReadStatus();
    if (!status.repeat) {
        return ITPlaylistRepeatModeOff;
    }
    return status.single ? ITPlaylistRepeatModeOne : ITPlaylistRepeatModeAll;
}

void DaemonPlaylist::SetSongRepeat(int mode) {
    if (mode < ITPlaylistRepeatModeOff || mode > ITPlaylistRepeatModeAll) {
        throw VbError::Player(QStringLiteral("Invalid song repeat mode"));
    }
    const bool repeat = mode != ITPlaylistRepeatModeOff;
    const bool single = mode == ITPlaylistRepeatModeOne;
    Use()->Run([repeat, single](mpd_connection* connection) {
        if (mpd_command_list_begin(connection, false) && mpd_send_repeat(connection, repeat) &&
            mpd_send_single(connection, single) && mpd_command_list_end(connection)) {
            mpd_response_finish(connection);
        }
        return true;
    });
}

bool DaemonPlaylist::Shuffle() const {
    return Use()->ReadStatus().random;
}

void DaemonPlaylist::SetShuffle(bool value) {
    Use()->Run([value](mpd_connection* connection) { return mpd_run_random(connection, value); });
}

void DaemonPlaylist::PlayFirstTrack() {
    const std::shared_ptr<DaemonSession> session = Use();
    const QByteArray name = m_storedName.toUtf8();
    const Kind kind = m_kind;
    session->Run([kind, &name](mpd_connection* connection) {
        if (kind == Kind::Queue) {
            return mpd_run_play_pos(connection, 0);
        }
        if (mpd_command_list_begin(connection, false) && mpd_send_clear(connection) &&
            (kind == Kind::Library ? mpd_send_add(connection, "")
                                   : mpd_send_load(connection, name.constData())) &&
            mpd_send_play_pos(connection, 0) && mpd_command_list_end(connection)) {
            mpd_response_finish(connection);
        }
        return true;
    });
    if (kind == Kind::Stored) {
        session->SetLoadedPlaylistName(m_storedName);
    } else if (kind == Kind::Library) {
        session->SetLoadedPlaylistName(QString());
    }
}

void DaemonPlaylist::AddTrack(const IITTrack& track) {
    const std::shared_ptr<DaemonSession> session = Use();
    if (m_kind != Kind::Stored) {
        throw VbError::Player(
            QStringLiteral("Tracks cannot be added to \"%1\": it is not a user playlist")
                .arg(Name()));
    }
    const auto* song = dynamic_cast<const DaemonSongObject*>(&track);
    if (!song) {
        throw VbError::Player(QStringLiteral("The track is not in the library"));
    }
    const QByteArray name = m_storedName.toUtf8();
    const QByteArray uri = song->Uri().toUtf8();
    session->Run([&name, &uri](mpd_connection* connection) {
        return mpd_run_playlist_add(connection, name.constData(), uri.constData());
    });
}

std::shared_ptr<IITTrackCollection> DaemonPlaylist::Search(const QString& text,
                                                           int searchField) const {
    const std::shared_ptr<DaemonSession> session = Use();
    const QList<SongInfo> found = DaemonQueries::Search(*session, text, ScopeOf(searchField));
    QList<std::shared_ptr<IITTrack>> tracks;
    if (m_kind == Kind::Library) {
        for (const SongInfo& song : found) {
            tracks.append(MakeDaemonTrack(session, song, {}));
        }
    } else {
        // Keep this list's own entries, in its order, so Delete removes them from it.
        QSet<QString> uris;
        for (const SongInfo& song : found) {
            uris.insert(song.uri);
        }
        const std::shared_ptr<IITTrackCollection> own = Tracks();
        for (int i = 1; i <= own->Count(); ++i) {
            std::shared_ptr<IITTrack> track = own->Item(i);
            if (uris.contains(dynamic_cast<const DaemonSongObject&>(*track).Uri())) {
                tracks.append(std::move(track));
            }
        }
    }
    if (tracks.isEmpty()) {
        return nullptr;
    }
    return std::make_shared<DaemonCollection<IITTrack>>(std::move(tracks));
}

DaemonSource::DaemonSource(std::weak_ptr<DaemonSession> session) : m_session(std::move(session)) {}

QString DaemonSource::Name() const {
    return QStringLiteral("Library");
}

std::shared_ptr<IITPlaylistCollection> DaemonSource::Playlists() const {
    const std::shared_ptr<DaemonSession> session = m_session.lock();
    if (!session) {
        throw VbError::Player(QStringLiteral("The player is not running"));
    }
    QList<std::shared_ptr<IITPlaylist>> playlists{
        std::make_shared<DaemonPlaylist>(session, DaemonPlaylist::Kind::Library),
        std::make_shared<DaemonPlaylist>(session, DaemonPlaylist::Kind::Queue)};
    for (const QString& name : DaemonQueries::StoredPlaylistNames(*session)) {
        playlists.append(
            std::make_shared<DaemonPlaylist>(session, DaemonPlaylist::Kind::Stored, name));
    }
    return std::make_shared<DaemonCollection<IITPlaylist>>(std::move(playlists));
}

} // namespace Pelorin

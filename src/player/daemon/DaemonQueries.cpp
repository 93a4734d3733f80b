#include "player/daemon/DaemonQueries.h"

#include "base/TextRules.h"
#include "player/PlayerError.h"
#include "player/daemon/DaemonSession.h"

#include <QSet>
#include <algorithm>
#include <mpd/client.h>

namespace Pelorin::DaemonQueries {

namespace {

// Setting a value that only a sticker database can hold, on a daemon without one.
void RequireStickers(DaemonSession& session, const char* name) {
    if (session.HasStickers())
        return;
    const QLatin1String sticker(name);
    const QString what = sticker == QLatin1String("rating") ? QStringLiteral("ratings")
                         : sticker == QLatin1String("playCount")
                             ? QStringLiteral("play counts")
                             : QStringLiteral("start and finish points");
    throw PlayerError::NotSupported(what + QStringLiteral(" without a sticker database"));
}

constexpr const char* kSongType = "song";

// Songs answered to a command already sent; finishes the response.
QList<SongInfo> ReceiveSongs(mpd_connection* connection) {
    QList<SongInfo> songs;
    while (mpd_song* song = mpd_recv_song(connection)) {
        songs.append(SongInfo::From(song));
        mpd_song_free(song);
    }
    mpd_response_finish(connection);
    return songs;
}

// A value inside a filter expression: quoted, with the expression language's escapes.
QString FilterValue(const QString& value) {
    QString escaped = value;
    escaped.replace(u'\\', QStringLiteral("\\\\"));
    escaped.replace(u'\'', QStringLiteral("\\'"));
    return u'\'' + escaped + u'\'';
}

QString WordExpression(const QString& word, SearchScope scope) {
    const QString value = FilterValue(word);
    switch (scope) {
    case SearchScope::AnyTagOrFileName:
        // The expression language has no OR; "not (neither a tag nor the file name)" is one.
        return QStringLiteral("(!((!(any contains %1)) AND (!(file contains %1))))").arg(value);
    case SearchScope::Artist:
        return QStringLiteral("(artist contains %1)").arg(value);
    case SearchScope::Album:
        return QStringLiteral("(album contains %1)").arg(value);
    case SearchScope::Composer:
        return QStringLiteral("(composer contains %1)").arg(value);
    case SearchScope::Title:
        return QStringLiteral("(title contains %1)").arg(value);
    }
    return QString();
}

} // namespace

QList<SongInfo> Queue(DaemonSession& session) {
    return session.Run([](mpd_connection* connection) {
        if (!mpd_send_list_queue_meta(connection)) {
            return QList<SongInfo>();
        }
        return ReceiveSongs(connection);
    });
}

QList<SongInfo> Library(DaemonSession& session) {
    return session.Run([](mpd_connection* connection) {
        QList<SongInfo> songs;
        if (!mpd_send_list_all_meta(connection, "")) {
            return songs;
        }
        while (mpd_entity* entity = mpd_recv_entity(connection)) {
            if (mpd_entity_get_type(entity) == MPD_ENTITY_TYPE_SONG) {
                songs.append(SongInfo::From(mpd_entity_get_song(entity)));
            }
            mpd_entity_free(entity);
        }
        mpd_response_finish(connection);
        return songs;
    });
}

bool QueueLibraryWhenEmpty(DaemonSession& session, const DaemonStatus& status) {
    if (status.queueLength > 0)
        return false;
    QList<SongInfo> songs = Library(session);
    if (songs.isEmpty())
        return false;
    const auto number = [](const SongInfo& song, mpd_tag_type tag) {
        const double value = Rules::LeadingNumber(song.Tag(tag));
        return value > 0 && value < 1e9 ? static_cast<int>(value) : 0;
    };
    const auto albumArtist = [](const SongInfo& song) {
        const QString artist = song.Tag(MPD_TAG_ALBUM_ARTIST);
        return artist.isEmpty() ? song.Tag(MPD_TAG_ARTIST) : artist;
    };
    std::stable_sort(songs.begin(), songs.end(), [&](const SongInfo& a, const SongInfo& b) {
        const int byArtist = QString::compare(albumArtist(a), albumArtist(b), Qt::CaseInsensitive);
        if (byArtist != 0)
            return byArtist < 0;
        const int byAlbum =
            QString::compare(a.Tag(MPD_TAG_ALBUM), b.Tag(MPD_TAG_ALBUM), Qt::CaseInsensitive);
        if (byAlbum != 0)
            return byAlbum < 0;
        if (number(a, MPD_TAG_DISC) != number(b, MPD_TAG_DISC))
            return number(a, MPD_TAG_DISC) < number(b, MPD_TAG_DISC);
        if (number(a, MPD_TAG_TRACK) != number(b, MPD_TAG_TRACK))
            return number(a, MPD_TAG_TRACK) < number(b, MPD_TAG_TRACK);
        return a.uri < b.uri;
    });
    QList<QByteArray> uris;
    uris.reserve(songs.size());
    for (const SongInfo& song : songs)
        uris.append(song.uri.toUtf8());
    session.Run([&uris](mpd_connection* connection) {
        bool sent = mpd_command_list_begin(connection, false);
        for (const QByteArray& uri : uris)
            sent = sent && mpd_send_add(connection, uri.constData());
        sent = sent && mpd_command_list_end(connection);
        return sent && mpd_response_finish(connection);
    });
    return true;
}

QStringList StoredPlaylistNames(DaemonSession& session) {
    QStringList names = session.Run([](mpd_connection* connection) {
        QStringList result;
        if (!mpd_send_list_playlists(connection)) {
            return result;
        }
        while (mpd_playlist* playlist = mpd_recv_playlist(connection)) {
            result.append(QString::fromUtf8(mpd_playlist_get_path(playlist)));
            mpd_playlist_free(playlist);
        }
        mpd_response_finish(connection);
        return result;
    });
    // The daemon lists them in folder order; users find them by name.
    names.sort(Qt::CaseInsensitive);
    return names;
}

QList<SongInfo> StoredPlaylist(DaemonSession& session, const QString& name) {
    const QByteArray playlist = name.toUtf8();
    return session.Run([&playlist](mpd_connection* connection) {
        if (!mpd_send_list_playlist_meta(connection, playlist.constData())) {
            return QList<SongInfo>();
        }
        return ReceiveSongs(connection);
    });
}

QString SearchExpression(const QString& text, SearchScope scope) {
    const QStringList words = text.split(u' ', Qt::SkipEmptyParts);
    QStringList expressions;
    for (const QString& word : words) {
        expressions.append(WordExpression(word, scope));
    }
    if (expressions.size() == 1) {
        return expressions.first();
    }
    return u'(' + expressions.join(QStringLiteral(" AND ")) + u')';
}

QList<SongInfo> Search(DaemonSession& session, const QString& text, SearchScope scope) {
    const QString expression = SearchExpression(text, scope);
    if (expression.isEmpty()) {
        return Library(session);
    }
    const QByteArray filter = expression.toUtf8();
    return session.Run([&filter](mpd_connection* connection) {
        if (!mpd_search_db_songs(connection, false) ||
            !mpd_search_add_expression(connection, filter.constData()) ||
            !mpd_search_commit(connection)) {
            mpd_search_cancel(connection);
            return QList<SongInfo>();
        }
        return ReceiveSongs(connection);
    });
}

std::optional<QString> Sticker(DaemonSession& session, const QString& uri, const char* name) {
    // Without a sticker database nothing is stored: the value reads as not set.
    if (!session.HasStickers())
        return std::nullopt;
    const QByteArray song = uri.toUtf8();
    return session.Run([&song, name](mpd_connection* connection) {
        std::optional<QString> value;
        if (mpd_send_sticker_get(connection, kSongType, song.constData(), name)) {
            if (mpd_pair* pair = mpd_recv_sticker(connection)) {
                value = QString::fromUtf8(pair->value);
                mpd_return_sticker(connection, pair);
            }
            mpd_response_finish(connection);
        }
        if (mpd_connection_get_error(connection) == MPD_ERROR_SERVER &&
            mpd_connection_get_server_error(connection) == MPD_SERVER_ERROR_NO_EXIST) {
            mpd_connection_clear_error(connection);
        }
        return value;
    });
}

void SetSticker(DaemonSession& session, const QString& uri, const char* name,
                const QString& value) {
    RequireStickers(session, name);
    const QByteArray song = uri.toUtf8();
    const QByteArray text = value.toUtf8();
    session.Run([&song, &text, name](mpd_connection* connection) {
        return mpd_run_sticker_set(connection, kSongType, song.constData(), name, text.constData());
    });
}

void DeleteSticker(DaemonSession& session, const QString& uri, const char* name) {
    RequireStickers(session, name);
    const QByteArray song = uri.toUtf8();
    session.Run([&song, name](mpd_connection* connection) {
        const bool done = mpd_run_sticker_delete(connection, kSongType, song.constData(), name);
        if (!done && mpd_connection_get_error(connection) == MPD_ERROR_SERVER &&
            mpd_connection_get_server_error(connection) == MPD_SERVER_ERROR_NO_EXIST) {
            mpd_connection_clear_error(connection);
        }
        return done;
    });
}

QStringList SongsWithSticker(DaemonSession& session, const char* name) {
    if (!session.HasStickers())
        return {};
    return session.Run([name](mpd_connection* connection) {
        QStringList uris;
        if (!mpd_send_sticker_find(connection, kSongType, "", name)) {
            return uris;
        }
        while (mpd_pair* pair = mpd_recv_pair(connection)) {
            if (qstrcmp(pair->name, "file") == 0) {
                uris.append(QString::fromUtf8(pair->value));
            }
            mpd_return_pair(connection, pair);
        }
        mpd_response_finish(connection);
        return uris;
    });
}

void ApplyRanges(DaemonSession& session, const QStringList& uris) {
    if (uris.isEmpty()) {
        return;
    }
    const QSet<QString> wanted(uris.begin(), uris.end());
    const DaemonStatus status = session.ReadStatus();
    const bool hasCurrent =
        status.state == DaemonPlayState::Playing || status.state == DaemonPlayState::Paused;
    QHash<QString, std::pair<unsigned, unsigned>> ranges;
    for (const SongInfo& entry : Queue(session)) {
        if (!wanted.contains(entry.uri) || (hasCurrent && entry.id == status.songId)) {
            continue;
        }
        if (!ranges.contains(entry.uri)) {
            const auto seconds = [&](const char* name) {
                const std::optional<QString> value = Sticker(session, entry.uri, name);
                const double number = value ? Rules::LeadingNumber(*value) : 0.0;
                // A sticker any client may have written: beyond a range the daemon can hold
                // (in milliseconds) it counts as none.
                return number > 0 && number < 4294967.0 ? static_cast<unsigned>(number) : 0u;
            };
            ranges.insert(entry.uri, {seconds("start"), seconds("finish")});
        }
        const auto [start, finish] = ranges.value(entry.uri);
        if (entry.rangeStartMs == start * 1000 && entry.rangeEndMs == finish * 1000) {
            continue;
        }
        const unsigned id = entry.id;
        session.Run([id, start = start, finish = finish](mpd_connection* connection) {
            return mpd_run_range_id(connection, id, static_cast<float>(start),
                                    finish > 0 ? static_cast<float>(finish) : -1.0f);
        });
    }
}

void ApplyAllRanges(DaemonSession& session) {
    QStringList uris = SongsWithSticker(session, "start");
    uris += SongsWithSticker(session, "finish");
    uris.removeDuplicates();
    ApplyRanges(session, uris);
}

} // namespace Pelorin::DaemonQueries

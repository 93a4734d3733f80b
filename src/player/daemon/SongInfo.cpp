#include "player/daemon/SongInfo.h"

#include <QByteArray>
#include <mpd/song.h>
#include <mpd/tag.h>

namespace Pelorin {

SongInfo SongInfo::From(const mpd_song* song) {
    SongInfo info;
    info.uri = QString::fromUtf8(mpd_song_get_uri(song));
    for (int type = 0; type < MPD_TAG_COUNT; ++type) {
        if (const char* value = mpd_song_get_tag(song, static_cast<mpd_tag_type>(type), 0)) {
            info.tags.insert(type, QString::fromUtf8(value));
        }
    }
    info.durationMs = mpd_song_get_duration_ms(song);
    info.id = mpd_song_get_id(song);
    info.position = info.id != 0 ? static_cast<int>(mpd_song_get_pos(song)) : -1;
    info.rangeStartMs = mpd_song_get_start(song) * 1000;
    info.rangeEndMs = mpd_song_get_end(song) * 1000;
    return info;
}

bool SongInfo::IsRemote() const {
    return uri.contains(QLatin1String("://"));
}

int SongDatabaseId(const QString& uri) {
    // FNV-1a over the UTF-8 bytes: fixed by definition, unlike qHash, which is seeded per run.
    quint32 hash = 2166136261u;
    for (const char byte : uri.toUtf8()) {
        hash ^= static_cast<unsigned char>(byte);
        hash *= 16777619u;
    }
    const int id = static_cast<int>(hash & 0x7fffffffu);
    return id == 0 ? 1 : id;
}

} // namespace Pelorin

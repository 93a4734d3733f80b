#pragma once

#include <QHash>
#include <QString>

struct mpd_song;

namespace Pelorin {

// One song as the daemon listed it: its URI, tags, length and, for a queue entry, its id, place
// and range. A plain copy, so track objects need no connection to read it.
struct SongInfo {
    QString uri;
    // The first value of each tag the song has, by mpd_tag_type.
    QHash<int, QString> tags;
    unsigned durationMs = 0;
    // Queue entries only: id (never 0 for an entry), position and the range it plays.
    unsigned id = 0;
    int position = -1;
    unsigned rangeStartMs = 0;
    unsigned rangeEndMs = 0;

    static SongInfo From(const mpd_song* song);

    QString Tag(int type) const { return tags.value(type); }
    // A song the daemon streams from elsewhere ("http://..."), not a file of its music folder.
    bool IsRemote() const;
};

// A stable, non-zero, 31-bit identity for the song at `uri`: the same in every run and wherever
// the song is listed.
int SongDatabaseId(const QString& uri);

} // namespace Pelorin

#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace Pelorin {

// Everything the in-memory player knows about one library track.
struct MemoryTrackData {
    QString name;
    QString artist;
    QString album;
    QString albumArtist;
    QString composer;
    QString genre;
    QString comment;
    QString grouping;
    int trackNumber = 0;
    int discNumber = 0;
    int year = 0;
    int bpm = 0;
    bool compilation = false;
    int duration = 0; // seconds
    int bitRate = 0;  // kbit/s
    int rating = 0;   // 0..100
    int playedCount = 0;
    int start = 0;   // seconds
    int finish = -1; // seconds; -1 stands for the track's length
    int volumeAdjustment = 0;
    // A file track is an IITFileOrCDTrack with this location; any other is a stream.
    bool isFile = true;
    QString location;
    QList<QByteArray> artwork; // the first is the front cover
};

} // namespace Pelorin

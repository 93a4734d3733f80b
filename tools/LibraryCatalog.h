#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace Pelorin {

// What the generated music libraries hold. The generator writes exactly this and the player
// tests read it back, so a test can name a track, tag or playlist without repeating it.
enum class LibraryKind { Demo, Test };

enum class CoverFormat { Jpeg, Png };

// How a track sounds: a plain sine tone (test library) or an arpeggiated chord progression
// (demo library).
struct ToneSpec {
    double frequency = 440.0; // sine tone; 0 for a progression
    int rootMidiNote = 60;    // progression key
    QList<QList<int>> chords; // semitones above the root, one chord per bar
    int beatsPerBar = 4;
    double beatsPerMinute = 90.0;
    int notesPerBeat = 2;
};

struct TrackSpec {
    QString uri; // path relative to the library root, with "/"
    bool tagged = true;
    QString title;
    QString artist;
    QString album;
    QString albumArtist;
    QString comment;
    QString genre;
    QString composer;
    QString trackNumber; // as written, e.g. "2" or "2/3"
    int year = 0;
    int bpm = 0;
    bool compilation = false;
    int embeddedCover = -1; // cover style, -1 for none
    CoverFormat coverFormat = CoverFormat::Jpeg;
    double seconds = 6.0;
    ToneSpec tone;
};

// A picture file beside the tracks (for example "cover.jpg"), not embedded in any of them.
struct FolderCover {
    QString path; // relative to the library root
    int style = 0;
};

struct StoredPlaylist {
    QString name;     // without ".m3u"
    QStringList uris; // library URIs in order
};

struct LibraryCatalog {
    QList<TrackSpec> tracks;
    QList<FolderCover> folderCovers;
    QList<StoredPlaylist> playlists;

    // The track with this URI; nullptr when there is none.
    const TrackSpec* Find(const QString& uri) const;
    // The URIs of every track whose album is `album`, in catalogue order.
    QStringList AlbumUris(const QString& album) const;
};

LibraryCatalog DemoLibraryCatalog();
LibraryCatalog TestLibraryCatalog();
LibraryCatalog CatalogFor(LibraryKind kind);

// The name of the marker file the generator leaves in a finished library. Hidden, so the
// player does not list it.
QString LibraryMarkerName();

} // namespace Pelorin

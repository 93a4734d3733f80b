#include "LibraryCatalog.h"

#include <cmath>

namespace Pelorin {

namespace {

// Semitone steps of a tone in the test library, so every track sounds different.
double TestTone(int index) {
    return 220.0 * std::pow(2.0, index / 12.0);
}

struct AlbumInfo {
    QString folder;
    QString album;
    QString albumArtist;
    QString genre;
    int year = 0;
    int cover = -1;
    CoverFormat coverFormat = CoverFormat::Jpeg;
    QString extension;
};

TrackSpec AlbumTrack(const AlbumInfo& info, int number, const QString& title) {
    TrackSpec track;
    track.title = title;
    track.artist = info.albumArtist;
    track.album = info.album;
    track.albumArtist = info.albumArtist;
    track.genre = info.genre;
    track.year = info.year;
    track.trackNumber = QString::number(number);
    track.embeddedCover = info.cover;
    track.coverFormat = info.coverFormat;
    track.uri = QStringLiteral("%1/%2 %3.%4")
                    .arg(info.folder, QString::number(number).rightJustified(2, u'0'), title,
                         info.extension);
    return track;
}

} // namespace

const TrackSpec* LibraryCatalog::Find(const QString& uri) const {
    for (const TrackSpec& track : tracks) {
        if (track.uri == uri) {
            return &track;
        }
    }
    return nullptr;
}

QStringList LibraryCatalog::AlbumUris(const QString& album) const {
    QStringList uris;
    for (const TrackSpec& track : tracks) {
        if (track.tagged && track.album == album) {
            uris.append(track.uri);
        }
    }
    return uris;
}

QString LibraryMarkerName() {
    return QStringLiteral(".pelorin-library");
}

LibraryCatalog TestLibraryCatalog() {
    LibraryCatalog catalog;
    auto add = [&catalog](TrackSpec track) {
        track.seconds = 6.0;
        track.tone.frequency = TestTone(static_cast<int>(catalog.tracks.size()));
        catalog.tracks.append(track);
    };

    // Vorbis with an embedded PNG front cover; one title outside ASCII.
    const AlbumInfo sunrise{QStringLiteral("Aurora Quartet/Sunrise Sessions"),
                            QStringLiteral("Sunrise Sessions"),
                            QStringLiteral("Aurora Quartet"),
                            QStringLiteral("Jazz"),
                            2001,
                            0,
                            CoverFormat::Png,
                            QStringLiteral("ogg")};
    TrackSpec track = AlbumTrack(sunrise, 1, QStringLiteral("Morning Light"));
    track.composer = QStringLiteral("Ada Lind");
    track.bpm = 96;
    track.comment = QStringLiteral("Recorded at dawn");
    add(track);
    track = AlbumTrack(sunrise, 2, QStringLiteral("Blue Hour"));
    track.composer = QStringLiteral("Ada Lind");
    track.bpm = 80;
    track.comment = QStringLiteral("Brushes only");
    add(track);
    track = AlbumTrack(sunrise, 3, QStringLiteral("Caf\u00e9 Terrace"));
    track.composer = QStringLiteral("Jon Varga");
    track.bpm = 120;
    add(track);

    // FLAC with an embedded JPEG front cover.
    const AlbumInfo night{QStringLiteral("Neon Harbor/Night Drive"),
                          QStringLiteral("Night Drive"),
                          QStringLiteral("Neon Harbor"),
                          QStringLiteral("Electronic"),
                          2015,
                          1,
                          CoverFormat::Jpeg,
                          QStringLiteral("flac")};
    track = AlbumTrack(night, 1, QStringLiteral("Headlights"));
    track.bpm = 128;
    track.composer = QStringLiteral("Mara Quell");
    track.comment = QStringLiteral("Extended cut");
    add(track);
    track = AlbumTrack(night, 2, QStringLiteral("Tunnel Vision"));
    track.bpm = 124;
    track.composer = QStringLiteral("Mara Quell");
    add(track);
    track = AlbumTrack(night, 3, QStringLiteral("Last Exit"));
    track.bpm = 110;
    track.composer = QStringLiteral("Mara Quell");
    add(track);

    // MP3 (ID3v2) with an embedded JPEG front cover; track numbers written as "n/total".
    const AlbumInfo boats{QStringLiteral("Cedar Lane/Paper Boats"),
                          QStringLiteral("Paper Boats"),
                          QStringLiteral("Cedar Lane"),
                          QStringLiteral("Folk"),
                          1998,
                          2,
                          CoverFormat::Jpeg,
                          QStringLiteral("mp3")};
    const QStringList boatTitles{QStringLiteral("River Song"), QStringLiteral("Lanterns"),
                                 QStringLiteral("Paper Boats")};
    for (int i = 0; i < boatTitles.size(); ++i) {
        track = AlbumTrack(boats, i + 1, boatTitles[i]);
        track.trackNumber = QStringLiteral("%1/3").arg(i + 1);
        track.composer = QStringLiteral("Ines Holm");
        track.bpm = 70 + 10 * i;
        track.comment = i == 0 ? QStringLiteral("First take") : QString();
        add(track);
    }

    // A compilation in three formats whose cover is a "cover.jpg" in its folder.
    const AlbumInfo summer{QStringLiteral("Various Artists/Summer Mix"),
                           QStringLiteral("Summer Mix"),
                           QStringLiteral("Various Artists"),
                           QStringLiteral("Pop"),
                           2020,
                           -1,
                           CoverFormat::Jpeg,
                           QString()};
    const QStringList summerTitles{QStringLiteral("Sea Breeze"), QStringLiteral("Sandcastles"),
                                   QStringLiteral("Heatwave")};
    const QStringList summerArtists{QStringLiteral("Coral Bay"), QStringLiteral("Mira Stone"),
                                    QStringLiteral("The Dune Riders")};
    const QStringList summerFormats{QStringLiteral("ogg"), QStringLiteral("flac"),
                                    QStringLiteral("mp3")};
    for (int i = 0; i < summerTitles.size(); ++i) {
        AlbumInfo info = summer;
        info.extension = summerFormats[i];
        track = AlbumTrack(info, i + 1, summerTitles[i]);
        track.artist = summerArtists[i];
        track.compilation = true;
        track.bpm = 100 + i;
        add(track);
    }
    catalog.folderCovers.append({QStringLiteral("Various Artists/Summer Mix/cover.jpg"), 4});

    // The only tracks with both "Velvet" and "Orbit" in their tags, found together by a search
    // for those two words.
    const AlbumInfo orbit{QStringLiteral("Velvet Comet/Orbit Songs"),
                          QStringLiteral("Orbit Songs"),
                          QStringLiteral("Velvet Comet"),
                          QStringLiteral("Rock"),
                          2010,
                          3,
                          CoverFormat::Png,
                          QStringLiteral("ogg")};
    track = AlbumTrack(orbit, 1, QStringLiteral("Liftoff"));
    track.bpm = 140;
    add(track);
    track = AlbumTrack(orbit, 2, QStringLiteral("Zero Gravity"));
    track.bpm = 90;
    add(track);

    // No tags at all: the player knows it only by its file name.
    TrackSpec untagged;
    untagged.uri = QStringLiteral("Unsorted/untagged.ogg");
    untagged.tagged = false;
    add(untagged);

    catalog.playlists.append(
        {QStringLiteral("Favourites"),
         {catalog.tracks[0].uri, catalog.tracks[4].uri, catalog.tracks[7].uri}});
    catalog.playlists.append({QStringLiteral("Road Trip"),
                              {catalog.tracks[3].uri, catalog.tracks[9].uri, catalog.tracks[12].uri,
                               catalog.tracks[5].uri}});
    return catalog;
}

LibraryCatalog DemoLibraryCatalog() {
    LibraryCatalog catalog;
    struct DemoTrack {
        AlbumInfo info;
        QString title;
        int root;
        QList<QList<int>> chords;
        int beatsPerBar;
        double tempo;
        int notesPerBeat;
    };
    const AlbumInfo light{QStringLiteral("Lantern Ensemble/First Light"),
                          QStringLiteral("First Light"),
                          QStringLiteral("Lantern Ensemble"),
                          QStringLiteral("Ambient"),
                          2024,
                          5,
                          CoverFormat::Jpeg,
                          QStringLiteral("ogg")};
    const AlbumInfo tides{QStringLiteral("Harbor Lights/Evening Tides"),
                          QStringLiteral("Evening Tides"),
                          QStringLiteral("Harbor Lights"),
                          QStringLiteral("Chillout"),
                          2023,
                          6,
                          CoverFormat::Png,
                          QStringLiteral("flac")};
    const AlbumInfo hours{QStringLiteral("Aurora Trio/Small Hours"),
                          QStringLiteral("Small Hours"),
                          QStringLiteral("Aurora Trio"),
                          QStringLiteral("Jazz"),
                          2022,
                          -1,
                          CoverFormat::Jpeg,
                          QStringLiteral("mp3")};
    // Chords in semitones above the key's root: I, V, vi, IV and friends.
    const QList<int> I{0, 4, 7, 12}, V{-5, -1, 2, 7}, vi{-3, 0, 4, 9}, IV{-7, -3, 0, 5},
        ii{2, 5, 9, 14}, iii{4, 7, 11, 16}, Imaj7{0, 4, 7, 11}, IVmaj7{5, 9, 12, 16};
    const QList<DemoTrack> demo{
        {light, QStringLiteral("Dawn Chorus"), 60, {I, V, vi, IV}, 4, 84, 2},
        {light, QStringLiteral("Glass Garden"), 57, {vi, IV, I, V}, 4, 96, 2},
        {tides, QStringLiteral("Slow Tide"), 55, {Imaj7, IVmaj7, iii, ii}, 4, 72, 2},
        {tides, QStringLiteral("Lighthouse"), 62, {I, vi, ii, V}, 4, 100, 2},
        {hours, QStringLiteral("Midnight Waltz"), 58, {I, vi, ii, V}, 3, 66, 2},
        {hours, QStringLiteral("Starfield"), 64, {Imaj7, vi, IVmaj7, V}, 4, 88, 2},
    };
    int number = 0;
    QString lastAlbum;
    for (const DemoTrack& d : demo) {
        number = d.info.album == lastAlbum ? number + 1 : 1;
        lastAlbum = d.info.album;
        TrackSpec track = AlbumTrack(d.info, number, d.title);
        track.composer = QStringLiteral("Pelorin Demo");
        track.comment = QStringLiteral("Generated for the Pelorin demo library");
        track.bpm = static_cast<int>(d.tempo);
        track.tone.frequency = 0;
        track.tone.rootMidiNote = d.root;
        track.tone.chords = d.chords;
        track.tone.beatsPerBar = d.beatsPerBar;
        track.tone.beatsPerMinute = d.tempo;
        track.tone.notesPerBeat = d.notesPerBeat;
        // Twice round the progression, so each track lasts about 20 to 30 seconds.
        const double bars = 2.0 * d.chords.size();
        track.seconds = bars * d.beatsPerBar * 60.0 / d.tempo + 2.0;
        catalog.tracks.append(track);
    }
    catalog.folderCovers.append({QStringLiteral("Aurora Trio/Small Hours/cover.jpg"), 7});
    catalog.playlists.append(
        {QStringLiteral("Demo Favourites"), {catalog.tracks[0].uri, catalog.tracks[2].uri}});
    return catalog;
}

LibraryCatalog CatalogFor(LibraryKind kind) {
    return kind == LibraryKind::Demo ? DemoLibraryCatalog() : TestLibraryCatalog();
}

} // namespace Pelorin

#pragma once

#include "player/IITCollection.h"
#include "player/IITTrack.h"

#include <QString>
#include <memory>

namespace Pelorin {

// Values of IITPlaylist::SongRepeat; the "repeat=switch" command counts through them modulo 3.
enum ITPlaylistRepeatMode : int {
    ITPlaylistRepeatModeOff = 0,
    ITPlaylistRepeatModeOne = 1,
    ITPlaylistRepeatModeAll = 2,
};

// Fields IITPlaylist::Search looks in.
enum ITPlaylistSearchField : int {
    ITPlaylistSearchFieldAll = 0,
    ITPlaylistSearchFieldVisible = 1,
    ITPlaylistSearchFieldArtists = 2,
    ITPlaylistSearchFieldAlbums = 3,
    ITPlaylistSearchFieldComposers = 4,
    ITPlaylistSearchFieldSongNames = 5,
};

// A list of tracks: the library, the play queue or a user playlist. Failures throw VbError.
class IITPlaylist {
public:
    virtual ~IITPlaylist() = default;

    virtual QString Name() const = 0;
    // The playlist's tracks in playing order.
    virtual std::shared_ptr<IITTrackCollection> Tracks() const = 0;
    // Sum of the tracks' lengths in whole seconds.
    virtual int Duration() const = 0;

    // ITPlaylistRepeatMode: 0 off, 1 one, 2 all; any other value throws.
    virtual int SongRepeat() const = 0;
    virtual void SetSongRepeat(int mode) = 0;
    virtual bool Shuffle() const = 0;
    virtual void SetShuffle(bool value) = 0;

    // Starts playing the playlist from its first track.
    virtual void PlayFirstTrack() = 0;
    // Appends the track to this user playlist; the library and the queue refuse with an error.
    virtual void AddTrack(const IITTrack& track) = 0;
    // Tracks in which every blank-separated word of `text` occurs in one of the fields chosen by
    // `searchField` (ITPlaylistSearchField); null (Nothing) when no track matches.
    virtual std::shared_ptr<IITTrackCollection> Search(const QString& text,
                                                       int searchField) const = 0;
};

using IITPlaylistCollection = IITCollection<IITPlaylist>;

} // namespace Pelorin

#pragma once

#include "player/IITArtwork.h"
#include "player/IITCollection.h"

#include <QString>
#include <memory>

namespace Pelorin {

// One track of the player's library, a playlist or the play queue. Every call asks the player
// and throws VbError (VbError::Player with the player's own description) when it fails; a call
// the player cannot perform throws "The player does not support <operation>".
// A track taken as a file (IITFileOrCDTrack) is reached with std::dynamic_pointer_cast; the cast
// gives null for tracks that are not files, such as streams.
class IITTrack {
public:
    virtual ~IITTrack() = default;

    // Text tags; setting one writes it to the track.
    virtual QString Name() const = 0;
    virtual void SetName(const QString& value) = 0;
    virtual QString Artist() const = 0;
    virtual void SetArtist(const QString& value) = 0;
    virtual QString Album() const = 0;
    virtual void SetAlbum(const QString& value) = 0;
    virtual QString AlbumArtist() const = 0;
    virtual void SetAlbumArtist(const QString& value) = 0;
    virtual QString Composer() const = 0;
    virtual void SetComposer(const QString& value) = 0;
    virtual QString Genre() const = 0;
    virtual void SetGenre(const QString& value) = 0;
    virtual QString Comment() const = 0;
    virtual void SetComment(const QString& value) = 0;
    virtual QString Grouping() const = 0;
    virtual void SetGrouping(const QString& value) = 0;

    // Numeric tags; 0 when the track has none.
    virtual int TrackNumber() const = 0;
    virtual void SetTrackNumber(int value) = 0;
    virtual int DiscNumber() const = 0;
    virtual void SetDiscNumber(int value) = 0;
    virtual int Year() const = 0;
    virtual void SetYear(int value) = 0;
    virtual int BPM() const = 0;
    virtual void SetBPM(int value) = 0;
    virtual bool Compilation() const = 0;
    virtual void SetCompilation(bool value) = 0;

    // Length as the player shows it: minutes, ":" and two-digit seconds ("3:07", "62:03").
    virtual QString Time() const = 0;
    // Length in whole seconds.
    virtual int Duration() const = 0;
    // Kilobits per second; 0 when unknown.
    virtual int BitRate() const = 0;

    // The setters of the rating, the play count, the start and finish and the volume adjustment
    // check their value here, alike for every player, before the player is asked: a value out of
    // range throws "<Property> must lie between <low> and <high>".

    // 0..100 in steps the player chooses (stars are multiples of 20); 0 is unrated.
    virtual int Rating() const = 0;
    void SetRating(int value);
    // 0 and up.
    virtual int PlayedCount() const = 0;
    void SetPlayedCount(int value);

    // Stable identity of the track in the library, the same wherever the track is listed;
    // never 0.
    virtual int TrackDatabaseID() const = 0;

    // Where playback starts and ends, in whole seconds from the beginning of the track: the start
    // lies between 0 and the finish, the finish between the start and the track's length (any
    // finish when the length is unknown).
    virtual int Start() const = 0;
    void SetStart(int seconds);
    virtual int Finish() const = 0;
    void SetFinish(int seconds);

    // The track's own volume adjustment, -100..100 (not the player volume).
    virtual int VolumeAdjustment() const = 0;
    void SetVolumeAdjustment(int value);

    // The pictures attached to the track; the first is the one to show.
    virtual std::shared_ptr<IITArtworkCollection> Artwork() const = 0;
    // Attaches the picture file as the track's front cover.
    virtual void AddArtworkFromFile(const QString& filePath) = 0;

    // Removes the track from the list it was obtained from: the current track from the play
    // queue, a track of a user playlist from that playlist, a library track from the library
    // (every queue and playlist entry of it).
    virtual void Delete() = 0;

    // Late-bound assignment of a writable property by its name, ignoring case ("Comment",
    // "rating", "Year"...). The value is text and converted as the original automation layer
    // did: numbers must be numbers standing alone ("Type mismatch" otherwise), Booleans are
    // "True"/"False" or a number. An unknown or read-only name throws "Object doesn't support
    // this property or method". The default dispatches to the typed setters above.
    virtual void SetPropertyByName(const QString& name, const QString& value);

protected:
    // What each player does with a value that passed its check.
    virtual void WriteRating(int value) = 0;
    virtual void WritePlayedCount(int value) = 0;
    virtual void WriteStart(int seconds) = 0;
    virtual void WriteFinish(int seconds) = 0;
    virtual void WriteVolumeAdjustment(int value) = 0;
};

using IITTrackCollection = IITCollection<IITTrack>;

} // namespace Pelorin

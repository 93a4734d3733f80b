#pragma once

#include <QString>
#include <array>
#include <memory>
#include <optional>

namespace Pelorin {

class IiTunes;
class IITTrack;
class IITPlaylist;

// What the placeholders of a label template stand for, in the order they are replaced.
enum class Placeholder {
    Artist,
    Title,
    Album,
    Time,
    PlayCount,
    BitRate,
    BPM,
    Comment,
    Compilation,
    Composer,
    Genre,
    Rating,
    TrackNumber,
    Year,
    CurrentPlaylistName,
    CurrentPlaylistTracks,
    CurrentPlaylistDuration,
    CurrentPosition,
    CurrentRemaining,
};

inline constexpr int PlaceholderCount = static_cast<int>(Placeholder::CurrentRemaining) + 1;

// The current track as one refresh sees it: read from the player once, then handed to the labels,
// the progress bar, the stars and the artwork in turn. Each value is asked of the player the
// first time the refresh needs it and kept for the rest of the refresh, so the parts after the
// first cost no player calls; a failure surfaces where the value is first needed, as if it were
// read anew there. Failures throw VbError (no current track any more: ObjectNotSet).
class TrackValues {
public:
    // `player` may be null (the guard let a refresh through without a player): reading any value
    // then fails with ObjectNotSet, as the first read would have.
    explicit TrackValues(IiTunes* player);
    ~TrackValues();

    QString Value(Placeholder placeholder);
    // Whether the player has a current playlist (the playlist placeholders need one).
    bool HasCurrentPlaylist();

    // The track itself (the artwork reads its pictures), its rating (the stars) and its length
    // in whole seconds as its time text gives it (the progress bar).
    std::shared_ptr<IITTrack> CurrentTrack();
    int Rating();
    int LengthSeconds();

    // The rating's star count as "[Rating]" shows it: 0 to 5, with a fraction in the decimal
    // separator of the user's locale (50 gives "2.5", or "2,5" where a comma is used).
    static QString RatingText(int rating);

private:
    IiTunes& Player();
    IITTrack& Track();
    IITPlaylist& Playlist();
    QString Read(Placeholder placeholder);

    IiTunes* m_player;
    std::shared_ptr<IITTrack> m_track;
    std::optional<std::shared_ptr<IITPlaylist>> m_playlist;
    std::array<std::optional<QString>, PlaceholderCount> m_values;
    std::optional<int> m_rating;
};

} // namespace Pelorin

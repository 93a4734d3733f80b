#pragma once

#include <QString>
#include <memory>

namespace Pelorin {

class DisplayHost;
class IITTrack;
class TrackValues;
class WindowPlayer;

// The cover of the playing track in every ARTWORK image. The player writes the first picture of
// the track into one file in the user's temporary folder, shared by every window and every
// ARTWORK image; each window rewrites it only when its track changed, and asks the player for the
// track's pictures only then: the refreshes of the same track load the file again.
class ArtworkDisplay {
public:
    ArtworkDisplay(DisplayHost& host, WindowPlayer& player);

    // <temporary folder>tempart.jpg. The name is kept although the picture may be PNG or any
    // other format the player holds; the loader looks at the content, not the name. Throws
    // VbError::PathFileAccessError when there is no usable temporary folder.
    static QString ArtworkFile();

    // Fills img(index) with the current track's cover, or clears it for a track without one.
    // A refresh hands over the track it read (`values`). Throws VbError (the player failed, the
    // file did not load).
    void ShowArtworkIn(int index, TrackValues* values = nullptr);
    // The next ShowArtworkIn asks the player again (the track's pictures may have changed).
    void Forget();

    // The TrackDatabaseID of the track whose cover this window last saved; 0 before the first.
    int LastArtworkTrack() const { return m_lastArtworkTrack; }

private:
    DisplayHost& m_host;
    WindowPlayer& m_player;
    int m_lastArtworkTrack = 0;
    // The track whose pictures were asked last (0: none), and whether it has any.
    int m_knownTrack = 0;
    bool m_knownHasArtwork = false;
};

} // namespace Pelorin

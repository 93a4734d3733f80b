#pragma once

#include <QString>

namespace Pelorin {

class DisplayHost;
class WindowPlayer;

// The cover of the playing track in every ARTWORK image. The player writes the first picture of
// the track into one file in the user's temporary folder, shared by every window and every
// ARTWORK image; each window rewrites it only when its track changed.
class ArtworkDisplay {
public:
    ArtworkDisplay(DisplayHost& host, WindowPlayer& player);

    // <temporary folder>tempart.jpg. The name is kept although the picture may be PNG or any
    // other format the player holds; the loader looks at the content, not the name. Throws
    // VbError::PathFileAccessError when there is no usable temporary folder.
    static QString ArtworkFile();

    // Fills img(index) with the current track's cover, or clears it for a track without one.
    // Throws VbError (the player failed, the file did not load).
    void ShowArtworkIn(int index);

    // The TrackDatabaseID of the track whose cover this window last saved; 0 before the first.
    int LastArtworkTrack() const { return m_lastArtworkTrack; }

private:
    DisplayHost& m_host;
    WindowPlayer& m_player;
    int m_lastArtworkTrack = 0;
};

} // namespace Pelorin

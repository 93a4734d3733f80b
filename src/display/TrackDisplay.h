#pragma once

#include "display/ArtworkDisplay.h"
#include "display/LabelScroller.h"
#include "display/ProgressBar.h"
#include "display/RatingStars.h"

#include <QString>
#include <Qt>

namespace Pelorin {

class DisplayHost;
class WindowPlayer;

// The track display of one skin window: label templates filled from the playing track, label
// scrolling, the progress bar, the rating stars and the artwork. The window owns one, gives it
// itself as the host, and calls the handlers below from its player events, timers and pointer
// events. Everything runs on the user-interface thread; no handler lets an exception out.
//
// A refresh reads the current track once (TrackValues) and hands it to the labels, the artwork,
// the progress bar and the stars; the guards before player work stay where they are.
class TrackDisplay {
public:
    TrackDisplay(DisplayHost& host, WindowPlayer& player);

    // The entry for "the playing track may have changed": repaints the window and, when there
    // is a player with a current track, refreshes everything (RefreshInfo).
    void LoadSong();

    // Rebuilds every label's caption from its template, decides which labels scroll, notes the
    // running-time labels, shows the artwork, then runs one progress tick, one scroll step and
    // the stars. A failure ends the refresh where it happened and shows "Error in RefreshInfo: "
    // with its description; the label being filled keeps what was filled so far.
    void RefreshInfo();

    // Timers (the scroll timer at the skin's "scrolltimer" interval, the progress timer every
    // 500 ms).
    void tmrScroll_Timer();
    void tmrProgress_Timer();

    // Pointer handlers; `x` is the offset from the bar's left edge in pixels.
    void imgProgress_MouseDown(Qt::MouseButtons button, double x);
    void imgProgress_MouseMove(Qt::MouseButtons buttons, double x);
    void imgRatings_Click(int index);
    // "Nstar": rates as a click on star `index` does, but lets a failure go to the caller.
    void RateByCommand(int index) { m_ratings.Rate(index); }
    void imgRatings_MouseDown(int index);

    // Fills one ARTWORK image (also when a pointer effect restores its picture). Reports a
    // failure in a message box.
    void ShowArtworkIn(int index);
    // The current track's pictures changed (a picture was dropped on it): the next cover shown
    // reads them afresh.
    void ArtworkChanged() { m_artwork.Forget(); }

    // State the refresh leaves behind.
    bool HasTimeLabels() const { return m_hasTimeLabels; }
    QString ScrollTag(int index) const { return m_scroller.ScrollTag(index); }
    int LastArtworkTrack() const { return m_artwork.LastArtworkTrack(); }

    static QString RefreshErrorPrefix() { return QStringLiteral("Error in RefreshInfo: "); }

private:
    // Fills label i (steps 1 to 6 for one label); throws with the partial caption shown.
    void RefreshLabel(int index, class TrackValues& values);
    void ShowArtworkImages(TrackValues& values);

    DisplayHost& m_host;
    WindowPlayer& m_player;
    LabelScroller m_scroller;
    ProgressBar m_progress;
    RatingStars m_ratings;
    ArtworkDisplay m_artwork;
    bool m_hasTimeLabels = false;
};

} // namespace Pelorin

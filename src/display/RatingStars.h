#pragma once

namespace Pelorin {

class DisplayHost;
class TrackValues;
class WindowPlayer;

// The five rating stars (imgRatings(0) to imgRatings(4)) that the skin's "ratingscontrol" line
// places: they show the current track's rating and set it when clicked.
class RatingStars {
public:
    static constexpr int StarCount = 5;

    RatingStars(DisplayHost& host, WindowPlayer& player);

    // Places the stars and shows the rating: star k is lit when k is less than rating / 20, so a
    // rating of 50 lights three. With the unlit picture named "NONE" (exactly) the stars are
    // empty click areas. The rating is the one the refresh read (`values`). Throws VbError (a
    // missing field, a picture that does not load).
    void ShowRatings(TrackValues& values);

    // A click on star `index` rates the current track (index + 1) * 20; the display follows when
    // the player reports the change. An index outside 0..4 does nothing. A failure shows the
    // "Error!" box: nothing above a click would report it.
    void imgRatings_Click(int index);
    // The same rating with no error trap of its own: the "Nstar" command reports a failure
    // through the command language's rule (a beep without a player, else its message). Throws
    // VbError.
    void Rate(int index);
    // A press on a star counts as an interaction.
    void imgRatings_MouseDown(int index);

private:
    DisplayHost& m_host;
    WindowPlayer& m_player;
};

} // namespace Pelorin

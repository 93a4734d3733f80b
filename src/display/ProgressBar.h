#pragma once

#include <Qt>

namespace Pelorin {

class DisplayHost;
class TrackValues;
class WindowPlayer;

// The progress bar (imgProgress) and its timer: the bar's width follows the playing position,
// a press or a drag with the left button seeks, and each tick keeps the running-time labels
// current and finishes a close begun earlier.
class ProgressBar {
public:
    ProgressBar(DisplayHost& host, WindowPlayer& player);

    // The 500 ms tick. `hasTimeLabels`: some label shows a running time. A refresh hands over
    // the track it read (`values`); a tick of the timer reads it from the player. Never throws:
    // any failure ends the tick quietly, leaving the bar and labels as they were.
    void tmrProgress_Timer(bool hasTimeLabels, TrackValues* values = nullptr);

    // A press on the bar: runs the window's interaction codes, then acts as a move.
    // `x` is the pointer's offset from the bar's left edge in pixels.
    void imgProgress_MouseDown(Qt::MouseButtons button, double x);
    // Pointer movement over the bar: seeks while the left button, and only it, is down.
    void imgProgress_MouseMove(Qt::MouseButtons buttons, double x);

private:
    void UpdateRunningTimeLabels(TrackValues& values);
    void Seek(double x);

    DisplayHost& m_host;
    WindowPlayer& m_player;
};

} // namespace Pelorin

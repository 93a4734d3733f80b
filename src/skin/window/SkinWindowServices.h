#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <functional>
#include <qnamespace.h>

namespace Pelorin {

class Form;
class frmMain;

// What a skin window calls in the parts of the program that are built around it: the command
// language, skin events, the track display, shortcuts and hotkeys, lyrics and the menu. The
// factory that creates skin windows fills it; every entry left empty does nothing, so a window
// works (shows, moves, fades, closes) before those parts are linked in.
struct SkinWindowServices {
    // RunCode: the single entry of the command language, for "runcode" lines, timers, clicks.
    // The code is the caller's variable: a compound code loses its "{" in it (see frmMain's
    // stored codes).
    std::function<void(frmMain&, QString& code)> RunCode;
    // An "event" line (declares code for a player event); may throw VbError.
    std::function<void(frmMain&, const QString& line)> NewEvent;
    // The steps after the skin file: personal shortcuts and start code, the track display, the
    // shortcut registration and one progress tick. Each may throw VbError, which LoadSkin reports.
    std::function<void(frmMain&)> CheckStartPersonal;
    std::function<void(frmMain&)> LoadSong;
    std::function<void(frmMain&)> ProcessKeyShortcuts;
    std::function<void(frmMain&)> tmrProgress_Timer;
    // The other built-in timers' ticks.
    std::function<void(frmMain&)> tmrScroll_Timer;
    std::function<void(frmMain&)> tmrTrackImage_Timer;
    std::function<void(frmMain&)> tmrDeskbarLetDie_Timer;
    // Stops the window's hotkeys while it closes.
    std::function<void(frmMain&)> CloseAllHotkeys;
    // The window's first real activation: where the lyrics control gets its folder.
    std::function<void(frmMain&)> FirstActivation;
    // A right-button release on the window or a label: the pop-up menu.
    std::function<void(frmMain&)> ShowMenu;
    // Pointer handlers of the images, the progress bar and the stars. Without them a press
    // still counts as an interaction (it raises the interaction flag and runs the
    // "anyinteraction" codes).
    std::function<void(frmMain&, int index, int button, int shift, int x, int y)> img_MouseDown;
    std::function<void(frmMain&, int index, int button, int shift, int x, int y)> img_MouseMove;
    std::function<void(frmMain&, int index, int button, int shift, int x, int y)> img_MouseUp;
    // Local files dropped on an image that takes drops (the artwork image).
    std::function<void(frmMain&, int index, const QStringList& files)> img_OLEDragDrop;
    // The progress bar: a press and the pointer moving over it, `x` the offset from the bar's
    // left edge in pixels. Without them a press still counts as an interaction.
    std::function<void(frmMain&, Qt::MouseButtons buttons, double x)> imgProgress_MouseDown;
    std::function<void(frmMain&, Qt::MouseButtons buttons, double x)> imgProgress_MouseMove;
    // The stars (index 0 to 4): a press, and a click (a left press released over the same star).
    std::function<void(frmMain&, int index)> imgRatings_MouseDown;
    std::function<void(frmMain&, int index)> imgRatings_Click;
};

// The open-forms registry as a skin window uses it: the factory binds these to the program's
// one registry.
struct OpenFormsAccess {
    std::function<QList<Form*>()> Forms; // a snapshot, in creation order
    std::function<void(Form*)> Add;
    std::function<void(Form*)> Remove;
};

} // namespace Pelorin

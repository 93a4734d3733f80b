#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <functional>

namespace Pelorin {

class Form;
class frmMain;

// What a skin window asks of the parts of the program that are built around it, where the
// window needs the call made at a set point of its own work: the command language, skin events,
// and the steps of loading and closing. Everything that merely happens to the window (timer
// ticks, presses, drops, the menu request, the first activation) is a signal of frmMain instead.
// The factory that creates skin windows fills this; every entry left empty does nothing, so a
// window works (shows, moves, fades, closes) before those parts are linked in.
struct SkinWindowServices {
    // RunCode: the single entry of the command language, for "runcode" lines, timers, clicks.
    // The code is the caller's variable: a compound code loses its "{" in it (see frmMain's
    // stored codes).
    std::function<void(frmMain&, QString& code)> RunCode;
    // An "event" line (declares code for a player event); may throw VbError.
    std::function<void(frmMain&, const QString& line)> NewEvent;
    // The steps after the skin file, before the progress bar's first tick: personal shortcuts
    // and start code, the track display and the shortcut registration. Each may throw VbError,
    // which LoadSkin reports.
    std::function<void(frmMain&)> CheckStartPersonal;
    std::function<void(frmMain&)> LoadSong;
    std::function<void(frmMain&)> ProcessKeyShortcuts;
    // Stops the window's hotkeys while it closes.
    std::function<void(frmMain&)> CloseAllHotkeys;
    // Ends the window's lyrics control while it closes (which ends the program when it ran).
    std::function<void(frmMain&)> CloseLyrics;
};

// The open-forms registry as a skin window uses it: the factory binds these to the program's
// one registry.
struct OpenFormsAccess {
    std::function<QList<Form*>()> Forms; // a snapshot, in creation order
    std::function<void(Form*)> Add;
    std::function<void(Form*)> Remove;
};

} // namespace Pelorin

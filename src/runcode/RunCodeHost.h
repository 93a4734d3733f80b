#pragma once

#include <QString>
#include <cstdint>
#include <memory>

namespace Pelorin {

// Everything the command language needs of the skin window it runs for, of the program around it
// and of the desktop; the player comes through the window's WindowPlayer. The skin window
// implements it (the real program's window effects, the shell, the player link, the trash and
// program launching sit behind it); tests and the fuzzer give their own. The interpreter never
// reaches past it, so replacing it replaces every side effect: nothing sleeps, pumps events, ends
// the process or touches a file except through here.
//
// The object must stay valid for as long as a RunCode call on it runs, even when the window
// behind it unloads meanwhile; WindowGone tells the interpreter that the window has gone.
class RunCodeHost {
public:
    enum class MessageIcon { Critical, Information };

    virtual ~RunCodeHost() = default;

    // Skin trust: true when this window's skin may run `command`, one of the commands that change
    // the user's music or playlists ("edittag", "delete", "deletecompletely", "addtoplaylist",
    // "swapartistandalbum", "swapartistandtitle", "setasstart", "setasend"). May ask the user.
    virtual bool MayChangeLibrary(const QString& command) = 0;
    static QString LibraryChangeRefusedText() {
        return QStringLiteral("This skin is not allowed to change your music library.");
    }

    // Feedback to the user.
    virtual void Beep() = 0;
    // A modal message box; `title` empty gives the program's name.
    virtual void ShowMessage(const QString& text, const QString& title, MessageIcon icon) = 0;

    // This window.
    // True once the window has started unloading (or is deleted); checked after every pump.
    virtual bool WindowGone() const = 0;
    // Unloads this window; the other skin windows stay.
    virtual void UnloadWindow() = 0;
    // Shows the window and brings it to the top of the window order.
    virtual void ShowWindow() = 0;
    // The layered alpha back at the skin's "transparency" value.
    virtual void NormalTransparency() = 0;
    // Starts dragging the window with the pointer.
    virtual void MoveWindow() = 0;
    // The window effects; they pump events and may unload the window (FadeClose does).
    virtual void FadeIn() = 0;
    virtual void FadeClose() = 0;
    // tmr(index).Enabled = False, then True: the element timer counts afresh. False when the
    // window has no element timer `index` (1 is the first "timerevent" line).
    virtual bool ReloadTimer(int index) = 0;
    // The same as clicking star `index` (0 is the first) of the ratings control; indexes outside
    // the stars do nothing.
    virtual void imgRatings_Click(int index) = 0;
    // The window's position in twips, as skin window creation takes it.
    virtual double LeftTwips() const = 0;
    virtual double TopTwips() const = 0;
    // The window's mouse pointer: the hourglass (busy) or the default.
    virtual void SetBusyPointer(bool busy) = 0;

    // The program.
    // Creates a skin window for `skinFolder` (ending with "/"); -99 for a position not given.
    virtual void OpenSkinWindow(const QString& skinFolder, std::int16_t left, std::int16_t top) = 0;
    // Ends the program at once (settings flushed, no further handlers).
    virtual void EndProgram() = 0;
    // "<program folder>/Skins/<skinName>/".
    virtual QString SkinFolder(const QString& skinName) const = 0;
    // The program folder, without a trailing "/".
    virtual QString ProgramFolder() const = 0;
    // The setting "PlayerApp": the program that shows the player; empty when none is set.
    virtual QString PlayerApp() const = 0;

    // The desktop.
    // Opens a document or starts a program with a parameter string; false when that failed.
    virtual bool ShellOpen(const QString& file, const QString& parameters) = 0;
    // Moves a file to the user's trash; false with `error` set when it stayed where it was.
    virtual bool MoveToTrash(const QString& path, QString* error) = 0;
    // Lets pending window messages, timers and player events run once.
    virtual void LetMessagesRun() = 0;
};

} // namespace Pelorin

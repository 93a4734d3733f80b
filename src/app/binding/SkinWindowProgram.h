#pragma once

#include <QString>
#include <cstdint>
#include <functional>
#include <memory>

namespace Pelorin {

class PlayerApplication;
class frmMain;

// What a skin window's binding needs of the program around it: the process-wide player, the
// shell's module operations and a few settings. Start-up fills it once for every window.
struct SkinWindowProgram {
    // The owner of the one process-wide player object (the player launcher's).
    PlayerApplication* player = nullptr;
    // Opens another skin window ("showskin"); -99 for a position not given.
    std::function<void(const QString& skinFolder, std::int16_t left, std::int16_t top)>
        openSkinWindow;
    // Unloads every form, which ends the program (the player quit, "Quit" in the menu).
    std::function<void()> closeAllWindows;
    // The pop-up menu, with `window` as the caller its commands act on.
    std::function<void(frmMain* window)> showMenu;
    // Ends the program at once ("closeprogram").
    std::function<void()> endProgram;
    // Opens a document or starts a program; false when the desktop could not.
    std::function<bool(const QString& file, const QString& parameters)> shellOpen;
    // "<program folder>/Skins/<name>/".
    std::function<QString(const QString& skinName)> skinFolder;
    // How many skin windows are open (the one being loaded included).
    std::function<int()> skinWindowCount;
    // The program folder, without a trailing "/".
    QString programFolder;
    // The setting "CantomPath": the lyrics folder ("APPPATH" stands for the program folder).
    std::function<QString()> lyricsPath;
    // True while a skin switch closes and reopens the windows.
    std::function<bool()> switchingSkin;
    // Whether a window's first activation has happened in this run: only that one may start the
    // lyrics. Shared by every window of the program.
    std::shared_ptr<bool> firstActivationSeen = std::make_shared<bool>(false);
    // The setting "PlayerApp".
    std::function<QString()> playerApp;
    // Skin trust: whether the skin in folder `skinName` may run `command`, which changes the
    // user's music or playlists (it may ask the user). Unset: no skin may.
    std::function<bool(const QString& skinName, const QString& command)> mayChangeLibrary;
};

} // namespace Pelorin

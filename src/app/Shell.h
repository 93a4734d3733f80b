#pragma once

#include "FormsRegistry.h"
#include "skin/window/SkinWindow.h"

#include <QList>
#include <QString>
#include <cstdint>
#include <functional>

namespace Pelorin {

class Settings;
class InstanceLock;
class PlayerControl;
class ProgramPaths;

// The start-up module: reads the command line, chooses and opens skin windows, switches and
// closes them, and ends the program when the last skin window goes.
class Shell {
public:
    struct Services {
        Settings& settings;
        FormsRegistry& forms;
        InstanceLock& instanceLock;
        SkinWindowFactory& skinWindows;
        PlayerControl& player;
        const ProgramPaths& paths;
        // Creates and registers the hidden menu form (tray icon and menus).
        std::function<Form*()> loadMenus;
        // Lets pending window messages run once.
        std::function<void()> processEvents;
        // Ends the program at once: settings flushed, no further handlers.
        std::function<void()> endProgram;
        // Opens a document or starts a program; false when the desktop could not.
        std::function<bool(const QString& file, const QString& parameters)> openExternal;
    };

    explicit Shell(Services services);

    void Main(const QString& commandLine);

    // "showskin": a skin asked for another skin window. While any skin loads, the request waits
    // until that load has ended (a skin that opens itself on load cannot recurse); beyond
    // MaxSkinWindows the request opens nothing and says so.
    void ShowSkinWindow(const QString& curPath, std::int16_t left, std::int16_t top);
    static constexpr int MaxSkinWindows = 32;
    static QString TooManyWindowsText() {
        return QStringLiteral("Pelorin cannot open more than 32 skin windows.");
    }

    SkinWindow* OpenSkinWindow(const QString& curPath, std::int16_t left, std::int16_t top,
                               bool isDeskbar);
    void SwitchSkin(const QString& skinName);
    void CloseAllWindows();
    int FrmMainCount() const;
    void OpenSkinFromCommandLine(const QString& commandLine);
    void OpenDeskbandSkin(quint64 ownerHwnd);
    // Opens "iTunes" (the player) or a document or program. False when that failed.
    bool ShellOpen(const QString& fileName, const QString& command);
    bool IsPlayerRunning() const;

    // The shell's part of closing a skin window, after the window ran its own unload steps and
    // while it is still counted: the last one takes the menus with it, may quit the player and
    // ends the program.
    void SkinWindowUnloading(SkinWindow& window);

    // frmMenus, loaded on first use (a deskband process loads it only then, without skin list
    // and tray icon).
    Form* LoadedMenus();
    // The program's default skin window instance: a hidden skin window with no skin, made on
    // first use and counted with the others. The tray menu's commands act on it.
    SkinWindow* DefaultSkinWindow();

    bool DeskbandMode() const { return m_deskbandMode; }
    bool SwitchingSkin() const { return m_switchingSkin; }
    Form* Menus() const { return m_menus; }

    static constexpr std::int16_t NotGiven = -99;

private:
    void UnloadAllForms();
    void LoadMenus();
    void OpenRequestedWindows();

    struct WindowRequest {
        QString curPath;
        std::int16_t left;
        std::int16_t top;
    };

    Services m_services;
    int m_loading = 0;
    bool m_openingRequested = false;
    bool m_refusing = false;
    QList<WindowRequest> m_requested;
    bool m_deskbandMode = false;
    bool m_switchingSkin = false;
    Form* m_menus = nullptr;
    SkinWindow* m_defaultWindow = nullptr;
};

} // namespace Pelorin

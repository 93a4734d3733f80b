#pragma once

#include "app/binding/SkinWindowProgram.h"
#include "player/link/PlayerLinkClient.h"
#include "runcode/SkinEvents.h"
#include "skin/window/frmMain.h"

#include <QObject>
#include <QPointer>
#include <memory>

namespace Pelorin {

class BoundWindow;
class CommandInterpreter;
class KeyboardShortcuts;
class LyricsControl;
class PlayerLink;
class PointerInteraction;
class TrackDisplay;

// Brings one skin window to life: it owns the window's player link, track display, command
// interpreter, skin events and pointer interaction, and wires them together. The window's
// signals (timer ticks, presses, drops, the menu request) are connected to the part that
// handles each; its services (RunCode, events, the loading steps) are filled with them; player
// events reach the window's parts through the link (newsong, stopsong, databasechanged, the
// player quitting). Nothing here does work of its own.
//
// Keyboard shortcuts, hotkeys, the personal file and the lyrics control are not part of it yet:
// those services stay empty.
//
// It lives as long as its window: it goes once the window has been deleted and no call into it
// is still running (a code may close its own window half way).
class SkinWindowBinding final : public QObject, public PlayerLinkClient {
    Q_OBJECT
public:
    // Creates a skin window from `links` (its services are replaced) and binds it. The window is
    // hidden and connected to the player when one runs, ready for LoadSkin.
    static SkinWindowBinding* Create(frmMain::Links links, SkinWindowProgram program);
    ~SkinWindowBinding() override;

    frmMain* Window() const { return m_window; }
    PlayerLink& Link() { return *m_link; }
    TrackDisplay& Display() { return *m_display; }
    CommandInterpreter& Interpreter() { return *m_interpreter; }
    SkinEvents& Events() { return m_events; }
    PointerInteraction& Pointer() { return *m_pointer; }
    KeyboardShortcuts& Shortcuts() { return *m_shortcuts; }
    LyricsControl& Lyrics() { return *m_lyrics; }

    // PlayerLinkClient
    void CheckEvent(const QString& eventName) override;
    void LoadSong() override;
    bool IsDeskbar() const override;
    void UnloadAllForms() override;

    // A right release on the window, a label or an image: the pop-up menu.
    void ShowMenu();

private:
    explicit SkinWindowBinding(SkinWindowProgram program);
    SkinWindowServices MakeServices();
    void Attach(frmMain* window);
    void Connect(frmMain* window);
    bool WindowAlive() const;
    // Every call from the window or the player link goes through here, so the binding outlives
    // the calls that are running when its window goes.
    template <typename Work> void Run(Work&& work);
    void WindowDestroyed();
    void RunShortcut(int index);
    void FirstActivation();

    SkinWindowProgram m_program;
    QPointer<frmMain> m_window;
    bool m_windowDestroyed = false;
    int m_running = 0;

    SkinEvents m_events;
    std::unique_ptr<PlayerLink> m_link;
    std::unique_ptr<BoundWindow> m_boundWindow;
    std::unique_ptr<TrackDisplay> m_display;
    std::unique_ptr<CommandInterpreter> m_interpreter;
    std::unique_ptr<PointerInteraction> m_pointer;
    std::unique_ptr<KeyboardShortcuts> m_shortcuts;
    std::unique_ptr<LyricsControl> m_lyrics;
};

} // namespace Pelorin

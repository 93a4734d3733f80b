#pragma once

#include <QString>

namespace Pelorin {

// What the player link asks of the skin window it serves.
class PlayerLinkClient {
public:
    virtual ~PlayerLinkClient() = default;

    // Runs the code of every skin event of that name ("newsong", "stopsong", "databasechanged").
    virtual void CheckEvent(const QString& eventName) = 0;
    // Refreshes every label, the ratings and the artwork from the current track.
    virtual void LoadSong() = 0;
    // True when the window lives in deskband mode.
    virtual bool IsDeskbar() const = 0;
    // Unloads every form of the program, one after another, which ends it (the player quit
    // while a normal window was open).
    virtual void UnloadAllForms() = 0;
};

} // namespace Pelorin

#pragma once

#include "player/IiTunes.h"

#include <QObject>
#include <QPointer>
#include <functional>
#include <memory>

namespace Pelorin {

// Owner of the one process-wide player object (`iTunesApp`), shared by every skin window. It
// is made only on request, and callers ask only after the process check found the player
// running, because connecting can start a player. When the player announces that it quits, the
// object is let go once every window has seen the event, so the next window that connects
// (a deskband window waiting for the player to come back) gets a fresh one.
class PlayerApplication final : public QObject {
    Q_OBJECT

public:
    using Factory = std::function<std::unique_ptr<IiTunes>()>;
    using Presence = std::function<bool()>;

    // `factory` makes the player object; `isPlayerRunning` is the process check.
    PlayerApplication(Factory factory, Presence isPlayerRunning, QObject* parent = nullptr);
    ~PlayerApplication() override;

    // The process check for the player (true when a player process runs).
    bool IsPlayerRunning() const;
    // The player object; null while none has been made (or after the player quit).
    IiTunes* iTunesApp() const { return m_app.get(); }
    // Makes the player object unless it exists, and returns it.
    IiTunes* CreateiTunesApp();
    // Tells the player to quit ("CloseiTunesOnExit"); false when there is no player object or
    // the player refused.
    bool QuitPlayer();

private:
    void OnQuitting();

    Factory m_factory;
    Presence m_isPlayerRunning;
    std::unique_ptr<IiTunes> m_app;
};

} // namespace Pelorin

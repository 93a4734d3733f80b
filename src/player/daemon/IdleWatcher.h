#pragma once

#include "player/daemon/DaemonAddress.h"
#include "player/daemon/DaemonConnection.h"

#include <QObject>
#include <QSocketNotifier>
#include <memory>

namespace Pelorin {

// The second connection to the daemon, which does nothing but wait in "idle". A socket notifier
// on its descriptor wakes the user-interface thread when the daemon reports a change, so no thread
// and no polling is needed. Nothing but the next "idle" is ever sent on it: the daemon drops a
// client that sends anything else while idling.
class IdleWatcher final : public QObject {
    Q_OBJECT

public:
    IdleWatcher(DaemonAddress address, int timeoutMs, QObject* parent = nullptr);
    ~IdleWatcher() override;

    // Connects and starts waiting. Throws VbError::Player when the daemon cannot be reached.
    void Start();
    void Stop();
    bool IsWatching() const { return m_connection != nullptr; }
    // The waiting connection's socket; -1 when not watching.
    int SocketDescriptor() const;
    // Asks the daemon, without waiting for it, to end the current wait ("noidle"): its answer
    // shows that it answers again, and the watcher then emits Answered and waits again. For a
    // daemon that let a command time out.
    void Probe();

Q_SIGNALS:
    // The daemon reported changes (a mask of mpd_idle bits); the watcher waits again already.
    void Changed(unsigned mask);
    // The connection closed or broke; the watcher has stopped.
    void Lost();
    // The daemon answered the probe (emitted before the changes it reported with it).
    void Answered();

private:
    void OnReadable();
    bool SendIdle();

    DaemonAddress m_address;
    int m_timeoutMs;
    DaemonConnectionPtr m_connection;
    std::unique_ptr<QSocketNotifier> m_notifier;
    bool m_probing = false;
};

} // namespace Pelorin

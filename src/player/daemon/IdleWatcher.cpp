#include "player/daemon/IdleWatcher.h"

#include "base/VbError.h"

#include <mpd/client.h>

namespace Pelorin {

namespace {

// The changes the player link reports or acts on.
constexpr unsigned kWatched = MPD_IDLE_DATABASE | MPD_IDLE_STORED_PLAYLIST | MPD_IDLE_QUEUE |
                              MPD_IDLE_PLAYER | MPD_IDLE_STICKER;

} // namespace

IdleWatcher::IdleWatcher(DaemonAddress address, int timeoutMs, QObject* parent)
    : QObject(parent), m_address(std::move(address)), m_timeoutMs(timeoutMs) {}

IdleWatcher::~IdleWatcher() {
    Stop();
}

void IdleWatcher::Start() {
    Stop();
    m_connection = ConnectToDaemon(m_address, m_timeoutMs);
    if (!SendIdle()) {
        QString description;
        TakeDaemonFault(m_connection.get(), &description);
        m_connection.reset();
        throw VbError::Player(description);
    }
    m_notifier = std::make_unique<QSocketNotifier>(mpd_connection_get_fd(m_connection.get()),
                                                   QSocketNotifier::Read, this);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &IdleWatcher::OnReadable);
}

void IdleWatcher::Stop() {
    // The notifier goes first: it must never outlive the descriptor it watches.
    m_notifier.reset();
    m_connection.reset();
    m_probing = false;
}

void IdleWatcher::Probe() {
    if (!m_connection || m_probing)
        return;
    // "noidle" is the one command the daemon takes while a client waits; the socket takes the
    // few bytes at once, whether or not the daemon reads them.
    m_probing = mpd_send_noidle(m_connection.get());
}

int IdleWatcher::SocketDescriptor() const {
    return m_connection ? mpd_connection_get_fd(m_connection.get()) : -1;
}

bool IdleWatcher::SendIdle() {
    return mpd_send_idle_mask(m_connection.get(), static_cast<mpd_idle>(kWatched));
}

void IdleWatcher::OnReadable() {
    if (!m_connection) {
        return;
    }
    m_notifier->setEnabled(false);
    // The answer has begun to arrive; the rest follows at once (or the timeout ends the wait).
    const unsigned mask = mpd_recv_idle(m_connection.get(), false);
    const bool answered = mpd_connection_get_error(m_connection.get()) == MPD_ERROR_SUCCESS &&
                          mpd_response_finish(m_connection.get());
    if (!answered || !SendIdle()) {
        // Closed by the daemon, timed out, garbage, or refused: this connection is done. The
        // notifier is inside its own signal, so it goes later.
        m_notifier.release()->deleteLater();
        m_connection.reset();
        Q_EMIT Lost();
        return;
    }
    m_notifier->setEnabled(true);
    if (m_probing) {
        m_probing = false;
        Q_EMIT Answered();
    }
    if (mask != 0) {
        Q_EMIT Changed(mask);
    }
}

} // namespace Pelorin

#include "player/link/PlayerApplication.h"

#include "base/VbError.h"

namespace Pelorin {

PlayerApplication::PlayerApplication(Factory factory, Presence isPlayerRunning, QObject* parent)
    : QObject(parent), m_factory(std::move(factory)),
      m_isPlayerRunning(std::move(isPlayerRunning)) {}

PlayerApplication::~PlayerApplication() = default;

bool PlayerApplication::IsPlayerRunning() const {
    return m_isPlayerRunning && m_isPlayerRunning();
}

IiTunes* PlayerApplication::CreateiTunesApp() {
    if (!m_app) {
        m_app = m_factory();
        if (m_app) {
            // Queued: every window handles the quitting event before the object goes.
            connect(m_app.get(), &IiTunes::OnQuittingEvent, this, &PlayerApplication::OnQuitting,
                    Qt::QueuedConnection);
        }
    }
    return m_app.get();
}

void PlayerApplication::OnQuitting() {
    if (m_app) {
        m_app.release()->deleteLater();
    }
}

bool PlayerApplication::QuitPlayer() {
    if (!m_app) {
        return false;
    }
    try {
        m_app->Quit();
        return true;
    } catch (const VbError&) {
        return false;
    }
}

} // namespace Pelorin

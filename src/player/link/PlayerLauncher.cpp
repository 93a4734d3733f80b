#include "player/link/PlayerLauncher.h"

#include "base/Log.h"

#include <QDebug>

namespace Pelorin {

PlayerLauncher::PlayerLauncher() : PlayerLauncher(Options{}) {}

PlayerLauncher::PlayerLauncher(Options options)
    : m_options(std::move(options)), m_embedded(m_options.embedded) {
    const DaemonAddress address = Address();
    const int timeoutMs = m_options.timeoutMs;
    m_application = std::make_unique<PlayerApplication>(
        [address, timeoutMs]() -> std::unique_ptr<IiTunes> {
            DaemonPlayer::Options player;
            player.address = address;
            player.timeoutMs = timeoutMs;
            return std::make_unique<DaemonPlayer>(player);
        },
        [address, timeoutMs] { return DaemonPlayer::IsRunning(address, timeoutMs); });
}

PlayerLauncher::~PlayerLauncher() = default;

bool PlayerLauncher::UsesEmbeddedPlayer() const {
    return !DaemonAddress::EnvironmentNamesAPlayer();
}

DaemonAddress PlayerLauncher::Address() const {
    return DaemonAddress::FromEnvironment(m_embedded.SocketPath());
}

void PlayerLauncher::StartPlayer() {
    m_lastError.clear();
    if (!UsesEmbeddedPlayer()) {
        return;
    }
    m_lastError = m_embedded.Start();
    if (!m_lastError.isEmpty()) {
        qCWarning(lcPlayer).noquote() << m_lastError;
    }
}

void PlayerLauncher::QuitPlayer() {
    m_lastError.clear();
    if (m_application->iTunesApp() && m_application->QuitPlayer()) {
        return;
    }
    if (UsesEmbeddedPlayer()) {
        m_lastError = m_embedded.Stop();
    } else if (m_application->iTunesApp()) {
        m_lastError =
            QStringLiteral("The player at %1 did not accept \"kill\"").arg(Address().Describe());
    }
}

QString PlayerLauncher::MusicFolderNotice() const {
    return UsesEmbeddedPlayer() ? m_embedded.EmptyMusicFolderNotice() : QString();
}

} // namespace Pelorin

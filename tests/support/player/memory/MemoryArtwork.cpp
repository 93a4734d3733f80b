#include "support/player/memory/MemoryArtwork.h"

#include <QSaveFile>

namespace Pelorin {

MemoryArtwork::MemoryArtwork(std::weak_ptr<MemoryPlayerState> state, int trackId, int index)
    : m_state(std::move(state)), m_trackId(trackId), m_index(index) {}

void MemoryArtwork::SaveArtworkToFile(const QString& filePath) {
    const std::shared_ptr<MemoryPlayerState> state = m_state.lock();
    if (!state)
        throw VbError::Player(QStringLiteral("The player is not running"));
    state->check(QStringLiteral("IITArtwork.SaveArtworkToFile"));
    const QList<QByteArray>& artwork = state->data(m_trackId).artwork;
    if (m_index >= artwork.size())
        throw VbError::Player(QStringLiteral("The artwork no longer exists"));
    QSaveFile file(filePath);
    if (!file.open(QIODevice::WriteOnly) || file.write(artwork[m_index]) < 0 || !file.commit())
        throw VbError::Player(QStringLiteral("Cannot write the artwork to %1").arg(filePath));
}

} // namespace Pelorin

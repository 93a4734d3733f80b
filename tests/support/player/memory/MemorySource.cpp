#include "support/player/memory/MemorySource.h"

#include "support/player/memory/MemoryCollection.h"

namespace Pelorin {

MemorySource::MemorySource(std::weak_ptr<MemoryPlayerState> state, int index)
    : m_state(std::move(state)), m_index(index) {}

std::shared_ptr<MemoryPlayerState> MemorySource::use(const char* operation) const {
    std::shared_ptr<MemoryPlayerState> state = m_state.lock();
    if (!state)
        throw VbError::Player(QStringLiteral("The player is not running"));
    state->check(QStringLiteral("IITSource.") + QLatin1String(operation));
    return state;
}

QString MemorySource::Name() const {
    return use("Name")->sources().at(m_index - 1).name;
}

std::shared_ptr<IITPlaylistCollection> MemorySource::Playlists() const {
    const std::shared_ptr<MemoryPlayerState> state = use("Playlists");
    QList<std::shared_ptr<IITPlaylist>> items;
    for (const auto& playlist : state->sources().at(m_index - 1).playlists)
        items.append(state->playlistObject(playlist));
    return std::make_shared<MemoryCollection<IITPlaylist>>(m_state, QStringLiteral("IITPlaylist"),
                                                           std::move(items));
}

} // namespace Pelorin

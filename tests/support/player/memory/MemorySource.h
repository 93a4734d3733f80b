#pragma once

#include "player/IITSource.h"
#include "support/player/memory/MemoryPlayerState.h"

#include <memory>

namespace Pelorin {

// Source number `index` (1-based) of the in-memory player.
class MemorySource final : public IITSource {
public:
    MemorySource(std::weak_ptr<MemoryPlayerState> state, int index);

    QString Name() const override;
    std::shared_ptr<IITPlaylistCollection> Playlists() const override;

private:
    std::shared_ptr<MemoryPlayerState> use(const char* operation) const;

    std::weak_ptr<MemoryPlayerState> m_state;
    int m_index;
};

} // namespace Pelorin

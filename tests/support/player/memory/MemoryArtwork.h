#pragma once

#include "player/IITArtwork.h"
#include "support/player/memory/MemoryPlayerState.h"

#include <memory>

namespace Pelorin {

// Artwork number `index` (0-based) of a library track, as bytes in memory.
class MemoryArtwork final : public IITArtwork {
public:
    MemoryArtwork(std::weak_ptr<MemoryPlayerState> state, int trackId, int index);

    void SaveArtworkToFile(const QString& filePath) override;

private:
    std::weak_ptr<MemoryPlayerState> m_state;
    int m_trackId;
    int m_index;
};

} // namespace Pelorin

#pragma once

#include <memory>

namespace Pelorin {

// A numbered collection of player objects (tracks, playlists, sources, artworks), counted from 1
// as the command language counts. It reflects the player at the moment it was obtained: read it
// right away rather than keeping it across player events.
template <typename T> class IITCollection {
public:
    virtual ~IITCollection() = default;

    // Number of items; 0 for an empty collection.
    virtual int Count() const = 0;

    // Item `index`, 1-based; null (Nothing) when the index is outside 1..Count.
    virtual std::shared_ptr<T> Item(int index) const = 0;
};

} // namespace Pelorin

#pragma once

#include "player/IITCollection.h"
#include "player/IITPlaylist.h"

#include <QString>
#include <memory>

namespace Pelorin {

// A place that holds playlists (the library; on other players also devices and shares).
class IITSource {
public:
    virtual ~IITSource() = default;

    virtual QString Name() const = 0;
    // The source's playlists in the player's order; the library's own playlist comes first.
    virtual std::shared_ptr<IITPlaylistCollection> Playlists() const = 0;
};

using IITSourceCollection = IITCollection<IITSource>;

} // namespace Pelorin

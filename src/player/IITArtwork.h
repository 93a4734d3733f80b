#pragma once

#include "player/IITCollection.h"

#include <QString>

namespace Pelorin {

// One picture attached to a track.
class IITArtwork {
public:
    virtual ~IITArtwork() = default;

    // Writes the picture to filePath, replacing the file, in whatever image format the player
    // holds it (which need not match the file name's extension).
    virtual void SaveArtworkToFile(const QString& filePath) = 0;
};

using IITArtworkCollection = IITCollection<IITArtwork>;

} // namespace Pelorin

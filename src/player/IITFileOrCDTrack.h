#pragma once

#include "player/IITTrack.h"

#include <QString>

namespace Pelorin {

// A track that is a file on this computer.
class IITFileOrCDTrack : public IITTrack {
public:
    // Full path of the track's file ("/home/me/Music/a.ogg"); empty when the player knows the
    // track but cannot tell where its file lies.
    virtual QString Location() const = 0;
};

} // namespace Pelorin

#pragma once

#include "LibraryCatalog.h"

#include <QByteArray>
#include <QString>

namespace Pelorin {

// Writes a track's tags and embedded front cover with TagLib: Vorbis comments (and a picture
// block) for Ogg Vorbis and FLAC, ID3v2 with an APIC frame for MP3. A track marked untagged
// leaves with no tags at all, not even the encoder's comment.
class TagWriter {
public:
    // Empty on success, else what went wrong. `cover` is the encoded picture, or empty.
    static QString Write(const QString& path, const TrackSpec& track, const QByteArray& cover);
};

} // namespace Pelorin

#pragma once

#include "LibraryCatalog.h"
#include "TrackAudio.h"

#include <QString>

namespace Pelorin {

// Writes a whole library from its catalogue into a folder. It builds in a sibling folder and
// moves the result into place at the end, so a library folder is either complete (with its
// marker file) or absent; it replaces only a folder that is empty or an earlier library.
class LibraryGenerator {
public:
    LibraryGenerator(LibraryCatalog catalog, TrackAudio audio);

    // Empty on success, else what went wrong.
    QString Generate(const QString& folder, const QString& markerText) const;
    // Writes each stored playlist as NAME.m3u (one URI a line) into `folder`.
    QString WritePlaylists(const QString& folder) const;

private:
    QString WriteTracks(const QString& folder) const;

    LibraryCatalog m_catalog;
    TrackAudio m_audio;
};

} // namespace Pelorin

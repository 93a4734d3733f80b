#include "display/ArtworkDisplay.h"

#include "base/Log.h"
#include "base/ProgramPaths.h"
#include "display/DisplayHost.h"
#include "display/TrackValues.h"
#include "platform/PictureLoader.h"
#include "player/link/PlayerAccess.h"

namespace Pelorin {

ArtworkDisplay::ArtworkDisplay(DisplayHost& host, WindowPlayer& player)
    : m_host(host), m_player(player) {}

QString ArtworkDisplay::ArtworkFile() {
    QString error;
    const QString folder = ProgramPaths::TemporaryFolder(&error);
    if (folder.isEmpty()) {
        qCWarning(lcDisplay).noquote()
            << QStringLiteral("Pelorin: no temporary folder for the artwork: ") + error;
        throw VbError::PathFileAccessError();
    }
    return folder + QStringLiteral("tempart.jpg");
}

void ArtworkDisplay::ShowArtworkIn(int index, TrackValues* values) {
    if (m_player.iTunesIsNothing(true))
        return;
    const std::shared_ptr<IITTrack> track =
        values != nullptr ? values->CurrentTrack()
                          : PlayerAccess::CurrentTrack(PlayerAccess::R(m_player));
    const int trackId = track->TrackDatabaseID();
    QString file;
    // The track's pictures are read once per track (opening the music file is the slow part of
    // a refresh); the file is still loaded at every refresh.
    if (trackId == 0 || trackId != m_knownTrack) {
        m_knownTrack = 0;
        const auto artwork = track->Artwork();
        if (!artwork)
            throw VbError::ObjectNotSet();
        if (artwork->Count() == 0) {
            m_knownTrack = trackId;
            m_knownHasArtwork = false;
            m_host.SetImageArtwork(index, QImage());
            return;
        }
        file = ArtworkFile();
        if (trackId != m_lastArtworkTrack) {
            const auto first = artwork->Item(1);
            if (!first)
                throw VbError::ObjectNotSet();
            first->SaveArtworkToFile(file);
            m_lastArtworkTrack = trackId;
        }
        m_knownTrack = trackId;
        m_knownHasArtwork = true;
    } else if (!m_knownHasArtwork) {
        m_host.SetImageArtwork(index, QImage());
        return;
    }
    if (file.isEmpty())
        file = ArtworkFile();
    m_host.SetImageArtwork(index, LoadPicture(file, PictureUse::Artwork));
}

void ArtworkDisplay::Forget() {
    m_knownTrack = 0;
}

} // namespace Pelorin

#include "display/ArtworkDisplay.h"

#include "base/Log.h"
#include "base/ProgramPaths.h"
#include "display/DisplayHost.h"
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

void ArtworkDisplay::ShowArtworkIn(int index) {
    if (m_player.iTunesIsNothing(true))
        return;
    const auto track = PlayerAccess::CurrentTrack(PlayerAccess::R(m_player));
    const auto artwork = track->Artwork();
    if (!artwork)
        throw VbError::ObjectNotSet();
    if (artwork->Count() == 0) {
        m_host.SetImageArtwork(index, QImage());
        return;
    }
    const QString file = ArtworkFile();
    const int trackId = track->TrackDatabaseID();
    if (trackId != m_lastArtworkTrack) {
        const auto first = artwork->Item(1);
        if (!first)
            throw VbError::ObjectNotSet();
        first->SaveArtworkToFile(file);
        m_lastArtworkTrack = trackId;
    }
    m_host.SetImageArtwork(index, LoadPicture(file));
}

} // namespace Pelorin

#pragma once

#include "player/IITArtwork.h"

#include <QByteArray>
#include <QString>
#include <memory>

namespace Pelorin {

class DaemonSession;

// One picture of a song, held as the bytes it was found as.
class DaemonArtwork final : public IITArtwork {
public:
    explicit DaemonArtwork(QByteArray picture) : m_picture(std::move(picture)) {}

    void SaveArtworkToFile(const QString& filePath) override;

    // The song's pictures: those embedded in its file when the file is on this computer, else
    // the one the daemon reads from the file ("readpicture"), else the cover file of its folder
    // ("albumart"). Empty when there is none.
    static std::shared_ptr<IITArtworkCollection> Collect(DaemonSession& session,
                                                         const QString& uri);
    // The daemon's answer to "readpicture" or "albumart" (`command`) for the song; empty when
    // it has no picture.
    static QByteArray ReadFromDaemon(DaemonSession& session, const QString& uri,
                                     const char* command);

private:
    QByteArray m_picture;
};

} // namespace Pelorin

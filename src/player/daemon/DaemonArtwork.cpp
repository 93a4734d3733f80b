#include "player/daemon/DaemonArtwork.h"

#include "base/VbError.h"
#include "player/daemon/DaemonCollection.h"
#include "player/daemon/DaemonSession.h"
#include "player/daemon/TagFile.h"

#include <QSaveFile>
#include <mpd/client.h>
#include <vector>

namespace Pelorin {

namespace {

// Larger than any chunk the daemon sends (its binary limit is 8 KiB unless raised).
constexpr size_t kChunkBuffer = 256 * 1024;

} // namespace

void DaemonArtwork::SaveArtworkToFile(const QString& filePath) {
    QSaveFile file(filePath);
    if (!file.open(QIODevice::WriteOnly) || file.write(m_picture) != m_picture.size() ||
        !file.commit()) {
        throw VbError::Player(QStringLiteral("Cannot write the artwork to %1").arg(filePath));
    }
}

QByteArray DaemonArtwork::ReadFromDaemon(DaemonSession& session, const QString& uri,
                                         const char* command) {
    const QByteArray song = uri.toUtf8();
    const bool embedded = qstrcmp(command, "readpicture") == 0;
    return session.Run([&song, embedded](mpd_connection* connection) {
        QByteArray picture;
        std::vector<char> buffer(kChunkBuffer);
        for (;;) {
            const unsigned offset = static_cast<unsigned>(picture.size());
            const int read = embedded ? mpd_run_readpicture(connection, song.constData(), offset,
                                                            buffer.data(), buffer.size())
                                      : mpd_run_albumart(connection, song.constData(), offset,
                                                         buffer.data(), buffer.size());
            if (read <= 0) {
                break;
            }
            picture.append(buffer.data(), read);
        }
        // No picture, or no such song: nothing to show, not a failure.
        if (mpd_connection_get_error(connection) == MPD_ERROR_SERVER) {
            mpd_connection_clear_error(connection);
        }
        return picture;
    });
}

std::shared_ptr<IITArtworkCollection> DaemonArtwork::Collect(DaemonSession& session,
                                                             const QString& uri) {
    QList<std::shared_ptr<IITArtwork>> items;
    if (!uri.contains(QLatin1String("://"))) {
        for (const QByteArray& picture : TagFile::Pictures(session.FilePath(uri))) {
            items.append(std::make_shared<DaemonArtwork>(picture));
        }
    }
    if (items.isEmpty()) {
        for (const char* command : {"readpicture", "albumart"}) {
            const QByteArray picture = ReadFromDaemon(session, uri, command);
            if (!picture.isEmpty()) {
                items.append(std::make_shared<DaemonArtwork>(picture));
                break;
            }
        }
    }
    return std::make_shared<DaemonCollection<IITArtwork>>(std::move(items));
}

} // namespace Pelorin

#include "player/daemon/DaemonTrack.h"

#include "base/TextRules.h"
#include "player/PlayerError.h"
#include "player/TrackTime.h"
#include "player/daemon/DaemonArtwork.h"
#include "player/daemon/DaemonQueries.h"
#include "player/daemon/DaemonSession.h"
#include "player/daemon/TagFile.h"

#include <QFile>
#include <QFileInfo>
#include <mpd/client.h>

namespace Pelorin {

template <typename Base>
DaemonTrackT<Base>::DaemonTrackT(std::weak_ptr<DaemonSession> session, SongInfo song,
                                 DaemonTrackPlace place)
    : m_session(std::move(session)), m_song(std::move(song)), m_place(std::move(place)) {}

template <typename Base> std::shared_ptr<DaemonSession> DaemonTrackT<Base>::Use() const {
    std::shared_ptr<DaemonSession> session = m_session.lock();
    if (!session) {
        throw VbError::Player(QStringLiteral("The player is not running"));
    }
    return session;
}

template <typename Base>
QString DaemonTrackT<Base>::RequireFile(std::shared_ptr<DaemonSession>& session,
                                        const char* operation) const {
    if (m_song.IsRemote()) {
        throw PlayerError::NotSupported(
            QStringLiteral("%1 on a stream").arg(QLatin1String(operation)));
    }
    const QString path = session->FilePath(m_song.uri);
    if (path.isEmpty()) {
        throw PlayerError::NotSupported(
            QStringLiteral("%1 on a player that does not share its music folder")
                .arg(QLatin1String(operation)));
    }
    return path;
}

template <typename Base> int DaemonTrackT<Base>::TagNumber(int type) const {
    const double number = Rules::LeadingNumber(m_song.Tag(type));
    return number > 0 && number < 2147483647.0 ? static_cast<int>(number) : 0;
}

template <typename Base>
void DaemonTrackT<Base>::WriteText(TrackProperty property, int tagType, const QString& value) {
    std::shared_ptr<DaemonSession> session = Use();
    const QString path = RequireFile(session, "changing tags");
    TagFile::WriteProperty(path, property, value);
    m_facts.reset();
    if (tagType >= 0) {
        if (value.isEmpty()) {
            m_song.tags.remove(tagType);
        } else {
            m_song.tags.insert(tagType, value);
        }
    }
    session->UpdateUri(m_song.uri);
}

template <typename Base> QString DaemonTrackT<Base>::Name() const {
    Use();
    const QString title = m_song.Tag(MPD_TAG_TITLE);
    if (!title.isEmpty()) {
        return title;
    }
    const QString name = m_song.Tag(MPD_TAG_NAME);
    if (!name.isEmpty() || m_song.IsRemote()) {
        return name.isEmpty() ? m_song.uri : name;
    }
    // An untagged file is known by its file name, as players list it.
    return QFileInfo(m_song.uri).completeBaseName();
}

template <typename Base> void DaemonTrackT<Base>::SetName(const QString& value) {
    WriteText(TrackProperty::Name, MPD_TAG_TITLE, value);
}
template <typename Base> QString DaemonTrackT<Base>::Artist() const {
    Use();
    return m_song.Tag(MPD_TAG_ARTIST);
}
template <typename Base> void DaemonTrackT<Base>::SetArtist(const QString& value) {
    WriteText(TrackProperty::Artist, MPD_TAG_ARTIST, value);
}
template <typename Base> QString DaemonTrackT<Base>::Album() const {
    Use();
    return m_song.Tag(MPD_TAG_ALBUM);
}
template <typename Base> void DaemonTrackT<Base>::SetAlbum(const QString& value) {
    WriteText(TrackProperty::Album, MPD_TAG_ALBUM, value);
}
template <typename Base> QString DaemonTrackT<Base>::AlbumArtist() const {
    Use();
    return m_song.Tag(MPD_TAG_ALBUM_ARTIST);
}
template <typename Base> void DaemonTrackT<Base>::SetAlbumArtist(const QString& value) {
    WriteText(TrackProperty::AlbumArtist, MPD_TAG_ALBUM_ARTIST, value);
}
template <typename Base> QString DaemonTrackT<Base>::Composer() const {
    Use();
    return m_song.Tag(MPD_TAG_COMPOSER);
}
template <typename Base> void DaemonTrackT<Base>::SetComposer(const QString& value) {
    WriteText(TrackProperty::Composer, MPD_TAG_COMPOSER, value);
}
template <typename Base> QString DaemonTrackT<Base>::Genre() const {
    Use();
    return m_song.Tag(MPD_TAG_GENRE);
}
template <typename Base> void DaemonTrackT<Base>::SetGenre(const QString& value) {
    WriteText(TrackProperty::Genre, MPD_TAG_GENRE, value);
}
template <typename Base> QString DaemonTrackT<Base>::Comment() const {
    Use();
    return m_song.Tag(MPD_TAG_COMMENT);
}
template <typename Base> void DaemonTrackT<Base>::SetComment(const QString& value) {
    WriteText(TrackProperty::Comment, MPD_TAG_COMMENT, value);
}
template <typename Base> QString DaemonTrackT<Base>::Grouping() const {
    Use();
    return m_song.Tag(MPD_TAG_GROUPING);
}
template <typename Base> void DaemonTrackT<Base>::SetGrouping(const QString& value) {
    WriteText(TrackProperty::Grouping, MPD_TAG_GROUPING, value);
}
template <typename Base> int DaemonTrackT<Base>::TrackNumber() const {
    Use();
    return TagNumber(MPD_TAG_TRACK);
}
template <typename Base> void DaemonTrackT<Base>::SetTrackNumber(int value) {
    WriteText(TrackProperty::TrackNumber, MPD_TAG_TRACK,
              value == 0 ? QString() : QString::number(value));
}
template <typename Base> int DaemonTrackT<Base>::DiscNumber() const {
    Use();
    return TagNumber(MPD_TAG_DISC);
}
template <typename Base> void DaemonTrackT<Base>::SetDiscNumber(int value) {
    WriteText(TrackProperty::DiscNumber, MPD_TAG_DISC,
              value == 0 ? QString() : QString::number(value));
}
template <typename Base> int DaemonTrackT<Base>::Year() const {
    Use();
    return TagNumber(MPD_TAG_DATE);
}
template <typename Base> void DaemonTrackT<Base>::SetYear(int value) {
    WriteText(TrackProperty::Year, MPD_TAG_DATE, value == 0 ? QString() : QString::number(value));
}
template <typename Base> int DaemonTrackT<Base>::BPM() const {
    std::shared_ptr<DaemonSession> session = Use();
    return m_song.IsRemote() ? 0 : FileFacts(session).bpm;
}
template <typename Base> void DaemonTrackT<Base>::SetBPM(int value) {
    WriteText(TrackProperty::BPM, -1, value == 0 ? QString() : QString::number(value));
}
template <typename Base> bool DaemonTrackT<Base>::Compilation() const {
    std::shared_ptr<DaemonSession> session = Use();
    return !m_song.IsRemote() && FileFacts(session).compilation;
}
template <typename Base> void DaemonTrackT<Base>::SetCompilation(bool value) {
    WriteText(TrackProperty::Compilation, -1, value ? QStringLiteral("1") : QString());
}
template <typename Base> QString DaemonTrackT<Base>::Time() const {
    return TrackTimeText(Duration());
}
template <typename Base> int DaemonTrackT<Base>::Duration() const {
    Use();
    return static_cast<int>(m_song.durationMs / 1000);
}
template <typename Base> int DaemonTrackT<Base>::BitRate() const {
    std::shared_ptr<DaemonSession> session = Use();
    return m_song.IsRemote() ? 0 : FileFacts(session).bitRate;
}

template <typename Base>
const TagFile::Facts&
DaemonTrackT<Base>::FileFacts(const std::shared_ptr<DaemonSession>& session) const {
    if (!m_facts)
        m_facts = TagFile::ReadFacts(session->FilePath(m_song.uri));
    return *m_facts;
}

template <typename Base> int DaemonTrackT<Base>::StickerNumber(const char* name) const {
    std::shared_ptr<DaemonSession> session = Use();
    if (m_song.IsRemote()) {
        return 0;
    }
    const std::optional<QString> value = DaemonQueries::Sticker(*session, m_song.uri, name);
    const double number = value ? Rules::LeadingNumber(*value) : 0.0;
    return number > 0 && number < 2147483647.0 ? static_cast<int>(number) : 0;
}

template <typename Base> void DaemonTrackT<Base>::SetStickerNumber(const char* name, int value) {
    std::shared_ptr<DaemonSession> session = Use();
    if (m_song.IsRemote()) {
        throw PlayerError::NotSupported(QStringLiteral("%1 on a stream").arg(QLatin1String(name)));
    }
    if (value == 0) {
        DaemonQueries::DeleteSticker(*session, m_song.uri, name);
    } else {
        DaemonQueries::SetSticker(*session, m_song.uri, name, QString::number(value));
    }
}

template <typename Base> int DaemonTrackT<Base>::Rating() const {
    // Clients of the daemon keep ratings as 0..10.
    return StickerNumber("rating") * 10;
}
template <typename Base> void DaemonTrackT<Base>::WriteRating(int value) {
    SetStickerNumber("rating", static_cast<int>(Rules::RoundHalfEven(value / 10.0)));
}
template <typename Base> int DaemonTrackT<Base>::PlayedCount() const {
    return StickerNumber("playCount");
}
template <typename Base> void DaemonTrackT<Base>::WritePlayedCount(int value) {
    SetStickerNumber("playCount", value);
}
template <typename Base> int DaemonTrackT<Base>::TrackDatabaseID() const {
    return SongDatabaseId(m_song.uri);
}
template <typename Base> int DaemonTrackT<Base>::Start() const {
    return StickerNumber("start");
}
template <typename Base> void DaemonTrackT<Base>::WriteStart(int seconds) {
    SetRangeEnd("start", seconds);
}
template <typename Base> int DaemonTrackT<Base>::Finish() const {
    const int finish = StickerNumber("finish");
    return finish > 0 ? finish : Duration();
}
template <typename Base> void DaemonTrackT<Base>::WriteFinish(int seconds) {
    // The whole length is the same as no end point.
    SetRangeEnd("finish", seconds >= Duration() ? 0 : seconds);
}

template <typename Base> void DaemonTrackT<Base>::SetRangeEnd(const char* name, int seconds) {
    SetStickerNumber(name, seconds);
    std::shared_ptr<DaemonSession> session = Use();
    DaemonQueries::ApplyRanges(*session, {m_song.uri});
}

template <typename Base> int DaemonTrackT<Base>::VolumeAdjustment() const {
    throw PlayerError::NotSupported(QStringLiteral("VolumeAdjustment"));
}
template <typename Base> void DaemonTrackT<Base>::WriteVolumeAdjustment(int) {
    throw PlayerError::NotSupported(QStringLiteral("VolumeAdjustment"));
}

template <typename Base> std::shared_ptr<IITArtworkCollection> DaemonTrackT<Base>::Artwork() const {
    std::shared_ptr<DaemonSession> session = Use();
    return DaemonArtwork::Collect(*session, m_song.uri);
}

template <typename Base> void DaemonTrackT<Base>::AddArtworkFromFile(const QString& filePath) {
    std::shared_ptr<DaemonSession> session = Use();
    const QString path = RequireFile(session, "AddArtworkFromFile");
    QFile picture(filePath);
    if (!picture.open(QIODevice::ReadOnly)) {
        throw VbError::Player(QStringLiteral("Cannot read the picture %1").arg(filePath));
    }
    if (picture.size() > TagFile::MaxPictureBytes) {
        throw VbError::Player(
            QStringLiteral("The picture ") + filePath +
            QStringLiteral(" is larger than %1 bytes").arg(TagFile::MaxPictureBytes));
    }
    const QByteArray bytes = picture.read(TagFile::MaxPictureBytes);
    if (bytes.isEmpty()) {
        throw VbError::Player(QStringLiteral("The picture %1 is empty").arg(filePath));
    }
    if (!TagFile::IsPngOrJpeg(bytes)) {
        throw VbError::Player(QStringLiteral("The picture %1 is not a PNG or JPEG").arg(filePath));
    }
    TagFile::EmbedFrontCover(path, bytes);
    session->UpdateUri(m_song.uri);
}

template <typename Base> void DaemonTrackT<Base>::Delete() {
    std::shared_ptr<DaemonSession> session = Use();
    switch (m_place.kind) {
    case DaemonTrackPlace::Kind::QueueEntry: {
        const unsigned id = m_song.id;
        session->Run(
            [id](mpd_connection* connection) { return mpd_run_delete_id(connection, id); });
        return;
    }
    case DaemonTrackPlace::Kind::StoredPlaylist: {
        const QByteArray name = m_place.playlist.toUtf8();
        const unsigned position = static_cast<unsigned>(m_place.position);
        session->Run([&name, position](mpd_connection* connection) {
            return mpd_run_playlist_delete(connection, name.constData(), position);
        });
        return;
    }
    case DaemonTrackPlace::Kind::Library:
        break;
    }
    // From the library: every queue entry and every stored-playlist entry of the file goes; the
    // file itself stays where it is.
    for (const SongInfo& entry : DaemonQueries::Queue(*session)) {
        if (entry.uri == m_song.uri) {
            const unsigned id = entry.id;
            session->Run(
                [id](mpd_connection* connection) { return mpd_run_delete_id(connection, id); });
        }
    }
    for (const QString& playlist : DaemonQueries::StoredPlaylistNames(*session)) {
        const QList<SongInfo> songs = DaemonQueries::StoredPlaylist(*session, playlist);
        const QByteArray name = playlist.toUtf8();
        // From the end, so the places of the entries still to go stay right.
        for (qsizetype i = songs.size() - 1; i >= 0; --i) {
            if (songs[i].uri == m_song.uri) {
                const unsigned position = static_cast<unsigned>(i);
                session->Run([&name, position](mpd_connection* connection) {
                    return mpd_run_playlist_delete(connection, name.constData(), position);
                });
            }
        }
    }
}

template class DaemonTrackT<IITTrack>;
template class DaemonTrackT<IITFileOrCDTrack>;

QString DaemonFileTrack::Location() const {
    std::shared_ptr<DaemonSession> session = Use();
    return session->FilePath(m_song.uri);
}

std::shared_ptr<IITTrack> MakeDaemonTrack(std::weak_ptr<DaemonSession> session, SongInfo song,
                                          DaemonTrackPlace place) {
    if (song.IsRemote()) {
        return std::make_shared<DaemonStreamTrack>(std::move(session), std::move(song),
                                                   std::move(place));
    }
    return std::make_shared<DaemonFileTrack>(std::move(session), std::move(song), std::move(place));
}

} // namespace Pelorin

#include "player/memory/MemoryTrack.h"

#include "player/TrackTime.h"
#include "player/memory/MemoryArtwork.h"
#include "player/memory/MemoryCollection.h"

#include <QFile>
#include <limits>

namespace Pelorin {

namespace {

void RequireRange(int value, int low, int high, const char* what) {
    if (value < low || value > high) {
        throw VbError::Player(QStringLiteral("%1 must lie between %2 and %3")
                                  .arg(QLatin1String(what))
                                  .arg(low)
                                  .arg(high));
    }
}

} // namespace

template <typename Base>
MemoryTrackBase<Base>::MemoryTrackBase(std::weak_ptr<MemoryPlayerState> state, int trackId,
                                       MemoryTrackContext context)
    : m_state(std::move(state)), m_trackId(trackId), m_context(std::move(context)) {}

template <typename Base>
std::shared_ptr<MemoryPlayerState> MemoryTrackBase<Base>::Use(const char* operation) const {
    std::shared_ptr<MemoryPlayerState> state = m_state.lock();
    if (!state)
        throw VbError::Player(QStringLiteral("The player is not running"));
    state->Check(QStringLiteral("IITTrack.") + QLatin1String(operation));
    return state;
}

template <typename Base>
const MemoryTrackData&
MemoryTrackBase<Base>::Read(const std::shared_ptr<MemoryPlayerState>& state) const {
    return state->Data(m_trackId);
}

template <typename Base>
template <typename Change>
void MemoryTrackBase<Base>::Write(const char* operation, Change change) {
    const std::shared_ptr<MemoryPlayerState> state = Use(operation);
    change(state->Data(m_trackId));
    state->TrackChanged(m_trackId);
}

template <typename Base> QString MemoryTrackBase<Base>::Name() const {
    return Read(Use("Name")).name;
}

template <typename Base> void MemoryTrackBase<Base>::SetName(const QString& value) {
    Write("SetName", [&](MemoryTrackData& data) { data.name = value; });
}

template <typename Base> QString MemoryTrackBase<Base>::Artist() const {
    return Read(Use("Artist")).artist;
}

template <typename Base> void MemoryTrackBase<Base>::SetArtist(const QString& value) {
    Write("SetArtist", [&](MemoryTrackData& data) { data.artist = value; });
}

template <typename Base> QString MemoryTrackBase<Base>::Album() const {
    return Read(Use("Album")).album;
}

template <typename Base> void MemoryTrackBase<Base>::SetAlbum(const QString& value) {
    Write("SetAlbum", [&](MemoryTrackData& data) { data.album = value; });
}

template <typename Base> QString MemoryTrackBase<Base>::AlbumArtist() const {
    return Read(Use("AlbumArtist")).albumArtist;
}

template <typename Base> void MemoryTrackBase<Base>::SetAlbumArtist(const QString& value) {
    Write("SetAlbumArtist", [&](MemoryTrackData& data) { data.albumArtist = value; });
}

template <typename Base> QString MemoryTrackBase<Base>::Composer() const {
    return Read(Use("Composer")).composer;
}

template <typename Base> void MemoryTrackBase<Base>::SetComposer(const QString& value) {
    Write("SetComposer", [&](MemoryTrackData& data) { data.composer = value; });
}

template <typename Base> QString MemoryTrackBase<Base>::Genre() const {
    return Read(Use("Genre")).genre;
}

template <typename Base> void MemoryTrackBase<Base>::SetGenre(const QString& value) {
    Write("SetGenre", [&](MemoryTrackData& data) { data.genre = value; });
}

template <typename Base> QString MemoryTrackBase<Base>::Comment() const {
    return Read(Use("Comment")).comment;
}

template <typename Base> void MemoryTrackBase<Base>::SetComment(const QString& value) {
    Write("SetComment", [&](MemoryTrackData& data) { data.comment = value; });
}

template <typename Base> QString MemoryTrackBase<Base>::Grouping() const {
    return Read(Use("Grouping")).grouping;
}

template <typename Base> void MemoryTrackBase<Base>::SetGrouping(const QString& value) {
    Write("SetGrouping", [&](MemoryTrackData& data) { data.grouping = value; });
}

template <typename Base> int MemoryTrackBase<Base>::TrackNumber() const {
    return Read(Use("TrackNumber")).trackNumber;
}

template <typename Base> void MemoryTrackBase<Base>::SetTrackNumber(int value) {
    Write("SetTrackNumber", [&](MemoryTrackData& data) { data.trackNumber = value; });
}

template <typename Base> int MemoryTrackBase<Base>::DiscNumber() const {
    return Read(Use("DiscNumber")).discNumber;
}

template <typename Base> void MemoryTrackBase<Base>::SetDiscNumber(int value) {
    Write("SetDiscNumber", [&](MemoryTrackData& data) { data.discNumber = value; });
}

template <typename Base> int MemoryTrackBase<Base>::Year() const {
    return Read(Use("Year")).year;
}

template <typename Base> void MemoryTrackBase<Base>::SetYear(int value) {
    Write("SetYear", [&](MemoryTrackData& data) { data.year = value; });
}

template <typename Base> int MemoryTrackBase<Base>::BPM() const {
    return Read(Use("BPM")).bpm;
}

template <typename Base> void MemoryTrackBase<Base>::SetBPM(int value) {
    Write("SetBPM", [&](MemoryTrackData& data) { data.bpm = value; });
}

template <typename Base> bool MemoryTrackBase<Base>::Compilation() const {
    return Read(Use("Compilation")).compilation;
}

template <typename Base> void MemoryTrackBase<Base>::SetCompilation(bool value) {
    Write("SetCompilation", [&](MemoryTrackData& data) { data.compilation = value; });
}

template <typename Base> QString MemoryTrackBase<Base>::Time() const {
    return TrackTimeText(Read(Use("Time")).duration);
}

template <typename Base> int MemoryTrackBase<Base>::Duration() const {
    return Read(Use("Duration")).duration;
}

template <typename Base> int MemoryTrackBase<Base>::BitRate() const {
    return Read(Use("BitRate")).bitRate;
}

template <typename Base> int MemoryTrackBase<Base>::Rating() const {
    return Read(Use("Rating")).rating;
}

template <typename Base> void MemoryTrackBase<Base>::SetRating(int value) {
    Write("SetRating", [&](MemoryTrackData& data) {
        RequireRange(value, 0, 100, "Rating");
        data.rating = value;
    });
}

template <typename Base> int MemoryTrackBase<Base>::PlayedCount() const {
    return Read(Use("PlayedCount")).playedCount;
}

template <typename Base> void MemoryTrackBase<Base>::SetPlayedCount(int value) {
    Write("SetPlayedCount", [&](MemoryTrackData& data) {
        RequireRange(value, 0, std::numeric_limits<int>::max(), "PlayedCount");
        data.playedCount = value;
    });
}

template <typename Base> int MemoryTrackBase<Base>::TrackDatabaseID() const {
    Use("TrackDatabaseID");
    return m_trackId;
}

template <typename Base> int MemoryTrackBase<Base>::Start() const {
    return Read(Use("Start")).start;
}

template <typename Base> void MemoryTrackBase<Base>::SetStart(int value) {
    Write("SetStart", [&](MemoryTrackData& data) {
        RequireRange(value, 0, data.finish, "Start");
        data.start = value;
    });
}

template <typename Base> int MemoryTrackBase<Base>::Finish() const {
    return Read(Use("Finish")).finish;
}

template <typename Base> void MemoryTrackBase<Base>::SetFinish(int value) {
    Write("SetFinish", [&](MemoryTrackData& data) {
        RequireRange(value, data.start, data.duration, "Finish");
        data.finish = value;
    });
}

template <typename Base> int MemoryTrackBase<Base>::VolumeAdjustment() const {
    return Read(Use("VolumeAdjustment")).volumeAdjustment;
}

template <typename Base> void MemoryTrackBase<Base>::SetVolumeAdjustment(int value) {
    Write("SetVolumeAdjustment", [&](MemoryTrackData& data) {
        RequireRange(value, -100, 100, "VolumeAdjustment");
        data.volumeAdjustment = value;
    });
}

template <typename Base>
std::shared_ptr<IITArtworkCollection> MemoryTrackBase<Base>::Artwork() const {
    const std::shared_ptr<MemoryPlayerState> state = Use("Artwork");
    QList<std::shared_ptr<IITArtwork>> items;
    const qsizetype count = Read(state).artwork.size();
    for (qsizetype i = 0; i < count; ++i)
        items.append(std::make_shared<MemoryArtwork>(m_state, m_trackId, static_cast<int>(i)));
    return std::make_shared<MemoryCollection<IITArtwork>>(m_state, QStringLiteral("IITArtwork"),
                                                          std::move(items));
}

// The picture becomes the front cover, replacing the one there, as embedding it in the file does.
template <typename Base> void MemoryTrackBase<Base>::AddArtworkFromFile(const QString& filePath) {
    QFile file(filePath);
    if (!file.open(QIODevice::ReadOnly))
        throw VbError::Player(QStringLiteral("Cannot read the picture %1").arg(filePath));
    const QByteArray picture = file.readAll();
    if (picture.isEmpty())
        throw VbError::Player(QStringLiteral("The picture %1 is empty").arg(filePath));
    Write("AddArtworkFromFile", [&](MemoryTrackData& data) {
        if (data.artwork.isEmpty())
            data.artwork.append(picture);
        else
            data.artwork.front() = picture;
    });
}

template <typename Base> void MemoryTrackBase<Base>::Delete() {
    const std::shared_ptr<MemoryPlayerState> state = Use("Delete");
    switch (m_context.kind) {
    case MemoryTrackContext::Kind::QueueEntry:
        return state->DeleteQueueEntry(m_context.queueEntryId);
    case MemoryTrackContext::Kind::Playlist:
        return state->DeleteFromPlaylist(*m_context.playlist, m_trackId);
    case MemoryTrackContext::Kind::Library:
        return state->DeleteFromLibrary(m_trackId);
    }
}

QString MemoryFileTrack::Location() const {
    return Read(Use("Location")).location;
}

template class MemoryTrackBase<IITTrack>;
template class MemoryTrackBase<IITFileOrCDTrack>;

} // namespace Pelorin

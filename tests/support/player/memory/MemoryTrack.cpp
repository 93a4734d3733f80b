#include "support/player/memory/MemoryTrack.h"

#include "player/TrackTime.h"
#include "support/player/memory/MemoryArtwork.h"
#include "support/player/memory/MemoryCollection.h"

#include <QFile>
#include <limits>

namespace Pelorin {

template <typename Base>
MemoryTrackBase<Base>::MemoryTrackBase(std::weak_ptr<MemoryPlayerState> state, int trackId,
                                       MemoryTrackContext context)
    : m_state(std::move(state)), m_trackId(trackId), m_context(std::move(context)) {}

template <typename Base>
std::shared_ptr<MemoryPlayerState> MemoryTrackBase<Base>::use(const char* operation) const {
    std::shared_ptr<MemoryPlayerState> state = m_state.lock();
    if (!state)
        throw VbError::Player(QStringLiteral("The player is not running"));
    state->check(QStringLiteral("IITTrack.") + QLatin1String(operation));
    return state;
}

template <typename Base>
const MemoryTrackData&
MemoryTrackBase<Base>::read(const std::shared_ptr<MemoryPlayerState>& state) const {
    return state->data(m_trackId);
}

template <typename Base>
template <typename Change>
void MemoryTrackBase<Base>::write(const char* operation, Change change) {
    const std::shared_ptr<MemoryPlayerState> state = use(operation);
    change(state->data(m_trackId));
    state->trackChanged(m_trackId);
}

template <typename Base> QString MemoryTrackBase<Base>::Name() const {
    return read(use("Name")).name;
}

template <typename Base> void MemoryTrackBase<Base>::SetName(const QString& value) {
    write("SetName", [&](MemoryTrackData& data) { data.name = value; });
}

template <typename Base> QString MemoryTrackBase<Base>::Artist() const {
    return read(use("Artist")).artist;
}

template <typename Base> void MemoryTrackBase<Base>::SetArtist(const QString& value) {
    write("SetArtist", [&](MemoryTrackData& data) { data.artist = value; });
}

template <typename Base> QString MemoryTrackBase<Base>::Album() const {
    return read(use("Album")).album;
}

template <typename Base> void MemoryTrackBase<Base>::SetAlbum(const QString& value) {
    write("SetAlbum", [&](MemoryTrackData& data) { data.album = value; });
}

template <typename Base> QString MemoryTrackBase<Base>::AlbumArtist() const {
    return read(use("AlbumArtist")).albumArtist;
}

template <typename Base> void MemoryTrackBase<Base>::SetAlbumArtist(const QString& value) {
    write("SetAlbumArtist", [&](MemoryTrackData& data) { data.albumArtist = value; });
}

template <typename Base> QString MemoryTrackBase<Base>::Composer() const {
    return read(use("Composer")).composer;
}

template <typename Base> void MemoryTrackBase<Base>::SetComposer(const QString& value) {
    write("SetComposer", [&](MemoryTrackData& data) { data.composer = value; });
}

template <typename Base> QString MemoryTrackBase<Base>::Genre() const {
    return read(use("Genre")).genre;
}

template <typename Base> void MemoryTrackBase<Base>::SetGenre(const QString& value) {
    write("SetGenre", [&](MemoryTrackData& data) { data.genre = value; });
}

template <typename Base> QString MemoryTrackBase<Base>::Comment() const {
    return read(use("Comment")).comment;
}

template <typename Base> void MemoryTrackBase<Base>::SetComment(const QString& value) {
    write("SetComment", [&](MemoryTrackData& data) { data.comment = value; });
}

template <typename Base> QString MemoryTrackBase<Base>::Grouping() const {
    return read(use("Grouping")).grouping;
}

template <typename Base> void MemoryTrackBase<Base>::SetGrouping(const QString& value) {
    write("SetGrouping", [&](MemoryTrackData& data) { data.grouping = value; });
}

template <typename Base> int MemoryTrackBase<Base>::TrackNumber() const {
    return read(use("TrackNumber")).trackNumber;
}

template <typename Base> void MemoryTrackBase<Base>::SetTrackNumber(int value) {
    write("SetTrackNumber", [&](MemoryTrackData& data) { data.trackNumber = value; });
}

template <typename Base> int MemoryTrackBase<Base>::DiscNumber() const {
    return read(use("DiscNumber")).discNumber;
}

template <typename Base> void MemoryTrackBase<Base>::SetDiscNumber(int value) {
    write("SetDiscNumber", [&](MemoryTrackData& data) { data.discNumber = value; });
}

template <typename Base> int MemoryTrackBase<Base>::Year() const {
    return read(use("Year")).year;
}

template <typename Base> void MemoryTrackBase<Base>::SetYear(int value) {
    write("SetYear", [&](MemoryTrackData& data) { data.year = value; });
}

template <typename Base> int MemoryTrackBase<Base>::BPM() const {
    return read(use("BPM")).bpm;
}

template <typename Base> void MemoryTrackBase<Base>::SetBPM(int value) {
    write("SetBPM", [&](MemoryTrackData& data) { data.bpm = value; });
}

template <typename Base> bool MemoryTrackBase<Base>::Compilation() const {
    return read(use("Compilation")).compilation;
}

template <typename Base> void MemoryTrackBase<Base>::SetCompilation(bool value) {
    write("SetCompilation", [&](MemoryTrackData& data) { data.compilation = value; });
}

template <typename Base> QString MemoryTrackBase<Base>::Time() const {
    return TrackTimeText(read(use("Time")).duration);
}

template <typename Base> int MemoryTrackBase<Base>::Duration() const {
    return read(use("Duration")).duration;
}

template <typename Base> int MemoryTrackBase<Base>::BitRate() const {
    return read(use("BitRate")).bitRate;
}

template <typename Base> int MemoryTrackBase<Base>::Rating() const {
    return read(use("Rating")).rating;
}

template <typename Base> void MemoryTrackBase<Base>::WriteRating(int value) {
    write("SetRating", [&](MemoryTrackData& data) { data.rating = value; });
}

template <typename Base> int MemoryTrackBase<Base>::PlayedCount() const {
    return read(use("PlayedCount")).playedCount;
}

template <typename Base> void MemoryTrackBase<Base>::WritePlayedCount(int value) {
    write("SetPlayedCount", [&](MemoryTrackData& data) { data.playedCount = value; });
}

template <typename Base> int MemoryTrackBase<Base>::TrackDatabaseID() const {
    use("TrackDatabaseID");
    return m_trackId;
}

template <typename Base> int MemoryTrackBase<Base>::Start() const {
    return read(use("Start")).start;
}

template <typename Base> void MemoryTrackBase<Base>::WriteStart(int value) {
    write("SetStart", [&](MemoryTrackData& data) { data.start = value; });
}

template <typename Base> int MemoryTrackBase<Base>::Finish() const {
    return read(use("Finish")).finish;
}

template <typename Base> void MemoryTrackBase<Base>::WriteFinish(int value) {
    write("SetFinish", [&](MemoryTrackData& data) { data.finish = value; });
}

template <typename Base> int MemoryTrackBase<Base>::VolumeAdjustment() const {
    return read(use("VolumeAdjustment")).volumeAdjustment;
}

template <typename Base> void MemoryTrackBase<Base>::WriteVolumeAdjustment(int value) {
    write("SetVolumeAdjustment", [&](MemoryTrackData& data) { data.volumeAdjustment = value; });
}

template <typename Base>
std::shared_ptr<IITArtworkCollection> MemoryTrackBase<Base>::Artwork() const {
    const std::shared_ptr<MemoryPlayerState> state = use("Artwork");
    QList<std::shared_ptr<IITArtwork>> items;
    const qsizetype count = read(state).artwork.size();
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
    write("AddArtworkFromFile", [&](MemoryTrackData& data) {
        if (data.artwork.isEmpty())
            data.artwork.append(picture);
        else
            data.artwork.front() = picture;
    });
}

template <typename Base> void MemoryTrackBase<Base>::Delete() {
    const std::shared_ptr<MemoryPlayerState> state = use("Delete");
    switch (m_context.kind) {
    case MemoryTrackContext::Kind::QueueEntry:
        return state->deleteQueueEntry(m_context.queueEntryId);
    case MemoryTrackContext::Kind::Playlist:
        return state->deleteFromPlaylist(*m_context.playlist, m_trackId);
    case MemoryTrackContext::Kind::Library:
        return state->deleteFromLibrary(m_trackId);
    }
}

QString MemoryFileTrack::Location() const {
    return read(use("Location")).location;
}

template class MemoryTrackBase<IITTrack>;
template class MemoryTrackBase<IITFileOrCDTrack>;

} // namespace Pelorin

#pragma once

#include "player/IITFileOrCDTrack.h"
#include "player/IITTrack.h"
#include "support/player/memory/MemoryPlayerState.h"

#include <memory>

namespace Pelorin {

// A track object of the in-memory player: a view of one library track, obtained from the
// library, the queue or a user playlist (which decides what Delete removes). Every write is
// reported as a library change, as the MPD backend sees its own tag and sticker writes.
template <typename Base> class MemoryTrackBase : public Base {
public:
    MemoryTrackBase(std::weak_ptr<MemoryPlayerState> state, int trackId,
                    MemoryTrackContext context);

    QString Name() const override;
    void SetName(const QString& value) override;
    QString Artist() const override;
    void SetArtist(const QString& value) override;
    QString Album() const override;
    void SetAlbum(const QString& value) override;
    QString AlbumArtist() const override;
    void SetAlbumArtist(const QString& value) override;
    QString Composer() const override;
    void SetComposer(const QString& value) override;
    QString Genre() const override;
    void SetGenre(const QString& value) override;
    QString Comment() const override;
    void SetComment(const QString& value) override;
    QString Grouping() const override;
    void SetGrouping(const QString& value) override;
    int TrackNumber() const override;
    void SetTrackNumber(int value) override;
    int DiscNumber() const override;
    void SetDiscNumber(int value) override;
    int Year() const override;
    void SetYear(int value) override;
    int BPM() const override;
    void SetBPM(int value) override;
    bool Compilation() const override;
    void SetCompilation(bool value) override;
    QString Time() const override;
    int Duration() const override;
    int BitRate() const override;
    int Rating() const override;
    int PlayedCount() const override;
    int TrackDatabaseID() const override;
    int Start() const override;
    int Finish() const override;
    int VolumeAdjustment() const override;
    std::shared_ptr<IITArtworkCollection> Artwork() const override;
    void AddArtworkFromFile(const QString& filePath) override;
    void Delete() override;

protected:
    // IITTrack's checked setters end here.
    void WriteRating(int value) override;
    void WritePlayedCount(int value) override;
    void WriteStart(int seconds) override;
    void WriteFinish(int seconds) override;
    void WriteVolumeAdjustment(int value) override;

    // The state, after checking that operation `IITTrack.<operation>` may run.
    std::shared_ptr<MemoryPlayerState> use(const char* operation) const;
    const MemoryTrackData& read(const std::shared_ptr<MemoryPlayerState>& state) const;
    template <typename Change> void write(const char* operation, Change change);

    std::weak_ptr<MemoryPlayerState> m_state;
    int m_trackId;
    MemoryTrackContext m_context;
};

// A stream: a track without a file.
class MemoryStreamTrack final : public MemoryTrackBase<IITTrack> {
public:
    using MemoryTrackBase<IITTrack>::MemoryTrackBase;
};

class MemoryFileTrack final : public MemoryTrackBase<IITFileOrCDTrack> {
public:
    using MemoryTrackBase<IITFileOrCDTrack>::MemoryTrackBase;

    QString Location() const override;
};

extern template class MemoryTrackBase<IITTrack>;
extern template class MemoryTrackBase<IITFileOrCDTrack>;

} // namespace Pelorin

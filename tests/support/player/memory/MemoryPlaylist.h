#pragma once

#include "player/IITPlaylist.h"
#include "support/player/memory/MemoryPlayerState.h"

#include <memory>

namespace Pelorin {

// A playlist of the in-memory player: the library, the queue or a user playlist. Repeat and
// shuffle belong to the player as a whole, as they do in MPD.
class MemoryPlaylist final : public IITPlaylist {
public:
    MemoryPlaylist(std::weak_ptr<MemoryPlayerState> state,
                   std::shared_ptr<MemoryPlaylistData> playlist);

    QString Name() const override;
    std::shared_ptr<IITTrackCollection> Tracks() const override;
    int Duration() const override;
    int SongRepeat() const override;
    void SetSongRepeat(int mode) override;
    bool Shuffle() const override;
    void SetShuffle(bool value) override;
    void PlayFirstTrack() override;
    void AddTrack(const IITTrack& track) override;
    std::shared_ptr<IITTrackCollection> Search(const QString& text, int searchField) const override;

private:
    std::shared_ptr<MemoryPlayerState> use(const char* operation) const;
    // The playlist's tracks, each with the context its Delete needs.
    struct Entry {
        int trackId;
        MemoryTrackContext context;
    };
    QList<Entry> entries(const MemoryPlayerState& state) const;

    std::weak_ptr<MemoryPlayerState> m_state;
    std::shared_ptr<MemoryPlaylistData> m_playlist;
};

} // namespace Pelorin

#pragma once

#include "player/IITPlaylist.h"
#include "player/IITSource.h"

#include <QString>
#include <memory>

namespace Pelorin {

class DaemonSession;

// The daemon's lists as playlists: the whole library, the queue (the current playlist, named
// after the stored playlist Pelorin loaded last, else "Play Queue") and the stored playlists
// (the user playlists). Repeat and shuffle are the daemon's, shared by all of them.
class DaemonPlaylist final : public IITPlaylist {
public:
    enum class Kind { Library, Queue, Stored };

    DaemonPlaylist(std::weak_ptr<DaemonSession> session, Kind kind, QString storedName = {});

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
    std::shared_ptr<DaemonSession> Use() const;

    std::weak_ptr<DaemonSession> m_session;
    Kind m_kind;
    QString m_storedName;
};

// The one source, "Library": the library, the queue, then every stored playlist by name.
class DaemonSource final : public IITSource {
public:
    explicit DaemonSource(std::weak_ptr<DaemonSession> session);

    QString Name() const override;
    std::shared_ptr<IITPlaylistCollection> Playlists() const override;

private:
    std::weak_ptr<DaemonSession> m_session;
};

} // namespace Pelorin

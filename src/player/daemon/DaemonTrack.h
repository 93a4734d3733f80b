#pragma once

#include "player/IITFileOrCDTrack.h"
#include "player/IITTrack.h"
#include "player/TrackProperty.h"
#include "player/daemon/SongInfo.h"
#include "player/daemon/TagFile.h"

#include <QString>
#include <memory>
#include <optional>

namespace Pelorin {

class DaemonSession;

// Where a track object was obtained, which decides what its Delete removes.
struct DaemonTrackPlace {
    enum class Kind { QueueEntry, Library, StoredPlaylist };
    Kind kind = Kind::Library;
    QString playlist;  // StoredPlaylist: its name
    int position = -1; // StoredPlaylist: the entry's place in it, from 0
};

// What every track object of the daemon backend offers beyond the track interface: the song it
// stands for, so playlists can add it.
class DaemonSongObject {
public:
    virtual ~DaemonSongObject() = default;
    virtual QString Uri() const = 0;
};

// A song of the daemon as a track: tags as the daemon listed them when the object was made (ask
// for the track again to see later changes), what the daemon does not keep read from the file,
// ratings, play counts and start/finish points from stickers. Writing a tag writes the file and
// asks the daemon to read it again. `Base` is IITTrack for streams and IITFileOrCDTrack for
// files (DaemonFileTrack).
template <typename Base> class DaemonTrackT : public Base, public DaemonSongObject {
public:
    DaemonTrackT(std::weak_ptr<DaemonSession> session, SongInfo song, DaemonTrackPlace place);

    QString Uri() const override { return m_song.uri; }
    const SongInfo& Song() const { return m_song; }

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

    std::shared_ptr<DaemonSession> Use() const;
    // The file's path on this computer; throws when the track has none.
    QString RequireFile(std::shared_ptr<DaemonSession>& session, const char* operation) const;
    int TagNumber(int type) const;
    void WriteText(TrackProperty property, int tagType, const QString& value);
    int StickerNumber(const char* name) const;
    void SetStickerNumber(const char* name, int value);
    void SetRangeEnd(const char* name, int seconds);

    // What only the file tells (bit rate, BPM, compilation), read once per track object: the
    // placeholders of one refresh open the music file once between them. A write through this
    // object reads it again.
    const TagFile::Facts& FileFacts(const std::shared_ptr<DaemonSession>& session) const;

    std::weak_ptr<DaemonSession> m_session;
    SongInfo m_song;
    DaemonTrackPlace m_place;
    mutable std::optional<TagFile::Facts> m_facts;
};

using DaemonStreamTrack = DaemonTrackT<IITTrack>;

// A song that is a file of the daemon's music folder.
class DaemonFileTrack final : public DaemonTrackT<IITFileOrCDTrack> {
public:
    using DaemonTrackT::DaemonTrackT;
    QString Location() const override;
};

// The right kind of track object for the song.
std::shared_ptr<IITTrack> MakeDaemonTrack(std::weak_ptr<DaemonSession> session, SongInfo song,
                                          DaemonTrackPlace place);

} // namespace Pelorin

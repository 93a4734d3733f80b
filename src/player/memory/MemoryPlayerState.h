#pragma once

#include "player/memory/MemoryTrackData.h"
#include "shell/rules/VbError.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <map>
#include <memory>

namespace Pelorin {

class IITTrack;
class IITPlaylist;
class IITSource;
class MemoryPlayer;

enum class MemoryPlayState { Stopped, Playing, Paused };

// One playlist as the in-memory player keeps it. The library's and the queue's tracks are not
// listed here but taken from the library and the queue.
struct MemoryPlaylistData {
    enum class Kind { Library, Queue, User };
    Kind kind = Kind::User;
    QString name;
    QList<int> trackIds; // user playlists only
};

struct MemorySourceData {
    QString name;
    QList<std::shared_ptr<MemoryPlaylistData>> playlists;
};

// Where a track object was obtained, which decides what its Delete removes.
struct MemoryTrackContext {
    enum class Kind { Library, QueueEntry, Playlist };
    Kind kind = Kind::Library;
    int queueEntryId = 0;
    std::shared_ptr<MemoryPlaylistData> playlist;
};

// The in-memory player's whole state and its rules, shared by the player and every object it
// hands out. Objects keep only a weak reference, so an object that outlives the player fails
// its calls instead of touching freed memory. The rules follow the MPD backend where tests
// could tell a difference: pausing reports a stop, resuming a play, and there is no current
// track while stopped.
class MemoryPlayerState : public std::enable_shared_from_this<MemoryPlayerState> {
public:
    explicit MemoryPlayerState(MemoryPlayer* owner);

    // Throws when operation `operation` ("IITTrack.SetRating", "IiTunes.PlayPause") must fail:
    // the player has quit, refuses commands, or a test made that operation fail.
    void Check(const QString& operation) const;

    // Library.
    int AddLibraryTrack(MemoryTrackData data);
    bool HasTrack(int trackId) const { return m_library.contains(trackId); }
    MemoryTrackData& Data(int trackId);
    const QList<int>& LibraryOrder() const { return m_libraryOrder; }
    // A track changed: reports it as the player reports library changes.
    void TrackChanged(int trackId);

    // Queue and transport.
    struct QueueEntry {
        int entryId;
        int trackId;
    };
    void Enqueue(int trackId);
    const QList<QueueEntry>& Queue() const { return m_queue; }
    MemoryPlayState PlayState() const { return m_playState; }
    void Play();
    void Pause();
    void PlayPause();
    void Stop();
    void NextTrack();
    void PreviousTrack();
    void Quit();
    void Restart();
    bool HasQuit() const { return m_quit; }
    void PlayFrom(const MemoryPlaylistData& playlist);
    int Position() const;
    void Seek(int seconds);
    int Volume() const { return m_volume; }
    void SetVolume(int volume);
    int SongRepeat() const { return m_songRepeat; }
    void SetSongRepeat(int mode);
    bool Shuffle() const { return m_shuffle; }
    void SetShuffle(bool value) { m_shuffle = value; }
    int UpdateCount() const { return m_updateCount; }
    void Update() { ++m_updateCount; }

    // Playlists and sources.
    QString QueueName() const;
    const QList<MemorySourceData>& Sources() const { return m_sources; }
    int AddSource(const QString& name);
    std::shared_ptr<MemoryPlaylistData> AddUserPlaylist(const QString& name,
                                                        const QList<int>& trackIds, int source);
    std::shared_ptr<MemoryPlaylistData> LibraryPlaylistData() const;
    std::shared_ptr<MemoryPlaylistData> QueuePlaylistData() const;
    QList<int> PlaylistTrackIds(const MemoryPlaylistData& playlist) const;
    bool CurrentPlaylistAbsent() const { return m_currentPlaylistAbsent; }
    void SetCurrentPlaylistAbsent(bool absent) { m_currentPlaylistAbsent = absent; }

    // Deleting through a track object.
    void DeleteQueueEntry(int entryId);
    void DeleteFromPlaylist(MemoryPlaylistData& playlist, int trackId);
    void DeleteFromLibrary(int trackId);

    // Objects handed out.
    std::shared_ptr<IITTrack> TrackObject(int trackId, MemoryTrackContext context);
    std::shared_ptr<IITTrack> CurrentTrackObject();
    std::shared_ptr<IITPlaylist> PlaylistObject(std::shared_ptr<MemoryPlaylistData> playlist);
    std::shared_ptr<IITSource> SourceObject(int sourceIndex);

    // Test switches.
    void FailOperation(const QString& operation, const VbError& error);
    void MakeUnsupported(const QString& operation);
    void ClearFailures();
    void SetRefusingCommands(bool refusing) { m_refusingCommands = refusing; }

    // The owner is gone; events are no longer reported.
    void Detach() { m_owner = nullptr; }

private:
    void StartPlaying(int queueIndex);
    struct Snapshot {
        MemoryPlayState state;
        int entryId;
        int trackId;
    };
    Snapshot Before() const;
    void FinishTransition(const Snapshot& before);
    int CurrentEntryId() const;
    void RemoveQueueEntries(const QSet<int>& entryIds);

    MemoryPlayer* m_owner;
    std::map<int, MemoryTrackData> m_library;
    QList<int> m_libraryOrder;
    int m_nextTrackId = 1;
    QList<QueueEntry> m_queue;
    int m_nextEntryId = 1;
    int m_current = -1; // index into m_queue; kept while stopped so that play resumes there
    MemoryPlayState m_playState = MemoryPlayState::Stopped;
    int m_position = 0;
    int m_volume = 50;
    int m_songRepeat = 0;
    bool m_shuffle = false;
    int m_updateCount = 0;
    QString m_loadedPlaylistName;
    QList<MemorySourceData> m_sources;
    bool m_currentPlaylistAbsent = false;
    bool m_quit = false;
    bool m_refusingCommands = false;
    QHash<QString, VbError> m_failures;
    QSet<QString> m_unsupported;
};

} // namespace Pelorin

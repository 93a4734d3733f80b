#pragma once

#include "base/VbError.h"
#include "support/player/memory/MemoryTrackData.h"

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
    void check(const QString& operation) const;

    // Library.
    int addLibraryTrack(MemoryTrackData data);
    bool hasTrack(int trackId) const { return m_library.contains(trackId); }
    MemoryTrackData& data(int trackId);
    const QList<int>& libraryOrder() const { return m_libraryOrder; }
    // A track changed: reports it as the player reports library changes.
    void trackChanged(int trackId);

    // Queue and transport.
    struct QueueEntry {
        int entryId;
        int trackId;
    };
    void enqueue(int trackId);
    const QList<QueueEntry>& queue() const { return m_queue; }
    MemoryPlayState playState() const { return m_playState; }
    void Play();
    void Pause();
    void PlayPause();
    void Stop();
    void NextTrack();
    void PreviousTrack();
    void Quit();
    void restart();
    bool hasQuit() const { return m_quit; }
    void playFrom(const MemoryPlaylistData& playlist);
    int position() const;
    void seek(int seconds);
    int volume() const { return m_volume; }
    void setVolume(int volume);
    int SongRepeat() const { return m_songRepeat; }
    void SetSongRepeat(int mode);
    bool Shuffle() const { return m_shuffle; }
    void SetShuffle(bool value) { m_shuffle = value; }
    int updateCount() const { return m_updateCount; }
    void update() { ++m_updateCount; }

    // Playlists and sources.
    QString queueName() const;
    const QList<MemorySourceData>& sources() const { return m_sources; }
    int addSource(const QString& name);
    std::shared_ptr<MemoryPlaylistData> addUserPlaylist(const QString& name,
                                                        const QList<int>& trackIds, int source);
    std::shared_ptr<MemoryPlaylistData> libraryPlaylistData() const;
    std::shared_ptr<MemoryPlaylistData> queuePlaylistData() const;
    QList<int> playlistTrackIds(const MemoryPlaylistData& playlist) const;
    bool currentPlaylistAbsent() const { return m_currentPlaylistAbsent; }
    void setCurrentPlaylistAbsent(bool absent) { m_currentPlaylistAbsent = absent; }

    // Deleting through a track object.
    void deleteQueueEntry(int entryId);
    void deleteFromPlaylist(MemoryPlaylistData& playlist, int trackId);
    void deleteFromLibrary(int trackId);

    // Objects handed out.
    std::shared_ptr<IITTrack> trackObject(int trackId, MemoryTrackContext context);
    std::shared_ptr<IITTrack> currentTrackObject();
    std::shared_ptr<IITPlaylist> playlistObject(std::shared_ptr<MemoryPlaylistData> playlist);
    std::shared_ptr<IITSource> sourceObject(int sourceIndex);

    // Test switches.
    void failOperation(const QString& operation, const VbError& error);
    // How often an operation ("IiTunes.CurrentTrack", "IITTrack.Artwork") was asked for.
    int operationCount(const QString& operation) const {
        return m_operationCounts.value(operation);
    }
    void makeUnsupported(const QString& operation);
    void clearFailures();
    void setRefusingCommands(bool refusing) { m_refusingCommands = refusing; }

    // The owner is gone; events are no longer reported.
    void detach() { m_owner = nullptr; }

private:
    void startPlaying(int queueIndex);
    struct Snapshot {
        MemoryPlayState state;
        int entryId;
        int trackId;
    };
    Snapshot snapshot() const;
    void finishTransition(const Snapshot& before);
    int currentEntryId() const;
    void removeQueueEntries(const QSet<int>& entryIds);

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
    mutable QHash<QString, int> m_operationCounts;
    QSet<QString> m_unsupported;
};

} // namespace Pelorin

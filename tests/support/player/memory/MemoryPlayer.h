#pragma once

#include "player/IiTunes.h"
#include "support/player/memory/MemoryPlayerState.h"
#include "support/player/memory/MemoryTrackData.h"

#include <memory>

namespace Pelorin {

// A complete player held in memory, for tests of the logic above the player and for situations
// a real player cannot be brought into (commands refused, two playlists of one name in two
// sources, no current playlist while a track plays, any operation failing).
//
// It behaves as the MPD backend does where the program could tell: pausing reports a stop and
// resuming a play; there is no current track while stopped; NextTrack, PreviousTrack and seeking
// fail with "Not playing" while stopped; the current playlist is the queue, named after the user
// playlist last started, else "Play Queue"; one source "Library" lists the library, the queue and
// the user playlists; every change of a track or a user playlist is reported as a library change;
// deleting a library track takes it out of the queue and the user playlists. Shuffle is stored
// but does not reorder anything. The position moves only when set.
//
// Events the player raises by itself are queued, as a real player's arrive, and are delivered
// when the event loop runs; the fire... hooks emit at once.
//
// Operation names for the failure hooks are "<interface>.<method>": "IiTunes.PlayPause",
// "IiTunes.CurrentTrack", "IITTrack.SetComment", "IITPlaylist.AddTrack", "IITSource.Playlists",
// "IITArtwork.SaveArtworkToFile", and "<item interface>.Count" / ".Item" for collections
// ("IITTrack.Count" for a track collection).
class MemoryPlayer final : public IiTunes {
    Q_OBJECT

public:
    explicit MemoryPlayer(QObject* parent = nullptr);
    ~MemoryPlayer() override;

    void PlayPause() override;
    void Play() override;
    void Pause() override;
    void Stop() override;
    void PreviousTrack() override;
    void NextTrack() override;
    void Quit() override;
    void UpdateIPod() override;
    int SoundVolume() const override;
    void SetSoundVolume(int volume) override;
    int PlayerPosition() const override;
    void SetPlayerPosition(int seconds) override;
    std::shared_ptr<IITTrack> CurrentTrack() const override;
    std::shared_ptr<IITPlaylist> CurrentPlaylist() const override;
    std::shared_ptr<IITPlaylist> LibraryPlaylist() const override;
    std::shared_ptr<IITSourceCollection> Sources() const override;

    // Content. A track's TrackDatabaseID is returned when it is added.
    int addLibraryTrack(const MemoryTrackData& data);
    void enqueue(int trackId);
    // Adds a source after the library; returns its 1-based index.
    int addSource(const QString& name);
    // Adds a user playlist at the end of source `source` (1-based; 1 is the library).
    void addUserPlaylist(const QString& name, const QList<int>& trackIds, int source = 1);

    // Inspection.
    MemoryPlayState playState() const;
    MemoryTrackData trackData(int trackId) const;
    QList<int> queueTrackIds() const;
    // The tracks of the first user playlist of that name in source `source`.
    QList<int> userPlaylistTrackIds(const QString& name, int source = 1) const;
    int updateCount() const;
    bool hasQuit() const;

    // Situations.
    void setCurrentPlaylistAbsent(bool absent);
    // Makes the operation throw `error` until ClearFailures.
    void failOperation(const QString& operation, const VbError& error);
    // How often an operation ("IiTunes.CurrentTrack", "IITTrack.Artwork") was asked for.
    int operationCount(const QString& operation) const;
    // Makes the operation throw "The player does not support <method>" until ClearFailures.
    void makeUnsupported(const QString& operation);
    void clearFailures();
    // After Quit: the player runs again, stopped, with its content kept.
    void restart();

    // Events at once. Disabling also makes every command fail until enabled again.
    void firePlayEvent();
    void firePlayingTrackChangedEvent();
    void fireStopEvent();
    void fireDatabaseChangedEvent(const QList<int>& deletedObjectIDs,
                                  const QList<int>& changedObjectIDs);
    void fireQuittingEvent();
    void fireCOMCallsDisabledEvent(int reason);
    void fireCOMCallsEnabledEvent();

private:
    friend class MemoryPlayerState;

    // Queued reports of the state's own changes.
    void postPlayEvent(std::shared_ptr<IITTrack> track);
    void postPlayingTrackChangedEvent(std::shared_ptr<IITTrack> track);
    void postStopEvent(std::shared_ptr<IITTrack> track);
    void postDatabaseChangedEvent(const QList<int>& deletedObjectIDs,
                                  const QList<int>& changedObjectIDs);
    void postQuittingEvent();

    MemoryPlayerState& use(const char* operation) const;

    std::shared_ptr<MemoryPlayerState> m_state;
};

} // namespace Pelorin

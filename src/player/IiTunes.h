#pragma once

#include "player/IITPlaylist.h"
#include "player/IITSource.h"
#include "player/IITTrack.h"

#include <QList>
#include <QObject>
#include <memory>

namespace Pelorin {

// Why the player stopped taking commands (argument of OnCOMCallsDisabledEvent).
enum ITCOMDisabledReason : int {
    ITCOMDisabledReasonOther = 0,
    ITCOMDisabledReasonDialog = 1,
    ITCOMDisabledReasonQuitting = 2,
};

// The player application: the one interface through which the program drives the player.
// Commands are plain calls, made on the user-interface thread; each asks the player and throws
// VbError when it fails (VbError::Player carrying the player's description, which the command
// interpreter shows), or "The player does not support <operation>" when the backend cannot do
// it. Objects come back as shared pointers that stay valid after the player has gone (their
// calls then fail); null stands for Nothing.
// Events arrive as signals on the user-interface thread, after the change they report.
class IiTunes : public QObject {
    Q_OBJECT

public:
    explicit IiTunes(QObject* parent = nullptr);
    ~IiTunes() override;

    // Transport. PlayPause toggles between playing and paused (and plays when stopped).
    virtual void PlayPause() = 0;
    virtual void Play() = 0;
    virtual void Pause() = 0;
    virtual void Stop() = 0;
    virtual void PreviousTrack() = 0;
    virtual void NextTrack() = 0;

    // Ends the player; it announces it with OnQuittingEvent.
    virtual void Quit() = 0;
    // Rescans the music the player knows (the original synchronised an attached iPod).
    virtual void UpdateIPod() = 0;

    // Player volume 0..100.
    virtual int SoundVolume() const = 0;
    virtual void SetSoundVolume(int volume) = 0;

    // Playing position in whole seconds; 0 when stopped. Setting it seeks in the current track.
    virtual int PlayerPosition() const = 0;
    virtual void SetPlayerPosition(int seconds) = 0;

    // The track playing or paused; null when stopped.
    virtual std::shared_ptr<IITTrack> CurrentTrack() const = 0;
    // The playlist the player plays from; null when there is none.
    virtual std::shared_ptr<IITPlaylist> CurrentPlaylist() const = 0;
    // The playlist holding the whole library.
    virtual std::shared_ptr<IITPlaylist> LibraryPlaylist() const = 0;
    // Every source with its playlists, the library first.
    virtual std::shared_ptr<IITSourceCollection> Sources() const = 0;

Q_SIGNALS:
    // Playback started or resumed.
    void OnPlayerPlayEvent(std::shared_ptr<Pelorin::IITTrack> iTrack);
    // Another track plays now.
    void OnPlayerPlayingTrackChangedEvent(std::shared_ptr<Pelorin::IITTrack> iTrack);
    // Playback stopped or paused.
    void OnPlayerStopEvent(std::shared_ptr<Pelorin::IITTrack> iTrack);
    // Tracks or playlists of the library changed; the lists hold TrackDatabaseIDs where the
    // player names them and may be empty.
    void OnDatabaseChangedEvent(const QList<int>& deletedObjectIDs,
                                const QList<int>& changedObjectIDs);
    // The player is going away.
    void OnQuittingEvent();
    // The player refuses commands for a while (ITCOMDisabledReason), until OnCOMCallsEnabledEvent.
    void OnCOMCallsDisabledEvent(int reason);
    void OnCOMCallsEnabledEvent();
};

} // namespace Pelorin

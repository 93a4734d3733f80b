#pragma once

#include "player/IITFileOrCDTrack.h"
#include "player/IiTunes.h"
#include "player/link/WindowPlayer.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <memory>

namespace Pelorin {

class PlayerApplication;
class PlayerLinkClient;

// One skin window's link to the player: its `iTunesR`, the guard `iTunesIsNothing`, the
// COM-calls flag, the quitting flag with `tmrDeskbarLetDie`, and the handlers of the player's
// events, which call back into the window through PlayerLinkClient.
//
// States: connected (iTunesR set), not connected (iTunesR null; the next guarded action connects
// once the process check finds the player), and, in deskband mode only, letting die (iTunesR
// null and the quitting flag set until tmrDeskbarLetDie fires, so nothing reconnects to a
// player that is still shutting down).
class PlayerLink final : public QObject, public WindowPlayer {
    Q_OBJECT

public:
    static constexpr int kDeskbarLetDieMs = 5000;

    // The timer starts here, as the window is created: it fires once 5 s later and stops.
    PlayerLink(PlayerApplication& application, PlayerLinkClient& client, QObject* parent = nullptr);
    ~PlayerLink() override;

    // Connecting at window load: sets the COM-calls flag, then connects when the player runs.
    void FormLoad();

    // True when no player process runs, or while the quitting flag is set.
    bool IsiTunesDead() const;

    // WindowPlayer. A dead player whose reference is still set is not missing for the guard:
    // only the reference decides.
    bool iTunesIsNothing(bool CareForTrack) override;
    IiTunes* iTunesR() const override { return m_iTunesR.data(); }
    bool COMCallsEnabled() const override { return m_comCallsEnabled; }
    IiTunes* iTunesApp() override;
    void SetCurrentFileTrack(std::shared_ptr<IITFileOrCDTrack> track) override {
        m_currentFileTrack = std::move(track);
    }

    bool iTunesQuitting() const { return m_iTunesQuitting; }
    QTimer& tmrDeskbarLetDie() { return m_tmrDeskbarLetDie; }

    // The current track as a file, kept by "deletecompletely" while it works.
    std::shared_ptr<IITFileOrCDTrack> CurrentFileTrack() const { return m_currentFileTrack; }

    // The player's event handlers (public so the window's tests can drive them).
    void iTunesR_OnCOMCallsDisabledEvent(int reason);
    void iTunesR_OnCOMCallsEnabledEvent();
    void iTunesR_OnDatabaseChangedEvent(const QList<int>& deletedObjectIDs,
                                        const QList<int>& changedObjectIDs);
    void iTunesR_OnPlayerPlayEvent(std::shared_ptr<Pelorin::IITTrack> iTrack);
    void iTunesR_OnPlayerPlayingTrackChangedEvent(std::shared_ptr<Pelorin::IITTrack> iTrack);
    void iTunesR_OnPlayerStopEvent(std::shared_ptr<Pelorin::IITTrack> iTrack);
    void iTunesR_OnQuittingEvent();
    void tmrDeskbarLetDie_Timer();

private:
    void SetiTunesR(IiTunes* player);

    PlayerApplication& m_application;
    PlayerLinkClient& m_client;
    QPointer<IiTunes> m_iTunesR;
    QList<QMetaObject::Connection> m_connections;
    bool m_comCallsEnabled = true;
    bool m_iTunesQuitting = false;
    QTimer m_tmrDeskbarLetDie;
    std::shared_ptr<IITFileOrCDTrack> m_currentFileTrack;
};

} // namespace Pelorin

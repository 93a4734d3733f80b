#include "player/link/PlayerLink.h"

#include "player/link/PlayerApplication.h"
#include "player/link/PlayerLinkClient.h"

#include <exception>

namespace Pelorin {

PlayerLink::PlayerLink(PlayerApplication& application, PlayerLinkClient& client, QObject* parent)
    : QObject(parent), m_application(application), m_client(client) {
    m_tmrDeskbarLetDie.setInterval(kDeskbarLetDieMs);
    connect(&m_tmrDeskbarLetDie, &QTimer::timeout, this, &PlayerLink::tmrDeskbarLetDie_Timer);
    m_tmrDeskbarLetDie.start();
}

PlayerLink::~PlayerLink() {
    SetiTunesR(nullptr);
}

void PlayerLink::FormLoad() {
    m_comCallsEnabled = true;
    if (!IsiTunesDead()) {
        SetiTunesR(m_application.CreateiTunesApp());
    }
}

bool PlayerLink::IsiTunesDead() const {
    return !m_application.IsPlayerRunning() || m_iTunesQuitting;
}

bool PlayerLink::iTunesIsNothing(bool CareForTrack) {
    try {
        // Asked twice, as it always was; only the second answer counts.
        IsiTunesDead();
        const bool dead = IsiTunesDead();
        if (!m_iTunesR && !dead) {
            SetiTunesR(m_application.CreateiTunesApp());
        }
        if (!m_iTunesR) {
            return true;
        }
        const std::shared_ptr<IITTrack> track = m_iTunesR->CurrentTrack();
        if (CareForTrack && !track) {
            return true;
        }
        return false;
    } catch (const std::exception&) {
        // A player shutting down fails halfway; callers then make their call, which fails
        // with its own error.
        return false;
    }
}

IiTunes* PlayerLink::iTunesApp() {
    // Made only while the player runs: connecting first could start one through socket
    // activation.
    if (IiTunes* player = m_application.iTunesApp())
        return player;
    return m_application.IsPlayerRunning() ? m_application.CreateiTunesApp() : nullptr;
}

void PlayerLink::SetiTunesR(IiTunes* player) {
    for (const QMetaObject::Connection& connection : std::as_const(m_connections)) {
        disconnect(connection);
    }
    m_connections.clear();
    m_iTunesR = player;
    if (!player) {
        return;
    }
    m_connections = {
        connect(player, &IiTunes::OnCOMCallsDisabledEvent, this,
                &PlayerLink::iTunesR_OnCOMCallsDisabledEvent),
        connect(player, &IiTunes::OnCOMCallsEnabledEvent, this,
                &PlayerLink::iTunesR_OnCOMCallsEnabledEvent),
        connect(player, &IiTunes::OnDatabaseChangedEvent, this,
                &PlayerLink::iTunesR_OnDatabaseChangedEvent),
        connect(player, &IiTunes::OnPlayerPlayEvent, this, &PlayerLink::iTunesR_OnPlayerPlayEvent),
        connect(player, &IiTunes::OnPlayerPlayingTrackChangedEvent, this,
                &PlayerLink::iTunesR_OnPlayerPlayingTrackChangedEvent),
        connect(player, &IiTunes::OnPlayerStopEvent, this, &PlayerLink::iTunesR_OnPlayerStopEvent),
        connect(player, &IiTunes::OnQuittingEvent, this, &PlayerLink::iTunesR_OnQuittingEvent),
    };
}

void PlayerLink::iTunesR_OnCOMCallsDisabledEvent(int) {
    m_comCallsEnabled = false;
}

void PlayerLink::iTunesR_OnCOMCallsEnabledEvent() {
    m_comCallsEnabled = true;
}

void PlayerLink::iTunesR_OnDatabaseChangedEvent(const QList<int>&, const QList<int>&) {
    m_client.CheckEvent(QStringLiteral("databasechanged"));
    m_client.LoadSong();
}

void PlayerLink::iTunesR_OnPlayerPlayEvent(std::shared_ptr<IITTrack>) {
    m_client.CheckEvent(QStringLiteral("newsong"));
    m_client.LoadSong();
}

void PlayerLink::iTunesR_OnPlayerPlayingTrackChangedEvent(std::shared_ptr<IITTrack>) {
    m_client.CheckEvent(QStringLiteral("newsong"));
    m_client.LoadSong();
}

void PlayerLink::iTunesR_OnPlayerStopEvent(std::shared_ptr<IITTrack>) {
    // The display keeps the last track.
    m_client.CheckEvent(QStringLiteral("stopsong"));
}

void PlayerLink::iTunesR_OnQuittingEvent() {
    if (!m_client.IsDeskbar()) {
        m_client.UnloadAllForms();
        return;
    }
    m_iTunesQuitting = true;
    m_tmrDeskbarLetDie.start();
    SetiTunesR(nullptr);
}

void PlayerLink::tmrDeskbarLetDie_Timer() {
    m_iTunesQuitting = false;
    m_tmrDeskbarLetDie.stop();
}

} // namespace Pelorin
